#include "platform/posix/PosixPathResolution.h"

#include "platform/FailureText.h"
#include "platform/posix/FolderIndex.h"
#include "platform/posix/PosixIo.h"

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

} // namespace

std::pair<std::string, std::string> splitLast(const std::string& drivePath) {
    std::size_t cut = drivePath.find_last_of("\\/");
    if (cut == std::string::npos)
        return {"", drivePath};
    return {drivePath.substr(0, cut), drivePath.substr(cut + 1)};
}

ResolvedPath resolvePath(DriveTable& drives, const std::string& drivePath, FolderIndex* index) {
    const Parsed parsed = parse(drives, drivePath);
    const std::size_t n = parsed.parts.size();
    const Joined literal(parsed);
    ResolvedPath out;
    out.rootLength = literal.ends[0];
    struct stat st {};
    if (n > 0) {
        // Mostly the path is there in its own letters: one look then, and no other.
        out.path = literal.prefix(n);
        if (::lstat(out.path.c_str(), &st) == 0)
            return out;
    }

    // Back to the deepest part that is there in its own letters; past it the parts are looked
    // for in other letters. When none is, the drive's own folder must be there.
    std::size_t k = n == 0 ? 0 : n - 1;
    std::string path;
    for (; k > 0; --k) {
        path = literal.prefix(k);
        // A link counts as there; what lies below it is not looked for.
        if (::lstat(path.c_str(), &st) == 0)
            break;
    }
    if (k == 0) {
        path = literal.prefix(0);
        if (::stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            throw fileFailure(kFailDeviceUnavailable);
    }

    // While the folder walked so far exists and is no link, look up letters on disk.
    bool onDisk = k == 0 || S_ISDIR(st.st_mode);
    for (std::size_t i = k; i < n; ++i) {
        const std::string& part = parsed.parts[i];
        std::string exact = joinNative(path, part);
        if (onDisk) {
            struct stat probe {};
            if (i > k && ::lstat(exact.c_str(), &probe) == 0) {
                path = std::move(exact);
                st = probe;
                onDisk = S_ISDIR(probe.st_mode);
                continue;
            }
            std::string other;
            if (index) {
                other = index->entryIgnoringCase(path, st, part);
            } else {
                other = listedEntryIgnoringCase(path, part);
            }
            if (!other.empty()) {
                path = joinNative(path, other);
                // Only a folder is looked into; a link found in other letters is not.
                onDisk = i + 1 < n && ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
                continue;
            }
            onDisk = false;
        }
        path = std::move(exact);
    }
    out.path = path;
    return out;
}

std::string nativePath(DriveTable& drives, const std::string& drivePath) {
    return resolvePath(drives, drivePath, nullptr).path;
}

} // namespace nv
