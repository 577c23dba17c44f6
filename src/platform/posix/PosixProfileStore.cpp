#include "platform/posix/PosixProfileStore.h"

#include "platform/ProfileDocument.h"
#include "platform/Utf8.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixIo.h"
#include "platform/posix/PosixPathResolution.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nv {

namespace {

// A change within this span of the last one may leave size and time stamps as they were (the
// kernel stamps files with a coarse clock), so until then the file is compared by content.
constexpr int64_t kRacyNs = 50'000'000;
// Parsed files kept beside the ones a batch still holds.
constexpr std::size_t kCachedFiles = 8;

struct Stamp {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = -1;
    timespec mtime{};
    timespec ctime{};

    bool operator==(const Stamp& o) const {
        return dev == o.dev && ino == o.ino && size == o.size && mtime.tv_sec == o.mtime.tv_sec &&
               mtime.tv_nsec == o.mtime.tv_nsec && ctime.tv_sec == o.ctime.tv_sec &&
               ctime.tv_nsec == o.ctime.tv_nsec;
    }
};

Stamp stampOf(const struct stat& st) {
    Stamp s;
    s.dev = st.st_dev;
    s.ino = st.st_ino;
    s.size = st.st_size;
    s.mtime = st.st_mtim;
    s.ctime = st.st_ctim;
    return s;
}

bool isRacy(const Stamp& s) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    int64_t age = (static_cast<int64_t>(now.tv_sec) - s.ctime.tv_sec) * 1'000'000'000 +
                  (now.tv_nsec - s.ctime.tv_nsec);
    return age < kRacyNs && age > -kRacyNs;
}

} // namespace

struct PosixProfileStore::Image {
    bool exists = false;
    bool dirty = false;   // changed by a batch and not yet on disk
    bool checked = false; // looked at on disk in the running batch, which now trusts it
    bool racy = false;
    Stamp stamp;
    std::string bytes; // what was read, kept while racy
    ProfileDocument text;
};

namespace {

// Reads a plain file whole; false with errno set when it cannot be read.
bool readFile(const std::string& path, std::string& bytes, Stamp& stamp) {
    Fd in(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (in.fd < 0)
        return false;
    struct stat st {};
    if (::fstat(in.fd, &st) != 0)
        return false;
    if (!S_ISREG(st.st_mode)) {
        errno = EISDIR;
        return false;
    }
    bytes.clear();
    bytes.reserve(static_cast<std::size_t>(st.st_size));
    if (int err = readAll(in.fd, bytes); err != 0) {
        errno = err;
        return false;
    }
    stamp = stampOf(st);
    return true;
}

// Puts the image on disk through a hidden temporary file, flushed and renamed over the file.
bool save(const std::string& native, PosixProfileStore::Image& image) {
    std::string target = native;
    struct stat old {};
    bool had = ::lstat(target.c_str(), &old) == 0;
    if (had && S_ISLNK(old.st_mode)) {
        // Replace what the link points at, not the link.
        if (char* real = ::realpath(native.c_str(), nullptr)) {
            target = real;
            std::free(real);
        }
        had = ::stat(target.c_str(), &old) == 0;
    }
    std::string folder = parentOf(target);
    removeTemporaries(folder, baseOf(target));

    Fd held(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (held.fd < 0)
        return false;
    std::string bytes = image.text.render();
    if (int err = replaceFileAt(held.fd, baseOf(target), bytes, had ? 0600 : 0644, true,
                                had ? &old : nullptr);
        err != 0) {
        errno = err;
        return false;
    }
    struct stat now {};
    if (::stat(target.c_str(), &now) != 0)
        return false;
    image.exists = true;
    image.dirty = false;
    image.stamp = stampOf(now);
    // Another writer within the same tick of a coarse clock would leave this stamp as it is.
    image.racy = isRacy(image.stamp);
    image.bytes = image.racy ? std::move(bytes) : std::string();
    return true;
}

std::string cut(std::string text, std::size_t size) {
    return firstCharacters(std::move(text), size - 1);
}

} // namespace

struct PosixProfileStore::Target {
    std::string native;
    int err = 0; // of the stat below; 0 when the file is there
    struct stat st {};
    bool pending = false; // a batch holds changes of the file, so the disk is not asked
};

namespace {

// The home platform refuses to write a read-only file; here that is a file without write
// permission, for root as well, or a folder this process may not write.
bool mayWrite(const PosixProfileStore::Target& target) {
    if (target.err == 0) {
        if (!S_ISREG(target.st.st_mode) || (target.st.st_mode & 0222) == 0 ||
            ::faccessat(AT_FDCWD, target.native.c_str(), W_OK, AT_EACCESS) != 0)
            return false;
    } else if (target.err != ENOENT) {
        return false;
    }
    return ::faccessat(AT_FDCWD, parentOf(target.native).c_str(), W_OK, AT_EACCESS) == 0;
}

} // namespace

PosixProfileStore::PosixProfileStore(DriveTable& drives) : drives_(drives) {}
PosixProfileStore::~PosixProfileStore() = default;

PosixProfileStore::Target PosixProfileStore::locate(const std::string& file) {
    Target target;
    auto known = resolved_.find(file);
    if (known != resolved_.end()) {
        target.native = known->second.native;
        auto image = images_.find(target.native);
        if (image != images_.end() && (image->second->dirty || image->second->checked)) {
            target.pending = true;
            return target;
        }
        // Turning a path into its native form costs a look at every folder on the way; the
        // answer holds while the drive keeps its root and the file is still there.
        auto drive = drives_.find(file[0]);
        if (drive && drive->root == known->second.root &&
            ::stat(target.native.c_str(), &target.st) == 0)
            return target;
    }
    target.native = nativePath(drives_, file);
    if (resolved_.size() >= 64)
        resolved_.clear();
    if (auto drive = drives_.find(file[0]))
        resolved_[file] = Resolved{target.native, drive->root};
    if (::stat(target.native.c_str(), &target.st) != 0)
        target.err = errno;
    return target;
}

PosixProfileStore::Image* PosixProfileStore::current(const Target& target) {
    const std::string& native = target.native;
    auto it = images_.find(native);
    if (it == images_.end()) {
        forgetClean();
        it = images_.emplace(native, std::make_unique<Image>()).first;
    }
    Image& image = *it->second;
    if (image.dirty || image.checked)
        return &image;

    if (target.err != 0) {
        if (target.err != ENOENT && target.err != ENOTDIR) {
            images_.erase(it);
            return nullptr;
        }
        if (image.exists)
            image = Image{};
        return &image;
    }
    if (!S_ISREG(target.st.st_mode)) {
        images_.erase(it);
        return nullptr;
    }
    if (image.exists && image.stamp == stampOf(target.st) && !image.racy)
        return &image;

    std::string bytes;
    Stamp stamp;
    if (!readFile(native, bytes, stamp)) {
        images_.erase(it);
        return nullptr;
    }
    if (!(image.exists && image.racy && stamp == image.stamp && bytes == image.bytes))
        image.text.parse(bytes);
    image.exists = true;
    image.stamp = stamp;
    image.racy = isRacy(stamp);
    if (image.racy)
        image.bytes = std::move(bytes);
    else
        image.bytes.clear();
    return &image;
}

void PosixProfileStore::forgetClean() {
    if (images_.size() < kCachedFiles)
        return;
    for (auto it = images_.begin(); it != images_.end();) {
        if (it->second->dirty)
            ++it;
        else
            it = images_.erase(it);
    }
}

std::string PosixProfileStore::getString(const std::string& section, const std::string& key,
                                         const std::string& fallback, std::size_t size,
                                         const std::string& file) {
    if (size == 0)
        return {};
    try {
        std::lock_guard lock(mutex_);
        if (Image* image = current(locate(file))) {
            if (auto value = image->text.find(section, key))
                return cut(std::move(*value), size);
        }
    } catch (...) {
        // A file that cannot be read counts as a file without the key.
    }
    try {
        // The home platform drops trailing blanks of the fallback too.
        std::string text = validUtf8(fallback);
        while (!text.empty() && text.back() == ' ')
            text.pop_back();
        return cut(std::move(text), size);
    } catch (...) {
        return {};
    }
}

bool PosixProfileStore::writeString(const std::string& section, const std::string& key,
                                    const std::string& value, const std::string& file) {
    std::lock_guard lock(mutex_);
    std::string native;
    try {
        Target target = locate(file);
        native = target.native;
        if (!target.pending && !mayWrite(target))
            return false;
        Image* image = current(target);
        if (!image)
            return false;
        bool changed = image->text.set(section, key, value);
        if (batchDepth_ > 0) {
            // One window operation writes a whole list; the disk is asked once, not per key.
            image->checked = true;
            image->dirty = image->dirty || changed;
            return true;
        }
        if (!changed)
            return true;
        if (save(native, *image))
            return true;
    } catch (...) {
    }
    // What is in memory may now differ from the disk; the next access reads the file again.
    images_.erase(native);
    return false;
}

void PosixProfileStore::beginBatch() {
    std::lock_guard lock(mutex_);
    ++batchDepth_;
}

void PosixProfileStore::endBatch() {
    std::lock_guard lock(mutex_);
    if (batchDepth_ == 0 || --batchDepth_ > 0)
        return;
    for (auto it = images_.begin(); it != images_.end();) {
        it->second->checked = false;
        bool saved = true;
        if (it->second->dirty) {
            try {
                saved = save(it->first, *it->second);
            } catch (...) {
                saved = false;
            }
        }
        it = saved ? std::next(it) : images_.erase(it);
    }
}

bool PosixProfileStore::mayStore(const std::string& file) {
    std::lock_guard lock(mutex_);
    try {
        const Target target = locate(file);
        return target.pending || mayWrite(target);
    } catch (...) {
        return false;
    }
}

} // namespace nv
