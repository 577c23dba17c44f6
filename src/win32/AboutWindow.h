#pragma once

#include "sidewindows/FrmAbout.h"
#include "win32/AccessibleName.h"
#include "win32/Adapters.h"
#include "win32/ResourceIds.h"
#include "win32/SansFont.h"
#include "win32/Win32Window.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

// frmAbout over a modal window with only a close box.
class AboutWindow : public FormFace<frmAbout> {
public:
    AboutWindow()
        : window_(createTopLevel(kAboutWindowClass, "", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                                 WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, 6090, 5040)),
          form_(layOut()) {
        SetWindowPos(window_.hwnd(), nullptr, pixelsOf(3120), pixelsOf(2970), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    frmAbout& form() override { return form_; }

private:
    frmAbout::Controls layOut() {
        HWND w = window_.hwnd();
        const HFONT font = sansFont(8.25);
        setAccessibleName(adapters_.picture(w, NV_IDB_ABOUT_LOGO, {0, 120, 1650, 1335}), "Logo");
        createChild(w, L"STATIC", "", SS_ETCHEDHORZ, {120, 3120, 5564, 30}, nullptr);
        frmAbout::Controls c{};
        c.Me = &window_;
        c.lblTitle = adapters_.label(w, "", {1770, 240, 3885, 480}, sansFont(12, true));
        c.lblVersion = adapters_.label(w, "", {1770, 780, 3885, 225}, font);
        c.lblDescription = adapters_.label(w, "", {1770, 1125, 3885, 1890}, font);
        c.lblDisclaimer = adapters_.label(w, "", {240, 3360, 3870, 345}, font);
        auto* info =
            adapters_.textBox(w, "", {240, 3840, 5415, 525}, font, ES_READONLY | WS_TABSTOP);
        setAccessibleName(info->hwnd(), "Informatie");
        c.TxtInfo = info;
        c.LblMail =
            adapters_.label(w, "", {240, 4440, 3975, 255}, sansFont(8.25, false, true), SS_NOTIFY);
        auto* ok = adapters_.button(w, "OK", {4320, 4440, 1260, 345}, font, BS_DEFPUSHBUTTON);
        c.cmdOK = ok;
        // The window opens with OK ready, and Enter presses it.
        window_.focus = ok->hwnd();
        window_.defaultButton = static_cast<UINT>(GetDlgCtrlID(ok->hwnd()));
        return c;
    }

    Win32Window window_;
    Adapters adapters_;
    frmAbout form_;
};

} // namespace nv::win32
