#include "platform/posix/NativePath.h"

#include "platform/FailureText.h"
#include "platform/Wildcard.h"

#include <cctype>
#include <cerrno>
#include <dirent.h>
#include <sys/stat.h>
#include <vector>

namespace nv {

namespace {

bool exists(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0;
}

// The entry of folder whose name equals name without regard to case, or "".
std::string caseInsensitiveEntry(const std::string& folder, const std::string& name) {
    std::string found;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return found;
    std::string wanted = upperCase(name);
    while (dirent* entry = ::readdir(dir)) {
        if (upperCase(entry->d_name) == wanted) {
            found = entry->d_name;
            break;
        }
    }
    ::closedir(dir);
    return found;
}

} // namespace

FileFailure failureFromErrno(int err, const std::string&) {
    int32_t number;
    switch (err) {
    case ENOSPC:
    case EDQUOT:
        number = kFailTargetFull;
        break;
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
        number = kFailDeviceUnavailable;
        break;
    case EACCES:
    case EPERM:
    case EEXIST:
    case EBUSY:
    case ETXTBSY:
    case ENOTEMPTY:
    case EISDIR:
        number = kFailAccessRefused;
        break;
    case ENOENT:
    case ENOTDIR:
    case EROFS:
        number = kFailPathNotFound;
        break;
    case EIO:
        number = kFailDeviceIo;
        break;
    case ENAMETOOLONG:
    case EINVAL:
    case ELOOP:
        number = kFailBadFileName;
        break;
    default:
        number = kFailGeneral;
        break;
    }
    return fileFailure(number);
}

void throwErrno(int err, const std::string& drivePath) {
    throw failureFromErrno(err, drivePath);
}

std::pair<std::string, std::string> splitLast(const std::string& drivePath) {
    std::size_t cut = drivePath.find_last_of("\\/");
    if (cut == std::string::npos)
        return {"", drivePath};
    return {drivePath.substr(0, cut), drivePath.substr(cut + 1)};
}

std::string nativePath(DriveTable& drives, const std::string& drivePath) {
    if (drivePath.size() < 2 || drivePath[1] != ':' ||
        !std::isalpha(static_cast<unsigned char>(drivePath[0])) ||
        (drivePath.size() > 2 && drivePath[2] != '\\' && drivePath[2] != '/'))
        throw fileFailure(kFailBadFileName);
    auto drive = drives.find(drivePath[0]);
    struct stat st {};
    if (!drive || ::stat(drive->root.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        throw fileFailure(kFailDeviceUnavailable);

    std::vector<std::string> parts;
    std::size_t start = 2;
    while (start < drivePath.size()) {
        std::size_t end = drivePath.find_first_of("\\/", start);
        if (end == std::string::npos)
            end = drivePath.size();
        std::string part = drivePath.substr(start, end - start);
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        start = end + 1;
    }

    std::string path = drive->root == "/" ? "" : drive->root;
    bool onDisk = true; // while the folder walked so far exists, look up letters on disk
    for (const std::string& part : parts) {
        std::string exact = path + "/" + part;
        if (onDisk && !exists(exact)) {
            std::string other = caseInsensitiveEntry(path.empty() ? "/" : path, part);
            if (!other.empty()) {
                path += "/" + other;
                continue;
            }
            onDisk = false;
        }
        path = exact;
    }
    return path.empty() ? "/" : path;
}

} // namespace nv
