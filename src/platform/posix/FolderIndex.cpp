#include "platform/posix/FolderIndex.h"

#include "platform/CaseFold.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <sys/statfs.h>
#include <unistd.h>

namespace nv {

namespace {

// Magic numbers that <linux/magic.h> does not name.
constexpr unsigned long kNtfs3Magic = 0x7366746E;
constexpr unsigned long kHfsPlusMagic = 0x482B;
constexpr unsigned long kUdfMagic = 0x15013346;

// File systems whose folders change only through this machine's kernel, which then tells every
// change: local disks and memory. On a network or FUSE file system a change can come from
// elsewhere without a notice, so such folders are listed at every question.
bool changesOnlyHere(long type) {
    switch (static_cast<unsigned long>(type)) {
    case EXT4_SUPER_MAGIC: // ext2 and ext3 too
    case XFS_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case RAMFS_MAGIC:
    case MSDOS_SUPER_MAGIC: // vfat too
    case EXFAT_SUPER_MAGIC:
    case kNtfs3Magic:
    case kHfsPlusMagic:
    case kUdfMagic:
    case ISOFS_SUPER_MAGIC:
        return true;
    default:
        return false;
    }
}

constexpr std::uint32_t kNoticeMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                      IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

void addName(std::unordered_map<std::string, std::vector<std::string>>& names,
             const std::string& name) {
    std::vector<std::string>& same = names[upperCase(name)];
    if (std::find(same.begin(), same.end(), name) == same.end())
        same.push_back(name);
}

void removeName(std::unordered_map<std::string, std::vector<std::string>>& names,
                const std::string& name) {
    auto it = names.find(upperCase(name));
    if (it == names.end())
        return;
    std::erase(it->second, name);
    if (it->second.empty())
        names.erase(it);
}

} // namespace

std::string listedEntryIgnoringCase(const std::string& folder, const std::string& name) {
    std::string found;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return found;
    while (dirent* entry = ::readdir(dir)) {
        // An overlong UTF-8 dot upper-cases to '.', but "." and ".." lead out of the folder.
        const std::string_view entryName = entry->d_name;
        if (entryName == "." || entryName == "..")
            continue;
        if (equalsIgnoringCase(entryName, name)) {
            found = entry->d_name;
            break;
        }
    }
    ::closedir(dir);
    return found;
}

FolderIndex::FolderIndex() = default;

FolderIndex::~FolderIndex() = default;

std::string FolderIndex::entryIgnoringCase(const std::string& folder, const struct stat& st,
                                           const std::string& name) {
    if (!S_ISDIR(st.st_mode))
        return "";
    std::lock_guard<std::mutex> lock(mutex_);
    if (!tried_) {
        // Made at the first question: a program that never asks one keeps the instance free.
        tried_ = true;
        notices_.fd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    }
    if (notices_.fd < 0)
        return listedEntryIgnoringCase(folder, name);
    drainNotices();

    auto it = folders_.find(folder);
    if (it != folders_.end() && (it->second.device != st.st_dev || it->second.inode != st.st_ino)) {
        // Another folder under the same path now: one put in its place, or a new medium.
        forget(folder, true);
        it = folders_.end();
    }
    Folder* known = it != folders_.end() ? &it->second : watchAndList(folder);
    if (!known)
        return listedEntryIgnoringCase(folder, name);
    known->lastUse = ++uses_;
    auto hit = known->names.find(upperCase(name));
    return hit == known->names.end() ? "" : hit->second.front();
}

FolderIndex::Folder* FolderIndex::watchAndList(const std::string& folder) {
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::fdopendir(fd), ::closedir);
    if (!dir) {
        ::close(fd);
        return nullptr;
    }
    struct statfs fs {};
    struct stat own {};
    if (::fstatfs(fd, &fs) != 0 || !changesOnlyHere(static_cast<long>(fs.f_type)) ||
        ::fstat(fd, &own) != 0)
        return nullptr;

    if (folders_.size() >= kMaxFolders) {
        auto oldest = std::min_element(folders_.begin(), folders_.end(), [](auto& a, auto& b) {
            return a.second.lastUse < b.second.lastUse;
        });
        forget(std::string(oldest->first), true);
    }
    // Watched through the open descriptor, so the notices, the listing and the recorded identity
    // all belong to one folder even if the path changes meanwhile.
    const std::string self = "/proc/self/fd/" + std::to_string(fd);
    int watch = ::inotify_add_watch(notices_.fd, self.c_str(), kNoticeMask);
    if (watch < 0)
        return nullptr;
    // The kernel keeps one watch per folder: a folder reached before by another path leaves that.
    if (auto other = byWatch_.find(watch); other != byWatch_.end())
        forget(std::string(other->second), false);

    Folder& added = folders_[folder];
    added.device = own.st_dev;
    added.inode = own.st_ino;
    added.watch = watch;
    byWatch_[watch] = folder;
    for (;;) {
        errno = 0;
        dirent* entry = ::readdir(dir.get());
        if (!entry) {
            if (errno != 0) {
                forget(folder, true);
                return nullptr;
            }
            break;
        }
        std::string name = entry->d_name;
        if (name != "." && name != "..")
            addName(added.names, name);
    }
    // Changes made while the folder was read come after it in the notices, so applying them
    // leaves each name as its last change made it.
    drainNotices();
    auto it = folders_.find(folder);
    return it == folders_.end() ? nullptr : &it->second;
}

void FolderIndex::drainNotices() {
    alignas(inotify_event) char buffer[16384];
    for (bool more = true; more;) {
        ssize_t n = ::read(notices_.fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n < 0 && errno != EAGAIN)
                forgetAll(); // no longer sure what was missed
            return;
        }
        // A read that left room for the longest notice took all there were; a notice that comes
        // later is one of a change after this question.
        more = static_cast<std::size_t>(n) + sizeof(inotify_event) + NAME_MAX + 1 > sizeof buffer;
        for (ssize_t at = 0; at < n;) {
            const auto* notice = reinterpret_cast<const inotify_event*>(buffer + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + notice->len);
            if (notice->mask & IN_Q_OVERFLOW) {
                forgetAll();
                continue;
            }
            auto known = byWatch_.find(notice->wd);
            if (known == byWatch_.end())
                continue;
            if (notice->mask & IN_IGNORED) {
                forget(std::string(known->second), false);
                continue;
            }
            if (notice->mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) {
                forget(std::string(known->second), true);
                continue;
            }
            if (notice->len == 0)
                continue;
            auto folder = folders_.find(known->second);
            if (folder == folders_.end())
                continue;
            const std::string name = notice->name;
            if (notice->mask & (IN_CREATE | IN_MOVED_TO))
                addName(folder->second.names, name);
            else if (notice->mask & (IN_DELETE | IN_MOVED_FROM))
                removeName(folder->second.names, name);
        }
    }
}

void FolderIndex::forget(const std::string& folder, bool removeWatch) {
    auto it = folders_.find(folder);
    if (it == folders_.end())
        return;
    if (removeWatch)
        ::inotify_rm_watch(notices_.fd, it->second.watch);
    byWatch_.erase(it->second.watch);
    folders_.erase(it);
}

void FolderIndex::forgetAll() {
    for (auto& [path, folder] : folders_)
        ::inotify_rm_watch(notices_.fd, folder.watch);
    folders_.clear();
    byWatch_.clear();
}

} // namespace nv
