#pragma once

#include "platform/FileFailure.h"

#include <cstdint>
#include <string>

namespace nv {

// The short Dutch text shown to the user for a failure number; both file layers use it.
std::string failureDescription(int32_t number);

inline FileFailure fileFailure(int32_t number) {
    return FileFailure(number, failureDescription(number));
}

// A medium that refuses every write. The failure paths treat it as a path not found, whose box
// speaks of write protection; the description says what it is.
inline FileFailure writeProtectedFailure() {
    return FileFailure(kFailPathNotFound, "Schijf is tegen schrijven beveiligd");
}

// The copy window's clip, by the file name the face plays, is missing or cannot be played.
FileFailure copyClipFailure(const std::string& clipName);

// A copy to destination (drive form) that the medium gave back otherwise than it was written;
// the destination was left as it was.
FileFailure readBackFailure(const std::string& destination);

} // namespace nv
