#pragma once

#include "platform/Controls.h"

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

MessageTarget* targetOf(HWND window);
void attach(HWND window, MessageTarget* target);

inline COLORREF colorOf(Rgb c) {
    return RGB(c.red, c.green, c.blue);
}

// A solid brush of the colour, made once and kept for the program's lifetime.
HBRUSH brushOf(COLORREF colour);
// The background a window paints under its controls, the labels' included: the button face
// when it has no colour of its own.
inline COLORREF backdropOf(std::optional<Rgb> colour) {
    return colour ? colorOf(*colour) : GetSysColor(COLOR_BTNFACE);
}

// What a window that holds controls answers for them: their notifications, their owner-drawn
// faces, their colours, and its background under them.
bool routeForChildren(HWND window, UINT message, WPARAM wParam, LPARAM lParam, COLORREF backdrop,
                      LRESULT& result);

// A window class served by the face's window procedure.
void registerClass(const wchar_t* name);

// A top-level window whose client area has the given size; its controls are numbered afresh.
HWND createTopLevel(const wchar_t* windowClass, const std::string& caption, DWORD style,
                    DWORD exStyle, int clientWidth, int clientHeight, HWND owner = nullptr);
// A control with the next control id, its window text and its font.
HWND createChild(HWND parent, const wchar_t* windowClass, const std::string& text, DWORD style,
                 const TwipsRect& place, HFONT font, DWORD exStyle = 0);

std::string windowText(HWND window);
void setWindowText(HWND window, const std::string& text);
// Puts the window's font into dc; the font it replaced is returned, to be put back.
HGDIOBJ selectFontOf(HDC dc, HWND window);
// The size of text in the window's font.
SIZE textExtent(HWND window, const std::wstring& text);

// Inside a catch: tells the user what went wrong, since nothing may pass DispatchMessage.
void reportFailure();

} // namespace nv::win32
