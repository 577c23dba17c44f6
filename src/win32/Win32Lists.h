#pragma once

#include "win32/Win32Control.h"

namespace nv::win32 {

// A LISTBOX: LBS_EXTENDEDSEL makes it a list of many choices, LBS_OWNERDRAWFIXED (with
// LBS_HASSTRINGS) shows the rows' folder icons.
class Win32ListBox : public Win32Control<ListBox> {
public:
    explicit Win32ListBox(HWND list);
    ~Win32ListBox() override;

    int count() const override;
    std::string list(int row) const override;
    void addItem(const std::string& text, RowIcon icon = RowIcon::None) override;
    void removeItem(int row) override;
    void clear() override;
    bool selected(int row) const override;
    void setSelected(int row, bool selected) override;
    int listIndex() const override;
    void setListIndex(int row) override;
    void notified(int code) override;
    void draw(const DRAWITEMSTRUCT& item) override;

private:
    static LRESULT CALLBACK keys(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR self);
    bool many_;
};

// A drop-down list (CBS_DROPDOWNLIST).
class Win32ComboBox : public Win32Control<ComboBox> {
public:
    using Win32Control::Win32Control;
    int count() const override;
    std::string list(int row) const override;
    void addItem(const std::string& text) override;
    void clear() override;
    int listIndex() const override;
    void setListIndex(int row) override;
    void notified(int code) override;

protected:
    void setPixels(const RECT& r) override;
};

} // namespace nv::win32
