#include "platform/posix/FileSystemType.h"

#include "platform/posix/Mounts.h"
#include "platform/posix/PosixIo.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

namespace nv {

namespace {

// The type mountinfo gives the mount of a device ("8:17"); "" when none is listed.
std::string typeOfDevice(const std::string& device, const std::string& mountinfoPath) {
    std::string text;
    if (Fd in(::open(mountinfoPath.c_str(), O_RDONLY | O_CLOEXEC)); in.fd >= 0)
        readAll(in.fd, text);
    for (const Mount& mount : parseMountinfo(text))
        if (mount.device == device)
            return mount.type;
    return "";
}

} // namespace

NameRules nameRulesOfType(const std::string& type) {
    // NTFS takes these names on Linux, but the home platform could not read such a backup back.
    for (const char* fat : {"vfat", "msdos", "exfat", "fuseblk", "ntfs", "ntfs3"})
        if (type == fat)
            return NameRules::Fat;
    // A FUSE driver is named after itself: fusefat, exfat-fuse, ntfs-3g and lowntfs-3g.
    if (type.rfind("fuse.", 0) == 0) {
        const std::string driver = type.substr(5);
        for (const char* part : {"fat", "ntfs"})
            if (driver.find(part) != std::string::npos)
                return NameRules::Fat;
    }
    return NameRules::Native;
}

std::string fileSystemTypeOf(const std::string& native, const std::string& mountinfoPath) {
    struct statfs fs {};
    struct stat st {};
    if (::statfs(native.c_str(), &fs) != 0 || ::stat(native.c_str(), &st) != 0)
        return "";
    const long magic = static_cast<long>(fs.f_type);
    if (magic == MSDOS_SUPER_MAGIC)
        return "vfat";
    if (magic == EXFAT_SUPER_MAGIC)
        return "exfat";
    // Any other, NTFS among them, is named by the mount table; so is a FUSE driver, whose magic
    // number tells only that it is FUSE.
    return typeOfDevice(std::to_string(major(st.st_dev)) + ":" + std::to_string(minor(st.st_dev)),
                        mountinfoPath);
}

} // namespace nv
