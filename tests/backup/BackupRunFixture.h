#pragma once

#include "backup/BackupRun.h"
#include "platform/DateText.h"
#include "startup/AppSettings.h"
#include "support/BackupFakes.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#ifndef _WIN32
#include "platform/posix/DriveTable.h"
#endif

namespace nvtest {

using Log = std::vector<std::string>;

inline const std::string kToday = "Backup2026-11-17";
inline const std::string kWriteTitle = "Fout bij schrijven naar backup schijf";
inline const std::string kFullText =
    "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf";
inline const std::string kProtectedText =
    "De backup schijf kan niet worden geopend, het kan zijn dat deze op 'write protection' staat, "
    "dit is vaak een schakelaartje. Pas dit aan of gebruik een ander backup medium";

inline std::filesystem::path fromUtf8(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

// A backup run onto the drive over stick/, with the settings file in prog/; the last backup was
// on 01-11-2026, and today is 17-11-2026.
class BackupRunFixture : public ::testing::Test {
protected:
    // On Linux the stick is drive E:. Windows (and Wine) cannot give a letter to a folder for this
    // process alone, so there the folder's own path stands for the drive.
    BackupRunFixture() : boxes(windows.log) {
#ifdef _WIN32
        target = machine.temp.drive("stick");
#else
        savedE_ = nv::DriveTable::machine().find('E');
        nv::DriveTable::machine().setFolder('E', machine.temp.native("stick").string());
#endif
        machine.platform.boxes = &boxes;
        machine.platform.files = &files;
        nv::platform() = machine.platform;
        std::filesystem::create_directories(onStick());
        machine.temp.write("prog/NVbackuptool.ini", kSettingsBefore);
        nv::AppSettings.strIniFile = machine.temp.drive("prog\\NVbackuptool.ini");
        nv::AppSettings.DriveTarget = target;
        nv::AppSettings.LastBackup = kLastBackup;
    }
    ~BackupRunFixture() override {
#ifndef _WIN32
        nv::DriveTable::machine().remove('E');
        if (savedE_ && !savedE_->mounted)
            nv::DriveTable::machine().setFolder('E', savedE_->root);
#endif
    }

    // A file below bron/, written through the platform so that its name may hold any letter.
    std::string source(const std::string& relative, const std::string& bytes) {
        std::filesystem::create_directories(machine.temp.native("bron/" + relative).parent_path());
        std::string path = machine.temp.drive("bron\\" + relative);
        nv::platform().files->writeFile(path, bytes);
        return path;
    }
    void list(const Log& rows) {
        nv::AppSettings.strFiles = {""};
        nv::AppSettings.strFiles.insert(nv::AppSettings.strFiles.end(), rows.begin(), rows.end());
        nv::AppSettings.AantalFiles = static_cast<int16_t>(rows.size());
    }
    void run() {
        nv::Cmd_Backup_Click(windows, intLoop, strBackupFolder);
    }

    std::filesystem::path onStick(const std::string& relative = "") const {
        return machine.temp.native("stick") / fromUtf8(relative);
    }
    // Every entry of a folder on the stick, hidden ones too, sorted; folders end in '/'.
    Log entries(const std::string& relative = "") const {
        Log names;
        for (const auto& entry : std::filesystem::directory_iterator(onStick(relative))) {
            std::u8string name = entry.path().filename().u8string();
            names.push_back(std::string(name.begin(), name.end()) +
                            (entry.is_directory() ? "/" : ""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string folder(const std::string& name = kToday) const {
        return target + "\\" + name;
    }
    std::string settingsFile() const {
        return machine.temp.read("prog/NVbackuptool.ini");
    }
    // A run that failed leaves the date of the last backup alone, in memory and on disk.
    void expectNotMade() const {
        EXPECT_EQ(settingsFile(), kSettingsBefore);
        EXPECT_EQ(nv::AppSettings.LastBackup, kLastBackup);
        EXPECT_FALSE(windows.copyWindowOpen);
    }

    const std::string kSettingsBefore = crlf("[Basic settings]\nLastBackup=01-11-2026\n");
    const nv::Date kLastBackup = nv::dateFromCivil({2026, 11, 1});

    TestMachine machine;
    FakeBackupWindows windows;
    LoggingBoxes boxes;
    FaultyFiles files;
    std::string target = "E:"; // what DriveTarget holds
#ifndef _WIN32
    std::optional<nv::DriveInfo> savedE_;
#endif
    int16_t intLoop = 0;
    std::string strBackupFolder;
};

} // namespace nvtest
