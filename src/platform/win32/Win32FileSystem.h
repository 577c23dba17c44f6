#pragma once

#include "platform/FileSystem.h"

namespace nv {

// The file operations on native Windows paths, through the W functions.
class Win32FileSystem : public FileSystem {
public:
    std::string firstMatch(const std::string& spec) override;
    void moveFile(const std::string& oldPath, const std::string& newPath) override;
    void copyFile(const std::string& source, const std::string& destination) override;
    void deleteFile(const std::string& path) override;
    void makeFolder(const std::string& path) override;
    void deleteByPattern(const std::string& spec) override;
    void removeFolder(const std::string& path) override;
};

} // namespace nv
