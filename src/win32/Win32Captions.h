#pragma once

#include "win32/Win32Control.h"

#include <memory>

namespace nv::win32 {

// A label over a STATIC control; it raises Click only with SS_NOTIFY.
class Win32Label : public Win32Control<Label> {
public:
    using Win32Control::Win32Control;
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override;
    void setForeColor(Rgb colour) override;
    // The label takes the size of the caption the logic writes in it.
    void setAutoSize(bool on) { autoSize_ = on; }
    void notified(int code) override;
    HBRUSH colour(HDC dc) override;

private:
    COLORREF fore_ = CLR_INVALID;
    bool autoSize_ = false;
};

class Win32TextBox : public Win32Control<TextBox> {
public:
    using Win32Control::Win32Control;
    std::string text() const override { return windowText(window_); }
    void setText(const std::string& text) override;
    void setColours(Rgb fore, Rgb back);
    HBRUSH colour(HDC dc) override;

private:
    COLORREF fore_ = 0;
    std::unique_ptr<Backdrop> back_;
};

// A push button; one made BS_OWNERDRAW is painted in the face colour given it.
class Win32Button : public Win32Control<Button> {
public:
    using Win32Control::Win32Control;
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override;
    void setFace(Rgb face) { face_ = RGB(face.red, face.green, face.blue); }
    void notified(int code) override;
    void draw(const DRAWITEMSTRUCT& item) override;

private:
    COLORREF face_ = 0;
};

} // namespace nv::win32
