#pragma once

#include <string>
#include <vector>

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
    // Creates or replaces a small file with exactly these bytes.
    virtual void writeFile(const std::string& path, const std::string& bytes) = 0;
    // One folder whose parent exists; 75 when the name is taken.
    virtual void makeFolder(const std::string& path) = 0;
    // Deletes every plain file matching spec; fails when none matches. Subfolders stay.
    virtual void deleteByPattern(const std::string& spec) = 0;
    // Removes an empty folder; fails when anything is left in it.
    virtual void removeFolder(const std::string& path) = 0;
    // Names of the subfolders of folder, in the letters on disk, sorted without regard to case.
    // Hidden ones (a leading dot on Linux; the hidden attribute on Windows) are left out.
    virtual std::vector<std::string> listFolders(const std::string& folder) = 0;
    // Names of the plain files of folder that match pattern (wildcards as in firstMatch: "*.*"
    // matches every name), sorted without regard to case; hidden ones are left out.
    virtual std::vector<std::string> listFiles(const std::string& folder,
                                               const std::string& pattern) = 0;
    // Puts on the medium what was created, renamed or removed in folder; a medium that cannot
    // flush a folder passes silently.
    virtual void flushFolder(const std::string& folder) = 0;
    // Removes the temporary files that interrupted copies left in folder. Never fails: what
    // cannot be removed stays hidden and is never taken for a backed-up file.
    virtual void removeCopyLeftovers(const std::string& folder) = 0;
};

// What a copy puts between a leading dot and its own suffix in the name of the temporary file
// it writes before its rename.
inline constexpr const char* kCopyTemporaryMark = ".nvtmp-";

// Names of those temporary files; never a backup, and never listed, even when a crash left one
// without its hidden attribute.
inline bool isCopyTemporary(const std::string& name) {
    return !name.empty() && name[0] == '.' && name.find(kCopyTemporaryMark) != std::string::npos;
}

} // namespace nv
