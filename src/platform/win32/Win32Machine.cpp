#include "platform/win32/Win32Machine.h"

#include "platform/DateText.h"
#include "platform/win32/Win32Text.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#include <windows.h>

namespace nv {

using namespace win32;

namespace {

std::wstring rootOf(char letter) {
    return {static_cast<wchar_t>(letter), L':', L'\\'};
}

// Asks the volume for its label; false when it does not answer (no medium, gone, unreadable).
bool volumeLabel(char letter, std::string* label) {
    DWORD saved = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &saved);
    wchar_t name[MAX_PATH + 1] = {};
    BOOL answered = GetVolumeInformationW(rootOf(letter).c_str(), name, MAX_PATH + 1, nullptr,
                                          nullptr, nullptr, nullptr, 0);
    SetThreadErrorMode(saved, nullptr);
    if (answered && label)
        *label = utf8FromWide(name);
    return answered != 0;
}

} // namespace

std::string Win32SpecialFolders::folder(int csidl) {
    LPITEMIDLIST list = nullptr;
    if (SHGetSpecialFolderLocation(nullptr, csidl, &list) != S_OK || !list)
        return {};
    char buffer[MAX_PATH + 1] = {};
    BOOL found = SHGetPathFromIDListA(list, buffer);
    CoTaskMemFree(list);
    if (!found)
        return {};
    return utf8FromAnsi(buffer);
}

Date Win32Clock::today() {
    SYSTEMTIME local;
    GetLocalTime(&local);
    return dateFromCivil({local.wYear, local.wMonth, local.wDay});
}

Moment Win32Clock::now() {
    SYSTEMTIME local;
    GetLocalTime(&local);
    Date date = dateFromCivil({local.wYear, local.wMonth, local.wDay});
    Moment ofDay = ((local.wHour * 60 + local.wMinute) * 60 + local.wSecond) * Moment{1000};
    return date * kMsPerDay + ofDay + local.wMilliseconds;
}

std::vector<DriveInfo> Win32Drives::list() {
    std::vector<DriveInfo> drives;
    DWORD present = GetLogicalDrives();
    for (int i = 0; i < 26; ++i) {
        if (!(present & (1u << i)))
            continue;
        DriveInfo drive;
        drive.letter = static_cast<char>('A' + i);
        drive.root = std::string(1, drive.letter) + ":\\";
        drive.mounted = true;
        volumeLabel(drive.letter, &drive.label);
        drives.push_back(drive);
    }
    return drives;
}

bool Win32Drives::ready(char letter) {
    if (letter >= 'a' && letter <= 'z')
        letter = static_cast<char>(letter - 'a' + 'A');
    if (letter < 'A' || letter > 'Z')
        return false;
    return volumeLabel(letter, nullptr);
}

std::string Win32Process::appPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return {};
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);
    }
    std::size_t cut = path.find_last_of(L'\\');
    if (cut == std::wstring::npos)
        return {};
    // A program at the root keeps its backslash: C:\ rather than C:.
    path.resize(cut == 2 && path[1] == L':' ? cut + 1 : cut);
    return utf8FromWide(path);
}

} // namespace nv

namespace nv {

void Win32Shell::open(const std::string& path) {
    // The result is not looked at: without a program for the file, nothing is said.
    ShellExecuteA(nullptr, "open", ansiFromUtf8(path).c_str(), "", "", 0);
}

} // namespace nv
