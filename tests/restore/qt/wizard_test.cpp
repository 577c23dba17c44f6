#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/qt/Twips.h"
#include "restore/RestoreRun.h"
#include "restore/qt/ShapeControl.h"
#include "support/ProgramFolder.h"

#include <QAction>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

const char* const kNames[] = {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"};

// Three production files gone bad, a stick E: with a flat backup of them from a month ago,
// and the program's window over them.
class WizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const std::string name : kNames) {
            machine.temp.write("Norvale/" + name, "a bad day");
            machine.temp.write("Stick/Backup2026-11-17/" + name, "good " + name);
            fs::last_write_time(backup(name), fs::last_write_time(backup(name)) - 720h);
        }
        nvtest::useProgramFolder(machine, "E:", {std::begin(kNames), std::end(kNames)});
        window.Form_Load();
        window.show();
    }

    fs::path backup(const std::string& name) {
        return machine.temp.native("Stick/Backup2026-11-17/" + name);
    }
    void next() { window.CmdWizRestore[0]->click(); }
    void back() { window.CmdWizRestore[1]->click(); }
    void stop() { window.CmdWizRestore[2]->click(); }
    QString text() { return window.LblRestore[1]->text(); }
    QString heading() { return window.LblRestore[0]->text(); }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    FrmMain window;
};

TEST_F(WizardTest, AFullRestoreFromAFlatBackupThroughTheFiveSteps) {
    const int height = window.heightTwips();
    const int frameTop = window.fraDirectory->y();
    window.moRestore->trigger();
    QCoreApplication::processEvents();
    EXPECT_FALSE(window.PicRestore->isHidden());
    EXPECT_GT(window.heightTwips(), height);
    EXPECT_FALSE(window.Cmd_Backup->isEnabled());
    EXPECT_EQ(heading(), "Terugzetten backup, stap 1 van 5");
    EXPECT_FALSE(window.CmdWizRestore[1]->isEnabled());
    EXPECT_TRUE(text().startsWith("Deze wizard helpt u met het terugzetten van bestanden\r\n"));

    // The highlight glides onto the list in a thousand painted steps, left only from its place
    // at start, the rest coming in the last jump.
    const int paints = window.Shape1->paints();
    next();
    EXPECT_EQ(heading(), "Terugzetten backup, stap 2 van 5");
    EXPECT_TRUE(window.CmdWizRestore[1]->isEnabled());
    EXPECT_GE(window.Shape1->paints() - paints, 1000);
    EXPECT_EQ(window.Shape1->leftTwips(), 0);
    EXPECT_EQ(window.Shape1->widthTwips(), 250);
    EXPECT_EQ(window.Shape1->heightTwips(), pixelsToTwips(window.LstSelectedFiles->height()));
    next();
    EXPECT_TRUE(text().startsWith("Selecteer nu uit welke map (directory)"));
    window.TargetDirectories->setPath("E:\\Backup2026-11-17");
    next();
    const QString step4 = "U staat op het punt om bestanden terug te zetten. U heeft 3 bestanden "
                          "geselecteerd om terug te zetten.\r\nDeze worden gehaald uit de map "
                          "E:\\Backup2026-11-17\r\nDruk nu op Volgende om de backup definitief "
                          "terug te zetten";
    EXPECT_EQ(text(), step4);
    EXPECT_EQ(window.Shape1->shapeKind(), ShapeControl::Circle);

    // No at the warning box leaves step 4 as it stood; Next asks again.
    machine.boxes.answer(Answer::No);
    next();
    EXPECT_EQ(window.intWizardStep, 4);
    EXPECT_EQ(text(), step4);
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "a bad day");
    machine.boxes.answer(Answer::Yes);
    next();
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_EQ(machine.boxes.shown[1].text,
              "U staat op het punt om de backup terug te zetten. Wilt u doorgaan?");
    EXPECT_EQ(machine.boxes.shown[1].title, "Terugzetten Backup");
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is gereed. \r\n");
    EXPECT_TRUE(window.LstSelectedFiles->selectedItems().isEmpty());
    // The files come back whole and with the time they were saved at.
    for (const std::string name : kNames) {
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "good " + name);
        EXPECT_EQ(fs::last_write_time(machine.temp.native("Norvale/" + name)),
                  fs::last_write_time(backup(name)));
    }

    // Next at the result puts the window back as it was.
    next();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_TRUE(window.Shape1->isHidden());
    EXPECT_NEAR(window.heightTwips(), height, 15);
    EXPECT_EQ(window.fraDirectory->y(), frameTop);
    EXPECT_TRUE(window.Cmd_Backup->isEnabled());
}

TEST_F(WizardTest, StopAtEveryStepAFailureAndAMaximisedWindow) {
    for (int step = 1; step <= 4; ++step) {
        window.CmdRestore_Click();
        for (int n = 1; n < step; ++n)
            next();
        EXPECT_EQ(window.intWizardStep, step);
        stop();
        EXPECT_TRUE(window.PicRestore->isHidden()) << step;
        EXPECT_TRUE(window.Cmd_Backup->isEnabled()) << step;
    }

    // A destination the file cannot be written to: the second row's name is a folder.
    fs::remove(machine.temp.native("Norvale/stockA.NVD"));
    fs::create_directories(machine.temp.native("Norvale/stockA.NVD"));
    window.CmdRestore_Click();
    next();
    next();
    window.TargetDirectories->setPath("E:\\Backup2026-11-17");
    next();
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_TRUE(text().startsWith("Het terugzetten van de bestanden is niet (volledig) gelukt"));
    EXPECT_TRUE(text().contains("stap 5 en in substap 1.")) << text().toStdString();
    EXPECT_EQ(window.intWizardStep, 5);
    back();
    EXPECT_EQ(window.intWizardStep, 4);

    // Entering and leaving a maximised window leaves no half panel.
    stop();
    window.showMaximized();
    window.CmdRestore_Click();
    stop();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_EQ(window.fraDirectory->y(), window.Cmd_Backup->y() + twips(1080));
}

// Two production files of one name in different folders, both in the list, and on the stick a
// flat backup that could hold only Alpha's (Beta's got the box Duplicate) and a mirrored one.
class SameNameWizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("x/Alpha/dup.txt", "Alpha today");
        machine.temp.write("y/Beta/dup.txt", "Beta today");
        machine.temp.write("Stick/Backup2026-11-17/dup.txt", "Alpha saved flat");
        machine.temp.write("Stick/Backup2026-11-10/Alpha/dup.txt", "Alpha saved mirrored");
        machine.temp.write("Stick/Backup2026-11-10/Beta/dup.txt", "Beta saved mirrored");
        nvtest::useProgramFolder(
            machine, "E:",
            {machine.temp.drive("x\\Alpha\\dup.txt"), machine.temp.drive("y\\Beta\\dup.txt")});
        window.Form_Load();
        window.show();
    }
    // Walks the wizard to its run with only Beta's row chosen and `folder` open, and says Yes.
    void restoreBetaFrom(const QString& folder) {
        window.CmdRestore_Click();
        window.CmdWizRestore[0]->click();
        window.LstSelectedFiles->item(0)->setSelected(false);
        window.CmdWizRestore[0]->click();
        window.TargetDirectories->setPath(folder);
        window.CmdWizRestore[0]->click();
        machine.boxes.answer(Answer::Yes);
        window.CmdWizRestore[0]->click();
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    FrmMain window;
};

TEST_F(SameNameWizardTest, OneChosenRowNeverTakesTheBackupOfAnotherFileOfItsName) {
    const std::string kept =
        std::string("Het terugzetten van de bestanden is gereed. \r\n") + kRestoreSameNameText;
    // The flat folder's one dup.txt is Alpha's; so is the mirrored subfolder opened by mistake.
    for (const char* folder : {"E:\\Backup2026-11-17", "E:\\Backup2026-11-10\\Alpha"}) {
        restoreBetaFrom(folder);
        EXPECT_EQ(window.intWizardStep, 5) << folder;
        EXPECT_EQ(window.LblRestore[1]->text().toStdString(), kept) << folder;
        EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta today") << folder;
        EXPECT_EQ(machine.temp.read("x/Alpha/dup.txt"), "Alpha today") << folder;
        EXPECT_TRUE(window.LstSelectedFiles->item(1)->isSelected()) << folder;
        EXPECT_FALSE(window.LstSelectedFiles->item(0)->isSelected()) << folder;
        window.CmdWizRestore[2]->click();
    }

    // Beta's own subfolder gives it back its own file.
    restoreBetaFrom("E:\\Backup2026-11-10\\Beta");
    EXPECT_EQ(window.LblRestore[1]->text(), "Het terugzetten van de bestanden is gereed. \r\n");
    EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta saved mirrored");
    EXPECT_EQ(machine.temp.read("x/Alpha/dup.txt"), "Alpha today");
    EXPECT_TRUE(window.LstSelectedFiles->selectedItems().isEmpty());
}

// A read-only production file is not replaced: the wizard tells the failure at its row. The file
// before it comes back with its own mode, not the stick's.
TEST_F(WizardTest, AReadOnlyProductionFileIsToldAndKeptAndModesStay) {
    const fs::path ini = machine.temp.native("Norvale/NV.ini");
    fs::permissions(ini, fs::perms(0600));
    fs::permissions(backup("NV.ini"), fs::perms(0777));
    fs::permissions(machine.temp.native("Norvale/stockA.NVD"), fs::perms(0444));
    window.CmdRestore_Click();
    next();
    next();
    window.TargetDirectories->setPath("E:\\Backup2026-11-17");
    next();
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_TRUE(text().startsWith("Het terugzetten van de bestanden is niet (volledig) gelukt"));
    EXPECT_TRUE(text().contains("\r\nFout bij toegang tot pad of bestand\r\n"))
        << text().toStdString();
    EXPECT_TRUE(text().contains("stap 5 en in substap 1.")) << text().toStdString();
    EXPECT_EQ(machine.temp.read("Norvale/stockA.NVD"), "a bad day");
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "good NV.ini");
    EXPECT_EQ(fs::status(ini).permissions(), fs::perms(0600));
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "a bad day");
}

} // namespace
