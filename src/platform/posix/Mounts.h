#pragma once

#include <map>
#include <string>
#include <vector>

namespace nv {

// One line of /proc/self/mountinfo.
struct Mount {
    std::string device; // "major:minor" of the file system
    std::string root;   // the folder of the file system that is mounted there, "/" for all of it
    std::string point;
    std::string type;
    std::string source;
};

std::vector<Mount> parseMountinfo(const std::string& text);

// The mounts a file manager shows as drives: under /media and /run/media, and under /mnt those
// of a block device; never a pseudo file system, nor a second (bind) mount of one already
// mounted, nor part of a file system. In mount point order.
std::vector<Mount> driveMounts(const std::vector<Mount>& all);

// The mount that holds a native path: the latest at the longest point that leads to it.
const Mount* mountHolding(const std::vector<Mount>& all, const std::string& path);

// Below the folders a desktop mounts removable media in: /media and /run/media.
bool underMedia(const std::string& path);
// Below those or below /mnt.
bool underRemovableParent(const std::string& path);

// Whether a native path is root or lies below it ("/a/b" is below "/a", "/ab" is not).
bool atOrBelow(const std::string& path, const std::string& root);

// The mount table's way of writing blanks, line ends and backslashes: \ooo.
std::string unescapeOctal(const std::string& s);
std::string escapeOctal(const std::string& s);

// The names the system's device manager publishes for volumes: the links in by-uuid and
// by-label below devDisk ("/dev/disk"), keyed by the device they lead to. Missing folders, or
// devDisk "", simply give no names.
class VolumeNames {
public:
    explicit VolumeNames(const std::string& devDisk);
    std::string uuidOf(const Mount& mount) const;
    std::string labelOf(const Mount& mount) const;
    // What identifies the volume across plugs: "uuid:…", else "label:…", else "point:…".
    std::string keyOf(const Mount& mount) const;

private:
    std::map<std::string, std::string> uuids_;  // device's real path → uuid
    std::map<std::string, std::string> labels_; // device's real path → label
};

} // namespace nv
