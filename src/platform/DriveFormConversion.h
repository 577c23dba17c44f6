#pragma once

#include <string>

namespace nv {

// Between the drive form of the logic (C:\Data\NV.ini) and the native paths of this machine.
// On Windows both are the same path.
std::string driveFormOf(const std::string& nativePath);
// Throws FileFailure when the drive is unknown or not ready.
std::string nativeFormOf(const std::string& drivePath);

} // namespace nv
