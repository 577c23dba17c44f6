#pragma once

#include "win32/Win32Control.h"

#include <algorithm>
#include <commctrl.h>

namespace nv::win32 {

// A row's text of a list or combo box, by its messages for the length and the text.
inline std::string rowText(HWND box, UINT lengthMessage, UINT textMessage, int row) {
    const LRESULT length = SendMessageW(box, lengthMessage, row, 0);
    if (length < 0)
        return {};
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(box, textMessage, row, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return utf8FromWide(text);
}

// A LISTBOX: LBS_EXTENDEDSEL makes it a list of many choices, LBS_OWNERDRAWFIXED (with
// LBS_HASSTRINGS) shows the rows' folder icons.
class Win32ListBox : public Win32Control<ListBox> {
public:
    explicit Win32ListBox(HWND list)
        : Win32Control(list), many_(GetWindowLongW(list, GWL_STYLE) & LBS_EXTENDEDSEL) {
        SetWindowSubclass(list, keys, 1, reinterpret_cast<DWORD_PTR>(this));
        if (GetWindowLongW(list, GWL_STYLE) & LBS_OWNERDRAWFIXED)
            SendMessageW(list, LB_SETITEMHEIGHT, 0, textExtent(list, L"M").cy + 3);
    }
    ~Win32ListBox() override {
        if (IsWindow(window_))
            RemoveWindowSubclass(window_, keys, 1);
    }

    int count() const override {
        return static_cast<int>(SendMessageW(window_, LB_GETCOUNT, 0, 0));
    }
    std::string list(int row) const override {
        return rowText(window_, LB_GETTEXTLEN, LB_GETTEXT, row);
    }
    void addItem(const std::string& text, RowIcon icon = RowIcon::None) override {
        const LRESULT row = SendMessageW(window_, LB_ADDSTRING, 0,
                                         reinterpret_cast<LPARAM>(wideFromUtf8(text).c_str()));
        SendMessageW(window_, LB_SETITEMDATA, row, static_cast<LPARAM>(icon));
    }
    void removeItem(int row) override { SendMessageW(window_, LB_DELETESTRING, row, 0); }
    void clear() override { SendMessageW(window_, LB_RESETCONTENT, 0, 0); }
    bool selected(int row) const override {
        if (many_)
            return SendMessageW(window_, LB_GETSEL, row, 0) > 0;
        return SendMessageW(window_, LB_GETCURSEL, 0, 0) == row;
    }
    void setSelected(int row, bool on) override {
        if (many_)
            SendMessageW(window_, LB_SETSEL, on, row);
        else if (on || selected(row))
            SendMessageW(window_, LB_SETCURSEL, on ? row : -1, 0);
    }
    // In a list of many choices the caret row is the current one once it is chosen; the caret
    // stands on the first row before the user ever touched the list.
    int listIndex() const override {
        if (!many_)
            return static_cast<int>(SendMessageW(window_, LB_GETCURSEL, 0, 0));
        const int caret = static_cast<int>(SendMessageW(window_, LB_GETCARETINDEX, 0, 0));
        return caret >= 0 && caret < count() && selected(caret) ? caret : -1;
    }
    void setListIndex(int row) override {
        SendMessageW(window_, many_ ? LB_SETCARETINDEX : LB_SETCURSEL, row, 0);
    }
    void notified(int code) override {
        if (code == LBN_DBLCLK && DblClick)
            DblClick(listIndex());
    }
    void draw(const DRAWITEMSTRUCT& item) override {
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
        DrawTextW(item.hDC, text.c_str() + depth, -1, &area,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
        SelectObject(item.hDC, old);
        if (item.itemState & ODS_FOCUS)
            DrawFocusRect(item.hDC, &item.rcItem);
    }

private:
    // Key codes are the home platform's own virtual keys. Enter goes to the list, not to the
    // window's keyboard navigation, so that it opens a folder.
    static LRESULT CALLBACK keys(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
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
                tellUncaughtFailure();
            }
        }
        return DefSubclassProc(list, message, wParam, lParam);
    }
    static int keyShift() {
        return (GetKeyState(VK_SHIFT) < 0 ? kShiftMask : 0) |
               (GetKeyState(VK_CONTROL) < 0 ? kCtrlMask : 0) |
               (GetKeyState(VK_MENU) < 0 ? kAltMask : 0);
    }

    static void drawFolder(HDC dc, int x, int y, int size, bool open) {
        HBRUSH fill = CreateSolidBrush(open ? RGB(255, 224, 128) : RGB(240, 200, 80));
        HPEN line = CreatePen(PS_SOLID, 1, RGB(150, 110, 0));
        HGDIOBJ oldBrush = SelectObject(dc, fill), oldPen = SelectObject(dc, line);
        const int h = size * 3 / 4, top = y + (size - h) / 2;
        const POINT tab[] = {{x, top}, {x + size / 3, top}, {x + size / 2, top + 2}, {x, top + 2}};
        Polygon(dc, tab, 4);
        Rectangle(dc, x, top + 2, x + size - 2, top + h);
        if (open) {
            const POINT front[] = {{x + 3, top + 5},
                                   {x + size, top + 5},
                                   {x + size - 3, top + h - 1},
                                   {x, top + h - 1}};
            Polygon(dc, front, 4);
        }
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(fill);
        DeleteObject(line);
    }

    bool many_;
};

// A drop-down list (CBS_DROPDOWNLIST).
class Win32ComboBox : public Win32Control<ComboBox> {
public:
    using Win32Control::Win32Control;
    int count() const override {
        return static_cast<int>(SendMessageW(window_, CB_GETCOUNT, 0, 0));
    }
    std::string list(int row) const override {
        return rowText(window_, CB_GETLBTEXTLEN, CB_GETLBTEXT, row);
    }
    void addItem(const std::string& text) override {
        SendMessageW(window_, CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(wideFromUtf8(text).c_str()));
    }
    void clear() override { SendMessageW(window_, CB_RESETCONTENT, 0, 0); }
    int listIndex() const override {
        return static_cast<int>(SendMessageW(window_, CB_GETCURSEL, 0, 0));
    }
    void setListIndex(int row) override { SendMessageW(window_, CB_SETCURSEL, row, 0); }
    void notified(int code) override {
        if (code == CBN_DROPDOWN && DropDown)
            DropDown();
        else if (code == CBN_SELCHANGE && Click)
            Click();
    }

protected:
    // The window's height holds the open list as well; the closed box keeps the height it has.
    void setPixels(const RECT& r) override {
        Win32Control::setPixels({r.left, r.top, r.right, r.top + pixelsOf(2400)});
    }
};

} // namespace nv::win32
