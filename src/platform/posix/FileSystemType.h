#pragma once

#include "platform/FileSystem.h"

#include <string>

namespace nv {

// The name rules of a file system by its type as the mount table writes it ("vfat", "exfat",
// "fuseblk", "fuse.fusefat", "ntfs3"): FAT rules for every file system of the FAT and NTFS
// families, however mounted. A FUSE file system on a block device is mostly exFAT or NTFS from a
// stick made on Windows, where these names cannot be read back either.
NameRules nameRulesOfType(const std::string& type);

// The type of the file system that holds a native path: from its magic number, else from the
// line of the mount table (mountinfo's text) with its device. "" when it cannot be told.
std::string fileSystemTypeOf(const std::string& native,
                             const std::string& mountinfoPath = "/proc/self/mountinfo");

} // namespace nv
