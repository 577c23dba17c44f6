#pragma once

#include "platform/ContentDigest.h"
#include "platform/FileFailure.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nv {

// A copy written into a hidden temporary file beside its destination, its data not yet flushed.
// CopyBatch puts such copies in place in groups.
struct StagedCopy {
    std::string source;           // drive form, as asked for
    std::string destination;      // drive form, as asked for
    std::string temporary;        // the platform's own path of the temporary file
    std::string target;           // and of the destination
    unsigned long attributes = 0; // what the platform gives the destination once in place
    ContentDigest written;        // of the bytes the source gave while they were copied
    // What of a large copy was already read back from the medium while it was written: the
    // bytes before readUpTo, digested in readSoFar. The read-back after the flush goes on there.
    std::uint64_t readUpTo = 0;
    Digester readSoFar;
    std::shared_ptr<void> hold; // what the platform keeps open until the data is flushed
};

// The rules a file system sets for names: FAT and exFAT refuse some that others take.
enum class NameRules { Native, Fat };

// A file that this process is about to replace, claimed against other processes.
struct ReplaceClaim {
    // Another process has it open: replacing it now would pull it from under that program.
    bool inUse = false;
    // What keeps others from opening it unnoticed, until the claim goes.
    std::shared_ptr<void> hold;
};

// File operations on paths in drive form (C:\Data\NV.ini). Every failure throws FileFailure.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    // Bare name, in the letters on disk, of the first plain file matching spec; "" if none.
    virtual std::string firstMatch(const std::string& spec) = 0;
    // Fails when oldPath is missing or newPath exists.
    virtual void moveFile(const std::string& oldPath, const std::string& newPath) = 0;
    // Replaces the destination through a flushed temporary file, read back from the medium and
    // compared with the source before its rename (kFailReadBack when it differs).
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
    // Removes the temporary files that interrupted copies left in folder: those whose writing
    // process has ended, or is this one. Never fails: what cannot be removed stays hidden and is
    // never taken for a backed-up file.
    virtual void removeCopyLeftovers(const std::string& folder) = 0;
    // The rules for names on the file system that holds folder; Native when it cannot be told.
    virtual NameRules nameRulesOf(const std::string& folder) {
        (void)folder;
        return NameRules::Native;
    }

    // Claims a file before it is replaced: whether another process holds it open, and where none
    // does, a hold that keeps the file until the claim goes. A file that is not there, or that
    // cannot be looked at, is not in use. Never fails.
    virtual ReplaceClaim claimToReplace(const std::string& path) {
        (void)path;
        return {};
    }

    // Copies in groups (see CopyBatch). Writes the copy into a hidden temporary file beside
    // destination, unflushed; a failing one removes its temporary. Nothing returned means the
    // copy is already in place, flushed: what this default does for file systems without groups.
    virtual std::optional<StagedCopy> stageCopy(const std::string& source,
                                                const std::string& destination) {
        copyFile(source, destination);
        return std::nullopt;
    }
    // Puts the data of these staged copies on the medium.
    virtual void flushStaged(const std::vector<StagedCopy>& copies) { (void)copies; }
    // Reads the flushed temporaries of copies back from the medium, past the machine's cache, and
    // compares every byte with what the source gave. Gives, in the order of copies, what failed
    // for each: kFailReadBack when it differs, or what kept it from being read.
    virtual std::vector<std::optional<FileFailure>>
    readBackStaged(const std::vector<StagedCopy>& copies) {
        return std::vector<std::optional<FileFailure>>(copies.size());
    }
    // Reads the first and last block of placed copies again from the medium, past the cache;
    // gives what failed for each, kFailReadBack when a block or the size differs.
    virtual std::vector<std::optional<FileFailure>>
    readBackPlaced(const std::vector<StagedCopy>& copies) {
        return std::vector<std::optional<FileFailure>>(copies.size());
    }
    // Renames one flushed temporary over its destination.
    virtual void placeStaged(const StagedCopy& copy) { (void)copy; }
    // Removes the temporary of a copy that is not to be placed. Never fails.
    virtual void discardStaged(const StagedCopy& copy) noexcept { (void)copy; }
    // Removes a placed copy from its destination. Never fails.
    virtual void discardPlaced(const StagedCopy& copy) noexcept { (void)copy; }
};

// What a copy puts between a leading dot and its own suffix in the name of the temporary file
// it writes before its rename.
inline constexpr const char* kCopyTemporaryMark = ".nvtmp-";

// Names of those temporary files; never a backup, and never listed, even when a crash left one
// without its hidden attribute.
inline bool isCopyTemporary(const std::string& name) {
    return !name.empty() && name[0] == '.' && name.find(kCopyTemporaryMark) != std::string::npos;
}

// The name of a new temporary for a copy to base, written by the process writer.
inline std::string copyTemporaryName(const std::string& base, unsigned long writer) {
    static std::atomic<unsigned> counter{0};
    return "." + base + kCopyTemporaryMark + std::to_string(writer) + "-" +
           std::to_string(counter++);
}

// The number of the process that wrote a temporary named ".<name>.nvtmp-<process>-<count>"; 0
// for a name of another form.
inline unsigned long copyTemporaryWriter(const std::string& name) {
    if (!isCopyTemporary(name))
        return 0;
    const std::size_t start =
        name.rfind(kCopyTemporaryMark) + std::char_traits<char>::length(kCopyTemporaryMark);
    const std::size_t dash = name.find('-', start);
    if (dash == std::string::npos || dash == start || dash - start > 9 || dash + 1 == name.size() ||
        name.find_first_not_of("0123456789", start) != dash ||
        name.find_first_not_of("0123456789", dash + 1) != std::string::npos)
        return 0;
    return std::stoul(name.substr(start, dash - start));
}

} // namespace nv
