#pragma once

#include "platform/Controls.h"

#include <windows.h>

namespace nv::win32 {

// A timer of the window that owns it; the window passes its WM_TIMER on by id.
class Win32Timer : public TimerControl {
public:
    Win32Timer(HWND owner, UINT_PTR id) : owner_(owner), id_(id) {}
    ~Win32Timer() override { KillTimer(owner_, id_); }
    Win32Timer(const Win32Timer&) = delete;
    Win32Timer& operator=(const Win32Timer&) = delete;

    int interval() const override { return interval_; }
    void setInterval(int milliseconds) override;
    bool enabled() const override { return running_; }
    void setEnabled(bool enabled) override;
    UINT_PTR id() const { return id_; }

private:
    void apply();

    HWND owner_;
    UINT_PTR id_;
    int interval_ = 0;
    bool running_ = false;
};

// An item of the window's menu bar; the window passes its WM_COMMAND on by id.
class Win32MenuItem : public MenuItem {
public:
    Win32MenuItem(HMENU menu, UINT id) : menu_(menu), id_(id) {}
    bool enabled() const override;
    void setEnabled(bool enabled) override;
    UINT id() const { return id_; }

private:
    HMENU menu_;
    UINT id_;
};

} // namespace nv::win32
