#include "platform/posix/PosixIo.h"

#include "platform/FileSystem.h"

#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>

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

void syncFolder(const std::string& folder) {
    Fd dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.fd >= 0)
        ::fsync(dir.fd);
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

std::string temporaryBeside(const std::string& native) {
    static std::atomic<unsigned> counter{0};
    return parentOf(native) + "/." + baseOf(native) + kCopyTemporaryMark +
           std::to_string(::getpid()) + "-" + std::to_string(counter++);
}

int replaceFile(const std::string& native, const std::string& bytes, mode_t mode) {
    std::string temp = temporaryBeside(native);
    Fd out(::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (out.fd < 0)
        return errno;
    int err = writeAll(out.fd, bytes.data(), bytes.size());
    if (err == 0 && ::fsync(out.fd) != 0)
        err = errno;
    if (int closed = out.close(); err == 0)
        err = closed;
    if (err == 0 && ::rename(temp.c_str(), native.c_str()) != 0)
        err = errno;
    if (err != 0) {
        ::unlink(temp.c_str());
        return err;
    }
    syncFolder(parentOf(native));
    return 0;
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
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return;
    const std::string prefix = "." + base + kCopyTemporaryMark;
    while (dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (entry->d_type == DT_DIR || (!base.empty() && !name.starts_with(prefix)) ||
            !writerGone(copyTemporaryWriter(name)))
            continue;
        ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

} // namespace nv
