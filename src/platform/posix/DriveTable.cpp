#include "platform/posix/DriveTable.h"

#include "platform/Platform.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace nv {

namespace {

bool isFolder(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Mount points in mountinfo escape blanks and a few other bytes as \ooo.
std::string unescapeOctal(const std::string& s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() + 1 &&
            std::isdigit(static_cast<unsigned char>(s[i + 1]))) {
            out.push_back(static_cast<char>(std::strtol(s.substr(i + 1, 3).c_str(), nullptr, 8)));
            i += 3;
        } else {
            out.push_back(s[i]);
        }
    }
    return out;
}

// Labels in /dev/disk/by-label escape bytes as \xHH.
std::string unescapeHex(const std::string& s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() + 1 && s[i + 1] == 'x') {
            out.push_back(static_cast<char>(std::strtol(s.substr(i + 2, 2).c_str(), nullptr, 16)));
            i += 3;
        } else {
            out.push_back(s[i]);
        }
    }
    return out;
}

bool underRemovableParent(const std::string& mountPoint) {
    for (const char* parent : {"/media/", "/run/media/", "/mnt/"}) {
        std::string p = parent;
        if (mountPoint.size() > p.size() && mountPoint.compare(0, p.size(), p) == 0)
            return true;
    }
    return false;
}

std::string realPath(const std::string& path) {
    char buffer[PATH_MAX];
    if (::realpath(path.c_str(), buffer) == nullptr)
        return path;
    return buffer;
}

std::string labelOfDevice(const std::string& device) {
    if (device.empty() || device[0] != '/')
        return "";
    std::string target = realPath(device);
    const std::string byLabel = "/dev/disk/by-label/";
    std::string result;
    if (DIR* dir = ::opendir(byLabel.c_str())) {
        while (dirent* entry = ::readdir(dir)) {
            std::string name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            if (realPath(byLabel + name) == target) {
                result = unescapeHex(name);
                break;
            }
        }
        ::closedir(dir);
    }
    return result;
}

struct Mount {
    std::string point;
    std::string source;
};

std::vector<Mount> parseMountinfo(const std::string& text) {
    std::vector<Mount> mounts;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::vector<std::string> f;
        std::string word;
        while (fields >> word)
            f.push_back(word);
        auto dash = std::find(f.begin(), f.end(), "-");
        if (f.size() < 5 || dash == f.end() || dash + 2 >= f.end())
            continue;
        mounts.push_back({unescapeOctal(f[4]), unescapeOctal(*(dash + 2))});
    }
    return mounts;
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

DriveTable::DriveTable(Options options) : options_(std::move(options)) {
    fixed_['C'] = DriveInfo{'C', "/", "", false};
    if (!options_.home.empty() && options_.home != "/")
        fixed_['H'] = DriveInfo{'H', options_.home, "", false};
    for (auto& [letter, root] : parseDrivesVariable(options_.drivesVariable)) {
        std::string folder =
            root.size() > 1 && root.back() == '/' ? root.substr(0, root.size() - 1) : root;
        fixed_[letter] = DriveInfo{letter, folder, "", false};
    }
    rebuild();
    refreshMounts();
}

DriveTable::Options DriveTable::fromEnvironment() {
    Options o;
    if (const char* home = std::getenv("HOME"))
        o.home = home;
    if (const char* drives = std::getenv("NVBACKUP_DRIVES"))
        o.drivesVariable = drives;
    return o;
}

DriveTable& driveTableOf(const Platform& platform) {
    return dynamic_cast<DriveTable&>(*platform.drives);
}

void DriveTable::refreshMounts() {
    if (!options_.scanMounts)
        return;
    // The kernel flags the mount table of a process when it changes, so a check costs one poll.
    if (mountFd_ < 0 && !mountFdTried_) {
        mountFdTried_ = true;
        if (options_.mountinfoPath.rfind("/proc/", 0) == 0)
            mountFd_ = ::open(options_.mountinfoPath.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (mountFd_ >= 0 && haveReadMounts_) {
        pollfd pfd{mountFd_, POLLPRI, 0};
        if (::poll(&pfd, 1, 0) <= 0 || !(pfd.revents & (POLLPRI | POLLERR)))
            return;
    }
    std::string text;
    if (mountFd_ >= 0) {
        char buffer[8192];
        ::lseek(mountFd_, 0, SEEK_SET);
        for (ssize_t n; (n = ::read(mountFd_, buffer, sizeof buffer)) > 0;)
            text.append(buffer, static_cast<std::size_t>(n));
    } else {
        std::ifstream in(options_.mountinfoPath, std::ios::binary);
        std::ostringstream buffer;
        buffer << in.rdbuf();
        text = buffer.str();
    }
    haveReadMounts_ = true;
    if (text == lastMountinfo_)
        return;
    lastMountinfo_ = text;
    rebuild();
}

DriveTable::~DriveTable() {
    if (mountFd_ >= 0)
        ::close(mountFd_);
}

void DriveTable::rebuild() {
    drives_ = fixed_;
    std::vector<Mount> mounts;
    for (Mount& m : parseMountinfo(lastMountinfo_))
        if (underRemovableParent(m.point))
            mounts.push_back(m);
    std::sort(mounts.begin(), mounts.end(),
              [](const Mount& a, const Mount& b) { return a.point < b.point; });
    for (const Mount& m : mounts) {
        auto known = mountLetters_.find(m.point);
        char letter = 0;
        if (known != mountLetters_.end() && !fixed_.count(known->second)) {
            letter = known->second;
        } else {
            for (char c = 'D'; c <= 'Z'; ++c) {
                bool taken = fixed_.count(c) || drives_.count(c) ||
                             std::any_of(mountLetters_.begin(), mountLetters_.end(),
                                         [c](const auto& kv) { return kv.second == c; });
                if (!taken) {
                    letter = c;
                    break;
                }
            }
            if (letter == 0)
                continue;
            mountLetters_[m.point] = letter;
        }
        if (drives_.count(letter))
            continue; // the same point mounted twice: the first stays
        drives_[letter] = DriveInfo{letter, m.point, labelOfDevice(m.source), true};
    }
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
    if (it == drives_.end())
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
    rebuild();
}

void DriveTable::remove(char letter) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    fixed_.erase(letter);
    rebuild();
}

std::string DriveTable::toDriveForm(const std::string& nativePath) {
    const DriveInfo* best = nullptr;
    for (auto& [letter, info] : drives_) {
        const std::string& root = info.root;
        bool matches =
            root == "/" ? !nativePath.empty() && nativePath[0] == '/'
                        : nativePath.compare(0, root.size(), root) == 0 &&
                              (nativePath.size() == root.size() || nativePath[root.size()] == '/');
        if (matches && (!best || root.size() > best->root.size()))
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
