#include "platform/DriveFormConversion.h"

#include "platform/Platform.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixPathResolution.h"

namespace nv {

std::string driveFormOf(const std::string& nativePath) {
    return driveTableOf(nativePlatform()).toDriveForm(nativePath);
}

std::string nativeFormOf(const std::string& drivePath) {
    return nativePath(driveTableOf(nativePlatform()), drivePath);
}

} // namespace nv
