#pragma once

#include "platform/FileFailure.h"

#include <string>

namespace nv {

// Turns errno into the FileFailure of this project, with a short Dutch description.
[[noreturn]] void throwErrno(int err, const std::string& drivePath);
FileFailure failureFromErrno(int err, const std::string& drivePath);

} // namespace nv
