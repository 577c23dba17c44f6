#include "platform/DriveFormConversion.h"

#include "platform/FailureText.h"
#include "platform/win32/Win32Text.h"

namespace nv {

namespace {
std::string withBackslashes(std::string path) {
    for (char& c : path)
        if (c == '/')
            c = '\\';
    return path;
}
} // namespace

std::string driveFormOf(const std::string& nativePath) {
    return withBackslashes(nativePath);
}

std::string nativeFormOf(const std::string& drivePath) {
    if (drivePath.empty())
        throw fileFailure(kFailBadFileName);
    if (win32::driveMissing(win32::wideFromUtf8(drivePath)))
        throw fileFailure(kFailDeviceUnavailable);
    return withBackslashes(drivePath);
}

} // namespace nv
