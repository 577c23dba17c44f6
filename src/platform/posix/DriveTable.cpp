#include "platform/posix/DriveTable.h"

#include "platform/Platform.h"
#include "platform/posix/Mounts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nv {

namespace {

bool isFolder(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

} // namespace

std::vector<std::pair<char, std::string>> parseDrivesVariable(const std::string& text) {
    std::vector<std::pair<char, std::string>> entries;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(';', start);
        if (end == std::string::npos)
            end = text.size();
        std::string entry = text.substr(start, end - start);
        // "E=/srv/stick" or "E:=/srv/stick"
        std::size_t eq = entry.find('=');
        if (eq != std::string::npos && eq >= 1 && eq <= 2 && eq + 1 < entry.size() &&
            std::isalpha(static_cast<unsigned char>(entry[0])) && (eq == 1 || entry[1] == ':') &&
            entry[eq + 1] == '/') {
            entries.emplace_back(static_cast<char>(std::toupper(entry[0])), entry.substr(eq + 1));
        }
        start = end + 1;
    }
    return entries;
}

DriveTable::DriveTable(Options options)
    : options_(std::move(options)), letters_(options_.lettersPath) {
    fixed_['C'] = DriveInfo{'C', "/", "", false};
    if (!options_.home.empty() && options_.home != "/")
        fixed_['H'] = DriveInfo{'H', options_.home, "", false};
    for (auto& [letter, root] : parseDrivesVariable(options_.drivesVariable)) {
        std::string folder =
            root.size() > 1 && root.back() == '/' ? root.substr(0, root.size() - 1) : root;
        fixed_[letter] = DriveInfo{letter, folder, "", false};
        anchors_[letter] = Anchor{};
    }
    if (!readMounts())
        rebuild();
}

DriveTable::Options DriveTable::fromEnvironment() {
    Options o;
    if (const char* home = std::getenv("HOME"))
        o.home = home;
    if (const char* drives = std::getenv("NVBACKUP_DRIVES"))
        o.drivesVariable = drives;
    o.lettersPath = DriveLetterMemory::pathFromEnvironment();
    return o;
}

DriveTable::Options DriveTable::foldersOnly() {
    Options o;
    o.mountinfoPath = "";
    o.scanMounts = false;
    return o;
}

DriveTable& driveTableOf(const Platform& platform) {
    return dynamic_cast<DriveTable&>(*platform.drives);
}

void DriveTable::refreshMounts() {
    readMounts();
}

bool DriveTable::readMounts() {
    if (options_.mountinfoPath.empty())
        return false;
    // The kernel flags the mount table of a process when it changes, so a check costs one poll.
    if (mountFd_.fd < 0 && !mountFdTried_) {
        mountFdTried_ = true;
        if (options_.mountinfoPath.rfind("/proc/", 0) == 0)
            mountFd_.fd = ::open(options_.mountinfoPath.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (mountFd_.fd >= 0 && haveReadMounts_) {
        pollfd pfd{mountFd_.fd, POLLPRI, 0};
        if (::poll(&pfd, 1, 0) <= 0 || !(pfd.revents & (POLLPRI | POLLERR)))
            return false;
    }
    std::string text;
    // A table that cannot be read gives what was read of it.
    if (mountFd_.fd >= 0) {
        ::lseek(mountFd_.fd, 0, SEEK_SET);
        readAll(mountFd_.fd, text);
    } else if (Fd in(::open(options_.mountinfoPath.c_str(), O_RDONLY | O_CLOEXEC)); in.fd >= 0) {
        readAll(in.fd, text);
    }
    haveReadMounts_ = true;
    // When the kernel says the table changed, it did, even if it reads the same: one loop device
    // or /dev/sdb1 may have come back with another stick behind it.
    if (text == lastMountinfo_ && mountFd_.fd < 0)
        return false;
    lastMountinfo_ = text;
    rebuild();
    return true;
}

DriveTable::~DriveTable() = default;

void DriveTable::rebuild() {
    drives_ = fixed_;
    notThere_.clear();
    const std::vector<Mount> mounts = parseMountinfo(lastMountinfo_);
    const VolumeNames names(mounts.empty() ? "" : options_.devDisk);

    for (auto& [letter, anchor] : anchors_) {
        DriveInfo& drive = drives_[letter];
        const Mount* holder = mountHolding(mounts, drive.root);
        if (!anchor.looked && haveReadMounts_) {
            anchor.looked = true;
            anchor.needed = underMedia(drive.root) ||
                            (holder && holder->point == drive.root && holder->point != "/");
        }
        if (!anchor.needed)
            continue;
        drive.mounted = true;
        bool there =
            holder && holder->point != "/" &&
            (anchor.point.empty() ? holder->point == drive.root || underMedia(holder->point)
                                  : holder->point == anchor.point);
        if (there) {
            std::string key = names.keyOf(*holder);
            if (anchor.key.empty()) {
                anchor.point = holder->point;
                anchor.key = key;
            }
            there = key == anchor.key;
        }
        if (there)
            drive.label = names.labelOf(*holder);
        else
            notThere_.insert(letter);
    }

    if (!options_.scanMounts)
        return;
    const std::vector<Mount> found = driveMounts(mounts);
    std::vector<std::string> keys;
    for (const Mount& m : found)
        keys.push_back(names.keyOf(m));
    std::set<char> blocked;
    for (const auto& [letter, drive] : fixed_)
        blocked.insert(letter);
    const std::vector<char> given = letters_.assign(keys, blocked, ::time(nullptr));
    for (std::size_t i = 0; i < found.size(); ++i)
        if (given[i])
            drives_[given[i]] = DriveInfo{given[i], found[i].point, names.labelOf(found[i]), true};
}

std::vector<DriveInfo> DriveTable::list() {
    refreshMounts();
    std::vector<DriveInfo> out;
    for (auto& [letter, info] : drives_)
        out.push_back(info);
    return out;
}

std::optional<DriveInfo> DriveTable::find(char letter) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    auto it = drives_.find(letter);
    if (it == drives_.end() || it->second.mounted) {
        // Mounts come and go; look again before saying a letter is not there.
        refreshMounts();
        it = drives_.find(letter);
    }
    if (it == drives_.end() || notThere_.count(letter))
        return std::nullopt;
    return it->second;
}

bool DriveTable::ready(char letter) {
    auto drive = find(letter);
    return drive && isFolder(drive->root);
}

void DriveTable::setFolder(char letter, const std::string& root) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    fixed_[letter] = DriveInfo{letter, root, "", false};
    anchors_[letter] = Anchor{};
    if (!readMounts())
        rebuild();
}

void DriveTable::remove(char letter) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    fixed_.erase(letter);
    anchors_.erase(letter);
    rebuild();
}

std::string DriveTable::toDriveForm(const std::string& nativePath) {
    // Of two letters on one folder, the one whose stick is in wins over one whose stick was pulled.
    const DriveInfo* best = nullptr;
    auto away = [this](const DriveInfo* d) { return notThere_.count(d->letter) > 0; };
    for (auto& [letter, info] : drives_) {
        if (!atOrBelow(nativePath, info.root))
            continue;
        if (!best || info.root.size() > best->root.size() ||
            (info.root.size() == best->root.size() && away(best) && !away(&info)))
            best = &info;
    }
    if (!best)
        return nativePath;
    std::string rest =
        best->root == "/" ? nativePath.substr(1) : nativePath.substr(best->root.size());
    while (!rest.empty() && rest[0] == '/')
        rest.erase(0, 1);
    while (!rest.empty() && rest.back() == '/')
        rest.pop_back();
    std::replace(rest.begin(), rest.end(), '/', '\\');
    return std::string(1, best->letter) + ":\\" + rest;
}

} // namespace nv
