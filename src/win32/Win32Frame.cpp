#include "win32/Win32Frame.h"

namespace nv::win32 {

namespace {

constexpr wchar_t kPanelClass[] = L"NorvaleBackupPanel";

HWND makePanel(HWND parent, const std::string& caption, const TwipsRect& place, HFONT font) {
    registerClass(kPanelClass);
    return createChild(parent, kPanelClass, caption, WS_CLIPCHILDREN, place, font,
                       WS_EX_CONTROLPARENT);
}

} // namespace

Win32Frame::Win32Frame(HWND parent, const std::string& caption, const TwipsRect& place, Look look,
                       HFONT font, std::optional<Rgb> backdrop)
    : Win32Control(makePanel(parent, caption, place, font)), look_(look), font_(font),
      backdrop_(backdrop ? std::make_unique<Backdrop>(*backdrop) : std::make_unique<Backdrop>()) {}

void Win32Frame::setCaption(const std::string& caption) {
    SetWindowTextW(window_, wideFromUtf8(caption).c_str());
    InvalidateRect(window_, nullptr, TRUE);
}

void Win32Frame::setForeColor(Rgb c) {
    fore_ = RGB(c.red, c.green, c.blue);
    InvalidateRect(window_, nullptr, TRUE);
}

bool Win32Frame::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (routeForChildren(window_, message, wParam, lParam, *backdrop_, result))
        return true;
    switch (message) {
    case WM_PAINT:
        paint();
        return true;
    case WM_SETFONT:
        font_ = reinterpret_cast<HFONT>(wParam);
        return true;
    case WM_GETFONT:
        result = reinterpret_cast<LRESULT>(font_);
        return true;
    case WM_LBUTTONDOWN:
        if (Click)
            Click();
        return true;
    default:
        return false;
    }
}

void Win32Frame::paint() {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(window_, &ps);
    RECT area;
    GetClientRect(window_, &area);
    HGDIOBJ old = SelectObject(dc, font_);
    SetTextColor(dc, fore_);
    SetBkColor(dc, backdrop_->colour());
    const std::wstring text = wideFromUtf8(caption());
    if (look_ == Look::Group) {
        TEXTMETRICW metrics;
        GetTextMetricsW(dc, &metrics);
        RECT edge = area;
        edge.top += metrics.tmHeight / 2;
        DrawEdge(dc, &edge, EDGE_ETCHED, BF_RECT);
        if (!text.empty()) {
            const std::wstring title = L" " + text + L" ";
            TextOutW(dc, pixelsOf(90), 0, title.c_str(), static_cast<int>(title.size()));
        }
    } else if (look_ == Look::Box) {
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        InflateRect(&area, -pixelsOf(45) - 1, -pixelsOf(45) - 1);
        SetBkMode(dc, TRANSPARENT);
        DrawTextW(dc, text.c_str(), -1, &area, DT_WORDBREAK | DT_NOPREFIX);
    }
    SelectObject(dc, old);
    EndPaint(window_, &ps);
}

} // namespace nv::win32
