#pragma once

#include "platform/Controls.h"

#include <windows.h>

namespace nv::win32 {

// Pixels per inch of the screen; twips become pixels through it.
int screenDpi();

inline int pixelsOf(int twips) {
    return MulDiv(twips, screenDpi(), 1440);
}
inline int twipsOf(int pixels) {
    return MulDiv(pixels, 1440, screenDpi());
}
RECT pixelRect(const TwipsRect& place);
TwipsRect twipsRect(const RECT& pixels);

} // namespace nv::win32
