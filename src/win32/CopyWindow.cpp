#include "win32/CopyWindow.h"

#include "win32/SansFont.h"
#include "win32/Win32Progress.h"
#include "win32/WindowClasses.h"

#include <commctrl.h>

namespace nv::win32 {

namespace {

Frm_Copy::Controls layOut(Win32Window& window, Adapters& adapters) {
    HWND w = window.hwnd();
    // The clip lies over the lower lines of the label, as it always has.
    HWND clip = createChild(w, ANIMATE_CLASSW, "", ACS_CENTER | ACS_TRANSPARENT,
                            {360, 960, 3975, 855}, nullptr);
    HWND bar = createChild(w, PROGRESS_CLASSW, "", 0, {120, 2640, 3735, 255}, nullptr);
    SendMessageW(bar, PBM_SETRANGE32, 0, 100);
    return {&window, adapters.make<Win32Animation>(clip), adapters.make<Win32ProgressBar>(bar),
            adapters.textBox(w, "Text1", {360, 2040, 2895, 495}, sansFont(8.25), ES_READONLY),
            adapters.label(w, "Bestanden worden gekopieerd. Even geduld a.u.b",
                           {480, 480, 3615, 855}, sansFont(8.25))};
}

} // namespace

CopyWindow::CopyWindow(HWND owner)
    : window_(createTopLevel(kCopyWindowClass, "Kopieren", WS_POPUP | WS_CAPTION | WS_CLIPCHILDREN,
                             0, 4605, 3090, owner)),
      form_(layOut(window_, adapters_)) {
    window_.refuseCloseFromOutside = true;
    window_.centreAtFirstShow = true;
}

} // namespace nv::win32
