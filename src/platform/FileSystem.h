#pragma once

#include <string>

namespace nv {

// File operations on paths in drive form (C:\Data\NV.ini). Every failure throws FileFailure.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    // Bare name, in the letters on disk, of the first plain file matching spec; "" if none.
    virtual std::string firstMatch(const std::string& spec) = 0;
    // Fails when oldPath is missing or newPath exists.
    virtual void moveFile(const std::string& oldPath, const std::string& newPath) = 0;
    // Replaces the destination through a flushed temporary file and a rename.
    virtual void copyFile(const std::string& source, const std::string& destination) = 0;
    virtual void deleteFile(const std::string& path) = 0;
    // One folder whose parent exists; 75 when the name is taken.
    virtual void makeFolder(const std::string& path) = 0;
    // Deletes every plain file matching spec; fails when none matches. Subfolders stay.
    virtual void deleteByPattern(const std::string& spec) = 0;
    // Removes an empty folder; fails when anything is left in it.
    virtual void removeFolder(const std::string& path) = 0;
};

} // namespace nv
