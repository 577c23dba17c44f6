#include "platform/posix/PosixFileSystem.h"

#include "platform/CaseFold.h"
#include "platform/FailureText.h"
#include "platform/Wildcard.h"
#include "platform/posix/FileSystemType.h"
#include "platform/posix/PosixIo.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <memory>
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

// What an entry is, links followed: a dangling link is neither file nor folder.
EntryKind kindOf(const std::string& folder, const dirent* entry) {
    if (entry->d_type == DT_REG)
        return EntryKind::File;
    if (entry->d_type == DT_DIR)
        return EntryKind::Folder;
    if (entry->d_type != DT_LNK && entry->d_type != DT_UNKNOWN)
        return EntryKind::Other;
    struct stat st {};
    std::string path = folder + "/" + entry->d_name;
    if (::stat(path.c_str(), &st) != 0)
        return EntryKind::Other;
    return S_ISREG(st.st_mode)   ? EntryKind::File
           : S_ISDIR(st.st_mode) ? EntryKind::Folder
                                 : EntryKind::Other;
}

// Hands take every entry of folder that is not hidden. A folder that is not there has no
// entries unless required; any other that cannot be read throws.
void readFolder(const std::string& folder, const std::string& drivePath, bool required,
                const std::function<void(const dirent*)>& take) {
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(folder.c_str()), ::closedir);
    if (!dir) {
        if (!required && (errno == ENOENT || errno == ENOTDIR))
            return;
        throwErrno(errno, drivePath);
    }
    for (;;) {
        errno = 0;
        dirent* entry = ::readdir(dir.get());
        if (!entry) {
            // A drive pulled halfway must not pass for the end of the list.
            if (errno != 0)
                throwErrno(errno, drivePath);
            return;
        }
        if (!isHidden(entry->d_name))
            take(entry);
    }
}

// Plain files of a folder whose names match pattern, in the folder's order.
std::vector<std::string> plainMatches(const std::string& folder, const std::string& pattern,
                                      const std::string& drivePath, bool firstOnly,
                                      bool required = false) {
    std::vector<std::string> names;
    std::string best;
    readFolder(folder, drivePath, required, [&](const dirent* entry) {
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

// Writes the open source into a hidden temporary file beside destination, with the source's
// permission bits and times, flushed if asked; returns its path. A failure removes the temporary.
std::string writeTemporary(const Fd& in, const std::string& destination,
                           const std::string& drivePath, bool flush,
                           std::uintmax_t* bytes = nullptr) {
    struct stat st {};
    if (::fstat(in.fd, &st) != 0)
        throwErrno(errno, drivePath);
    if (!S_ISREG(st.st_mode))
        throw fileFailure(kFailAccessRefused);
    if (bytes)
        *bytes = static_cast<std::uintmax_t>(st.st_size);

    std::string temp = temporaryBeside(destination);
    Fd out;
    out.fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (out.fd < 0)
        throwErrno(errno, drivePath);

    int err = copyBytes(in.fd, out.fd);
    // Bits and times are kept where the medium can hold them; FAT, exFAT and FUSE drivers may
    // refuse them, and the copy is no worse for that.
    auto refusedByMedium = [](int e) { return e == ENOSYS || e == EPERM || e == EOPNOTSUPP; };
    if (err == 0 && ::fchmod(out.fd, st.st_mode & 07775 & ~S_ISUID & ~S_ISGID) != 0 &&
        !refusedByMedium(errno))
        err = errno;
    struct timespec times[2] = {st.st_atim, st.st_mtim};
    if (err == 0 && ::futimens(out.fd, times) != 0 && !refusedByMedium(errno))
        err = errno;
    if (err == 0 && flush && ::fsync(out.fd) != 0)
        err = errno;
    // Closed on failure too: an open descriptor would keep the removed temporary's space
    // taken on the stick until the program ends.
    if (int closed = out.close(); closed != 0 && err == 0)
        err = closed;
    if (err != 0) {
        ::unlink(temp.c_str());
        throwErrno(err, drivePath);
    }
    return temp;
}

// Copies the open source over destination through a flushed temporary file and a rename.
void copyNative(const Fd& source, const std::string& destination, const std::string& drivePath) {
    std::string temp = writeTemporary(source, destination, drivePath, true);
    if (::rename(temp.c_str(), destination.c_str()) != 0) {
        int err = errno;
        ::unlink(temp.c_str());
        throwErrno(err, drivePath);
    }
}

// Flushes one written file through a descriptor of its own; unlike syncfs this also reaches
// the medium behind a FUSE file system.
void fsyncPath(const std::string& path, const std::string& drivePath) {
    Fd fd;
    fd.fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
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

constexpr long kFuseMagic = 0x65735546;

} // namespace

int copyBytes(int from, int to) {
    bool fast = true;
    for (;;) {
        if (fast) {
            ssize_t n = ::copy_file_range(from, nullptr, to, nullptr, 1 << 30, 0);
            if (n > 0)
                continue;
            if (n == 0)
                return 0;
            if (errno == EINTR)
                continue;
            if (errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP &&
                errno != EBADF)
                return errno;
            fast = false; // this pair of file systems wants plain reads and writes
        }
        constexpr std::size_t kBuffer = 1 << 20;
        static thread_local std::unique_ptr<char[]> buffer(new char[kBuffer]);
        ssize_t n = ::read(from, buffer.get(), kBuffer);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (n == 0)
            return 0;
        if (int err = writeAll(to, buffer.get(), static_cast<std::size_t>(n)))
            return err;
    }
}

ResolvedPath PosixFileSystem::resolve(const std::string& drivePath) {
    return resolvePath(drives_, drivePath, &index_);
}

std::string PosixFileSystem::nativeOf(const std::string& drivePath) {
    return resolve(drivePath).path;
}

int PosixFileSystem::openToRead(const std::string& drivePath, const std::string& literal) {
    int fd = ::open(literal.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd >= 0)
        return fd;
    fd = ::open(nativeOf(drivePath).c_str(), O_RDONLY | O_CLOEXEC);
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
        struct stat st {};
        if (!found.exists || ::stat(found.path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
            return "";
        return baseOf(found.path);
    }
    std::string folder = nativeOf(folderPart);
    auto names = plainMatches(folder, pattern, spec, true);
    return names.empty() ? "" : names.front();
}

void PosixFileSystem::moveFile(const std::string& oldPath, const std::string& newPath) {
    std::string from = nativeOf(oldPath);
    std::string to = nativeOf(newPath);
    struct stat st {};
    if (::lstat(from.c_str(), &st) != 0)
        throwErrno(errno, oldPath);
    if (::lstat(to.c_str(), &st) == 0)
        throw fileFailure(kFailAccessRefused);
    // A hard link fails rather than replace, so a file that appeared meanwhile survives.
    if (::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        syncFolder(parentOf(to));
        return;
    }
    if (errno != EXDEV && errno != EPERM && errno != EOPNOTSUPP)
        throwErrno(errno, newPath);
    Fd in;
    in.fd = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in.fd < 0)
        throwErrno(errno, oldPath);
    copyNative(in, to, newPath);
    if (::unlink(from.c_str()) != 0)
        throwErrno(errno, oldPath);
}

void PosixFileSystem::copyFile(const std::string& source, const std::string& destination) {
    // Failures come in the order of the lookups: the source's drive, the destination's, then
    // the source itself.
    std::string literal = literalNativePath(drives_, source);
    std::string to = nativeOf(destination);
    Fd in;
    in.fd = openToRead(source, literal);
    copyNative(in, to, destination);
}

// A folder held open on one file system: syncfs through it reports every write failure on that
// file system since it was opened, so it is opened before the first staged copy writes there.
struct PosixFileSystem::Watch {
    Fd folder;
    bool whole = false; // one syncfs puts everything written there on the medium
};

std::shared_ptr<PosixFileSystem::Watch> PosixFileSystem::watchFor(const std::string& folder,
                                                                  dev_t device) {
    std::lock_guard<std::mutex> lock(watchesMutex_);
    std::weak_ptr<Watch>& known = watches_[static_cast<std::uint64_t>(device)];
    if (std::shared_ptr<Watch> watch = known.lock())
        return watch;
    auto watch = std::make_shared<Watch>();
    watch->folder.fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (watch->folder.fd < 0)
        return nullptr;
    struct statfs fs {};
    watch->whole = syncfsReportsFailures() && ::fstatfs(watch->folder.fd, &fs) == 0 &&
                   static_cast<long>(fs.f_type) != kFuseMagic;
    known = watch;
    return watch;
}

std::optional<StagedCopy> PosixFileSystem::stageCopy(const std::string& source,
                                                     const std::string& destination) {
    std::string literal = literalNativePath(drives_, source);
    ResolvedPath to = resolve(destination);
    Fd in;
    in.fd = openToRead(source, literal);
    StagedCopy copy;
    copy.destination = destination;
    copy.target = to.path;
    // A new destination was looked for in its folder, which told its device on the way.
    const std::string folder = parentOf(to.path);
    struct stat st {};
    if (to.folderSeen)
        copy.hold = watchFor(folder, to.folder.st_dev);
    else if (::stat(folder.c_str(), &st) == 0)
        copy.hold = watchFor(folder, st.st_dev);
    // Else the copy itself tells what is wrong with the folder.
    copy.temporary = writeTemporary(in, to.path, destination, false, &copy.bytes);
    return copy;
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

void PosixFileSystem::placeStaged(const StagedCopy& copy) {
    if (::rename(copy.temporary.c_str(), copy.target.c_str()) != 0)
        throwErrno(errno, copy.destination);
}

void PosixFileSystem::discardStaged(const StagedCopy& copy) noexcept {
    ::unlink(copy.temporary.c_str());
}

void PosixFileSystem::deleteFile(const std::string& path) {
    std::string native = nativeOf(path);
    struct stat st {};
    if (::lstat(native.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        throw fileFailure(kFailAccessRefused);
    if (::unlink(native.c_str()) != 0)
        throwErrno(errno, path);
}

void PosixFileSystem::writeFile(const std::string& path, const std::string& bytes) {
    Fd out;
    out.fd = ::open(nativeOf(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (out.fd < 0)
        throwErrno(errno, path);
    if (int err = writeAll(out.fd, bytes.data(), bytes.size()))
        throwErrno(err, path);
    if (int err = out.close())
        throwErrno(err, path);
}

void PosixFileSystem::makeFolder(const std::string& path) {
    std::string native = nativeOf(path);
    if (::mkdir(native.c_str(), 0777) != 0)
        throwErrno(errno, path);
}

void PosixFileSystem::deleteByPattern(const std::string& spec) {
    auto [folderPart, pattern] = splitLast(spec);
    std::string folder = nativeOf(folderPart);
    auto names = plainMatches(folder, pattern, spec, false);
    if (names.empty())
        throw fileFailure(kFailPathNotFound);
    for (const std::string& name : names)
        if (::unlink((folder + "/" + name).c_str()) != 0)
            throwErrno(errno, spec);
    // Leftovers of an interrupted copy would keep the folder from going.
    removeTemporaries(folder);
}

void PosixFileSystem::removeFolder(const std::string& path) {
    std::string native = nativeOf(path);
    if (::rmdir(native.c_str()) != 0)
        throwErrno(errno, path);
}

std::vector<std::string> PosixFileSystem::listFolders(const std::string& folder) {
    std::string native = nativeOf(folder);
    std::vector<std::string> names;
    readFolder(native, folder, true, [&](const dirent* entry) {
        if (kindOf(native, entry) == EntryKind::Folder)
            names.emplace_back(entry->d_name);
    });
    sortIgnoringCase(names);
    return names;
}

std::vector<std::string> PosixFileSystem::listFiles(const std::string& folder,
                                                    const std::string& pattern) {
    // Copy temporaries start with a dot, so the hidden ones never reach the list.
    auto names = plainMatches(nativeOf(folder), pattern, folder, false, true);
    sortIgnoringCase(names);
    return names;
}

void PosixFileSystem::flushFolder(const std::string& folder) {
    Fd dir;
    dir.fd = ::open(nativeOf(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir.fd < 0)
        throwErrno(errno, folder);
    if (::fsync(dir.fd) != 0 && errno != EINVAL && errno != EROFS && errno != EOPNOTSUPP)
        throwErrno(errno, folder);
}

void PosixFileSystem::removeCopyLeftovers(const std::string& folder) {
    std::string native;
    try {
        native = nativeOf(folder);
    } catch (const FileFailure&) {
        return;
    }
    removeTemporaries(native);
}

NameRules PosixFileSystem::nameRulesOf(const std::string& folder) {
    try {
        return nameRulesOfType(fileSystemTypeOf(nativeOf(folder)));
    } catch (const FileFailure&) {
        return NameRules::Native;
    }
}

} // namespace nv
