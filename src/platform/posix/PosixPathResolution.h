#pragma once

#include "platform/posix/DriveTable.h"

#include <string>
#include <sys/stat.h>

namespace nv {

class FolderIndex;

// A drive-form path turned native, with what the lookup learnt on the way.
struct ResolvedPath {
    std::string path;
    bool exists = false; // path is there (a link counts, even one that leads nowhere)
    // When the last name was looked for through an index: what stat() said of its folder.
    bool folderSeen = false;
    struct stat folder {};
};

// As nativePath, asking index (when given) instead of listing folders for names in other
// letters.
ResolvedPath resolvePath(DriveTable& drives, const std::string& drivePath, FolderIndex* index);

// The native path of drivePath in exactly the letters given, from the drive table alone: a first
// try that costs nothing when it works. Throws as nativePath for a bad form or an unknown drive.
std::string literalNativePath(DriveTable& drives, const std::string& drivePath);

// Turns a drive-form path into the native path it means. A component that is not there in its
// exact letters takes the entry that matches it without regard to case; components that do not
// exist at all keep their letters. Throws FileFailure: 68 for a drive that is unknown or not
// ready, 52 for a path that is not in drive form.
std::string nativePath(DriveTable& drives, const std::string& drivePath);

// Splits off the last component of a drive-form path: "C:\a\b.txt" -> {"C:\a", "b.txt"}.
std::pair<std::string, std::string> splitLast(const std::string& drivePath);

} // namespace nv
