#include "platform/DriveFormConversion.h"

#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixPathResolution.h"

namespace nv {

std::string driveFormOf(const std::string& nativePath) {
    return DriveTable::machine().toDriveForm(nativePath);
}

std::string nativeFormOf(const std::string& drivePath) {
    return nativePath(DriveTable::machine(), drivePath);
}

} // namespace nv
