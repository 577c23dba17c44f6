#pragma once

#include "platform/FileFailure.h"

#include <cstdint>
#include <string>

namespace nv::win32 {

// The failure for an error of an operation on path: a "not found" on a drive that does not
// exist is an unavailable device (68).
FileFailure failureFor(unsigned long error, const std::wstring& path);
[[noreturn]] void throwFailure(unsigned long error, const std::wstring& path);

} // namespace nv::win32
