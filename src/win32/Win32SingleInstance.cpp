#include "win32/Win32SingleInstance.h"

#include "platform/CaseFold.h"
#include "platform/ContentDigest.h"
#include "win32/WindowClasses.h"

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

struct Search {
    const wchar_t* key;
    HWND found = nullptr;
};

BOOL CALLBACK findMarked(HWND window, LPARAM lParam) {
    auto* search = reinterpret_cast<Search*>(lParam);
    wchar_t className[64];
    if (GetClassNameW(window, className, 64) && lstrcmpW(className, win32::kMainWindowClass) == 0 &&
        GetPropW(window, search->key)) {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}

} // namespace

Win32SingleInstance::Win32SingleInstance(const std::string& settingsFile)
    : key_(keyOf(settingsFile)) {
    mutex_ = CreateMutexW(nullptr, FALSE, key_.c_str());
    const DWORD error = GetLastError();
    // Denied means the name is taken too, by a program that runs with other rights.
    first_ = mutex_ ? error != ERROR_ALREADY_EXISTS : error != ERROR_ACCESS_DENIED;
}

Win32SingleInstance::~Win32SingleInstance() {
    if (mutex_)
        CloseHandle(mutex_);
}

bool Win32SingleInstance::first() const {
    return first_;
}

void Win32SingleInstance::markMainWindow(HWND window) const {
    SetPropW(window, key_.c_str(), reinterpret_cast<HANDLE>(1));
}

bool Win32SingleInstance::askFirstToComeForward() {
    Search search{key_.c_str()};
    EnumWindows(findMarked, reinterpret_cast<LPARAM>(&search));
    if (!search.found)
        return false;
    if (IsIconic(search.found))
        ShowWindow(search.found, SW_RESTORE);
    DWORD process = 0;
    GetWindowThreadProcessId(search.found, &process);
    // Should the first program itself take the front (a box of its own), Windows lets it.
    AllowSetForegroundWindow(process);
    // A box open over the window is what the user has to answer first.
    SetForegroundWindow(GetLastActivePopup(search.found));
    return true;
}

} // namespace nv
