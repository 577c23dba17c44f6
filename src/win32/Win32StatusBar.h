#pragma once

#include "platform/DateText.h"
#include "platform/Platform.h"
#include "platform/win32/Win32Text.h"
#include "win32/Twips.h"

#include <array>
#include <commctrl.h>

namespace nv::win32 {

// The status bar's four panels of 4000, 2000, 1440 and 1440 twips; the window's clock calls
// tick each second for the time and date panels.
class Win32StatusBar : public StatusBar {
public:
    Win32StatusBar(HWND parent, HFONT font)
        : bar_(CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0,
                               0, 0, 0, parent, nullptr, GetModuleHandleW(nullptr), nullptr)) {
        SendMessageW(bar_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        int edges[4], right = 0, i = 0;
        for (int width : {4000, 2000, 1440, 1440})
            edges[i++] = right += pixelsOf(width);
        SendMessageW(bar_, SB_SETPARTS, 4, reinterpret_cast<LPARAM>(edges));
        SetWindowTextW(bar_, L"Statusbalk");
        tick();
    }
    std::string panelText(int panel) const override {
        return texts_.at(static_cast<std::size_t>(panel - 1));
    }
    void setPanelText(int panel, const std::string& text) override {
        std::string& shown = texts_.at(static_cast<std::size_t>(panel - 1));
        // The clock sets its panel every second; a text that stays the same is no repaint.
        if (shown == text)
            return;
        shown = text;
        SendMessageW(bar_, SB_SETTEXTW, static_cast<WPARAM>(panel - 1),
                     reinterpret_cast<LPARAM>(wideFromUtf8(text).c_str()));
    }
    void tick() {
        const Moment now = platform().clock->now();
        setPanelText(3, shortTimeText(now));
        setPanelText(4, shortDateText(dateOf(now)));
    }
    HWND hwnd() const { return bar_; }

private:
    HWND bar_;
    std::array<std::string, 4> texts_;
};

} // namespace nv::win32
