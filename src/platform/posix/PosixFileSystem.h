#pragma once

#include "platform/FileSystem.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/ErrnoFailures.h"
#include "platform/posix/FolderIndex.h"
#include "platform/posix/PosixIo.h"
#include "platform/posix/PosixPathResolution.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

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
    NameRules nameRulesOf(const std::string& folder) override;
    // Linux: a write lease on the file, which cannot be had while another process has it open,
    // held until the claim goes; where leases are refused, a look through /proc.
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

    // Whether a copy looks at its source again once written, to copy a source that changed
    // meanwhile again. Only a benchmark turns it off, to show what the look costs.
    bool secondLook = true;

private:
    struct Watch;
    // The file system of an open folder (device as stat gave it), watched from before a staged
    // copy writes to it.
    std::shared_ptr<Watch> watchFor(int folder, dev_t device);
    ResolvedPath resolve(const std::string& drivePath);
    // Writes source into a hidden temporary beside destination. A backup's copy keeps the
    // source's bits and is flushed with everything written on its file system at once.
    StagedCopy stage(const std::string& source, const std::string& destination, bool backup);
    // Opens a regular file to read, following no link below its drive's root.
    int openToRead(const ResolvedPath& path, const std::string& drivePath);
    // Flushes a written temporary, reads it back from the medium and renames it over its target;
    // on any failure the temporary goes and the target stays as it was.
    void proveAndPlace(StagedCopy& copy);

    DriveTable& drives_;
    FolderIndex index_;
    std::mutex watchesMutex_;
    std::map<std::uint64_t, std::weak_ptr<Watch>> watches_; // by device number
};

} // namespace nv
