#include "platform/win32/Win32ProfileStore.h"

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

} // namespace nv
