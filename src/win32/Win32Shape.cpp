#include "win32/Win32Shape.h"

#include "win32/Twips.h"

namespace nv::win32 {

void Win32Shape::setVisible(bool visible) {
    if (visible_ != visible)
        invalidate(true);
    visible_ = visible;
}

void Win32Shape::setPlace(const TwipsRect& place) {
    invalidate();
    place_ = place;
    invalidate();
}

void Win32Shape::setKind(int kind) {
    kind_ = kind;
    invalidate();
}

void Win32Shape::invalidate(bool always) const {
    if (!visible_ && !always)
        return;
    RECT area = pixelRect(place_);
    InflateRect(&area, 2, 2);
    InvalidateRect(parent_, &area, TRUE);
}

void Win32Shape::paint(HDC dc) const {
    if (!visible_)
        return;
    HPEN pen = CreatePen(PS_INSIDEFRAME, 3, RGB(255, 0, 0));
    HGDIOBJ oldPen = SelectObject(dc, pen);
    HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
    const RECT r = pixelRect(place_);
    if (kind_ == kCircle)
        Ellipse(dc, r.left, r.top, r.right, r.bottom);
    else
        Rectangle(dc, r.left, r.top, r.right, r.bottom);
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldPen);
    DeleteObject(pen);
}

} // namespace nv::win32
