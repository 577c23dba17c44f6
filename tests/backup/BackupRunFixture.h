#pragma once

#include "backup/BackupRun.h"
#include "platform/DateText.h"
#include "platform/FailureText.h"
#include "startup/AppSettings.h"
#include "support/FaultyMedium.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

namespace nvtest {

using Log = std::vector<std::string>;

inline const std::string kToday = "Backup2026-11-17";
inline const std::string kRestored = "Het terugzetten van de bestanden is gereed. \r\n";
inline const std::string kProtectedText =
    "De backup schijf kan niet worden geopend, het kan zijn dat deze op 'write protection' staat, "
    "dit is vaak een schakelaartje. Pas dit aan of gebruik een ander backup medium";

// Keeps, in one log and in order, what the user is shown of the run.
class FakeBackupWindows : public nv::BackupWindows {
public:
    void subShowCopyWindow() override { log.push_back("show"); }
    void closeCopyWindow() override { log.push_back("close"); }
    void setProgressMax(int maximum) override { log.push_back("max " + std::to_string(maximum)); }
    void setProgressValue(int value) override { log.push_back("value " + std::to_string(value)); }
    void setCopyText(const std::string& text) override { log.push_back("text " + text); }
    void setStatusText(const std::string& text) override { log.push_back("status " + text); }
    void RefreshStatus() override {
        log.push_back("RefreshStatus");
        if (refreshFailure)
            throw *refreshFailure;
    }
    void refreshTargetDirectories() override { log.push_back("refreshTargetDirectories"); }
    // What beforeCopy throws, given the copy's number from 1, is that copy's failure.
    void runCopy(const std::function<void()>& work) override {
        if (++copies; beforeCopy)
            beforeCopy(copies);
        work();
    }
    void runCommit(const std::function<void()>& work) override { work(); }

    Log log;
    int copies = 0;
    std::function<void(int)> beforeCopy;
    std::optional<nv::FileFailure> refreshFailure;
};

// Backups of rows below bron/ onto the stick, with the settings file in prog/, and restores from
// it; the last backup was on 01-11-2026. Every box is noted in the windows' log.
class BackupRunFixture : public ::testing::Test {
protected:
    BackupRunFixture() {
        machine.temp.write("prog/NVbackuptool.ini", kSettingsBefore);
        nv::AppSettings.strIniFile = machine.temp.drive("prog\\NVbackuptool.ini");
        nv::AppSettings.DriveTarget = stick.drive();
        nv::AppSettings.LastBackup = kLastBackup;
        boxes.onShow = [this](const nv::MessageBoxRequest& box) {
            windows.log.push_back("box " + box.title);
            if (atBox)
                atBox(box);
        };
    }

    // A file below bron/, written through the platform so that its name may hold any letter.
    std::string source(const std::string& relative, const std::string& bytes) {
        std::filesystem::create_directories(machine.temp.native("bron/" + relative).parent_path());
        const std::string path = machine.temp.drive("bron\\" + relative);
        nv::platform().files->writeFile(path, bytes);
        return path;
    }
    void list(Log rows) {
        nv::AppSettings.AantalFiles = static_cast<int16_t>(rows.size());
        rows.insert(rows.begin(), "");
        nv::AppSettings.strFiles = std::move(rows);
    }
    void run() { nv::Cmd_Backup_Click(windows, intLoop, strBackupFolder); }
    void rerun() {
        std::filesystem::remove_all(stick.native(kToday));
        windows.log.clear();
        windows.copies = 0;
        boxes.shown.clear();
        run();
    }
    // Restores these files (or the rows selected before) from a folder on the stick.
    std::string restore(const std::string& from, std::vector<std::string> files = {}) {
        std::ranges::for_each(files, [&](std::string& f) { f = machine.temp.drive(f); });
        if (!files.empty())
            rows.select(files);
        return nv::fRestoreSelectedRows(rows, folder(from), intLoop);
    }
    // Every entry of a folder on the stick, hidden ones too, sorted; folders end in '/'.
    Log entries(const std::string& relative = "") const {
        Log names;
        std::error_code ec;
        for (const auto& entry : std::filesystem::directory_iterator(stick.native(relative), ec)) {
            const std::u8string name = entry.path().filename().u8string();
            names.push_back(std::string(name.begin(), name.end()) +
                            (entry.is_directory() ? "/" : ""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string onStick(const std::string& relative) const {
        return machine.temp.read("stick/" + relative);
    }
    std::string folder(const std::string& name = kToday) const {
        return stick.drive() + "\\" + name;
    }
    std::string settingsFile() const { return machine.temp.read("prog/NVbackuptool.ini"); }
    // A failed run boxes with its window up, keeps the old date and leaves only whole copies.
    void expectFailed(const std::string& title, const Log& left) {
        ASSERT_GE(windows.log.size(), 4u);
        EXPECT_EQ(Log(windows.log.end() - 4, windows.log.end()),
                  (Log{"box " + title, "close", "RefreshStatus", "refreshTargetDirectories"}));
        EXPECT_EQ(entries(kToday), left);
        for (const std::string& name : left)
            EXPECT_EQ(onStick(kToday + "/" + name), machine.temp.read("bron/" + name)) << name;
        EXPECT_EQ(settingsFile(), kSettingsBefore);
        EXPECT_EQ(nv::AppSettings.LastBackup, kLastBackup);
    }

    const std::string kSettingsBefore = crlf("[Basic settings]\nLastBackup=01-11-2026\n");
    const nv::Date kLastBackup = nv::dateFromCivil({2026, 11, 1});
    TestMachine machine;
    TestStick stick{machine.temp};
    FakeBackupWindows windows;
    ScriptedBoxes& boxes = machine.boxes;
    std::function<void(const nv::MessageBoxRequest&)> atBox; // looks at the machine at each box
    FaultyMedium files;
    nv::ScopedPlatformPart<nv::FileSystem> useFiles_{&nv::Platform::files, &files};
    int16_t intLoop = 0;
    std::string strBackupFolder;
    RestoreRows rows;
};

} // namespace nvtest
