#pragma once

#include "platform/FileDialogs.h"
#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <commdlg.h>
#include <vector>

namespace nv {

// The system's file-open dialog.
class Win32FileDialogs : public FileDialogs {
public:
    std::string showOpen(const std::string& title, const std::string& initDir) override {
        // Room for the longest path the W functions take.
        std::vector<wchar_t> chosen(32768, L'\0');
        const std::wstring wideTitle = win32::wideFromUtf8(title);
        const std::wstring folder = initDir.empty() ? std::wstring() : win32::widePath(initDir);
        OPENFILENAMEW dialog{};
        dialog.lStructSize = sizeof dialog;
        dialog.hwndOwner = GetActiveWindow();
        dialog.lpstrFile = chosen.data();
        dialog.nMaxFile = static_cast<DWORD>(chosen.size());
        dialog.lpstrTitle = wideTitle.c_str();
        dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
        // The program's current folder stays where the start put it.
        dialog.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
        return GetOpenFileNameW(&dialog) ? win32::utf8FromWide(chosen.data()) : std::string();
    }
};

} // namespace nv
