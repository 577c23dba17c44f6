#pragma once

#include "backup/BackupRun.h"
#include "platform/DateText.h"
#include "platform/FailureText.h"
#include "startup/AppSettings.h"
#include "support/FaultyMedium.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <filesystem>
#include <functional>
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

// Keeps, in one log and in order, what the user is shown of the run.
class FakeBackupWindows : public nv::BackupWindows {
public:
    void subShowCopyWindow() override {
        log.push_back("show");
        if (showFailure)
            throw *showFailure;
        copyWindowOpen = true;
    }
    void setProgressMax(int maximum) override { log.push_back("max " + std::to_string(maximum)); }
    void setProgressValue(int value) override { log.push_back("value " + std::to_string(value)); }
    void setCopyText(const std::string& text) override { log.push_back("text " + text); }
    void closeCopyWindow() override {
        log.push_back("close");
        copyWindowOpen = false;
    }
    void setStatusText(const std::string& text) override { log.push_back("status " + text); }
    void RefreshStatus() override {
        log.push_back("RefreshStatus");
        if (refreshFailure)
            throw *refreshFailure;
    }
    void refreshTargetDirectories() override { log.push_back("refreshTargetDirectories"); }
    void runCopy(const std::function<void()>& work) override {
        ++copies;
        if (beforeCopy)
            beforeCopy(copies);
        work();
    }
    void runCommit(const std::function<void()>& work) override { work(); }

    Log log;
    bool copyWindowOpen = false;
    int copies = 0;
    // Called with the number of the copy, from 1; what it throws is the copy's failure.
    std::function<void(int)> beforeCopy;
    std::optional<nv::FileFailure> showFailure, refreshFailure;
};

// Boxes answered from the script; each is also noted in the windows' log by its title.
class LoggingBoxes : public ScriptedBoxes {
public:
    explicit LoggingBoxes(Log& log) : log_(log) {}
    nv::Answer show(const nv::MessageBoxRequest& request) override {
        log_.push_back("box " + request.title);
        if (onShow)
            onShow(request);
        return ScriptedBoxes::show(request);
    }
    std::function<void(const nv::MessageBoxRequest&)> onShow;

private:
    Log& log_;
};

// The files of this machine on a medium that may give back other bytes, whose flush of a group's
// data fails on cue with a chosen number, and whose target may take names as FAT does; the folders
// flushed are kept.
class FaultyFiles : public FaultyMedium {
public:
    void flushFolder(const std::string& folder) override {
        flushed.push_back(folder);
        FaultyMedium::flushFolder(folder);
    }
    void flushStaged(const std::vector<nv::StagedCopy>& copies) override {
        if (failFlushNumber)
            throw nv::fileFailure(failFlushNumber);
        FaultyMedium::flushStaged(copies);
    }
    nv::NameRules nameRulesOf(const std::string& folder) override {
        return fatNames ? nv::NameRules::Fat : NativeFiles::nameRulesOf(folder);
    }
    int32_t failFlushNumber = 0;
    // Makes the target a FAT or exFAT stick as far as names go.
    bool fatNames = false;
    Log flushed;
};

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
        savedE_ = nv::driveTableOf(machine.platform).find('E');
        nv::driveTableOf(machine.platform).setFolder('E', machine.temp.native("stick").string());
#endif
        std::filesystem::create_directories(onStick());
        machine.temp.write("prog/NVbackuptool.ini", kSettingsBefore);
        nv::AppSettings.strIniFile = machine.temp.drive("prog\\NVbackuptool.ini");
        nv::AppSettings.DriveTarget = target;
        nv::AppSettings.LastBackup = kLastBackup;
    }
    ~BackupRunFixture() override {
#ifndef _WIN32
        nv::driveTableOf(machine.platform).remove('E');
        if (savedE_ && !savedE_->mounted)
            nv::driveTableOf(machine.platform).setFolder('E', savedE_->root);
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
    nv::ScopedPlatformPart<nv::MessageBoxes> useBoxes_{&nv::Platform::boxes, &boxes};
    nv::ScopedPlatformPart<nv::FileSystem> useFiles_{&nv::Platform::files, &files};
    std::string target = "E:"; // what DriveTarget holds
#ifndef _WIN32
    std::optional<nv::DriveInfo> savedE_;
#endif
    int16_t intLoop = 0;
    std::string strBackupFolder;
};

} // namespace nvtest
