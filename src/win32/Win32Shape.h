#pragma once

#include "win32/Twips.h"

namespace nv::win32 {

// A red outline without a window of its own: the parent paints it in its WM_PAINT, under its
// controls.
class Win32Shape : public Shape {
public:
    explicit Win32Shape(HWND parent) : parent_(parent) {}

    bool visible() const override { return visible_; }
    void setVisible(bool visible) override {
        if (visible_ != visible)
            invalidate(true);
        visible_ = visible;
    }
    bool enabled() const override { return true; }
    void setEnabled(bool) override {}
    TwipsRect place() const override { return place_; }
    void setPlace(const TwipsRect& place) override {
        invalidate();
        place_ = place;
        invalidate();
    }
    void setFocus() override {}
    int kind() const override { return kind_; }
    void setKind(int kind) override {
        kind_ = kind;
        invalidate();
    }
    void repaint() override { UpdateWindow(parent_); }

    void paint(HDC dc) const {
        if (!visible_)
            return;
        HPEN pen = CreatePen(PS_INSIDEFRAME, 3, RGB(255, 0, 0));
        HGDIOBJ oldPen = SelectObject(dc, pen);
        HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
        const RECT r = pixelRect(place_);
        (kind_ == kCircle ? Ellipse : Rectangle)(dc, r.left, r.top, r.right, r.bottom);
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(pen);
    }

private:
    // A hidden shape has nothing on the screen to take away.
    void invalidate(bool always = false) const {
        if (!visible_ && !always)
            return;
        RECT area = pixelRect(place_);
        InflateRect(&area, 2, 2);
        InvalidateRect(parent_, &area, TRUE);
    }

    HWND parent_;
    TwipsRect place_;
    bool visible_ = false;
    int kind_ = kRectangle;
};

} // namespace nv::win32
