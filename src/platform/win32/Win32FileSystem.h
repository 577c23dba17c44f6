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
    void writeFile(const std::string& path, const std::string& bytes) override;
    void makeFolder(const std::string& path) override;
    void deleteByPattern(const std::string& spec) override;
    void removeFolder(const std::string& path) override;
    std::vector<std::string> listFolders(const std::string& folder) override;
    std::vector<std::string> listFiles(const std::string& folder,
                                       const std::string& pattern) override;
    void flushFolder(const std::string& folder) override;
    void removeCopyLeftovers(const std::string& folder) override;
    // The system's own rules for names are those of FAT on every file system.
    NameRules nameRulesOf(const std::string&) override { return NameRules::Fat; }
    // An open without sharing, which fails while another handle is open on the file; nothing is
    // held, as the replace could not rename over a handle of this process either.
    ReplaceClaim claimToReplace(const std::string& path) override;
    std::optional<StagedCopy> stageCopy(const std::string& source,
                                        const std::string& destination) override;
    void flushStaged(const std::vector<StagedCopy>& copies) override;
    std::vector<std::optional<FileFailure>>
    readBackStaged(const std::vector<StagedCopy>& copies) override;
    std::vector<std::optional<FileFailure>>
    readBackPlaced(const std::vector<StagedCopy>& copies) override;
    void placeStaged(const StagedCopy& copy) override;
    void discardStaged(const StagedCopy& copy) noexcept override;
    void discardPlaced(const StagedCopy& copy) noexcept override;

    // Whether a copy looks at its source again once written; see PosixFileSystem.
    bool secondLook = true;
};

} // namespace nv
