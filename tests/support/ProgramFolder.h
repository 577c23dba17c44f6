#pragma once

#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/posix/DriveTable.h"
#endif

namespace nvtest {

// Settings as the program holds them after a start in the production folder `folder` (with an
// empty settings file there), backing up to `drive`, last backup today. A file without a drive
// in `files` lies in the production folder.
inline void useProgramFolder(TestMachine& machine, const std::string& drive,
                             const std::vector<std::string>& files,
                             const std::string& folder = "Norvale") {
    auto& s = nv::AppSettings;
    s.strAppDir = machine.temp.drive(folder) + "\\";
    s.strIniFile = s.strAppDir + "NVbackuptool.ini";
    machine.temp.write(folder + "/NVbackuptool.ini", "");
    s.DriveTarget = drive;
    s.LastBackup = machine.clock.date;
    s.strFiles = {""};
    for (const std::string& file : files)
        s.strFiles.push_back(file.find(':') == std::string::npos ? s.strAppDir + file : file);
    s.AantalFiles = static_cast<int16_t>(files.size());
}

// A folder of the test machine standing as a drive letter for as long as this lives: an entry
// of the drive table on Linux, a substituted drive on Windows.
class FolderDrive {
public:
    FolderDrive(char letter, const std::filesystem::path& root) : letter_(letter) {
#ifdef _WIN32
        DefineDosDeviceA(0, device().c_str(), root.string().c_str());
#else
        nv::driveTableOf(nv::nativePlatform()).setFolder(letter, root.string());
#endif
    }
    ~FolderDrive() {
#ifdef _WIN32
        DefineDosDeviceA(DDD_REMOVE_DEFINITION, device().c_str(), nullptr);
#else
        nv::driveTableOf(nv::nativePlatform()).remove(letter_);
#endif
    }
    FolderDrive(const FolderDrive&) = delete;
    FolderDrive& operator=(const FolderDrive&) = delete;

private:
    std::string device() const { return std::string(1, letter_) + ":"; }
    char letter_;
};

} // namespace nvtest
