#include "win32/Win32Progress.h"

#include <commctrl.h>

namespace nv::win32 {

int Win32ProgressBar::max() const {
    return static_cast<int>(SendMessageW(window_, PBM_GETRANGE, FALSE, 0));
}

void Win32ProgressBar::setMax(int maximum) {
    SendMessageW(window_, PBM_SETRANGE32, 0, maximum);
}

int Win32ProgressBar::value() const {
    return static_cast<int>(SendMessageW(window_, PBM_GETPOS, 0, 0));
}

void Win32ProgressBar::setValue(int value) {
    SendMessageW(window_, PBM_SETPOS, static_cast<WPARAM>(value), 0);
}

bool Win32Animation::open(const std::string& path) {
    const std::wstring file = widePath(path);
    if (file.empty() || GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES)
        return false;
    return SendMessageW(window_, ACM_OPENW, 0, reinterpret_cast<LPARAM>(file.c_str())) != 0;
}

void Win32Animation::play() {
    SendMessageW(window_, ACM_PLAY, static_cast<WPARAM>(-1), MAKELPARAM(0, 0xFFFF));
}

void Win32Animation::stop() {
    SendMessageW(window_, ACM_STOP, 0, 0);
}

} // namespace nv::win32
