#pragma once

#include "platform/Controls.h"
#include "platform/win32/Win32Text.h"
#include "startup/MsgBox.h"
#include "win32/Twips.h"

#include <exception>
#include <map>
#include <optional>
#include <string>
#include <windows.h>

namespace nv::win32 {

// What the face's one window procedure hands a control or a window: every HWND of the face
// carries its adapter in GWLP_USERDATA.
class MessageTarget {
public:
    virtual ~MessageTarget() = default;
    // A notification the control sent its parent: the code of WM_COMMAND.
    virtual void notified(int) {}
    virtual void draw(const DRAWITEMSTRUCT&) {}
    // Sets the DC's text colours; a brush when the control has a background of its own.
    virtual HBRUSH colour(HDC) { return nullptr; }
    // A message to the face's own window; true when it was answered.
    virtual bool handle(UINT, WPARAM, LPARAM, LRESULT&) { return false; }
};

inline MessageTarget* targetOf(HWND window) {
    return window ? reinterpret_cast<MessageTarget*>(GetWindowLongPtrW(window, GWLP_USERDATA))
                  : nullptr;
}
inline void attach(HWND window, MessageTarget* target) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(target));
}

inline COLORREF colorOf(Rgb c) {
    return RGB(c.red, c.green, c.blue);
}

// A solid brush of the colour, made once and kept for the program's lifetime.
inline HBRUSH brushOf(COLORREF colour) {
    static std::map<COLORREF, HBRUSH> made;
    HBRUSH& brush = made[colour];
    if (!brush)
        brush = CreateSolidBrush(colour);
    return brush;
}
// The background a window paints under its controls, the labels' included: the button face
// when it has no colour of its own.
inline COLORREF backdropOf(std::optional<Rgb> colour) {
    return colour ? colorOf(*colour) : GetSysColor(COLOR_BTNFACE);
}

// What a window that holds controls answers for them: their notifications, their owner-drawn
// faces, their colours, and its background under them.
inline bool routeForChildren(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                             COLORREF backdrop, LRESULT& result) {
    switch (message) {
    case WM_COMMAND:
        // Menus and accelerators come without a control; the window itself answers them.
        if (!lParam)
            return false;
        if (MessageTarget* control = targetOf(reinterpret_cast<HWND>(lParam)))
            control->notified(HIWORD(wParam));
        return true;
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (MessageTarget* control = targetOf(item.hwndItem))
            control->draw(item);
        result = TRUE;
        return true;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: {
        HDC dc = reinterpret_cast<HDC>(wParam);
        MessageTarget* control = targetOf(reinterpret_cast<HWND>(lParam));
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        if (HBRUSH own = control ? control->colour(dc) : nullptr) {
            result = reinterpret_cast<LRESULT>(own);
            return true;
        }
        if (message != WM_CTLCOLORSTATIC)
            return false;
        SetBkColor(dc, backdrop);
        result = reinterpret_cast<LRESULT>(brushOf(backdrop));
        return true;
    }
    case WM_ERASEBKGND: {
        RECT client;
        GetClientRect(window, &client);
        FillRect(reinterpret_cast<HDC>(wParam), &client, brushOf(backdrop));
        result = 1;
        return true;
    }
    default:
        return false;
    }
}

inline int nextControlId = 1000;

inline LRESULT CALLBACK faceWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        if (MessageTarget* self = targetOf(window)) {
            LRESULT result = 0;
            if (self->handle(message, wParam, lParam, result))
                return result;
        }
    } catch (...) {
        tellUncaughtFailure();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// A window class served by the face's window procedure.
inline void registerClass(const wchar_t* name) {
    WNDCLASSEXW c{};
    c.cbSize = sizeof c;
    c.style = CS_DBLCLKS;
    c.lpfnWndProc = faceWindowProc;
    c.hInstance = GetModuleHandleW(nullptr);
    c.hIcon = LoadIconW(c.hInstance, MAKEINTRESOURCEW(1));
    c.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    c.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    c.lpszClassName = name;
    RegisterClassExW(&c);
}

// A top-level window whose client area has the given size; its controls are numbered afresh.
inline HWND createTopLevel(const wchar_t* windowClass, const std::string& caption, DWORD style,
                           DWORD exStyle, int clientWidth, int clientHeight, HWND owner = nullptr) {
    registerClass(windowClass);
    nextControlId = 1000;
    RECT outer{0, 0, pixelsOf(clientWidth), pixelsOf(clientHeight)};
    AdjustWindowRectEx(&outer, style, FALSE, exStyle);
    return CreateWindowExW(exStyle, windowClass, wideFromUtf8(caption).c_str(), style,
                           CW_USEDEFAULT, CW_USEDEFAULT, outer.right - outer.left,
                           outer.bottom - outer.top, owner, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}
// A control with the next control id, its window text and its font.
inline HWND createChild(HWND parent, const wchar_t* windowClass, const std::string& text,
                        DWORD style, const TwipsRect& place, HFONT font, DWORD exStyle = 0) {
    const RECT r = pixelRect(place);
    HWND made = CreateWindowExW(exStyle, windowClass, wideFromUtf8(text).c_str(),
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, r.left, r.top,
                                r.right - r.left, r.bottom - r.top, parent,
                                reinterpret_cast<HMENU>(++nextControlId), GetModuleHandleW(nullptr),
                                nullptr);
    SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return made;
}

inline std::string windowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), int(text.size()))));
    return utf8FromWide(text);
}
inline void setWindowText(HWND window, const std::string& text) {
    SetWindowTextW(window, wideFromUtf8(text).c_str());
}
// Puts the window's font into dc; the font it replaced is returned, to be put back.
inline HGDIOBJ selectFontOf(HDC dc, HWND window) {
    return SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
}
// The size of text in the window's font.
inline SIZE textExtent(HWND window, const std::wstring& text) {
    HDC dc = GetDC(window);
    HGDIOBJ old = selectFontOf(dc, window);
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    return size;
}

} // namespace nv::win32
