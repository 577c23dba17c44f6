#pragma once

#include <cstddef>
#include <dirent.h>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace nv {

// An open file descriptor, closed when it goes; -1 holds none.
struct Fd {
    int fd = -1;
    Fd() = default;
    explicit Fd(int open) : fd(open) {}
    ~Fd() {
        if (fd >= 0)
            ::close(fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    // Closes it now, for what the close says: 0 or its errno.
    int close();
    // Hands the descriptor over to the caller, who closes it; holds none after.
    int release() {
        int open = fd;
        fd = -1;
        return open;
    }
};

// The folder of a native path ("/" for a name in the root, "." for a bare name), and its name.
std::string parentOf(const std::string& native);
std::string baseOf(const std::string& native);

// Opens the folder native to read, following links only in its first rootLength characters, the
// root of its drive as the machine gives it. Below that root each folder is opened relative to
// the one above without following a link, so nothing on the drive leads elsewhere. -1 with errno
// when it fails; a link on the way gives ENOTDIR.
int openFolderBeneath(const std::string& native, std::size_t rootLength);

// Opens the regular file name in folder to read, without following a link. A link, FIFO, device
// or folder gives -1 with ENOENT and is never opened: the call neither blocks nor wakes a device.
int openRegularNoFollow(int folder, const std::string& name);

// Joins a name to a native folder ("/" + "a" is "/a").
std::string joinNative(const std::string& folder, const std::string& name);

// Hands take every entry of an open folder, "." and ".." too, from its start; the folder's own
// descriptor stays open and unmoved. 0, or the errno of a failure, after which no more come.
int forEachEntry(int folder, const std::function<void(const dirent*)>& take);

// Reads from fd to its end, through interruptions, appending to out; 0 or the errno of the
// failure (out then holds what was read before it).
int readAll(int fd, std::string& out);

// Writes all of bytes, through interruptions; 0 or the errno of the failure.
int writeAll(int fd, const char* bytes, std::size_t size);

// A fresh name for the hidden temporary file beside the file base that a write goes to before its
// rename: ".<base>.nvtmp-<process>-<count>". The leading dot keeps it out of every listing and
// match, so nothing takes it for the file itself or a backed-up one.
std::string temporaryName(const std::string& base);

// Replaces the file name in folder as a whole: the bytes go to a temporary beside it, which is
// then renamed over it, so a reader finds the old file or the new one, and a link standing there
// is replaced, never written through. flush puts the file and the rename on the medium before it
// returns. A file given as like passes its owner and permission bits on to the new one, as far as
// this process may give them. 0 or the errno of the failure; a failure removes the temporary.
int replaceFileAt(int folder, const std::string& name, const std::string& bytes, mode_t mode,
                  bool flush, const struct stat* like = nullptr);
// The same for a small file by its native path, flushed.
int replaceFile(const std::string& native, const std::string& bytes, mode_t mode = 0644);

// Removes the temporaries that interrupted writes left in folder, of every file or with base given
// of that file alone: those whose process has ended, or is this one (it writes each file from one
// place at a time). Never fails: what cannot be removed stays hidden.
void removeTemporaries(const std::string& folder, const std::string& base = "");
// The same in a folder held open.
void removeTemporariesIn(int folder, const std::string& base = "");

} // namespace nv
