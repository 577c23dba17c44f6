#include "platform/win32/Win32ErrorFailures.h"

#include "platform/FailureText.h"
#include "platform/win32/Win32Text.h"

#include <windows.h>

namespace nv::win32 {

namespace {

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
    case ERROR_FILE_TOO_LARGE:
        return kFailFileTooLarge;
    default:
        return kFailGeneral;
    }
}

} // namespace

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
