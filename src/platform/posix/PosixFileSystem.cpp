#include "platform/posix/PosixFileSystem.h"

#include "platform/CaseFold.h"
#include "platform/ContentDigest.h"
#include "platform/FailureText.h"
#include "platform/Wildcard.h"
#include "platform/posix/FileSystemType.h"
#include "platform/posix/PosixIo.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <linux/magic.h>
#include <memory>
#include <mutex>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <vector>

namespace nv {

namespace {

bool isHidden(const std::string& name) {
    return !name.empty() && name[0] == '.';
}

enum class EntryKind { Other, File, Folder };

// What an entry is, as it stands: a link is neither file nor folder, whatever it leads to.
EntryKind kindOf(int folder, const dirent* entry) {
    if (entry->d_type == DT_REG)
        return EntryKind::File;
    if (entry->d_type == DT_DIR)
        return EntryKind::Folder;
    if (entry->d_type != DT_UNKNOWN)
        return EntryKind::Other;
    struct stat st {};
    if (::fstatat(folder, entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryKind::Other;
    return S_ISREG(st.st_mode)   ? EntryKind::File
           : S_ISDIR(st.st_mode) ? EntryKind::Folder
                                 : EntryKind::Other;
}

// Hands take every entry of an open folder that is not hidden; a failing read throws.
void readFolder(int folder, const std::string& drivePath,
                const std::function<void(const dirent*)>& take) {
    int err = forEachEntry(folder, [&](const dirent* entry) {
        if (!isHidden(entry->d_name))
            take(entry);
    });
    if (err != 0)
        throwErrno(err, drivePath);
}

// Plain files of an open folder whose names match pattern, in the folder's order.
std::vector<std::string> plainMatches(int folder, const std::string& pattern,
                                      const std::string& drivePath, bool firstOnly) {
    std::vector<std::string> names;
    std::string best;
    readFolder(folder, drivePath, [&](const dirent* entry) {
        std::string name = entry->d_name;
        if (!wildcardMatch(pattern, name) || kindOf(folder, entry) != EntryKind::File)
            return;
        if (!firstOnly) {
            names.push_back(name);
        } else if (best.empty() || upperCase(name) < upperCase(best)) {
            // The home platform lists names in order; keep the answer the same on any disk.
            best = name;
        }
    });
    if (firstOnly && !best.empty())
        names.push_back(best);
    return names;
}

// Where a file operation acts: the folder, opened without following a link below the drive's
// root, and the name in it.
struct Destination {
    Fd folder;
    std::string folderPath; // native
    std::string name;
};

// Opens the folder of a resolved path. A drive's root has no folder to act in: 75.
void openPlace(Destination& place, const ResolvedPath& path, const std::string& drivePath) {
    place.name = baseOf(path.path);
    if (place.name.empty() || path.path.size() <= path.rootLength)
        throw fileFailure(kFailAccessRefused);
    place.folderPath = parentOf(path.path);
    place.folder.fd = openFolderBeneath(place.folderPath, path.rootLength);
    if (place.folder.fd < 0)
        throwErrno(errno, drivePath);
}

// Opens a folder itself; -1 and errno when it cannot.
int openFolder(const ResolvedPath& path) {
    return openFolderBeneath(path.path, path.rootLength);
}

// Permission bits, owners and times are best effort where the file system cannot keep them: FAT,
// exFAT and FUSE drivers may refuse them, and the copy is no worse for that.
bool cannotKeep(int err) {
    return err == ENOSYS || err == EPERM || err == EOPNOTSUPP;
}

// Whose bits a new file takes: a backup keeps the source's, a restored file those the umask allows.
enum class Bits { Source, Umask };

constexpr std::size_t kBuffer = 1 << 20;

// One buffer per thread for copies and read-backs, so that memory stays flat whatever the size.
char* ioBuffer() {
    static thread_local std::unique_ptr<char[]> buffer(new char[kBuffer]);
    return buffer.get();
}

// Reads size bytes at offset into buffer, fewer only at the end of the file, and counts them in
// got. Returns 0 or the errno of the failure.
int readAt(int fd, char* buffer, std::size_t size, std::uint64_t offset, std::size_t& got) {
    for (got = 0; got < size;) {
        ssize_t n = ::pread(fd, buffer + got, size - got, static_cast<off_t>(offset + got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return errno;
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    return 0;
}

// Reads bytes [from, to) of an open file into digest, stopping early only at its end. Returns 0
// or the errno of the failure.
int readInto(int fd, std::uint64_t from, std::uint64_t to, Digester& digest) {
    char* buffer = ioBuffer();
    for (std::size_t got = 0; from < to; from += got) {
        const auto want = static_cast<std::size_t>(std::min<std::uint64_t>(kBuffer, to - from));
        if (int err = readAt(fd, buffer, want, from, got))
            return err;
        digest.add(buffer, got);
        if (got < want)
            break;
    }
    return 0;
}

// Drops the machine's cached pages of a flushed file, so that its next read comes from the
// medium and not from memory.
void dropCached(int fd, std::uint64_t from = 0, std::uint64_t size = 0) {
    ::posix_fadvise(fd, static_cast<off_t>(from), static_cast<off_t>(size), POSIX_FADV_DONTNEED);
}

// A large copy is read back while it is written, one segment behind: once the kernel has put a
// segment on the medium, it leaves memory and is read again while the next one is written, so
// that the medium reads and writes at once. The read-back after the flush goes on from there.
// At most two segments wait in memory unwritten.
class ReadBehind {
public:
    static constexpr std::uint64_t kSegment = std::uint64_t{32} << 20;

    ReadBehind(int fd, StagedCopy& copy) : fd_(fd), copy_(copy) {}

    // Takes the count of bytes written so far; returns 0 or the errno of the failure.
    int written(std::uint64_t done) {
        if (!on_ || done - sent_ < kSegment)
            return 0;
        if (::sync_file_range(fd_, static_cast<off_t>(sent_), static_cast<off_t>(done - sent_),
                              SYNC_FILE_RANGE_WRITE) != 0)
            return stopOn(errno);
        const std::uint64_t from = copy_.readUpTo;
        const std::uint64_t to = sent_;
        sent_ = done;
        if (from == to)
            return 0;
        if (::sync_file_range(fd_, static_cast<off_t>(from), static_cast<off_t>(to - from),
                              SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                  SYNC_FILE_RANGE_WAIT_AFTER) != 0)
            return stopOn(errno);
        dropCached(fd_, from, to - from);
        if (int err = readInto(fd_, from, to, copy_.readSoFar))
            return err;
        dropCached(fd_, from, to - from);
        copy_.readUpTo = to;
        return 0;
    }

private:
    // A file system that cannot write a part of a file on its own leaves it all to the flush.
    int stopOn(int err) {
        if (err != EINVAL && err != ESPIPE && err != ENOSYS && err != EOPNOTSUPP)
            return err;
        on_ = false;
        return 0;
    }

    int fd_;
    StagedCopy& copy_;
    std::uint64_t sent_ = 0; // bytes handed to the kernel's write-back
    bool on_ = true;
};

// Copies the bytes of one open file to another, reading the source once, and digests exactly
// what was written. The kernel's own copy is much the fastest way here; what it wrote is then
// taken back from the destination's pages while they are still in memory. Where the kernel cannot
// copy between the two, large reads and writes do. Returns 0 or the errno of the failure.
int copyDigesting(int from, int to, Digester& digest, ReadBehind& behind) {
    char* buffer = ioBuffer();
    bool fast = true;
    for (std::uint64_t done = 0;;) {
        ssize_t n = -1;
        if (fast) {
            n = ::copy_file_range(from, nullptr, to, nullptr, kBuffer, 0);
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0 && errno != EXDEV && errno != ENOSYS && errno != EINVAL &&
                errno != EOPNOTSUPP && errno != EBADF)
                return errno;
            if (n < 0) {
                fast = false; // this pair of file systems wants plain reads and writes
                continue;
            }
            std::size_t got = 0;
            if (int err = readAt(to, buffer, static_cast<std::size_t>(n), done, got))
                return err;
            if (got < static_cast<std::size_t>(n))
                return EIO;
        } else {
            n = ::read(from, buffer, kBuffer);
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0)
                return errno;
            if (n > 0)
                if (int err = writeAll(to, buffer, static_cast<std::size_t>(n)))
                    return err;
        }
        if (n == 0)
            return 0;
        digest.add(buffer, static_cast<std::size_t>(n));
        done += static_cast<std::uint64_t>(n);
        if (int err = behind.written(done))
            return err;
    }
}

// How many copies of a source that keeps changing are made before it is given up.
constexpr int kCopiesOfAChangingSource = 3;

// Whether two looks at a file saw one state of it: the same file, size and times.
bool sameState(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

// Writes the open source into a hidden temporary file in the destination's folder, with the
// source's times, unflushed; notes its path, size and digest in copy. A file it is to replace
// lends it its mode and owner, and must be writable (75); a new one takes the source's bits, as
// they are or within the umask as `bits` says, never writable for all. A source that changed
// while it was copied is copied again, and one that keeps changing is 81: the finance program
// writes its files in place while it runs, and a mix of two states is no backup. A failure
// removes the temporary.
void writeTemporary(const Fd& in, const Destination& to, StagedCopy& copy, Bits bits,
                    bool lookAgain) {
    struct stat st {};
    if (::fstat(in.fd, &st) != 0)
        throwErrno(errno, copy.source);
    if (!S_ISREG(st.st_mode))
        throw fileFailure(kFailAccessRefused);

    struct stat old {};
    const bool replaces =
        ::fstatat(to.folder.fd, to.name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(old.st_mode);
    // The rename would replace a file that may not be written, as a read-only one.
    if (replaces && ((old.st_mode & 0222) == 0 ||
                     ::faccessat(to.folder.fd, to.name.c_str(), W_OK, AT_EACCESS) != 0))
        throw fileFailure(kFailAccessRefused);

    for (int made = 1;; ++made) {
        const std::string temp = temporaryName(to.name);
        Fd out(::openat(to.folder.fd, temp.c_str(),
                        O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        replaces ? 0600 : st.st_mode & 0775));
        if (out.fd < 0)
            throwErrno(errno, copy.destination);

        Digester digest;
        copy.readUpTo = 0;
        copy.readSoFar = Digester();
        ReadBehind behind(out.fd, copy);
        int err = copyDigesting(in.fd, out.fd, digest, behind);
        struct stat after {};
        if (err == 0 && lookAgain && ::fstat(in.fd, &after) != 0)
            err = errno;
        if (err == 0 && lookAgain && !sameState(st, after)) {
            out.close();
            ::unlinkat(to.folder.fd, temp.c_str(), 0);
            if (made == kCopiesOfAChangingSource)
                throw fileFailure(kFailSourceChanging);
            if (::lseek(in.fd, 0, SEEK_SET) != 0)
                throwErrno(errno, copy.source);
            st = after;
            continue;
        }
        if (err == 0 && replaces) {
            // The owner first: a change of owner clears the set-id bits that the mode then puts
            // back.
            if ((old.st_uid != ::geteuid() || old.st_gid != ::getegid()) &&
                ::fchown(out.fd, old.st_uid, old.st_gid) != 0)
                (void)::fchown(out.fd, static_cast<uid_t>(-1), old.st_gid);
            if (::fchmod(out.fd, old.st_mode & 07777) != 0 && !cannotKeep(errno))
                err = errno;
        } else if (err == 0 && bits == Bits::Source && ::fchmod(out.fd, st.st_mode & 0775) != 0 &&
                   !cannotKeep(errno)) {
            err = errno;
        }
        struct timespec times[2] = {st.st_atim, st.st_mtim};
        if (err == 0 && ::futimens(out.fd, times) != 0 && !cannotKeep(errno))
            err = errno;
        // Closed on failure too: an open descriptor would keep the removed temporary's space
        // taken on the stick until the program ends.
        if (int closed = out.close(); closed != 0 && err == 0)
            err = closed;
        if (err != 0) {
            ::unlinkat(to.folder.fd, temp.c_str(), 0);
            throwErrno(err, copy.destination);
        }
        copy.temporary = joinNative(to.folderPath, temp);
        copy.written = digest.digest();
        return;
    }
}

// Flushes one written file through a descriptor of its own; unlike syncfs this also reaches
// the medium behind a FUSE file system.
void fsyncPath(const std::string& path, const std::string& drivePath) {
    Fd fd(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (fd.fd < 0 || ::fsync(fd.fd) != 0)
        throwErrno(errno, drivePath);
}

// Linux reports write failures through syncfs from 5.8 on; before, it always answered success.
bool syncfsReportsFailures() {
    static const bool reports = [] {
        struct utsname name {};
        int major = 0;
        int minor = 0;
        if (::uname(&name) != 0 || std::sscanf(name.release, "%d.%d", &major, &minor) != 2)
            return false;
        return major > 5 || (major == 5 && minor >= 8);
    }();
    return reports;
}

// How many copies a read-back asks the medium for at once, and how much of each it asks for
// ahead: small files then come back in parallel, and sequential read-ahead does the rest.
constexpr std::size_t kReadAheadFiles = 64;
constexpr off_t kReadAheadBytes = 1 << 20;

// One copy in the window of a read-back: its file open, its cached pages dropped and the
// medium asked for what will be read of it.
struct ReadBack {
    Fd fd;
    std::uint64_t size = 0;
    std::optional<FileFailure> failure;
};

void prepare(ReadBack& read, const StagedCopy& copy, bool placed) {
    read.fd.fd =
        ::open((placed ? copy.target : copy.temporary).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    struct stat st {};
    if (read.fd.fd < 0 || ::fstat(read.fd.fd, &st) != 0) {
        read.failure = failureFromErrno(errno, copy.destination);
        return;
    }
    read.size = static_cast<std::uint64_t>(st.st_size);
    if (!S_ISREG(st.st_mode) || read.size != copy.written.size) {
        read.failure = readBackFailure(copy.destination);
        return;
    }
    dropCached(read.fd.fd);
    if (!placed) {
        ::posix_fadvise(read.fd.fd, static_cast<off_t>(copy.readUpTo), kReadAheadBytes,
                        POSIX_FADV_WILLNEED);
    } else {
        ::posix_fadvise(read.fd.fd, 0, kDigestBlock, POSIX_FADV_WILLNEED);
        ::posix_fadvise(read.fd.fd, static_cast<off_t>(lastBlockStart(read.size)), kDigestBlock,
                        POSIX_FADV_WILLNEED);
    }
}

// Whether the open file holds what the copy's source gave: every byte, or its first and last
// block once placed. Throws what keeps it from being read.
bool holdsWhatWasWritten(const ReadBack& read, const StagedCopy& copy, bool placed) {
    if (!placed) {
        Digester digest = copy.readSoFar;
        if (int err = readInto(read.fd.fd, copy.readUpTo, read.size, digest))
            throwErrno(err, copy.destination);
        return digest.digest() == copy.written;
    }
    char* buffer = ioBuffer();
    std::size_t n = 0;
    auto block = [&](std::uint64_t offset) {
        if (int err = readAt(read.fd.fd, buffer, kDigestBlock, offset, n))
            throwErrno(err, copy.destination);
        return blockHash(buffer, n);
    };
    if (block(0) != copy.written.first)
        return false;
    const std::uint64_t last = lastBlockStart(read.size);
    return block(last) == copy.written.last && last + n == read.size;
}

// Reads copies back from the medium, a window of them at a time.
std::vector<std::optional<FileFailure>> readBackEach(const std::vector<StagedCopy>& copies,
                                                     bool placed) {
    std::vector<std::optional<FileFailure>> failures(copies.size());
    for (std::size_t from = 0; from < copies.size(); from += kReadAheadFiles) {
        const std::size_t to = std::min(copies.size(), from + kReadAheadFiles);
        std::vector<ReadBack> window(to - from);
        for (std::size_t i = from; i < to; ++i)
            prepare(window[i - from], copies[i], placed);
        for (std::size_t i = from; i < to; ++i) {
            ReadBack& read = window[i - from];
            if (!read.failure) {
                try {
                    if (!holdsWhatWasWritten(read, copies[i], placed))
                        read.failure = readBackFailure(copies[i].destination);
                } catch (const FileFailure& failure) {
                    read.failure = failure;
                }
                // Not kept either: the check at the end of the run must find the medium.
                dropCached(read.fd.fd);
            }
            read.fd.close();
            failures[i] = std::move(read.failure);
        }
    }
    return failures;
}

// Whether a process other than this one has the file (device, inode) open, as /proc shows its
// descriptors; processes whose descriptors this one may not see are missed.
bool openedElsewhere(dev_t device, ino_t inode) {
    Fd proc(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (proc.fd < 0)
        return false;
    const std::string self = std::to_string(::getpid());
    bool found = false;
    forEachEntry(proc.fd, [&](const dirent* process) {
        const std::string pid = process->d_name;
        if (found || pid == self || pid.find_first_not_of("0123456789") != std::string::npos)
            return;
        Fd fds(::openat(proc.fd, (pid + "/fd").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fds.fd < 0)
            return;
        forEachEntry(fds.fd, [&](const dirent* fd) {
            struct stat st {};
            if (!found && fd->d_name[0] != '.' && ::fstatat(fds.fd, fd->d_name, &st, 0) == 0 &&
                st.st_dev == device && st.st_ino == inode)
                found = true;
        });
    });
    return found;
}

// A program that opens a leased file makes the kernel send the holder SIGIO, whose default is to
// end the process; the break needs no answer here, as the lease goes with the replace.
void ignoreLeaseBreaks() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction old {};
        if (::sigaction(SIGIO, nullptr, &old) == 0 && old.sa_handler == SIG_DFL)
            std::signal(SIGIO, SIG_IGN);
    });
}

// A write lease on an open file, given back when it goes.
struct Lease {
    Fd file;
    ~Lease() {
        if (file.fd >= 0)
            ::fcntl(file.fd, F_SETLEASE, F_UNLCK);
    }
};

} // namespace

ResolvedPath PosixFileSystem::resolve(const std::string& drivePath) {
    return resolvePath(drives_, drivePath, &index_);
}

int PosixFileSystem::openToRead(const ResolvedPath& path, const std::string& drivePath) {
    Destination place;
    openPlace(place, path, drivePath);
    int fd = openRegularNoFollow(place.folder.fd, place.name);
    if (fd < 0)
        throwErrno(errno, drivePath);
    return fd;
}

std::string PosixFileSystem::firstMatch(const std::string& spec) {
    auto [folderPart, pattern] = splitLast(spec);
    if (pattern.empty() || isHidden(pattern))
        return "";
    if (!hasWildcards(pattern)) {
        ResolvedPath found = resolve(spec);
        Fd folder(openFolderBeneath(parentOf(found.path), found.rootLength));
        struct stat st {};
        const std::string name = baseOf(found.path);
        if (folder.fd < 0 || ::fstatat(folder.fd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(st.st_mode))
            return "";
        return name;
    }
    Fd folder(openFolder(resolve(folderPart)));
    if (folder.fd < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return "";
        throwErrno(errno, spec);
    }
    auto names = plainMatches(folder.fd, pattern, spec, true);
    return names.empty() ? "" : names.front();
}

void PosixFileSystem::moveFile(const std::string& oldPath, const std::string& newPath) {
    const ResolvedPath fromPath = resolve(oldPath);
    const ResolvedPath toPath = resolve(newPath);
    Destination from;
    openPlace(from, fromPath, oldPath);
    Destination to;
    openPlace(to, toPath, newPath);
    struct stat st {};
    if (::fstatat(from.folder.fd, from.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(errno, oldPath);
    if (::fstatat(to.folder.fd, to.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0)
        throw fileFailure(kFailAccessRefused);
    // A hard link fails rather than replace, so a file that appeared meanwhile survives.
    if (::linkat(from.folder.fd, from.name.c_str(), to.folder.fd, to.name.c_str(), 0) == 0) {
        ::unlinkat(from.folder.fd, from.name.c_str(), 0);
        ::fsync(to.folder.fd);
        return;
    }
    if (errno != EXDEV && errno != EPERM && errno != EOPNOTSUPP)
        throwErrno(errno, newPath);
    Fd in(openRegularNoFollow(from.folder.fd, from.name));
    if (in.fd < 0)
        throwErrno(errno, oldPath);
    StagedCopy copy;
    copy.source = oldPath;
    copy.destination = newPath;
    copy.target = toPath.path;
    writeTemporary(in, to, copy, Bits::Umask, secondLook);
    proveAndPlace(copy);
    if (::unlinkat(from.folder.fd, from.name.c_str(), 0) != 0)
        throwErrno(errno, oldPath);
}

void PosixFileSystem::copyFile(const std::string& source, const std::string& destination) {
    StagedCopy copy = stage(source, destination, false);
    proveAndPlace(copy);
}

StagedCopy PosixFileSystem::stage(const std::string& source, const std::string& destination,
                                  bool backup) {
    // Failures come in the order of the lookups: the source's drive, the destination's, then
    // the source itself.
    const ResolvedPath from = resolve(source);
    const ResolvedPath toPath = resolve(destination);
    Fd in(openToRead(from, source));
    Destination to;
    openPlace(to, toPath, destination);
    StagedCopy copy;
    copy.source = source;
    copy.destination = destination;
    copy.target = toPath.path;
    struct stat st {};
    if (backup && ::fstat(to.folder.fd, &st) == 0)
        copy.hold = watchFor(to.folder.fd, st.st_dev);
    writeTemporary(in, to, copy, backup ? Bits::Source : Bits::Umask, secondLook);
    return copy;
}

void PosixFileSystem::proveAndPlace(StagedCopy& copy) {
    try {
        flushStaged({copy});
        if (std::optional<FileFailure> failure = readBackStaged({copy}).front())
            throw *failure;
        placeStaged(copy);
    } catch (const FileFailure&) {
        discardStaged(copy);
        throw;
    }
}

// A folder held open on one file system: syncfs through it reports every write failure on that
// file system since it was opened, so it is opened before the first staged copy writes there.
struct PosixFileSystem::Watch {
    Fd folder;
    bool whole = false; // one syncfs puts everything written there on the medium
};

std::shared_ptr<PosixFileSystem::Watch> PosixFileSystem::watchFor(int folder, dev_t device) {
    std::lock_guard<std::mutex> lock(watchesMutex_);
    std::weak_ptr<Watch>& known = watches_[static_cast<std::uint64_t>(device)];
    if (std::shared_ptr<Watch> watch = known.lock())
        return watch;
    auto watch = std::make_shared<Watch>();
    watch->folder.fd = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    if (watch->folder.fd < 0)
        return nullptr;
    struct statfs fs {};
    watch->whole = syncfsReportsFailures() && ::fstatfs(watch->folder.fd, &fs) == 0 &&
                   static_cast<long>(fs.f_type) != FUSE_SUPER_MAGIC;
    known = watch;
    return watch;
}

std::optional<StagedCopy> PosixFileSystem::stageCopy(const std::string& source,
                                                     const std::string& destination) {
    return stage(source, destination, true);
}

void PosixFileSystem::flushStaged(const std::vector<StagedCopy>& copies) {
    std::vector<const Watch*> synced;
    for (const StagedCopy& copy : copies) {
        const auto* watch = static_cast<const Watch*>(copy.hold.get());
        if (watch && watch->whole) {
            if (std::find(synced.begin(), synced.end(), watch) != synced.end())
                continue;
            if (::syncfs(watch->folder.fd) == 0) {
                synced.push_back(watch);
                continue;
            }
            if (errno != ENOSYS)
                throwErrno(errno, copy.destination);
        }
        fsyncPath(copy.temporary, copy.destination);
    }
}

std::vector<std::optional<FileFailure>>
PosixFileSystem::readBackStaged(const std::vector<StagedCopy>& copies) {
    return readBackEach(copies, false);
}

std::vector<std::optional<FileFailure>>
PosixFileSystem::readBackPlaced(const std::vector<StagedCopy>& copies) {
    return readBackEach(copies, true);
}

void PosixFileSystem::placeStaged(const StagedCopy& copy) {
    if (::rename(copy.temporary.c_str(), copy.target.c_str()) != 0)
        throwErrno(errno, copy.destination);
}

void PosixFileSystem::discardStaged(const StagedCopy& copy) noexcept {
    ::unlink(copy.temporary.c_str());
}

void PosixFileSystem::discardPlaced(const StagedCopy& copy) noexcept {
    ::unlink(copy.target.c_str());
}

void PosixFileSystem::deleteFile(const std::string& path) {
    Destination place;
    openPlace(place, resolve(path), path);
    struct stat st {};
    if (::fstatat(place.folder.fd, place.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISDIR(st.st_mode))
        throw fileFailure(kFailAccessRefused);
    // A link goes itself; what it leads to stays.
    if (::unlinkat(place.folder.fd, place.name.c_str(), 0) != 0)
        throwErrno(errno, path);
}

void PosixFileSystem::writeFile(const std::string& path, const std::string& bytes) {
    Destination place;
    openPlace(place, resolve(path), path);
    // Written beside and renamed over the name: a link standing there is replaced, never
    // written through.
    if (int err = replaceFileAt(place.folder.fd, place.name, bytes, 0666, false); err != 0)
        throwErrno(err, path);
}

void PosixFileSystem::makeFolder(const std::string& path) {
    Destination place;
    openPlace(place, resolve(path), path);
    if (::mkdirat(place.folder.fd, place.name.c_str(), 0777) != 0)
        throwErrno(errno, path);
}

void PosixFileSystem::deleteByPattern(const std::string& spec) {
    auto [folderPart, pattern] = splitLast(spec);
    // A folder that is a link is no folder of the drive: nothing in it matches.
    Fd folder(openFolder(resolve(folderPart)));
    if (folder.fd < 0)
        throwErrno(errno == ENOENT ? ENOTDIR : errno, spec);
    auto names = plainMatches(folder.fd, pattern, spec, false);
    if (names.empty())
        throw fileFailure(kFailPathNotFound);
    for (const std::string& name : names)
        if (::unlinkat(folder.fd, name.c_str(), 0) != 0)
            throwErrno(errno, spec);
    // Leftovers of an interrupted copy would keep the folder from going.
    removeTemporariesIn(folder.fd);
}

void PosixFileSystem::removeFolder(const std::string& path) {
    Destination place;
    openPlace(place, resolve(path), path);
    // A link in the folder's place is not removed as a folder, nor is what it leads to.
    if (::unlinkat(place.folder.fd, place.name.c_str(), AT_REMOVEDIR) != 0)
        throwErrno(errno, path);
}

std::vector<std::string> PosixFileSystem::listFolders(const std::string& folder) {
    Fd open(openFolder(resolve(folder)));
    if (open.fd < 0)
        throwErrno(errno, folder);
    std::vector<std::string> names;
    readFolder(open.fd, folder, [&](const dirent* entry) {
        if (kindOf(open.fd, entry) == EntryKind::Folder)
            names.emplace_back(entry->d_name);
    });
    sortIgnoringCase(names);
    return names;
}

std::vector<std::string> PosixFileSystem::listFiles(const std::string& folder,
                                                    const std::string& pattern) {
    Fd open(openFolder(resolve(folder)));
    if (open.fd < 0)
        throwErrno(errno, folder);
    // Copy temporaries start with a dot, so the hidden ones never reach the list.
    auto names = plainMatches(open.fd, pattern, folder, false);
    sortIgnoringCase(names);
    return names;
}

void PosixFileSystem::flushFolder(const std::string& folder) {
    Fd dir(openFolder(resolve(folder)));
    if (dir.fd < 0)
        throwErrno(errno, folder);
    if (::fsync(dir.fd) != 0 && errno != EINVAL && errno != EROFS && errno != EOPNOTSUPP)
        throwErrno(errno, folder);
}

void PosixFileSystem::removeCopyLeftovers(const std::string& folder) {
    ResolvedPath path;
    try {
        path = resolve(folder);
    } catch (const FileFailure&) {
        return;
    }
    Fd dir(openFolder(path));
    if (dir.fd >= 0)
        removeTemporariesIn(dir.fd);
}

NameRules PosixFileSystem::nameRulesOf(const std::string& folder) {
    try {
        return nameRulesOfType(fileSystemTypeOf(resolve(folder).path));
    } catch (const FileFailure&) {
        return NameRules::Native;
    }
}

ReplaceClaim PosixFileSystem::claimToReplace(const std::string& path) {
    ReplaceClaim claim;
    try {
        Destination place;
        openPlace(place, resolve(path), path);
        struct stat st {};
        if (::fstatat(place.folder.fd, place.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(st.st_mode))
            return claim;
        auto lease = std::make_shared<Lease>();
        lease->file.fd = openRegularNoFollow(place.folder.fd, place.name);
        if (lease->file.fd >= 0) {
            ignoreLeaseBreaks();
            if (::fcntl(lease->file.fd, F_SETLEASE, F_WRLCK) == 0) {
                claim.hold = std::move(lease);
                return claim;
            }
            // A lease is refused to a process that does not own the file, and by some file
            // systems; only EAGAIN says that the file is open elsewhere.
            if (errno == EAGAIN) {
                claim.inUse = true;
                return claim;
            }
            lease->file.close();
        }
        claim.inUse = openedElsewhere(st.st_dev, st.st_ino);
    } catch (const FileFailure&) {
        // Not to be told here: the replace that follows meets it and says so.
    }
    return claim;
}

} // namespace nv
