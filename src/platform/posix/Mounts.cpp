#include "platform/posix/Mounts.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <set>
#include <sstream>
#include <sys/stat.h>

namespace nv {

namespace {

std::string realPath(const std::string& path) {
    char buffer[PATH_MAX];
    if (::realpath(path.c_str(), buffer) == nullptr)
        return path;
    return buffer;
}

// Names in /dev/disk/by-label escape bytes as \xHH.
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

std::map<std::string, std::string> linksByDevice(const std::string& folder) {
    std::map<std::string, std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return names;
    while (dirent* entry = ::readdir(dir)) {
        std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        names.emplace(realPath(folder + "/" + name), unescapeHex(name));
    }
    ::closedir(dir);
    return names;
}

bool isBlockDevice(const Mount& m) {
    // Anonymous devices (tmpfs, overlay, FUSE, proc...) have major 0; a FUSE driver of a real
    // disk still names its block device as the source.
    if (!m.device.starts_with("0:") && !m.device.empty())
        return true;
    struct stat st {};
    return m.source.starts_with("/dev/") && ::stat(m.source.c_str(), &st) == 0 &&
           S_ISBLK(st.st_mode);
}

bool strictlyBelow(const std::string& path, const std::string& parent) {
    return path.size() > parent.size() && path.compare(0, parent.size(), parent) == 0;
}

} // namespace

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

std::string escapeOctal(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\\') {
            char code[5];
            std::snprintf(code, sizeof code, "\\%03o", static_cast<unsigned char>(c));
            out += code;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

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
        if (f.size() < 5 || dash == f.end() || dash - f.begin() < 5 || dash + 2 >= f.end())
            continue;
        mounts.push_back({f[2], unescapeOctal(f[3]), unescapeOctal(f[4]), *(dash + 1),
                          unescapeOctal(*(dash + 2))});
    }
    return mounts;
}

bool underMedia(const std::string& path) {
    return strictlyBelow(path, "/media/") || strictlyBelow(path, "/run/media/");
}

bool underRemovableParent(const std::string& path) {
    return underMedia(path) || strictlyBelow(path, "/mnt/");
}

bool atOrBelow(const std::string& path, const std::string& root) {
    if (root == "/")
        return path.starts_with('/');
    return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

std::vector<Mount> driveMounts(const std::vector<Mount>& all) {
    std::vector<Mount> drives;
    std::set<std::string> devicesSeen;
    for (const Mount& m : all) {
        // The first mount of a file system is its own; a later one is a bind or a sandbox's view.
        bool first = devicesSeen.insert(m.device).second;
        if (!first || m.root != "/" || !underRemovableParent(m.point) || !isBlockDevice(m))
            continue;
        drives.push_back(m);
    }
    std::sort(drives.begin(), drives.end(),
              [](const Mount& a, const Mount& b) { return a.point < b.point; });
    return drives;
}

const Mount* mountHolding(const std::vector<Mount>& all, const std::string& path) {
    const Mount* best = nullptr;
    for (const Mount& m : all) {
        if (atOrBelow(path, m.point) && (!best || m.point.size() >= best->point.size()))
            best = &m;
    }
    return best;
}

VolumeNames::VolumeNames(const std::string& devDisk) {
    if (devDisk.empty())
        return;
    uuids_ = linksByDevice(devDisk + "/by-uuid");
    labels_ = linksByDevice(devDisk + "/by-label");
}

std::string VolumeNames::uuidOf(const Mount& mount) const {
    auto it = mount.source.starts_with("/") ? uuids_.find(realPath(mount.source)) : uuids_.end();
    return it == uuids_.end() ? "" : it->second;
}

std::string VolumeNames::labelOf(const Mount& mount) const {
    auto it = mount.source.starts_with("/") ? labels_.find(realPath(mount.source)) : labels_.end();
    return it == labels_.end() ? "" : it->second;
}

std::string VolumeNames::keyOf(const Mount& mount) const {
    if (std::string uuid = uuidOf(mount); !uuid.empty())
        return "uuid:" + uuid;
    if (std::string label = labelOf(mount); !label.empty())
        return "label:" + label;
    return "point:" + mount.point;
}

} // namespace nv
