#pragma once

#include <QRect>

namespace nv {

// Layouts are drawn in twips, 1440 to the inch; the screen's logical DPI turns them into pixels
// so that the proportions hold at every scaling.
int twips(int value);
QRect twipsRect(int left, int top, int width, int height);
int pixelsToTwips(int pixels);

} // namespace nv
