#include "win32/Win32Window.h"

namespace nv::win32 {

// The other windows of the program take no input until this one has closed.
void Win32Window::showModal() {
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

bool Win32Window::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
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

} // namespace nv::win32
