#pragma once

#include "win32/Win32Control.h"

#include <memory>
#include <optional>

namespace nv::win32 {

// A panel that holds controls, of the face's own class: a group frame draws its caption in its
// edge, a box its caption inside a black line, a plain panel nothing. A click on it is Click.
class Win32Frame : public Win32Control<Label> {
public:
    enum class Look { Group, Box, Plain };

    Win32Frame(HWND parent, const std::string& caption, const TwipsRect& place, Look look,
               HFONT font, std::optional<Rgb> backdrop = {});
    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override;
    void setForeColor(Rgb colour) override;
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

private:
    void paint();

    Look look_;
    HFONT font_;
    COLORREF fore_ = GetSysColor(COLOR_WINDOWTEXT);
    std::unique_ptr<Backdrop> backdrop_;
};

} // namespace nv::win32
