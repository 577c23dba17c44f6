#pragma once

#include "platform/FileFailure.h"
#include "platform/posix/DriveTable.h"

#include <string>

namespace nv {

// Turns a drive-form path into the native path it means. A component that is not there in its
// exact letters takes the entry that matches it without regard to case; components that do not
// exist at all keep their letters. Throws FileFailure: 68 for a drive that is unknown or not
// ready, 52 for a path that is not in drive form.
std::string nativePath(DriveTable& drives, const std::string& drivePath);

// Splits off the last component of a drive-form path: "C:\a\b.txt" -> {"C:\a", "b.txt"}.
std::pair<std::string, std::string> splitLast(const std::string& drivePath);

// Turns errno into the FileFailure of this project, with a short Dutch description.
[[noreturn]] void throwErrno(int err, const std::string& drivePath);
FileFailure failureFromErrno(int err, const std::string& drivePath);

} // namespace nv
