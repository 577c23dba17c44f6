#pragma once

#include "sidewindows/FrmSplash.h"
#include "win32/AccessibleName.h"
#include "win32/Adapters.h"
#include "win32/ResourceIds.h"
#include "win32/SansFont.h"
#include "win32/Win32Frame.h"
#include "win32/Win32Window.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

// frmSplash over a borderless window above the others, with its pictures.
class SplashWindow : public FormFace<frmSplash> {
public:
    SplashWindow()
        : window_(createTopLevel(kSplashWindowClass, "Norvale Backup", WS_POPUP | WS_CLIPCHILDREN,
                                 WS_EX_DLGMODALFRAME | WS_EX_TOPMOST | WS_EX_TOOLWINDOW, 7950,
                                 5490),
                  kBackground),
          form_(layOut()) {
        window_.centreAtFirstShow = true;
    }
    frmSplash& form() override { return form_; }
    Win32Window& window() { return window_; }
    // Shows the splash with the keyboard, so that a key closes it.
    void show() {
        window_.show();
        SetForegroundWindow(window_.hwnd());
        SetFocus(window_.hwnd());
    }

private:
    static constexpr Rgb kBackground{224, 224, 224};

    frmSplash::Controls layOut() {
        auto* frame =
            adapters_.make<Win32Frame>(window_.hwnd(), "", TwipsRect{240, 60, 7545, 5235},
                                       Win32Frame::Look::Box, sansFont(8.25), kBackground);
        HWND inside = frame->hwnd();
        setAccessibleName(inside, "Startscherm");
        adapters_.picture(inside, NV_IDB_SPLASH_BANNER, {150, 225, 7230, 2250});
        adapters_.picture(inside, NV_IDB_SPLASH_SQUARE, {210, 3705, 1575, 1350});
        auto caption = [&](Rgb colour, double points, const TwipsRect& place) {
            auto* label = adapters_.label(inside, "", place, sansFont(points, true));
            label->setForeColor(colour);
            return label;
        };
        auto* copyright = caption({0, 0, 255}, 9.75, {180, 2610, 2835, 255});
        auto* productName = caption({255, 0, 0}, 26.25, {1980, 3675, 3735, 615});
        auto* version = caption({0, 0, 0}, 12, {3120, 4920, 885, 285});
        // Both take the size of what the form writes in them.
        productName->setAutoSize(true);
        version->setAutoSize(true);
        auto* timer = adapters_.make<Win32Timer>(window_.hwnd(), 1);
        window_.timers = {timer};
        return {&window_, frame, copyright, productName, version, timer};
    }

    Win32Window window_;
    Adapters adapters_;
    frmSplash form_;
};

} // namespace nv::win32
