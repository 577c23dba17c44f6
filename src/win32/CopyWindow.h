#pragma once

#include "backup/FrmCopy.h"
#include "win32/Adapters.h"
#include "win32/Win32Window.h"

namespace nv::win32 {

// Frm_Copy over a window without close box, owned by the main window.
class CopyWindow : public FormFace<Frm_Copy> {
public:
    explicit CopyWindow(HWND owner);
    Frm_Copy& form() override { return form_; }

private:
    Win32Window window_;
    Adapters adapters_;
    Frm_Copy form_;
};

} // namespace nv::win32
