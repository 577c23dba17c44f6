#include "win32/Win32Window.h"

#include "win32/MessageLoop.h"

namespace nv::win32 {

Win32Window::Win32Window(HWND window, std::optional<Rgb> backdrop)
    : Win32Control(window),
      backdrop_(backdrop ? std::make_unique<Backdrop>(*backdrop) : std::make_unique<Backdrop>()) {}

// A window the logic lets go of goes with it, without telling anyone it is gone.
Win32Window::~Win32Window() {
    if (IsWindow(window_)) {
        attach(window_, nullptr);
        DestroyWindow(window_);
    }
}

void Win32Window::setCaption(const std::string& caption) {
    SetWindowTextW(window_, wideFromUtf8(caption).c_str());
}

int Win32Window::innerWidth() const {
    RECT client;
    GetClientRect(window_, &client);
    return twipsOf(client.right);
}

WindowState Win32Window::state() const {
    if (IsIconic(window_))
        return WindowState::Minimized;
    return IsZoomed(window_) ? WindowState::Maximized : WindowState::Normal;
}

void Win32Window::show() {
    if (!shown_ && centreAtFirstShow) {
        RECT work, r = pixels();
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        const int width = r.right - r.left, height = r.bottom - r.top;
        SetWindowPos(window_, nullptr, (work.left + work.right - width) / 2,
                     (work.top + work.bottom - height) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
    shown_ = true;
    ShowWindow(window_, SW_SHOW);
    UpdateWindow(window_);
}

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

void Win32Window::close() {
    DestroyWindow(window_);
}

void Win32Window::repaint() {
    RedrawWindow(window_, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

bool Win32Window::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (routeForChildren(window_, message, wParam, lParam, *backdrop_, result))
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

RECT Win32Window::pixels() const {
    RECT r;
    GetWindowRect(window_, &r);
    return r;
}

void Win32Window::setPixels(const RECT& r) {
    SetWindowPos(window_, nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace nv::win32
