#pragma once

#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <string>
#include <vector>

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

// A folder of the test machine standing as a drive letter for as long as this lives (see
// setFolderDrive).
class FolderDrive {
public:
    FolderDrive(char letter, const std::filesystem::path& root) : letter_(letter) {
        setFolderDrive(letter, root);
    }
    ~FolderDrive() { setFolderDrive(letter_, {}); }
    FolderDrive(const FolderDrive&) = delete;
    FolderDrive& operator=(const FolderDrive&) = delete;

private:
    char letter_;
};

} // namespace nvtest
