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
    void setInterval(int milliseconds) override { apply(running_, milliseconds); }
    bool enabled() const override { return running_; }
    void setEnabled(bool enabled) override { apply(enabled, interval_); }
    UINT_PTR id() const { return id_; }

private:
    // A timer of interval 0 stands still, as an enabled one without an interval does.
    void apply(bool running, int interval) {
        running_ = running;
        interval_ = interval;
        if (running_ && interval_ > 0)
            SetTimer(owner_, id_, static_cast<UINT>(interval_), nullptr);
        else
            KillTimer(owner_, id_);
    }

    HWND owner_;
    UINT_PTR id_;
    int interval_ = 0;
    bool running_ = false;
};

// An item of the window's menu bar; the window passes its WM_COMMAND on by id.
class Win32MenuItem : public MenuItem {
public:
    Win32MenuItem(HMENU menu, UINT id) : menu_(menu), id_(id) {}
    bool enabled() const override {
        return !(GetMenuState(menu_, id_, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED));
    }
    void setEnabled(bool on) override {
        EnableMenuItem(menu_, id_, MF_BYCOMMAND | (on ? MF_ENABLED : MF_GRAYED));
    }
    UINT id() const { return id_; }

private:
    HMENU menu_;
    UINT id_;
};

} // namespace nv::win32
