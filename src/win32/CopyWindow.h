#pragma once

#include "backup/FrmCopy.h"
#include "win32/AccessibleName.h"
#include "win32/Adapters.h"
#include "win32/SansFont.h"
#include "win32/Win32Progress.h"
#include "win32/Win32Window.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

// Frm_Copy over a window without close box, owned by the main window.
class CopyWindow : public FormFace<Frm_Copy> {
public:
    explicit CopyWindow(HWND owner)
        : window_(createTopLevel(kCopyWindowClass, "Kopieren",
                                 WS_POPUP | WS_CAPTION | WS_CLIPCHILDREN, 0, 4605, 3090, owner)),
          form_(layOut()) {
        window_.refuseCloseFromOutside = true;
        window_.centreAtFirstShow = true;
    }
    Frm_Copy& form() override { return form_; }

private:
    Frm_Copy::Controls layOut() {
        HWND w = window_.hwnd();
        // The clip lies over the lower lines of the label, as it always has.
        HWND clip = createChild(w, ANIMATE_CLASSW, "", ACS_CENTER | ACS_TRANSPARENT,
                                {360, 960, 3975, 855}, nullptr);
        auto* bar = adapters_.make<Win32ProgressBar>(
            createChild(w, PROGRESS_CLASSW, "", 0, {120, 2640, 3735, 255}, nullptr));
        bar->setMax(100);
        auto* text =
            adapters_.textBox(w, "Text1", {360, 2040, 2895, 495}, sansFont(8.25), ES_READONLY);
        setAccessibleName(clip, "Animatie van het kopiëren");
        setAccessibleName(bar->hwnd(), "Voortgang");
        setAccessibleName(text->hwnd(), "Bestand dat gekopieerd wordt");
        return {&window_, adapters_.make<Win32Animation>(clip), bar, text,
                adapters_.label(w, "Bestanden worden gekopieerd. Even geduld a.u.b",
                                {480, 480, 3615, 855}, sansFont(8.25))};
    }

    Win32Window window_;
    Adapters adapters_;
    Frm_Copy form_;
};

} // namespace nv::win32
