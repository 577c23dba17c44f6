#include "platform/win32/Win32ProfileStore.h"

#include "platform/FileSystem.h"
#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace nv {

using namespace win32;

std::string Win32ProfileStore::getString(const std::string& section, const std::string& key,
                                         const std::string& fallback, std::size_t size,
                                         const std::string& file) {
    if (size == 0)
        return {};
    std::size_t capacity = std::min<std::size_t>(size, 0x7FFFFFFF);
    std::vector<char> buffer(capacity, '\0');
    DWORD copied = GetPrivateProfileStringA(
        ansiFromUtf8(section).c_str(), ansiFromUtf8(key).c_str(), ansiFromUtf8(fallback).c_str(),
        buffer.data(), static_cast<DWORD>(capacity), ansiFromUtf8(file).c_str());
    return utf8FromAnsi(std::string(buffer.data(), std::min<std::size_t>(copied, capacity)));
}

bool Win32ProfileStore::writeString(const std::string& section, const std::string& key,
                                    const std::string& value, const std::string& file) {
    return WritePrivateProfileStringA(ansiFromUtf8(section).c_str(), ansiFromUtf8(key).c_str(),
                                      ansiFromUtf8(value).c_str(), ansiFromUtf8(file).c_str()) != 0;
}

bool Win32ProfileStore::mayStore(const std::string& file) {
    try {
        const std::wstring path = widePath(file);
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES) {
            if (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY))
                return false;
            // Opened to write and closed unwritten; a file another program has open is no sign
            // that it cannot be stored later.
            HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
            if (h == INVALID_HANDLE_VALUE)
                return GetLastError() == ERROR_SHARING_VIOLATION;
            CloseHandle(h);
            return true;
        }
        // Not there yet: whether the folder takes a new file, tried with a hidden one that goes
        // when it is closed.
        const std::size_t cut = path.find_last_of(L"\\:");
        const std::wstring folder = cut == std::wstring::npos ? L"" : path.substr(0, cut + 1);
        const std::string base = utf8FromWide(path.substr(folder.size()));
        const std::wstring probe =
            folder + wideFromUtf8(copyTemporaryName(base, GetCurrentProcessId()));
        HANDLE h = CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                               FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (h == INVALID_HANDLE_VALUE)
            return false;
        CloseHandle(h);
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace nv
