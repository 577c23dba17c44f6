#pragma once

#include "platform/FileSystem.h"
#include "platform/posix/DriveTable.h"

namespace nv {

class PosixFileSystem : public FileSystem {
public:
    explicit PosixFileSystem(DriveTable& drives) : drives_(drives) {}

    std::string firstMatch(const std::string& spec) override;
    void moveFile(const std::string& oldPath, const std::string& newPath) override;
    void copyFile(const std::string& source, const std::string& destination) override;
    void deleteFile(const std::string& path) override;
    void makeFolder(const std::string& path) override;
    void deleteByPattern(const std::string& spec) override;
    void removeFolder(const std::string& path) override;

private:
    DriveTable& drives_;
};

// Names of the temporary files a copy writes before its rename; hidden, and never a backup.
bool isCopyTemporary(const std::string& name);

// Copies the bytes of one open file to another: the kernel's fast path, else large reads and
// writes. Returns 0 or the errno of the failure.
int copyBytes(int from, int to);

} // namespace nv
