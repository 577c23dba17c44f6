#include "platform/posix/PosixPathResolution.h"

#include "platform/FailureText.h"
#include "platform/posix/FolderIndex.h"

#include <cctype>
#include <sys/stat.h>
#include <vector>

namespace nv {

namespace {

struct Parsed {
    std::string root; // "" for the root of the machine
    std::vector<std::string> parts;
};

Parsed parse(DriveTable& drives, const std::string& drivePath) {
    // The system would read the path only up to a NUL: "C:\a\0b" would mean C:\a, and a ".."
    // before it would lead out of the drive.
    if (drivePath.find('\0') != std::string::npos || drivePath.size() < 2 || drivePath[1] != ':' ||
        !std::isalpha(static_cast<unsigned char>(drivePath[0])) ||
        (drivePath.size() > 2 && drivePath[2] != '\\' && drivePath[2] != '/'))
        throw fileFailure(kFailBadFileName);
    auto drive = drives.find(drivePath[0]);
    if (!drive)
        throw fileFailure(kFailDeviceUnavailable);

    Parsed parsed;
    parsed.root = drive->root == "/" ? "" : drive->root;
    std::size_t start = 2;
    while (start < drivePath.size()) {
        std::size_t end = drivePath.find_first_of("\\/", start);
        if (end == std::string::npos)
            end = drivePath.size();
        std::string part = drivePath.substr(start, end - start);
        if (part == "..") {
            if (!parsed.parts.empty())
                parsed.parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parsed.parts.push_back(std::move(part));
        }
        start = end + 1;
    }
    return parsed;
}

// The root and all parts in their own letters; ends[i] is where the first i parts end in it.
struct Joined {
    std::string path;
    std::vector<std::size_t> ends;

    explicit Joined(const Parsed& parsed) : path(parsed.root) {
        ends.reserve(parsed.parts.size() + 1);
        ends.push_back(path.size());
        for (const std::string& part : parsed.parts) {
            path += '/';
            path += part;
            ends.push_back(path.size());
        }
    }
    // The root and the first count parts.
    std::string prefix(std::size_t count) const {
        return ends[count] == 0 ? std::string("/") : path.substr(0, ends[count]);
    }
};

std::string child(const std::string& folder, const std::string& name) {
    return (folder == "/" ? "" : folder) + "/" + name;
}

} // namespace

std::pair<std::string, std::string> splitLast(const std::string& drivePath) {
    std::size_t cut = drivePath.find_last_of("\\/");
    if (cut == std::string::npos)
        return {"", drivePath};
    return {drivePath.substr(0, cut), drivePath.substr(cut + 1)};
}

std::string literalNativePath(DriveTable& drives, const std::string& drivePath) {
    const Parsed parsed = parse(drives, drivePath);
    return Joined(parsed).prefix(parsed.parts.size());
}

ResolvedPath resolvePath(DriveTable& drives, const std::string& drivePath, FolderIndex* index) {
    const Parsed parsed = parse(drives, drivePath);
    const std::size_t n = parsed.parts.size();
    const Joined literal(parsed);
    ResolvedPath out;
    struct stat st {};
    if (n > 0) {
        // Mostly the path is there in its own letters: one look then, and no other.
        out.path = literal.prefix(n);
        if (::lstat(out.path.c_str(), &st) == 0) {
            out.exists = true;
            return out;
        }
    }

    // Back to the deepest part that is there in its own letters; past it the parts are looked
    // for in other letters. When none is, the drive's own folder must be there.
    std::size_t k = n == 0 ? 0 : n - 1;
    std::string path;
    for (; k > 0; --k) {
        path = literal.prefix(k);
        // A link counts as there even when it leads nowhere; one that leads somewhere is followed.
        if (::lstat(path.c_str(), &st) == 0) {
            if (S_ISLNK(st.st_mode))
                ::stat(path.c_str(), &st);
            break;
        }
    }
    if (k == 0) {
        path = literal.prefix(0);
        if (::stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            throw fileFailure(kFailDeviceUnavailable);
    }

    bool onDisk = true; // while the folder walked so far exists, look up letters on disk
    bool haveStat = true;
    bool there = n == 0;
    for (std::size_t i = k; i < n; ++i) {
        const std::string& part = parsed.parts[i];
        std::string exact = child(path, part);
        there = false;
        if (onDisk) {
            struct stat probe {};
            if (i > k && ::lstat(exact.c_str(), &probe) == 0) {
                path = std::move(exact);
                st = probe;
                haveStat = S_ISDIR(probe.st_mode); // else a link, to be followed when asked
                there = true;
                continue;
            }
            std::string other;
            if (index) {
                if (!haveStat && ::stat(path.c_str(), &st) != 0)
                    st = {};
                haveStat = true;
                other = index->entryIgnoringCase(path, st, part);
                if (i + 1 == n && S_ISDIR(st.st_mode)) {
                    out.folderSeen = true;
                    out.folder = st;
                }
            } else {
                other = listedEntryIgnoringCase(path, part);
            }
            if (!other.empty()) {
                path = child(path, other);
                haveStat = false;
                there = true;
                continue;
            }
            onDisk = false;
        }
        path = std::move(exact);
    }
    out.path = path;
    out.exists = there;
    return out;
}

std::string nativePath(DriveTable& drives, const std::string& drivePath) {
    return resolvePath(drives, drivePath, nullptr).path;
}

} // namespace nv
