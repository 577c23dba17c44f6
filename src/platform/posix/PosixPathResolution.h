#pragma once

#include "platform/posix/DriveTable.h"

#include <string>
#include <sys/stat.h>

namespace nv {

class FolderIndex;

// A drive-form path turned native, with what the lookup learnt on the way.
struct ResolvedPath {
    std::string path;
    // Where the root of the drive ends in path: links up to there are the machine's own, below it
    // nothing is followed.
    std::size_t rootLength = 0;
};

// As nativePath, asking index (when given) instead of listing folders for names in other
// letters.
ResolvedPath resolvePath(DriveTable& drives, const std::string& drivePath, FolderIndex* index);

// Turns a drive-form path into the native path it means. A component that is not there in its
// exact letters takes the entry that matches it without regard to case; components that do not
// exist at all keep their letters, and so do those below a link: the lookup does not list what a
// link on the drive leads to. Throws FileFailure: 68 for a drive that is unknown or not
// ready, 52 for a path that is not in drive form.
std::string nativePath(DriveTable& drives, const std::string& drivePath);

// Splits off the last component of a drive-form path: "C:\a\b.txt" -> {"C:\a", "b.txt"}.
std::pair<std::string, std::string> splitLast(const std::string& drivePath);

} // namespace nv
