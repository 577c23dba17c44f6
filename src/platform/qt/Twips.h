#pragma once

#include "platform/Controls.h"

#include <QRect>

namespace nv {

// Layouts are drawn in twips, 1440 to the inch; the screen's logical DPI turns them into pixels
// so that the proportions hold at every scaling.
int twips(int value);
QRect twipsRect(int left, int top, int width, int height);
int pixelsToTwips(int pixels);

inline QRect pixelsOf(const TwipsRect& place) {
    return twipsRect(place.left, place.top, place.width, place.height);
}
inline TwipsRect twipsOf(const QRect& pixels) {
    return {pixelsToTwips(pixels.x()), pixelsToTwips(pixels.y()), pixelsToTwips(pixels.width()),
            pixelsToTwips(pixels.height())};
}

} // namespace nv
