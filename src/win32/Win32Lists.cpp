#include "win32/Win32Lists.h"

#include <algorithm>

namespace nv::win32 {

namespace {

int keyShift() {
    return (GetKeyState(VK_SHIFT) < 0 ? kShiftMask : 0) |
           (GetKeyState(VK_CONTROL) < 0 ? kCtrlMask : 0) |
           (GetKeyState(VK_MENU) < 0 ? kAltMask : 0);
}

void drawFolder(HDC dc, int x, int y, int size, bool open) {
    HBRUSH fill = CreateSolidBrush(open ? RGB(255, 224, 128) : RGB(240, 200, 80));
    HPEN line = CreatePen(PS_SOLID, 1, RGB(150, 110, 0));
    HGDIOBJ oldBrush = SelectObject(dc, fill), oldPen = SelectObject(dc, line);
    const int h = size * 3 / 4, top = y + (size - h) / 2;
    const POINT tab[] = {{x, top}, {x + size / 3, top}, {x + size / 2, top + 2}, {x, top + 2}};
    Polygon(dc, tab, 4);
    Rectangle(dc, x, top + 2, x + size - 2, top + h);
    if (open) {
        const POINT front[] = {
            {x + 3, top + 5}, {x + size, top + 5}, {x + size - 3, top + h - 1}, {x, top + h - 1}};
        Polygon(dc, front, 4);
    }
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldPen);
    DeleteObject(fill);
    DeleteObject(line);
}

} // namespace

void Win32ListBox::draw(const DRAWITEMSTRUCT& item) {
    if (item.itemID == static_cast<UINT>(-1))
        return;
    const bool chosen = item.itemState & ODS_SELECTED;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(item.hDC, GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkMode(item.hDC, TRANSPARENT);
    HGDIOBJ old = selectFontOf(item.hDC, window_);
    // The leading blanks are the folder's depth; its icon stands after them.
    const std::wstring text = wideFromUtf8(list(static_cast<int>(item.itemID)));
    const std::size_t depth = std::min(text.find_first_not_of(L' '), text.size());
    SIZE indent{};
    GetTextExtentPoint32W(item.hDC, text.c_str(), static_cast<int>(depth), &indent);
    RECT area = item.rcItem;
    area.left += 2 + indent.cx;
    const auto icon = static_cast<RowIcon>(item.itemData);
    const int size = area.bottom - area.top - 2;
    if (icon != RowIcon::None) {
        drawFolder(item.hDC, area.left, area.top + 1, size, icon == RowIcon::OpenFolder);
        area.left += size + 3;
    }
    DrawTextW(item.hDC, text.c_str() + depth, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(item.hDC, old);
    if (item.itemState & ODS_FOCUS)
        DrawFocusRect(item.hDC, &item.rcItem);
}

// Key codes are the home platform's own virtual keys. Enter goes to the list, not to the
// window's keyboard navigation, so that it opens a folder.
LRESULT CALLBACK Win32ListBox::keys(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                    DWORD_PTR self) {
    if (message == WM_GETDLGCODE) {
        const auto* key = reinterpret_cast<const MSG*>(lParam);
        const bool enter = key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN;
        return DefSubclassProc(list, message, wParam, lParam) | (enter ? DLGC_WANTMESSAGE : 0);
    }
    if (message == WM_KEYDOWN) {
        try {
            auto& box = *reinterpret_cast<Win32ListBox*>(self);
            if (box.KeyDown)
                box.KeyDown(static_cast<int>(wParam), keyShift());
        } catch (...) {
            reportFailure();
        }
    }
    return DefSubclassProc(list, message, wParam, lParam);
}

} // namespace nv::win32
