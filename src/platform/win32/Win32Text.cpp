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

int32_t failureNumber(unsigned long error) {
    switch (error) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return kFailTargetFull;
    case ERROR_NOT_READY:
    case ERROR_INVALID_DRIVE:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_DEVICE_REMOVED:
    case ERROR_UNRECOGNIZED_VOLUME:
        return kFailDeviceUnavailable;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
    case ERROR_DIR_NOT_EMPTY:
    case ERROR_CURRENT_DIRECTORY:
    case ERROR_USER_MAPPED_FILE:
        return kFailAccessRefused;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_FILE_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
    case ERROR_WRITE_PROTECT:
        return kFailPathNotFound;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
    case ERROR_NOT_DOS_DISK:
    case ERROR_BAD_UNIT:
        return kFailDeviceIo;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW:
    case ERROR_DIRECTORY:
        return kFailBadFileName;
    default:
        return kFailGeneral;
    }
}

FileFailure failureFor(unsigned long error, const std::wstring& path) {
    if (error == ERROR_WRITE_PROTECT)
        return writeProtectedFailure();
    int32_t number = failureNumber(error);
    if (number == kFailPathNotFound && driveMissing(path))
        number = kFailDeviceUnavailable;
    return fileFailure(number);
}

void throwFailure(unsigned long error, const std::wstring& path) {
    throw failureFor(error, path);
}

} // namespace nv::win32
