#include "win32/WindowProcedure.h"

#include "platform/win32/Win32Text.h"
#include "startup/AppSettings.h"
#include "win32/Twips.h"

#include <exception>
#include <map>

namespace nv::win32 {

namespace {

int nextControlId = 1000;

LRESULT CALLBACK faceWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        if (MessageTarget* self = targetOf(window)) {
            LRESULT result = 0;
            if (self->handle(message, wParam, lParam, result))
                return result;
        }
    } catch (...) {
        reportFailure();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

MessageTarget* targetOf(HWND window) {
    return window ? reinterpret_cast<MessageTarget*>(GetWindowLongPtrW(window, GWLP_USERDATA))
                  : nullptr;
}

void attach(HWND window, MessageTarget* target) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(target));
}

HBRUSH brushOf(COLORREF colour) {
    static std::map<COLORREF, HBRUSH> made;
    HBRUSH& brush = made[colour];
    if (!brush)
        brush = CreateSolidBrush(colour);
    return brush;
}

bool routeForChildren(HWND window, UINT message, WPARAM wParam, LPARAM lParam, COLORREF backdrop,
                      LRESULT& result) {
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

void registerClass(const wchar_t* name) {
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

HWND createTopLevel(const wchar_t* windowClass, const std::string& caption, DWORD style,
                    DWORD exStyle, int clientWidth, int clientHeight, HWND owner) {
    registerClass(windowClass);
    nextControlId = 1000;
    RECT outer{0, 0, pixelsOf(clientWidth), pixelsOf(clientHeight)};
    AdjustWindowRectEx(&outer, style, FALSE, exStyle);
    return CreateWindowExW(exStyle, windowClass, wideFromUtf8(caption).c_str(), style,
                           CW_USEDEFAULT, CW_USEDEFAULT, outer.right - outer.left,
                           outer.bottom - outer.top, owner, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

HWND createChild(HWND parent, const wchar_t* windowClass, const std::string& text, DWORD style,
                 const TwipsRect& place, HFONT font, DWORD exStyle) {
    const RECT r = pixelRect(place);
    HWND made = CreateWindowExW(exStyle, windowClass, wideFromUtf8(text).c_str(),
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, r.left, r.top,
                                r.right - r.left, r.bottom - r.top, parent,
                                reinterpret_cast<HMENU>(++nextControlId), GetModuleHandleW(nullptr),
                                nullptr);
    SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return made;
}

std::string windowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), int(text.size()))));
    return utf8FromWide(text);
}

void setWindowText(HWND window, const std::string& text) {
    SetWindowTextW(window, wideFromUtf8(text).c_str());
}

HGDIOBJ selectFontOf(HDC dc, HWND window) {
    return SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
}

SIZE textExtent(HWND window, const std::wstring& text) {
    HDC dc = GetDC(window);
    HGDIOBJ old = selectFontOf(dc, window);
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    return size;
}

void reportFailure() {
    std::string what = "Onverwachte fout";
    try {
        throw;
    } catch (const std::exception& failure) {
        what += std::string(": ") + failure.what();
    } catch (...) {
    }
    MessageBoxW(GetActiveWindow(), wideFromUtf8(what).c_str(), wideFromUtf8(App.Title).c_str(),
                MB_OK | MB_ICONERROR);
}

} // namespace nv::win32
