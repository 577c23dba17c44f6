#include "win32/Win32FileDialogs.h"

#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <commdlg.h>
#include <vector>

namespace nv {

namespace {

// Room for the longest path the W functions take.
constexpr DWORD kPathRoom = 32768;

} // namespace

std::string Win32FileDialogs::showOpen(const std::string& title, const std::string& initDir) {
    std::vector<wchar_t> chosen(kPathRoom, L'\0');
    const std::wstring wideTitle = win32::wideFromUtf8(title);
    const std::wstring folder = initDir.empty() ? std::wstring() : win32::widePath(initDir);

    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetActiveWindow();
    dialog.lpstrFile = chosen.data();
    dialog.nMaxFile = kPathRoom;
    dialog.lpstrTitle = wideTitle.c_str();
    dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    // The program's current folder stays where the start put it.
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&dialog))
        return {};
    return win32::utf8FromWide(chosen.data());
}

} // namespace nv
