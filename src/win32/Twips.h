#pragma once

#include "platform/Controls.h"

#include <windows.h>

namespace nv::win32 {

// Pixels per inch of the screen; twips become pixels through it.
inline int screenDpi() {
    static const int dpi = [] {
        HDC screen = GetDC(nullptr);
        const int found = GetDeviceCaps(screen, LOGPIXELSY);
        ReleaseDC(nullptr, screen);
        return found > 0 ? found : 96;
    }();
    return dpi;
}

inline int pixelsOf(int twips) {
    return MulDiv(twips, screenDpi(), 1440);
}
inline int twipsOf(int pixels) {
    return MulDiv(pixels, 1440, screenDpi());
}
inline RECT pixelRect(const TwipsRect& p) {
    const int left = pixelsOf(p.left), top = pixelsOf(p.top);
    return {left, top, left + pixelsOf(p.width), top + pixelsOf(p.height)};
}
inline TwipsRect twipsRect(const RECT& r) {
    return {twipsOf(r.left), twipsOf(r.top), twipsOf(r.right - r.left), twipsOf(r.bottom - r.top)};
}

} // namespace nv::win32
