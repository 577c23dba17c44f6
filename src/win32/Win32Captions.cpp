#include "win32/Win32Captions.h"

namespace nv::win32 {

namespace {

COLORREF darker(COLORREF c, int percent) {
    return RGB(GetRValue(c) * 100 / percent, GetGValue(c) * 100 / percent,
               GetBValue(c) * 100 / percent);
}

// A disabled face keeps a quarter of its colour over a light grey, under a dark caption.
COLORREF paled(COLORREF c) {
    return RGB((GetRValue(c) + 3 * 208) / 4, (GetGValue(c) + 3 * 208) / 4,
               (GetBValue(c) + 3 * 208) / 4);
}

void fill(HDC dc, const RECT& r, COLORREF colour, bool frameOnly = false) {
    HBRUSH brush = CreateSolidBrush(colour);
    if (frameOnly)
        FrameRect(dc, &r, brush);
    else
        FillRect(dc, &r, brush);
    DeleteObject(brush);
}

} // namespace

void Win32Label::setCaption(const std::string& caption) {
    const std::wstring text = wideFromUtf8(caption);
    SetWindowTextW(window_, text.c_str());
    if (!autoSize_)
        return;
    HDC dc = GetDC(window_);
    HGDIOBJ old =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, old);
    ReleaseDC(window_, dc);
    SetWindowPos(window_, nullptr, 0, 0, size.cx + 2, size.cy, SWP_NOMOVE | SWP_NOZORDER);
}

void Win32Label::setForeColor(Rgb c) {
    fore_ = RGB(c.red, c.green, c.blue);
    InvalidateRect(window_, nullptr, TRUE);
}

void Win32Label::notified(int code) {
    if (code == STN_CLICKED && Click)
        Click();
}

HBRUSH Win32Label::colour(HDC dc) {
    if (fore_ != CLR_INVALID)
        SetTextColor(dc, fore_);
    return nullptr;
}

void Win32TextBox::setText(const std::string& text) {
    SetWindowTextW(window_, wideFromUtf8(text).c_str());
}

void Win32TextBox::setColours(Rgb fore, Rgb back) {
    fore_ = RGB(fore.red, fore.green, fore.blue);
    back_ = std::make_unique<Backdrop>(back);
}

HBRUSH Win32TextBox::colour(HDC dc) {
    if (!back_)
        return nullptr;
    SetTextColor(dc, fore_);
    SetBkColor(dc, back_->colour());
    return back_->brush();
}

void Win32Button::setCaption(const std::string& caption) {
    SetWindowTextW(window_, wideFromUtf8(caption).c_str());
}

void Win32Button::notified(int code) {
    if (code == BN_CLICKED && Click)
        Click();
}

void Win32Button::draw(const DRAWITEMSTRUCT& item) {
    const bool disabled = item.itemState & ODS_DISABLED;
    const COLORREF face =
        disabled ? paled(face_) : (item.itemState & ODS_SELECTED ? darker(face_, 115) : face_);
    fill(item.hDC, item.rcItem, face);
    fill(item.hDC, item.rcItem, darker(face, 160), true);
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, disabled ? RGB(64, 64, 64) : RGB(0, 0, 0));
    HGDIOBJ old =
        SelectObject(item.hDC, reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)));
    RECT area = item.rcItem;
    const std::wstring text = wideFromUtf8(caption());
    DrawTextW(item.hDC, text.c_str(), -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(item.hDC, old);
    if (item.itemState & ODS_FOCUS) {
        InflateRect(&area, -3, -3);
        DrawFocusRect(item.hDC, &area);
    }
}

} // namespace nv::win32
