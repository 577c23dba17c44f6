#include "win32/Twips.h"

namespace nv::win32 {

int screenDpi() {
    static const int dpi = [] {
        HDC screen = GetDC(nullptr);
        const int found = GetDeviceCaps(screen, LOGPIXELSY);
        ReleaseDC(nullptr, screen);
        return found > 0 ? found : 96;
    }();
    return dpi;
}

RECT pixelRect(const TwipsRect& p) {
    const int left = pixelsOf(p.left), top = pixelsOf(p.top);
    return {left, top, left + pixelsOf(p.width), top + pixelsOf(p.height)};
}

TwipsRect twipsRect(const RECT& r) {
    return {twipsOf(r.left), twipsOf(r.top), twipsOf(r.right - r.left), twipsOf(r.bottom - r.top)};
}

} // namespace nv::win32
