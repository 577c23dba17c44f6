#include "platform/posix/PosixIo.h"

#include "platform/FileSystem.h"

#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <string_view>

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

// The process that wrote a temporary of the file base, from its name; 0 when it is not one.
pid_t writerOf(std::string_view name, const std::string& base) {
    std::string prefix = "." + base + kCopyTemporaryMark;
    if (!name.starts_with(prefix))
        return 0;
    std::string_view rest = name.substr(prefix.size());
    std::size_t dash = rest.find('-');
    std::string_view pid = rest.substr(0, dash);
    if (dash == std::string_view::npos || pid.empty() || pid.size() > 9 ||
        pid.find_first_not_of("0123456789") != std::string_view::npos ||
        rest.find_first_not_of("0123456789", dash + 1) != std::string_view::npos)
        return 0;
    return static_cast<pid_t>(std::stol(std::string(pid)));
}

} // namespace

void removeTemporaries(const std::string& folder, const std::string& base) {
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return;
    while (dirent* entry = ::readdir(dir)) {
        if (!isCopyTemporary(entry->d_name) || entry->d_type == DT_DIR)
            continue;
        if (!base.empty()) {
            pid_t pid = writerOf(entry->d_name, base);
            if (pid == 0 || (pid != ::getpid() && !(::kill(pid, 0) != 0 && errno == ESRCH)))
                continue;
        }
        ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

} // namespace nv
