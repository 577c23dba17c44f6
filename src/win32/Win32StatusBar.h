#pragma once

#include "platform/Controls.h"

#include <array>
#include <windows.h>

namespace nv::win32 {

// The status bar's four panels of 4000, 2000, 1440 and 1440 twips; the window's clock calls
// tick each second for the time and date panels.
class Win32StatusBar : public StatusBar {
public:
    Win32StatusBar(HWND parent, HFONT font);
    std::string panelText(int panel) const override;
    void setPanelText(int panel, const std::string& text) override;
    void tick();
    HWND hwnd() const { return bar_; }

private:
    HWND bar_;
    std::array<std::string, 4> texts_;
};

} // namespace nv::win32
