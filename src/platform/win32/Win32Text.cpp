#include "platform/win32/Win32Text.h"

#include "platform/FailureText.h"

#include <windows.h>

namespace nv::win32 {

namespace {

std::wstring toWide(const std::string& text, UINT codePage) {
    if (text.empty())
        return {};
    int length =
        MultiByteToWideChar(codePage, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), static_cast<int>(text.size()), out.data(),
                        length);
    return out;
}

std::string fromWide(const std::wstring& text, UINT codePage) {
    if (text.empty())
        return {};
    int length = WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()),
                                     nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), out.data(), length,
                        nullptr, nullptr);
    return out;
}

} // namespace

std::wstring wideFromUtf8(const std::string& text) {
    return toWide(text, CP_UTF8);
}
std::string utf8FromWide(const std::wstring& text) {
    return fromWide(text, CP_UTF8);
}
std::string ansiFromUtf8(const std::string& text) {
    return fromWide(toWide(text, CP_UTF8), CP_ACP);
}
std::string utf8FromAnsi(const std::string& text) {
    return fromWide(toWide(text, CP_ACP), CP_UTF8);
}

std::wstring widePath(const std::string& drivePath) {
    if (drivePath.empty())
        throw fileFailure(kFailBadFileName);
    std::wstring path = wideFromUtf8(drivePath);
    for (wchar_t& c : path)
        if (c == L'/')
            c = L'\\';
    return path;
}

bool driveMissing(const std::wstring& path) {
    if (path.size() < 2 || path[1] != L':')
        return false;
    wchar_t letter = path[0];
    if (!((letter >= L'A' && letter <= L'Z') || (letter >= L'a' && letter <= L'z')))
        return false;
    const wchar_t root[] = {letter, L':', L'\\', L'\0'};
    return GetDriveTypeW(root) == DRIVE_NO_ROOT_DIR;
}

} // namespace nv::win32
