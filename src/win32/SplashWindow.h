#pragma once

#include "sidewindows/FrmSplash.h"
#include "win32/Adapters.h"
#include "win32/Win32Window.h"

namespace nv::win32 {

// frmSplash over a borderless window above the others, with its pictures.
class SplashWindow : public FormFace<frmSplash> {
public:
    SplashWindow();
    frmSplash& form() override { return form_; }
    Win32Window& window() { return window_; }
    // Shows the splash with the keyboard, so that a key closes it.
    void show();

private:
    Win32Window window_;
    Adapters adapters_;
    frmSplash form_;
};

} // namespace nv::win32
