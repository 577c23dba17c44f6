#include "win32/Win32SingleInstance.h"

#include "platform/CaseFold.h"
#include "platform/ContentDigest.h"
#include "win32/WindowClasses.h"

#include <utility>

namespace nv {

namespace {

// One name per settings file, whatever the case of its letters; a hash keeps '\' out of the name
// and the name short however long the path.
std::wstring keyOf(const std::string& settingsFile) {
    const std::string upper = upperCase(settingsFile);
    Hash64 hash;
    hash.add(upper.data(), upper.size());
    std::wstring key = L"Local\\NorvaleBackup-";
    for (int shift = 60; shift >= 0; shift -= 4)
        key += L"0123456789ABCDEF"[(hash.value() >> shift) & 0xF];
    return key;
}

} // namespace

Win32SingleInstance::Win32SingleInstance(const std::string& settingsFile)
    : key_(keyOf(settingsFile)) {
    mutex_ = CreateMutexW(nullptr, FALSE, key_.c_str());
    const DWORD error = GetLastError();
    // Denied means the name is taken too, by a program that runs with other rights.
    first_ = mutex_ ? error != ERROR_ALREADY_EXISTS : error != ERROR_ACCESS_DENIED;
}

bool Win32SingleInstance::askFirstToComeForward() {
    // The key to look for goes in; the marked main window comes out.
    std::pair<const wchar_t*, HWND> search{key_.c_str(), nullptr};
    EnumWindows(
        [](HWND window, LPARAM lParam) -> BOOL {
            auto& [key, found] = *reinterpret_cast<std::pair<const wchar_t*, HWND>*>(lParam);
            wchar_t className[64];
            if (!GetClassNameW(window, className, 64) ||
                lstrcmpW(className, win32::kMainWindowClass) != 0 || !GetPropW(window, key))
                return TRUE;
            found = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    HWND first = search.second;
    if (!first)
        return false;
    if (IsIconic(first))
        ShowWindow(first, SW_RESTORE);
    DWORD process = 0;
    GetWindowThreadProcessId(first, &process);
    // Should the first program itself take the front (a box of its own), Windows lets it.
    AllowSetForegroundWindow(process);
    // A box open over the window is what the user has to answer first.
    SetForegroundWindow(GetLastActivePopup(first));
    return true;
}

} // namespace nv
