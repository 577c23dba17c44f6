#include "win32/AboutWindow.h"

#include "win32/ResourceIds.h"
#include "win32/SansFont.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

namespace {

frmAbout::Controls layOut(Win32Window& window, Adapters& a) {
    HWND w = window.hwnd();
    const HFONT font = sansFont(8.25);
    a.picture(w, NV_IDB_ABOUT_LOGO, {0, 120, 1650, 1335});
    createChild(w, L"STATIC", "", SS_ETCHEDHORZ, {120, 3120, 5564, 30}, nullptr);
    frmAbout::Controls c{};
    c.Me = &window;
    c.lblTitle = a.label(w, "", {1770, 240, 3885, 480}, sansFont(12, true));
    c.lblVersion = a.label(w, "", {1770, 780, 3885, 225}, font);
    c.lblDescription = a.label(w, "", {1770, 1125, 3885, 1890}, font);
    c.lblDisclaimer = a.label(w, "", {240, 3360, 3870, 345}, font);
    c.TxtInfo = a.textBox(w, "", {240, 3840, 5415, 525}, font, ES_READONLY | WS_TABSTOP);
    c.LblMail = a.label(w, "", {240, 4440, 3975, 255}, sansFont(8.25, false, true), SS_NOTIFY);
    auto* ok = a.button(w, "OK", {4320, 4440, 1260, 345}, font, BS_DEFPUSHBUTTON);
    c.cmdOK = ok;
    // The window opens with OK ready, and Enter presses it.
    window.focus = ok->hwnd();
    window.defaultButton = static_cast<UINT>(GetDlgCtrlID(ok->hwnd()));
    return c;
}

} // namespace

AboutWindow::AboutWindow()
    : window_(createTopLevel(kAboutWindowClass, "", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                             WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, 6090, 5040)),
      form_(layOut(window_, adapters_)) {
    SetWindowPos(window_.hwnd(), nullptr, pixelsOf(3120), pixelsOf(2970), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace nv::win32
