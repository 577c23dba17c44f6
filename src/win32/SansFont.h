#pragma once

#include "win32/Twips.h"

#include <cmath>
#include <map>
#include <tuple>

namespace nv::win32 {

// The program's sans-serif face at a size in points, sized for the screen; kept for the
// program's lifetime.
inline HFONT sansFont(double points, bool bold = false, bool underline = false) {
    static std::map<std::tuple<int, bool, bool>, HFONT> made;
    const int hundredths = static_cast<int>(std::lround(points * 100));
    HFONT& font = made[{hundredths, bold, underline}];
    if (!font) {
        LOGFONTW look{};
        look.lfHeight = -MulDiv(hundredths, screenDpi(), 7200);
        look.lfWeight = bold ? FW_BOLD : FW_NORMAL;
        look.lfUnderline = underline;
        look.lfCharSet = DEFAULT_CHARSET;
        look.lfQuality = CLEARTYPE_QUALITY;
        // Tahoma reads well at these small sizes, but Wine finds no bold Tahoma; the old dialog
        // face has a bold one on Windows and a substitute with one under Wine.
        lstrcpyW(look.lfFaceName, bold ? L"MS Sans Serif" : L"Tahoma");
        font = CreateFontIndirectW(&look);
    }
    return font;
}

} // namespace nv::win32
