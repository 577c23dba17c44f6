#pragma once

#include "sidewindows/FrmAbout.h"
#include "win32/Adapters.h"
#include "win32/Win32Window.h"

namespace nv::win32 {

// frmAbout over a modal window with only a close box.
class AboutWindow : public FormFace<frmAbout> {
public:
    AboutWindow();
    frmAbout& form() override { return form_; }

private:
    Win32Window window_;
    Adapters adapters_;
    frmAbout form_;
};

} // namespace nv::win32
