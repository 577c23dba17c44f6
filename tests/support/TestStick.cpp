#include "support/TestStick.h"

#include <algorithm>
#include <fstream>

#ifndef _WIN32
#include "platform/Platform.h"
#include "platform/posix/DriveTable.h"
#endif

namespace fs = std::filesystem;

namespace nvtest {

TestStick::TestStick(const TempFolder& temp, const std::string& folder)
    : root_(temp.native(folder)) {
    fs::create_directories(root_);
#ifdef _WIN32
    drive_ = temp.drive(folder);
#else
    nv::DriveTable& table = nv::driveTableOf(nv::nativePlatform());
    if (auto earlier = table.find('E'); earlier && !earlier->mounted)
        earlierE_ = earlier->root;
    table.setFolder('E', root_.string());
    drive_ = "E:";
#endif
}

TestStick::~TestStick() {
#ifndef _WIN32
    nv::DriveTable& table = nv::driveTableOf(nv::nativePlatform());
    table.remove('E');
    if (earlierE_)
        table.setFolder('E', *earlierE_);
#endif
}

fs::path TestStick::native(const std::string& relative) const {
    return root_ / fromUtf8(relative);
}

std::string TestStick::backupFolder(const std::string& name,
                                    const std::vector<std::string>& files) const {
    fs::create_directories(native(name));
    for (const std::string& file : files) {
        const fs::path path = native(name + "/" + file);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << name + "/" + file;
    }
    std::string folder = drive_ + "\\" + name;
    std::replace(folder.begin(), folder.end(), '/', '\\');
    return folder;
}

} // namespace nvtest
