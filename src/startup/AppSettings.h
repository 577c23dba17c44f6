#pragma once

#include "platform/Clock.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nv {

// The settings and start-up results, one record for the whole run.
struct AppSettingsRecord {
    std::string dirfrom;
    std::string strIniFile;
    std::string DriveTarget;
    int16_t AantalFiles = 0;
    std::vector<std::string> strFiles{""}; // element 0 stays empty; rows 1..AantalFiles
    std::optional<Date> LastBackup;        // nothing when the file holds no date
    uint8_t Directory = 0;
    std::string strAppDir;
    bool blnRestoreOnly = false;
    std::array<std::string, 11> strKnownFiles;
};

extern AppSettingsRecord AppSettings;

// What the running program knows of itself besides its folder.
struct AppRecord {
    std::string HelpFile;
    std::string Title = "Norvale Backup";
    int Major = NV_VERSION_MAJOR;
    int Minor = NV_VERSION_MINOR;
    int Revision = NV_VERSION_REVISION;
};

extern AppRecord App;

// The word followed by Major.Minor.Revision, as in "Versie 1.7.1".
std::string fVersionText(const std::string& word);

// App.Path: the folder of the running program, read afresh from the platform.
std::string AppPath();

} // namespace nv
