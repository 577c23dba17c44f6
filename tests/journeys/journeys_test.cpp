// The whole program as a user meets it: started through Main, worked through its windows over
// the fake control set, every box answered by hand, the files real files in a temporary folder.
#include "mainwindow/FrmMain.h"
#include "startup/Main.h"
#include "support/FakeControls.h"
#include "support/ProgramFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

using namespace nv;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

// The windows as Main brings them up; the splash goes by itself and plays no part here.
struct FakeStartWindows : StartWindows {
    void loadMainWindow() override { main.form().Form_Load(); }
    void showMainWindow() override { main.Me.show(); }
    void loadSplash() override {}
    void showSplash() override {}
    nvtest::FakeMainWindow main;
};

// A machine with the finance program's folder (its production files, this program and its clip
// beside them) and an empty stick E:.
class Journey : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"NV_Ledger01.mdb", "NV_Lists97.mdb", "panels.ini", "NV.ini",
                                 "NV_Entity.NVD", "Nota.ini", "Refresh.ini", "NV_stock.NVD"})
            machine.temp.write(std::string("Norvale/") + name, std::string("boeking van ") + name);
        machine.temp.write("Norvale/FILECOPY.AVI", "clip");
        machine.process.path = machine.temp.drive("Norvale");
        fs::create_directories(machine.temp.native("stick"));
        stick.emplace('E', machine.temp.native("stick"));
    }
    nvtest::FakeMainWindow& start() {
        windows = std::make_unique<FakeStartWindows>();
        EXPECT_EQ(Main(*windows), MainOutcome::Running);
        return windows->main;
    }
    void quit() {
        EXPECT_TRUE(windows->main.MoAfsluiten.click() && windows->main.Me.closed);
        windows.reset();
    }
    Names namesIn(const std::string& folder) {
        Names names;
        for (const auto& entry : fs::directory_iterator(machine.temp.native(folder)))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    nvtest::TestMachine machine;
    std::optional<nvtest::FolderDrive> stick;
    std::unique_ptr<FakeStartWindows> windows;
};

TEST_F(Journey, BackupsAPulledStickAndARestoreAfterABadDay) {
    // Monday: the first start finds the production files and the settings file without a
    // question; the user adds a file of their own and backs up to the stick.
    machine.clock.date -= 1;
    machine.temp.write("Documenten/offerte.doc", "offerte");
    nvtest::FakeMainWindow* w = &start();
    EXPECT_TRUE(machine.boxes.shown.empty());
    EXPECT_EQ(w->TxtLastBackup.text(), "Laatste backup gemaakt op: 16-nov-2026 (Vandaag)");
    ASSERT_TRUE(w->TargetDrive.choose("E:"));
    machine.dialogs.answers = {machine.temp.drive("Documenten\\offerte.doc")};
    ASSERT_TRUE(w->CmdSelectFiles.click());
    EXPECT_EQ(w->StatusBar.panelText(1), "Aantal files: 10");
    // The drive watch rests while a copy runs, and watches again after the run.
    w->beforeCopy = [&] { EXPECT_FALSE(w->Timer1.enabled()); };
    ASSERT_TRUE(w->Cmd_Backup.click());
    EXPECT_TRUE(w->Timer1.enabled());
    // On the stick lies a copy of every row; what each holds the backup run's own test checks.
    EXPECT_EQ(namesIn("stick/Backup2026-11-16").size(), 10u);
    EXPECT_EQ(machine.temp.read("stick/Backup2026-11-16/offerte.doc"), "offerte");

    // The stick is pulled: each tick steps a dot, and Back Up tells of the drive and writes
    // nothing.
    stick.reset();
    for (const char* dots : {" .", " . ."}) {
        ASSERT_TRUE(w->Timer1.tick());
        EXPECT_EQ(w->LblStation.caption(),
                  "U heeft het station E: ontkoppeld, sluit deze weer aan\r\n" + std::string(dots));
    }
    machine.boxes.shown.clear();
    ASSERT_TRUE(w->Cmd_Backup.click());
    ASSERT_GE(machine.boxes.shown.size(), 2u);
    EXPECT_EQ(machine.boxes.shown[1].text.substr(0, 3), "68 ");
    // Back in, with a folder another machine put there: the panel shows it without a click.
    fs::create_directory(machine.temp.native("stick/Backup2026-11-10"));
    stick.emplace('E', machine.temp.native("stick"));
    ASSERT_TRUE(w->Timer1.tick());
    EXPECT_FALSE(w->LblStation.visible());
    EXPECT_EQ(namesIn("stick"), (Names{"Backup2026-11-10", "Backup2026-11-16"}));
    EXPECT_EQ(w->TargetDirectories.count(), 3);
    quit();

    // Tuesday goes wrong: the ledger and the finance program's settings are damaged. The user
    // picks the two with Ctrl held down and brings back Monday's.
    machine.clock.date += 1;
    machine.temp.write("Norvale/NV_Ledger01.mdb", "kapot");
    machine.temp.write("Norvale/NV.ini", "kapot");
    w = &start();
    EXPECT_EQ(w->TxtLastBackup.text(), "Laatste backup gemaakt op: 16-nov-2026 (1 dagen geleden)");
    ASSERT_TRUE(w->CmdRestore.click() && w->CmdWizRestore[0].click());
    auto& list = w->LstSelectedFiles;
    for (int row = 0; row < list.count(); ++row)
        list.setSelected(row, list.list(row).ends_with("\\NV_Ledger01.mdb") ||
                                  list.list(row).ends_with("\\NV.ini"));
    ASSERT_TRUE(w->CmdWizRestore[0].click() && w->openFolder("Backup2026-11-16") &&
                w->CmdWizRestore[0].click());
    ASSERT_TRUE(w->CmdWizRestore[0].click());
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "boeking van NV_Ledger01.mdb");
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "boeking van NV.ini");
    ASSERT_TRUE(w->CmdWizRestore[0].click());
    EXPECT_TRUE(w->Cmd_Backup.enabled());
    quit();

    // Wednesday the ledger is gone: asked, the program opens in the wizard alone.
    machine.clock.date += 1;
    fs::remove(machine.temp.native("Norvale/NV_Ledger01.mdb"));
    machine.boxes.shown.clear();
    machine.boxes.answer(Answer::Yes);
    w = &start();
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text, kRestoreOnlyQuestion);
    EXPECT_TRUE(w->PicRestore.visible());
    EXPECT_FALSE(w->Cmd_Backup.visible() || w->CmdSelectFiles.visible() ||
                 w->CmdVerwijder.visible());
}

} // namespace
