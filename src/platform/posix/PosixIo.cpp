#include "platform/posix/PosixIo.h"

#include "platform/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <memory>
#include <signal.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace nv {

int Fd::close() {
    int open = fd;
    fd = -1;
    return open >= 0 && ::close(open) != 0 ? errno : 0;
}

std::string parentOf(const std::string& native) {
    std::size_t cut = native.find_last_of('/');
    if (cut == std::string::npos)
        return ".";
    return cut == 0 ? "/" : native.substr(0, cut);
}

std::string baseOf(const std::string& native) {
    return native.substr(native.find_last_of('/') + 1);
}

namespace {

// The kernel's own walk below a folder that refuses every link on the way, in one call instead of
// one a folder; -1 where the kernel has none, or where it fails and the walk by hand is to say why.
int openWithoutLinks(int at, const std::string& relative) {
    static std::atomic<bool> missing{false};
    if (relative.empty() || missing.load(std::memory_order_relaxed))
        return -1;
    open_how how{};
    how.flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    long fd = ::syscall(SYS_openat2, at, relative.c_str(), &how, sizeof how);
    if (fd < 0 && (errno == ENOSYS || errno == EPERM))
        missing.store(true, std::memory_order_relaxed);
    return static_cast<int>(fd);
}

} // namespace

int openFolderBeneath(const std::string& native, std::size_t rootLength) {
    rootLength = std::min(rootLength, native.size());
    const std::string root = rootLength == 0 ? std::string("/") : native.substr(0, rootLength);
    Fd at(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (at.fd < 0)
        return -1;
    const std::size_t from = std::min(native.find_first_not_of('/', rootLength), native.size());
    if (int fd = openWithoutLinks(at.fd, native.substr(from)); fd >= 0)
        return fd;
    std::size_t start = rootLength;
    while (start < native.size()) {
        std::size_t end = native.find('/', start);
        if (end == std::string::npos)
            end = native.size();
        if (end > start) {
            const std::string part = native.substr(start, end - start);
            // O_PATH with O_NOFOLLOW takes a link itself, which O_DIRECTORY then refuses.
            Fd next(::openat(at.fd, part.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (next.fd < 0)
                return -1;
            std::swap(at.fd, next.fd);
        }
        start = end + 1;
    }
    return ::openat(at.fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

int openRegularNoFollow(int folder, const std::string& name) {
    struct stat seen {};
    if (::fstatat(folder, name.c_str(), &seen, AT_SYMLINK_NOFOLLOW) != 0)
        return -1;
    if (!S_ISREG(seen.st_mode)) {
        errno = ENOENT;
        return -1;
    }
    Fd in(
        ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (in.fd < 0)
        return -1;
    // Something put in its place between the look and the open is not taken either.
    struct stat opened {};
    if (::fstat(in.fd, &opened) != 0)
        return -1;
    if (!S_ISREG(opened.st_mode) || opened.st_dev != seen.st_dev || opened.st_ino != seen.st_ino) {
        errno = ENOENT;
        return -1;
    }
    ::fcntl(in.fd, F_SETFL, ::fcntl(in.fd, F_GETFL) & ~O_NONBLOCK);
    return in.release();
}

std::string joinNative(const std::string& folder, const std::string& name) {
    return (folder == "/" ? std::string() : folder) + "/" + name;
}

int forEachEntry(int folder, const std::function<void(const dirent*)>& take) {
    int own = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    if (own < 0)
        return errno;
    // Closed by the holder, also when take throws.
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::fdopendir(own), ::closedir);
    if (!dir) {
        int err = errno;
        ::close(own);
        return err;
    }
    // A copy of a descriptor shares its place in the folder with the one it came from.
    ::rewinddir(dir.get());
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(dir.get());
        // A drive pulled halfway must not pass for the end of the list.
        if (!entry)
            return errno;
        take(entry);
    }
}

int readAll(int fd, std::string& out) {
    char buffer[16384];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return errno;
        if (n == 0)
            return 0;
        out.append(buffer, static_cast<std::size_t>(n));
    }
}

int writeAll(int fd, const char* bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        ssize_t n = ::write(fd, bytes + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return errno;
        if (n == 0)
            return EIO;
        done += static_cast<std::size_t>(n);
    }
    return 0;
}

std::string temporaryName(const std::string& base) {
    return copyTemporaryName(base, static_cast<unsigned long>(::getpid()));
}

int replaceFileAt(int folder, const std::string& name, const std::string& bytes, mode_t mode,
                  bool flush, const struct stat* like) {
    const std::string temp = temporaryName(name);
    Fd out(
        ::openat(folder, temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (out.fd < 0)
        return errno;
    int err = 0;
    if (like) {
        if ((like->st_uid != ::geteuid() || like->st_gid != ::getegid()) &&
            ::fchown(out.fd, like->st_uid, like->st_gid) != 0) {
            // Only root may give the file back to its owner; otherwise it becomes ours.
        }
        // FAT, exFAT and FUSE drivers may refuse permission bits; the file is no worse for that.
        if (::fchmod(out.fd, like->st_mode & 0775) != 0 && errno != EPERM && errno != ENOSYS &&
            errno != EOPNOTSUPP)
            err = errno;
    }
    if (err == 0)
        err = writeAll(out.fd, bytes.data(), bytes.size());
    if (err == 0 && flush && ::fsync(out.fd) != 0)
        err = errno;
    if (int closed = out.close(); err == 0)
        err = closed;
    if (err == 0 && ::renameat(folder, temp.c_str(), folder, name.c_str()) != 0)
        err = errno;
    if (err != 0) {
        ::unlinkat(folder, temp.c_str(), 0);
        return err;
    }
    if (flush) {
        // folder may be held by O_PATH, which cannot be flushed itself.
        Fd self(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (self.fd >= 0)
            ::fsync(self.fd);
    }
    return 0;
}

int replaceFile(const std::string& native, const std::string& bytes, mode_t mode) {
    Fd folder(::open(parentOf(native).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (folder.fd < 0)
        return errno;
    return replaceFileAt(folder.fd, baseOf(native), bytes, mode, true);
}

namespace {

// A process that has ended can no longer be writing; this one writes each file from one place
// at a time.
bool writerGone(unsigned long writer) {
    if (writer == 0)
        return false;
    const auto pid = static_cast<pid_t>(writer);
    return pid == ::getpid() || (::kill(pid, 0) != 0 && errno == ESRCH);
}

} // namespace

void removeTemporaries(const std::string& folder, const std::string& base) {
    Fd held(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (held.fd >= 0)
        removeTemporariesIn(held.fd, base);
}

void removeTemporariesIn(int folder, const std::string& base) {
    const std::string prefix = "." + base + kCopyTemporaryMark;
    forEachEntry(folder, [&](const dirent* entry) {
        const std::string name = entry->d_name;
        if (entry->d_type == DT_DIR || (!base.empty() && !name.starts_with(prefix)) ||
            !writerGone(copyTemporaryWriter(name)))
            return;
        ::unlinkat(folder, entry->d_name, 0);
    });
}

} // namespace nv
