#pragma once

#include "platform/Controls.h"

#include <windows.h>

namespace nv::win32 {

// A red outline without a window of its own: the parent paints it in its WM_PAINT, under its
// controls.
class Win32Shape : public Shape {
public:
    explicit Win32Shape(HWND parent) : parent_(parent) {}

    bool visible() const override { return visible_; }
    void setVisible(bool visible) override;
    bool enabled() const override { return true; }
    void setEnabled(bool) override {}
    TwipsRect place() const override { return place_; }
    void setPlace(const TwipsRect& place) override;
    void setFocus() override {}
    int kind() const override { return kind_; }
    void setKind(int kind) override;
    void repaint() override { UpdateWindow(parent_); }

    void paint(HDC dc) const;

private:
    // A hidden shape has nothing on the screen to take away.
    void invalidate(bool always = false) const;

    HWND parent_;
    TwipsRect place_;
    bool visible_ = false;
    int kind_ = kRectangle;
};

} // namespace nv::win32
