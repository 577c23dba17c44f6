#include "platform/posix/PosixProfileStore.h"

#include "platform/Cp1252.h"
#include "platform/DriveFormConversion.h"
#include "platform/posix/DriveTable.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace nv {

namespace {

// A change within this span of the last one may leave size and time stamps as they were (the
// kernel stamps files with a coarse clock), so until then the file is compared by content.
constexpr int64_t kRacyNs = 50'000'000;
// Parsed files kept beside the ones a batch still holds.
constexpr std::size_t kCachedFiles = 8;

enum class Eol : uint8_t { None, Lf, CrLf };

struct Line {
    std::string text; // without its line end
    Eol eol = Eol::CrLf;
};

struct Section {
    bool hasHeader = false; // false only for the lines above the first header
    Line header;
    std::vector<Line> lines;
    std::unordered_map<std::string, uint32_t> keys; // folded key -> first line with it
};

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

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

bool isBlankLine(const std::string& text) {
    return trim(text).empty();
}

// Upper case in Windows-1252, so that é and É, š and Š name the same key.
unsigned char foldByte(unsigned char c) {
    if (c >= 'a' && c <= 'z')
        return static_cast<unsigned char>(c - 32);
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return static_cast<unsigned char>(c - 32);
    if (c == 0x9A || c == 0x9C || c == 0x9E)
        return static_cast<unsigned char>(c - 0x10);
    if (c == 0xFF)
        return 0x9F;
    return c;
}

std::string fold(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = static_cast<char>(foldByte(static_cast<unsigned char>(c)));
    return out;
}

// The name of a section header line, or nothing when the line is not one.
bool headerName(std::string_view text, std::string_view& name) {
    std::string_view t = trim(text);
    if (t.empty() || t.front() != '[')
        return false;
    std::size_t close = t.find(']');
    if (close == std::string_view::npos)
        return false;
    name = trim(t.substr(1, close - 1));
    return true;
}

bool keyName(std::string_view text, std::string_view& name) {
    std::size_t eq = text.find('=');
    if (eq == std::string_view::npos)
        return false;
    name = trim(text.substr(0, eq));
    return true;
}

const std::string_view kUtf8Mark = "\xEF\xBB\xBF";

} // namespace

struct PosixProfileStore::Image {
    bool exists = false;
    bool dirty = false;   // changed by a batch and not yet on disk
    bool checked = false; // looked at on disk in the running batch, which now trusts it
    bool racy = false;
    Stamp stamp;
    std::string bytes; // what was read, kept while racy
    std::vector<Section> sections;
    std::unordered_map<std::string, uint32_t> index; // folded name -> first section with it

    void parse(const std::string& text) {
        sections.clear();
        index.clear();
        sections.emplace_back();
        std::size_t pos = 0;
        while (pos < text.size()) {
            Line line;
            std::size_t nl = text.find('\n', pos);
            if (nl == std::string::npos) {
                line.text = text.substr(pos);
                line.eol = Eol::None;
                pos = text.size();
            } else {
                std::size_t end = nl;
                line.eol = Eol::Lf;
                if (end > pos && text[end - 1] == '\r') {
                    --end;
                    line.eol = Eol::CrLf;
                }
                line.text = text.substr(pos, end - pos);
                pos = nl + 1;
            }
            add(std::move(line));
        }
    }

    void add(Line line) {
        std::string_view view = line.text;
        if (sections.size() == 1 && sections[0].lines.empty() && view.starts_with(kUtf8Mark))
            view.remove_prefix(kUtf8Mark.size()); // an editor's mark, not part of the name
        std::string_view name;
        if (headerName(view, name)) {
            index.emplace(fold(name), static_cast<uint32_t>(sections.size()));
            Section& s = sections.emplace_back();
            s.hasHeader = true;
            s.header = std::move(line);
            return;
        }
        Section& s = sections.back();
        if (s.hasHeader && keyName(view, name))
            s.keys.emplace(fold(name), static_cast<uint32_t>(s.lines.size()));
        s.lines.push_back(std::move(line));
    }

    std::string serialize() const {
        std::size_t total = 0;
        for (const Section& s : sections) {
            total += s.header.text.size() + 2;
            for (const Line& l : s.lines)
                total += l.text.size() + 2;
        }
        std::string out;
        out.reserve(total);
        auto put = [&out](const Line& l) {
            out += l.text;
            if (l.eol == Eol::CrLf)
                out += "\r\n";
            else if (l.eol == Eol::Lf)
                out += '\n';
        };
        for (const Section& s : sections) {
            if (s.hasHeader)
                put(s.header);
            for (const Line& l : s.lines)
                put(l);
        }
        return out;
    }

    Line* lastLine() {
        for (auto s = sections.rbegin(); s != sections.rend(); ++s) {
            if (!s->lines.empty())
                return &s->lines.back();
            if (s->hasHeader)
                return &s->header;
        }
        return nullptr;
    }

    const Line* find(const std::string& section, const std::string& key) const {
        auto s = index.find(fold(section));
        if (s == index.end())
            return nullptr;
        const Section& sec = sections[s->second];
        auto k = sec.keys.find(fold(key));
        return k == sec.keys.end() ? nullptr : &sec.lines[k->second];
    }

    // Stores value under key (all Windows-1252); true when the text of the file changed.
    bool store(const std::string& section, const std::string& key, const std::string& value) {
        bool changed = true;
        auto s = index.find(fold(section));
        if (s == index.end()) {
            if (Line* last = lastLine(); last && last->eol == Eol::None)
                last->eol = Eol::CrLf;
            index.emplace(fold(section), static_cast<uint32_t>(sections.size()));
            Section& sec = sections.emplace_back();
            sec.hasHeader = true;
            sec.header.text = "[" + section + "]";
            sec.lines.push_back(Line{key + "=" + value, Eol::CrLf});
            sec.keys.emplace(fold(key), 0);
        } else {
            Section& sec = sections[s->second];
            auto k = sec.keys.find(fold(key));
            if (k != sec.keys.end()) {
                // The part up to '=' stays, so the key keeps its letters.
                Line& line = sec.lines[k->second];
                std::string text = line.text.substr(0, line.text.find('=') + 1) + value;
                changed = text != line.text || line.eol != Eol::CrLf;
                line.text = std::move(text);
                line.eol = Eol::CrLf;
            } else {
                // Blank lines at the end of a section keep separating it from the next one.
                std::size_t at = sec.lines.size();
                while (at > 0 && isBlankLine(sec.lines[at - 1].text))
                    --at;
                Line& before = at > 0 ? sec.lines[at - 1] : sec.header;
                if (before.eol == Eol::None)
                    before.eol = Eol::CrLf;
                sec.lines.insert(sec.lines.begin() + static_cast<std::ptrdiff_t>(at),
                                 Line{key + "=" + value, Eol::CrLf});
                sec.keys.emplace(fold(key), static_cast<uint32_t>(at));
            }
        }
        if (!readsBackAsWritten(section, key, value))
            parse(serialize());
        return changed;
    }

    // Whether the lines just written parse back as that section and key, so the index holds.
    static bool readsBackAsWritten(const std::string& section, const std::string& key,
                                   const std::string& value) {
        for (const std::string* text : {&section, &key, &value})
            if (text->find_first_of("\r\n") != std::string::npos)
                return false;
        // "[a=b]" is read as a header, so the whole line counts, not the key alone.
        std::string_view name;
        if (section.find(']') != std::string::npos || trim(section) != section ||
            key.find('=') != std::string::npos || trim(key) != key ||
            headerName(key + "=" + value, name))
            return false;
        return true;
    }
};

namespace {

struct Fd {
    int fd = -1;
    ~Fd() {
        if (fd >= 0)
            ::close(fd);
    }
};

// Reads a plain file whole; false with errno set when it cannot be read.
bool readFile(const std::string& path, std::string& bytes, Stamp& stamp) {
    Fd in;
    in.fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (in.fd < 0)
        return false;
    struct stat st {};
    if (::fstat(in.fd, &st) != 0)
        return false;
    if (!S_ISREG(st.st_mode)) {
        errno = EISDIR;
        return false;
    }
    // Room for one byte more than the size said, so a file that grew is read to its end too.
    bytes.resize(static_cast<std::size_t>(st.st_size) + 1);
    std::size_t got = 0;
    for (;;) {
        if (got == bytes.size())
            bytes.resize(bytes.size() * 2);
        ssize_t n = ::read(in.fd, bytes.data() + got, bytes.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    bytes.resize(got);
    stamp = stampOf(st);
    return true;
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

std::string tempPrefix(const std::string& base) {
    return "." + base + ".tmp-";
}

// Removes temporary files of this kind that a process no longer running left behind.
void removeLeftovers(const std::string& folder, const std::string& base) {
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return;
    std::string prefix = tempPrefix(base);
    while (dirent* entry = ::readdir(dir)) {
        std::string_view name = entry->d_name;
        if (!name.starts_with(prefix) || name.size() == prefix.size() ||
            name.size() > prefix.size() + 9)
            continue;
        std::string_view digits = name.substr(prefix.size());
        if (digits.find_first_not_of("0123456789") != std::string_view::npos)
            continue;
        pid_t pid = static_cast<pid_t>(std::stol(std::string(digits)));
        if (pid == ::getpid() || (::kill(pid, 0) != 0 && errno == ESRCH))
            ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

bool writeAll(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<std::size_t>(n);
    }
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
    std::string base = baseOf(target);
    removeLeftovers(folder, base);

    std::string temp = folder + "/" + tempPrefix(base) + std::to_string(::getpid());
    ::unlink(temp.c_str());
    Fd out;
    out.fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                    had ? 0600 : 0644);
    if (out.fd < 0)
        return false;
    bool ok = true;
    if (had) {
        if ((old.st_uid != ::geteuid() || old.st_gid != ::getegid()) &&
            ::fchown(out.fd, old.st_uid, old.st_gid) != 0) {
            // Only root may give the file back to its owner; otherwise it becomes ours.
        }
        ok = ::fchmod(out.fd, old.st_mode & 0775) == 0;
    }
    std::string bytes = image.serialize();
    ok = ok && writeAll(out.fd, bytes) && ::fsync(out.fd) == 0;
    int fd = out.fd;
    out.fd = -1;
    ok = ::close(fd) == 0 && ok;
    ok = ok && ::rename(temp.c_str(), target.c_str()) == 0;
    if (!ok) {
        int err = errno;
        ::unlink(temp.c_str());
        errno = err;
        return false;
    }
    int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
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

std::string cut(std::string bytes, std::size_t size) {
    if (bytes.size() > size - 1)
        bytes.resize(size - 1);
    return utf8FromCp1252(bytes);
}

std::string valueOf(const Line& line) {
    std::string_view v = line.text;
    v = v.substr(v.find('=') + 1);
    v = v.substr(0, v.find('\0'));
    v = trim(v);
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        v = v.substr(1, v.size() - 2);
    return std::string(v);
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

PosixProfileStore::PosixProfileStore() = default;
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
        auto drive = DriveTable::machine().find(file[0]);
        if (drive && drive->root == known->second.root &&
            ::stat(target.native.c_str(), &target.st) == 0)
            return target;
    }
    target.native = nativeFormOf(file);
    if (resolved_.size() >= 64)
        resolved_.clear();
    if (auto drive = DriveTable::machine().find(file[0]))
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
        if (image.exists || image.sections.empty()) {
            image = Image{};
            image.parse("");
        }
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
        image.parse(bytes);
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
            if (const Line* line = image->find(cp1252FromUtf8(section), cp1252FromUtf8(key)))
                return cut(valueOf(*line), size);
        }
    } catch (...) {
        // A file that cannot be read counts as a file without the key.
    }
    try {
        // The home platform drops trailing blanks of the fallback too.
        std::string bytes = cp1252FromUtf8(fallback);
        while (!bytes.empty() && bytes.back() == ' ')
            bytes.pop_back();
        return cut(std::move(bytes), size);
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
        bool changed =
            image->store(cp1252FromUtf8(section), cp1252FromUtf8(key), cp1252FromUtf8(value));
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

} // namespace nv
