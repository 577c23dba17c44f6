#pragma once

#include "win32/MessageLoop.h"
#include "win32/Win32Control.h"
#include "win32/Win32TimerAndMenu.h"

#include <functional>
#include <optional>
#include <vector>

namespace nv::win32 {

// A top-level window of the face: its place on the screen, its height with the frame, the width
// of its client area. The face that made it fills in the members below.
class Win32Window : public Win32Control<Window> {
public:
    explicit Win32Window(HWND window, std::optional<Rgb> backdrop = {})
        : Win32Control(window), backdrop_(backdropOf(backdrop)) {}
    // A window the logic lets go of goes with it, without telling anyone it is gone.
    ~Win32Window() override {
        if (IsWindow(window_)) {
            attach(window_, nullptr);
            DestroyWindow(window_);
        }
    }

    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override { setWindowText(window_, caption); }
    int innerWidth() const override {
        RECT client;
        GetClientRect(window_, &client);
        return twipsOf(client.right);
    }
    WindowState state() const override {
        if (IsIconic(window_))
            return WindowState::Minimized;
        return IsZoomed(window_) ? WindowState::Maximized : WindowState::Normal;
    }
    void show() override {
        if (!shown_ && centreAtFirstShow) {
            RECT work, r = pixels();
            SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
            SetWindowPos(window_, nullptr, (work.left + work.right - (r.right - r.left)) / 2,
                         (work.top + work.bottom - (r.bottom - r.top)) / 2, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER);
        }
        shown_ = true;
        ShowWindow(window_, SW_SHOW);
        UpdateWindow(window_);
    }
    // The other windows of the program take no input until this one has closed.
    void showModal() override {
        struct Others {
            HWND self;
            std::vector<HWND> disabled;
        } others{window_, {}};
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND w, LPARAM found) -> BOOL {
                auto& o = *reinterpret_cast<Others*>(found);
                if (w != o.self && IsWindowVisible(w) && IsWindowEnabled(w)) {
                    EnableWindow(w, FALSE);
                    o.disabled.push_back(w);
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&others));
        HWND before = GetActiveWindow();
        show();
        SetActiveWindow(window_);
        runWhile([this] { return IsWindow(window_) && IsWindowVisible(window_); });
        for (HWND w : others.disabled)
            EnableWindow(w, TRUE);
        if (IsWindow(before))
            SetActiveWindow(before);
    }
    void close() override { DestroyWindow(window_); }
    void repaint() override {
        RedrawWindow(window_, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
        if (routeForChildren(window_, message, wParam, lParam, backdrop_, result))
            return true;
        switch (message) {
        case WM_COMMAND:
            for (Win32MenuItem* item : menuItems)
                if (item->id() == LOWORD(wParam) && item->Click)
                    item->Click();
            return true;
        case WM_TIMER:
            for (Win32Timer* timer : timers)
                if (timer->id() == wParam && timer->Timer)
                    timer->Timer();
            return true;
        case WM_SIZE:
            if (layOut)
                layOut();
            if (Resize)
                Resize();
            return false;
        case WM_CHAR:
            if (!KeyPress)
                return false;
            KeyPress();
            return true;
        case WM_PAINT: {
            if (!paint)
                return false;
            PAINTSTRUCT ps;
            HDC dc = BeginPaint(window_, &ps);
            paint(dc);
            EndPaint(window_, &ps);
            return true;
        }
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) {
                HWND had = GetFocus();
                if (had && IsChild(window_, had))
                    focus = had;
                return false;
            }
            if (!focus || !IsWindowVisible(focus))
                return false;
            SetFocus(focus);
            return true;
        case WM_CLOSE:
            return refuseCloseFromOutside;
        case DM_GETDEFID:
            result = defaultButton ? MAKELRESULT(defaultButton, DC_HASDEFID) : 0;
            return true;
        case WM_DESTROY:
            if (gone)
                gone();
            return false;
        default:
            return false;
        }
    }

    std::vector<Win32Timer*> timers;
    std::vector<Win32MenuItem*> menuItems;
    // Paints under the controls.
    std::function<void(HDC)> paint;
    // Places the bars and panels that follow the client area, before Resize.
    std::function<void()> layOut;
    // The window has been destroyed, by close() or by the user.
    std::function<void()> gone;
    // Only close() closes the window; the close box and Alt+F4 are refused.
    bool refuseCloseFromOutside = false;
    bool centreAtFirstShow = false;
    // The button Enter presses wherever the focus is.
    UINT defaultButton = 0;
    // The control that has the focus when the window becomes active again.
    HWND focus = nullptr;

private:
    COLORREF backdrop_;
    bool shown_ = false;
};

} // namespace nv::win32
