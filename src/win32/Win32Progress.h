#pragma once

#include "win32/Win32Control.h"

#include <commctrl.h>

namespace nv::win32 {

class Win32ProgressBar : public Win32Control<ProgressBar> {
public:
    using Win32Control::Win32Control;
    int max() const override { return static_cast<int>(SendMessageW(window_, PBM_GETRANGE, 0, 0)); }
    void setMax(int maximum) override { SendMessageW(window_, PBM_SETRANGE32, 0, maximum); }
    int value() const override { return static_cast<int>(SendMessageW(window_, PBM_GETPOS, 0, 0)); }
    void setValue(int value) override { SendMessageW(window_, PBM_SETPOS, WPARAM(value), 0); }
};

// An ANIMATE_CLASS control; it plays on a thread of its own while the window's thread works.
class Win32Animation : public Win32Control<Animation> {
public:
    using Win32Control::Win32Control;
    std::string clipFileName() const override { return "FILECOPY.AVI"; }
    bool open(const std::string& path) override {
        const std::wstring file = widePath(path);
        if (file.empty() || GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES)
            return false;
        return SendMessageW(window_, ACM_OPENW, 0, reinterpret_cast<LPARAM>(file.c_str())) != 0;
    }
    void play() override { SendMessageW(window_, ACM_PLAY, WPARAM(-1), MAKELPARAM(0, 0xFFFF)); }
    void stop() override { SendMessageW(window_, ACM_STOP, 0, 0); }
};

} // namespace nv::win32
