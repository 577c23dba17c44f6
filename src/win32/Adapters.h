#pragma once

#include "win32/Win32Captions.h"

#include <memory>
#include <utility>
#include <vector>

namespace nv::win32 {

// The adapters of one window, made over new controls and kept alive as long as the window.
class Adapters {
public:
    template <typename Adapter, typename... Args> Adapter* make(Args&&... args) {
        auto made = std::make_shared<Adapter>(std::forward<Args>(args)...);
        owned_.push_back(made);
        return made.get();
    }
    Win32Label* label(HWND parent, const std::string& caption, const TwipsRect& place, HFONT font,
                      DWORD style = 0) {
        return make<Win32Label>(
            createChild(parent, L"STATIC", caption, SS_NOPREFIX | style, place, font));
    }
    // A push button whose caption wraps; BS_OWNERDRAW for one painted in a face colour.
    Win32Button* button(HWND parent, const std::string& caption, const TwipsRect& place, HFONT font,
                        DWORD style = BS_PUSHBUTTON | BS_MULTILINE) {
        return make<Win32Button>(
            createChild(parent, L"BUTTON", caption, WS_TABSTOP | style, place, font));
    }
    Win32TextBox* textBox(HWND parent, const std::string& text, const TwipsRect& place, HFONT font,
                          DWORD style, DWORD exStyle = 0) {
        return make<Win32TextBox>(
            createChild(parent, L"EDIT", text, ES_AUTOHSCROLL | style, place, font, exStyle));
    }

    // A picture of the program's resources at the place's size; a missing one leaves it blank.
    HWND picture(HWND parent, int resource, const TwipsRect& place) {
        const RECT r = pixelRect(place);
        auto* bitmap =
            static_cast<HBITMAP>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource),
                                            IMAGE_BITMAP, r.right - r.left, r.bottom - r.top, 0));
        HWND shown = createChild(parent, L"STATIC", "", bitmap ? SS_BITMAP : 0, place, nullptr);
        if (bitmap) {
            SendMessageW(shown, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap));
            owned_.push_back(std::shared_ptr<void>(bitmap, DeleteObject));
        }
        return shown;
    }

private:
    std::vector<std::shared_ptr<void>> owned_;
};

} // namespace nv::win32
