#include "backup/CopyBatch.h"

#include "platform/CaseFold.h"
#include "platform/FileFailure.h"
#include "startup/Paths.h"

#include <algorithm>
#include <optional>

namespace nv {

namespace {

// The failure a commit reports: the first, unless a later one is more than a refusal (75).
void keep(std::optional<FileFailure>& kept, const FileFailure& failure) {
    if (!kept || (kept->Number == kFailAccessRefused && failure.Number != kFailAccessRefused))
        kept = failure;
}

// A read-back that differs speaks, in a backup, of the backup medium and of the file the user
// listed.
FileFailure onTheBackupMedium(const FileFailure& failure, const StagedCopy& copy) {
    if (failure.Number != kFailReadBack)
        return failure;
    return FileFailure(kFailReadBack,
                       "Het bestand " + copy.source +
                           " is niet goed op de backup schijf gekomen: de backup schijf gaf bij "
                           "het teruglezen andere gegevens terug dan erop geschreven zijn. Maak "
                           "de backup opnieuw op een andere backup schijf");
}

void addFolder(std::vector<std::string>& folders, const std::string& folder) {
    if (folder.empty())
        return;
    const std::string key = upperCase(folder);
    if (std::none_of(folders.begin(), folders.end(),
                     [&](const std::string& known) { return upperCase(known) == key; }))
        folders.push_back(folder);
}

} // namespace

CopyBatch::~CopyBatch() {
    if (staged_.empty())
        return;
    try {
        commit();
    } catch (...) {
        // Nothing to tell: commit removed what it could not place.
    }
}

void CopyBatch::copy(const std::string& source, const std::string& destination) {
    std::optional<StagedCopy> staged = files_.stageCopy(source, destination);
    noteFolder(destination);
    destinations_.insert(upperCase(destination));
    if (!staged)
        return;
    stagedBytes_ += staged->written.size;
    staged_.push_back(std::move(*staged));
    if (staged_.size() >= maxFiles_ || stagedBytes_ >= maxBytes_)
        commit();
}

void CopyBatch::commit(const std::vector<std::string>& alsoFlush) {
    std::vector<StagedCopy> staged;
    staged.swap(staged_);
    stagedBytes_ = 0;
    std::vector<std::string> folders;
    folders.swap(folders_);
    for (const std::string& folder : alsoFlush)
        addFolder(folders, folder);

    if (!staged.empty()) {
        try {
            files_.flushStaged(staged);
        } catch (const FileFailure&) {
            for (const StagedCopy& copy : staged) {
                files_.discardStaged(copy);
                destinations_.erase(upperCase(copy.destination));
            }
            throw;
        }
    }
    std::optional<FileFailure> failure;
    if (!staged.empty())
        lastGroup_ = placed_.size();
    const std::vector<std::optional<FileFailure>> reads = files_.readBackStaged(staged);
    for (std::size_t i = 0; i < staged.size(); ++i) {
        StagedCopy& copy = staged[i];
        try {
            if (reads[i])
                throw *reads[i];
            files_.placeStaged(copy);
        } catch (const FileFailure& placing) {
            files_.discardStaged(copy);
            destinations_.erase(upperCase(copy.destination));
            keep(failure, onTheBackupMedium(placing, copy));
            continue;
        }
        copy.hold.reset();
        placed_.push_back(std::move(copy));
    }
    flushFolders(folders, failure);
}

void CopyBatch::checkPlaced() {
    std::optional<FileFailure> failure;
    std::vector<std::string> folders;
    // The last group was read back after everything else was written, but for the parts of a
    // large copy read while it was still being written: its own tail may wrap onto its head.
    std::vector<StagedCopy> looked;
    std::vector<StagedCopy> kept;
    for (std::size_t i = 0; i < placed_.size(); ++i)
        (i < lastGroup_ || placed_[i].readUpTo > 0 ? looked : kept)
            .push_back(std::move(placed_[i]));
    const std::vector<std::optional<FileFailure>> reads = files_.readBackPlaced(looked);
    for (std::size_t i = 0; i < looked.size(); ++i) {
        StagedCopy& copy = looked[i];
        if (!reads[i]) {
            kept.push_back(std::move(copy));
            continue;
        }
        files_.discardPlaced(copy);
        destinations_.erase(upperCase(copy.destination));
        addFolder(folders, folderOf(copy.destination));
        keep(failure, onTheBackupMedium(*reads[i], copy));
    }
    placed_.swap(kept);
    lastGroup_ = placed_.size();
    flushFolders(folders, failure);
}

void CopyBatch::flushFolders(const std::vector<std::string>& folders,
                             std::optional<FileFailure>& failure) {
    for (const std::string& folder : folders) {
        try {
            files_.flushFolder(folder);
        } catch (const FileFailure& flushing) {
            keep(failure, flushing);
        }
    }
    if (failure)
        throw *failure;
}

bool CopyBatch::holds(const std::string& destination) const {
    return destinations_.count(upperCase(destination)) != 0;
}

void CopyBatch::noteFolder(const std::string& destination) {
    addFolder(folders_, folderOf(destination));
}

} // namespace nv
