#pragma once

#include "platform/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace nv {

// The copies of one backup run, put in place in groups. Each copy waits as a hidden temporary
// file until its group's commit flushes the data of all of them at once, reads each back from
// the medium, renames each over its destination and flushes their folders: no destination ever
// holds data that is not on the medium, nor data the medium gives back otherwise, and a crash
// leaves only temporaries, which removeCopyLeftovers clears.
class CopyBatch {
public:
    static constexpr std::size_t kMaxFiles = 1024;
    static constexpr std::uintmax_t kMaxBytes = std::uintmax_t{256} << 20;

    explicit CopyBatch(FileSystem& files, std::size_t maxFiles = kMaxFiles,
                       std::uintmax_t maxBytes = kMaxBytes)
        : files_(files), maxFiles_(maxFiles), maxBytes_(maxBytes) {}
    // Commits what is still pending; what cannot be committed is removed.
    ~CopyBatch();
    CopyBatch(const CopyBatch&) = delete;
    CopyBatch& operator=(const CopyBatch&) = delete;

    // Writes one copy, and commits the group when it reaches its bound. A copy that fails
    // leaves nothing of itself.
    void copy(const std::string& source, const std::string& destination);

    // Puts every pending copy in place, then flushes the folders the group wrote to and those
    // in alsoFlush, each once. When the data cannot be flushed no copy is placed and every
    // temporary goes; a copy that does not read back as its source gave it, or cannot be placed,
    // loses its temporary while the others go on. Throws the first failure, one other than 75
    // before any 75.
    void commit(const std::vector<std::string>& alsoFlush = {});

    // Reads the first and last block of every copy placed before the last group back from the
    // medium once more: a medium that wraps around overwrites what it took first with what came
    // later. A copy that now reads otherwise is removed from its name. Throws as commit.
    void checkPlaced();

    bool pending() const { return !staged_.empty(); }
    // Whether a copy through this batch went to destination (any letter case), placed or pending.
    bool holds(const std::string& destination) const;

private:
    void noteFolder(const std::string& destination);
    // Flushes each folder, keeping the first failure with the one given; then throws it.
    void flushFolders(const std::vector<std::string>& folders, std::optional<FileFailure>& failure);

    FileSystem& files_;
    const std::size_t maxFiles_;
    const std::uintmax_t maxBytes_;
    std::vector<StagedCopy> staged_;
    std::vector<StagedCopy> placed_;
    std::size_t lastGroup_ = 0; // where the copies of the last group read back begin in placed_
    std::uintmax_t stagedBytes_ = 0;
    std::set<std::string> destinations_; // upper case
    std::vector<std::string> folders_;   // written to since the last commit
};

} // namespace nv
