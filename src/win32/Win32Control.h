#pragma once

#include "platform/Controls.h"
#include "platform/win32/Win32Text.h"
#include "win32/Twips.h"
#include "win32/WindowProcedure.h"

#include <string>

namespace nv::win32 {

// A control of the window services over its HWND. The place the logic set is kept in twips while
// the window stands where it was put, so that a glide of whole twips never drifts by rounding.
template <typename Base> class Win32Control : public Base, public MessageTarget {
public:
    explicit Win32Control(HWND window) : window_(window) { attach(window, this); }
    ~Win32Control() override {
        if (IsWindow(window_))
            attach(window_, nullptr);
    }
    Win32Control(const Win32Control&) = delete;
    Win32Control& operator=(const Win32Control&) = delete;

    bool visible() const override { return GetWindowLongW(window_, GWL_STYLE) & WS_VISIBLE; }
    void setVisible(bool visible) override { ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE); }
    bool enabled() const override { return IsWindowEnabled(window_); }
    void setEnabled(bool enabled) override { EnableWindow(window_, enabled); }
    TwipsRect place() const override {
        const RECT now = pixels();
        return EqualRect(&now, &placed_) ? place_ : twipsRect(now);
    }
    void setPlace(const TwipsRect& place) override {
        place_ = place;
        setPixels(pixelRect(place));
        placed_ = pixels();
    }
    void setFocus() override { SetFocus(window_); }

    HWND hwnd() const { return window_; }

protected:
    // A control's place is relative to its parent's client area, a window's to the screen.
    RECT pixels() const {
        RECT r;
        GetWindowRect(window_, &r);
        if (GetWindowLongW(window_, GWL_STYLE) & WS_CHILD)
            MapWindowPoints(nullptr, GetParent(window_), reinterpret_cast<POINT*>(&r), 2);
        return r;
    }
    virtual void setPixels(const RECT& r) {
        SetWindowPos(window_, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }

    HWND window_;

private:
    TwipsRect place_;
    RECT placed_{};
};

} // namespace nv::win32
