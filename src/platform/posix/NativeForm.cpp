#include "platform/NativeForm.h"

#include "platform/posix/DriveTable.h"
#include "platform/posix/NativePath.h"

namespace nv {

std::string driveFormOf(const std::string& nativePath) {
    return DriveTable::machine().toDriveForm(nativePath);
}

std::string nativeFormOf(const std::string& drivePath) {
    return nativePath(DriveTable::machine(), drivePath);
}

} // namespace nv
