#pragma once

#include "win32/Win32Control.h"

#include <optional>

namespace nv::win32 {

// A label over a STATIC control; it raises Click only with SS_NOTIFY.
class Win32Label : public Win32Control<Label> {
public:
    using Win32Control::Win32Control;
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override {
        setWindowText(window_, caption);
        if (!autoSize_)
            return;
        const SIZE size = textExtent(window_, wideFromUtf8(caption));
        SetWindowPos(window_, nullptr, 0, 0, size.cx + 2, size.cy, SWP_NOMOVE | SWP_NOZORDER);
    }
    void setForeColor(Rgb colour) override {
        fore_ = colorOf(colour);
        InvalidateRect(window_, nullptr, TRUE);
    }
    // The label takes the size of the caption the logic writes in it.
    void setAutoSize(bool on) { autoSize_ = on; }
    void notified(int code) override {
        if (code == STN_CLICKED && Click)
            Click();
    }
    HBRUSH colour(HDC dc) override {
        if (fore_ != CLR_INVALID)
            SetTextColor(dc, fore_);
        return nullptr;
    }

private:
    COLORREF fore_ = CLR_INVALID;
    bool autoSize_ = false;
};

class Win32TextBox : public Win32Control<TextBox> {
public:
    using Win32Control::Win32Control;
    std::string text() const override { return windowText(window_); }
    void setText(const std::string& text) override { setWindowText(window_, text); }
    void setColours(Rgb fore, Rgb back) {
        fore_ = colorOf(fore);
        back_ = colorOf(back);
    }
    HBRUSH colour(HDC dc) override {
        if (!back_)
            return nullptr;
        SetTextColor(dc, fore_);
        SetBkColor(dc, *back_);
        return brushOf(*back_);
    }

private:
    COLORREF fore_ = 0;
    std::optional<COLORREF> back_;
};

// A push button; one made BS_OWNERDRAW is painted in the face colour given it.
class Win32Button : public Win32Control<Button> {
public:
    using Win32Control::Win32Control;
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override { setWindowText(window_, caption); }
    void setFace(Rgb face) { face_ = colorOf(face); }
    void notified(int code) override {
        if (code == BN_CLICKED && Click)
            Click();
    }
    // A disabled face keeps a quarter of its colour over a light grey, under a dark caption.
    void draw(const DRAWITEMSTRUCT& item) override {
        const bool disabled = item.itemState & ODS_DISABLED;
        const COLORREF face = disabled                        ? mix(face_, RGB(208, 208, 208), 1, 4)
                              : item.itemState & ODS_SELECTED ? mix(face_, 0, 100, 115)
                                                              : face_;
        fill(item.hDC, item.rcItem, face, FillRect);
        fill(item.hDC, item.rcItem, mix(face, 0, 100, 160), FrameRect);
        SetBkMode(item.hDC, TRANSPARENT);
        SetTextColor(item.hDC, disabled ? RGB(64, 64, 64) : RGB(0, 0, 0));
        HGDIOBJ old = selectFontOf(item.hDC, window_);
        RECT area = item.rcItem;
        DrawTextW(item.hDC, wideFromUtf8(caption()).c_str(), -1, &area,
                  DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        SelectObject(item.hDC, old);
        if (item.itemState & ODS_FOCUS) {
            InflateRect(&area, -3, -3);
            DrawFocusRect(item.hDC, &area);
        }
    }

private:
    // part/whole of c, the rest of the way from base.
    static COLORREF mix(COLORREF c, COLORREF base, int part, int whole) {
        const auto blend = [&](BYTE from, BYTE to) {
            return (to * part + from * (whole - part)) / whole;
        };
        return RGB(blend(GetRValue(base), GetRValue(c)), blend(GetGValue(base), GetGValue(c)),
                   blend(GetBValue(base), GetBValue(c)));
    }
    static void fill(HDC dc, const RECT& r, COLORREF colour, decltype(&FillRect) paint) {
        HBRUSH brush = CreateSolidBrush(colour);
        paint(dc, &r, brush);
        DeleteObject(brush);
    }

    COLORREF face_ = 0;
};

} // namespace nv::win32
