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
    void writeFile(const std::string& path, const std::string& bytes) override;
    void makeFolder(const std::string& path) override;
    void deleteByPattern(const std::string& spec) override;
    void removeFolder(const std::string& path) override;
    std::vector<std::string> listFolders(const std::string& folder) override;
    std::vector<std::string> listFiles(const std::string& folder,
                                       const std::string& pattern) override;
    void flushFolder(const std::string& folder) override;
    void removeCopyLeftovers(const std::string& folder) override;

private:
    DriveTable& drives_;
};

// Copies the bytes of one open file to another: the kernel's fast path, else large reads and
// writes. Returns 0 or the errno of the failure.
int copyBytes(int from, int to);

} // namespace nv
