#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace nv {

// The numbers the failure paths decide on.
enum FailureNumber : int32_t {
    kFailTargetFull = 61,
    kFailDeviceUnavailable = 68,
    kFailAccessRefused = 75,
    kFailPathNotFound = 76,
    // A copy that the medium gave back otherwise than it was written.
    kFailReadBack = 80,
    kFailBadFileName = 52,
    kFailDeviceIo = 57,
    kFailSubscript = 9,
    // The copy window's clip beside the program is missing or cannot be read.
    kFailCopyClip = 95,
};

// What a failing file operation reports; failure paths look at Number alone.
struct FileFailure : std::runtime_error {
    FileFailure(int32_t number, std::string description)
        : std::runtime_error(description), Number(number), Description(std::move(description)) {}
    int32_t Number;
    std::string Description;
};

} // namespace nv
