#include "platform/posix/FileSystemType.h"

#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

namespace nv {

namespace {

constexpr long kMsdosMagic = 0x4d44;
constexpr long kExfatMagic = 0x2011BAB0;
constexpr long kFuseMagic = 0x65735546;

// The type mountinfo gives the mount of a device ("8:17"); "" when none is listed.
std::string typeOfDevice(const std::string& device, const std::string& mountinfoPath) {
    std::ifstream in(mountinfoPath);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string id, parent, number, word;
        if (!(fields >> id >> parent >> number) || number != device)
            continue;
        while (fields >> word && word != "-") {
        }
        std::string type;
        if (fields >> type)
            return type;
    }
    return "";
}

} // namespace

NameRules nameRulesOfType(const std::string& type) {
    for (const char* fat : {"vfat", "msdos", "exfat", "fuseblk", "fuse.exfat", "fuse.exfat-fuse"})
        if (type == fat)
            return NameRules::Fat;
    return NameRules::Native;
}

std::string fileSystemTypeOf(const std::string& native, const std::string& mountinfoPath) {
    struct statfs fs {};
    struct stat st {};
    if (::statfs(native.c_str(), &fs) != 0 || ::stat(native.c_str(), &st) != 0)
        return "";
    const long magic = static_cast<long>(fs.f_type);
    if (magic == kMsdosMagic)
        return "vfat";
    if (magic == kExfatMagic)
        return "exfat";
    if (magic != kFuseMagic)
        return "";
    return typeOfDevice(std::to_string(major(st.st_dev)) + ":" + std::to_string(minor(st.st_dev)),
                        mountinfoPath);
}

} // namespace nv
