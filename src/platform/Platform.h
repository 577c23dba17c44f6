#pragma once

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/FileDialogs.h"
#include "platform/FileSystem.h"
#include "platform/MessageBoxes.h"
#include "platform/Process.h"
#include "platform/ProfileStore.h"
#include "platform/Shell.h"
#include "platform/SpecialFolders.h"

#include <type_traits>

namespace nv {

// The machine as the logic sees it. Tests put their own pieces in place.
struct Platform {
    FileSystem* files = nullptr;
    ProfileStore* profiles = nullptr;
    SpecialFolders* folders = nullptr;
    Clock* clock = nullptr;
    Drives* drives = nullptr;
    MessageBoxes* boxes = nullptr;
    Process* process = nullptr;
    Shell* shell = nullptr;
    FileDialogs* dialogs = nullptr;
};

Platform& platform();

// The native implementations of this build (posix or win32); message boxes, and on Linux the shell,
// stay unset.
Platform nativePlatform();

// Installs a platform for one scope and puts the previous one back.
class ScopedPlatform {
public:
    explicit ScopedPlatform(const Platform& p) : saved_(platform()) { platform() = p; }
    ~ScopedPlatform() { platform() = saved_; }
    ScopedPlatform(const ScopedPlatform&) = delete;
    ScopedPlatform& operator=(const ScopedPlatform&) = delete;

private:
    Platform saved_;
};

// Puts one piece of the platform in place for one scope and puts the previous one back:
// ScopedPlatformPart boxes(&Platform::boxes, &mine);
template <typename Part> class ScopedPlatformPart {
public:
    ScopedPlatformPart(Part* Platform::*member, std::type_identity_t<Part>* part)
        : member_(member), saved_(platform().*member) {
        platform().*member_ = part;
    }
    ~ScopedPlatformPart() { platform().*member_ = saved_; }
    ScopedPlatformPart(const ScopedPlatformPart&) = delete;
    ScopedPlatformPart& operator=(const ScopedPlatformPart&) = delete;

    // The piece that stood there before.
    Part* saved() const { return saved_; }

private:
    Part* Platform::*member_;
    Part* saved_;
};

} // namespace nv
