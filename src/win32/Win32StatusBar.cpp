#include "win32/Win32StatusBar.h"

#include "platform/DateText.h"
#include "platform/Platform.h"
#include "platform/win32/Win32Text.h"
#include "win32/Twips.h"

#include <commctrl.h>

namespace nv::win32 {

Win32StatusBar::Win32StatusBar(HWND parent, HFONT font)
    : bar_(CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                           0, 0, parent, nullptr, GetModuleHandleW(nullptr), nullptr)) {
    SendMessageW(bar_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    int edges[4];
    int right = 0, i = 0;
    for (int width : {4000, 2000, 1440, 1440})
        edges[i++] = right += pixelsOf(width);
    SendMessageW(bar_, SB_SETPARTS, 4, reinterpret_cast<LPARAM>(edges));
    SetWindowTextW(bar_, L"Statusbalk");
    tick();
}

std::string Win32StatusBar::panelText(int panel) const {
    return texts_.at(static_cast<std::size_t>(panel - 1));
}

void Win32StatusBar::setPanelText(int panel, const std::string& text) {
    std::string& shown = texts_.at(static_cast<std::size_t>(panel - 1));
    // The clock sets its panel every second; a text that stays the same is no repaint.
    if (shown == text)
        return;
    shown = text;
    SendMessageW(bar_, SB_SETTEXTW, static_cast<WPARAM>(panel - 1),
                 reinterpret_cast<LPARAM>(wideFromUtf8(text).c_str()));
}

void Win32StatusBar::tick() {
    const Moment now = platform().clock->now();
    setPanelText(3, shortTimeText(now));
    setPanelText(4, shortDateText(dateOf(now)));
}

} // namespace nv::win32
