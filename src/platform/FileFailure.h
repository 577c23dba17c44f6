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
    // A source that changed while each of the copies made of it was written.
    kFailSourceChanging = 81,
    // A source that another program holds, so that it cannot be read (a sharing or lock
    // violation).
    kFailSourceInUse = 82,
    kFailBadFileName = 52,
    kFailDeviceIo = 57,
    kFailSubscript = 9,
    // A file failure that fits none of the classes the failure paths tell apart.
    kFailGeneral = 51,
    // A file larger than the target's file system can hold (4 GiB on FAT32); it ends the run.
    kFailFileTooLarge = 60,
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

// Runs one step of a failure path that goes on behind a failing step: a failure with Number 75
// passes over the step, every other one reaches the caller.
template <typename Step> void goOnBehind(Step&& step) {
    try {
        step();
    } catch (const FileFailure& failure) {
        if (failure.Number != kFailAccessRefused)
            throw;
    }
}

// A test whose step failed with Number 75 counts as answered yes.
template <typename Test> bool answeredOrYes(Test&& test) {
    bool yes = true;
    goOnBehind([&] { yes = test(); });
    return yes;
}

} // namespace nv
