#pragma once

#include "platform/posix/PosixIo.h"
#include <cstddef>
#include <cstdint>

#include <mutex>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace nv {

// The entry of folder whose name equals name without regard to case, or "": lists the folder.
std::string listedEntryIgnoringCase(const std::string& folder, const std::string& name);

// Answers the same question as listedEntryIgnoringCase without listing the folder every time:
// a folder is listed once, and from then on the kernel's notices (inotify) of every create,
// rename and removal in it, by this program or any other on the machine, keep its names current.
// A folder whose file system can change without notice here (network, FUSE) is listed at every
// question. Safe to use from several threads.
class FolderIndex {
public:
    FolderIndex();
    ~FolderIndex();
    FolderIndex(const FolderIndex&) = delete;
    FolderIndex& operator=(const FolderIndex&) = delete;

    // folder is a native path and st what stat() said of it just now: a folder that is no longer
    // the one that was listed under that path is listed again.
    std::string entryIgnoringCase(const std::string& folder, const struct stat& st,
                                  const std::string& name);

    // Folders held, at most; the least recently asked one goes first.
    static constexpr std::size_t kMaxFolders = 64;

private:
    struct Folder {
        dev_t device = 0;
        ino_t inode = 0;
        int watch = -1;
        std::uint64_t lastUse = 0;
        // Names on disk by their upper case; more than one when names differ in case alone.
        std::unordered_map<std::string, std::vector<std::string>> names;
    };

    void drainNotices();
    void forget(const std::string& folder, bool removeWatch);
    void forgetAll();
    // Lists folder under a new watch; nothing when it cannot be held (then it is listed as asked).
    Folder* watchAndList(const std::string& folder);

    std::mutex mutex_;
    bool tried_ = false;
    Fd notices_; // the inotify descriptor; none lists at every question
    std::unordered_map<std::string, Folder> folders_; // by native path
    std::unordered_map<int, std::string> byWatch_;    // watch descriptor -> native path
    std::uint64_t uses_ = 0;
};

} // namespace nv
