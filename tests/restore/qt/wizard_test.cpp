#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/ShapeControl.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/posix/DriveTable.h"
#include "platform/qt/Twips.h"
#include "restore/RestoreRun.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <QAction>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const fs::path kClip = fs::path(__FILE__).parent_path() / "../../../assets/install/FILECOPY.GIF";

// Three production files, a program folder with the clip, a stick E:, and a backup of the
// files made by the program's own run; then the production files go bad.
class WizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"})
            machine.temp.write(std::string("Norvale/") + name, std::string("good ") + name);
        fs::create_directories(machine.temp.native("Program"));
        fs::copy_file(kClip, machine.temp.native("Program/FILECOPY.GIF"));
        machine.process.path = machine.temp.drive("Program");
        fs::create_directories(machine.temp.native("Stick"));
        DriveTable::machine().setFolder('E', machine.temp.native("Stick").string());

        auto& s = AppSettings;
        s.strAppDir = machine.temp.drive("Norvale") + "\\";
        s.strIniFile = s.strAppDir + "NVbackuptool.ini";
        machine.temp.write("Norvale/NVbackuptool.ini", "");
        s.DriveTarget = "E:";
        s.LastBackup = machine.clock.date - 3;
        s.strFiles = {"", s.strAppDir + "NV.ini", s.strAppDir + "stockA.NVD",
                      s.strAppDir + "NV_Ledger01.mdb"};
        s.AantalFiles = 3;
        s.Directory = 0;
        window.Form_Load();
        window.show();
        // Confirm, then Done.
        window.Cmd_Backup_Click();
        EXPECT_EQ(machine.boxes.shown.size(), 2u);
        EXPECT_EQ(machine.boxes.shown.back().title, "Back Up");
        for (const char* name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"})
            machine.temp.write(std::string("Norvale/") + name, "a bad day");
        machine.boxes.shown.clear();
    }
    void TearDown() override { DriveTable::machine().remove('E'); }

    void next() { window.CmdWizRestore[0]->click(); }
    void back() { window.CmdWizRestore[1]->click(); }
    QString text() { return window.LblRestore[1]->text(); }
    QString heading() { return window.LblRestore[0]->text(); }
    int selectedRows() { return static_cast<int>(window.LstSelectedFiles->selectedItems().size()); }

    nvtest::TestMachine machine;
    FrmMain window;
};

TEST_F(WizardTest, AFullRestoreFromAFlatBackupThroughTheFiveSteps) {
    const int height = window.heightTwips();
    const int frameTop = window.fraDirectory->y();
    window.moRestore->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.intWizardStep, 1);
    EXPECT_FALSE(window.PicRestore->isHidden());
    EXPECT_NEAR(window.heightTwips(), height + 1305, 15);
    EXPECT_EQ(window.fraDirectory->y(), window.Cmd_Backup->y());
    EXPECT_FALSE(window.Cmd_Backup->isEnabled());
    EXPECT_FALSE(window.CmdVervers->isHidden());
    EXPECT_EQ(heading(), "Terugzetten backup, stap 1 van 5");
    EXPECT_FALSE(window.CmdWizRestore[1]->isEnabled());
    EXPECT_TRUE(text().startsWith("Deze wizard helpt u met het terugzetten van bestanden\r\n"));

    window.LstSelectedFiles->clearSelection();
    next();
    EXPECT_EQ(heading(), "Terugzetten backup, stap 2 van 5");
    EXPECT_TRUE(window.CmdWizRestore[1]->isEnabled());
    EXPECT_EQ(selectedRows(), 3);
    EXPECT_EQ(window.intLoop, 3);
    EXPECT_FALSE(window.Shape1->isHidden());
    EXPECT_EQ(window.Shape1->widthTwips(), 250);

    next();
    EXPECT_TRUE(text().startsWith("Selecteer nu uit welke map (directory)"));
    std::string folder = "E:\\Backup2026-11-17";
    window.TargetDirectories->setPath(QString::fromStdString(folder));

    next();
    EXPECT_EQ(text(),
              QString::fromStdString(
                  "U staat op het punt om bestanden terug te zetten. U heeft 3 bestanden "
                  "geselecteerd om terug te zetten.\r\nDeze worden gehaald uit de map " +
                  folder + "\r\nDruk nu op Volgende om de backup definitief terug te zetten"));
    EXPECT_EQ(window.Shape1->shapeKind(), ShapeControl::Circle);

    // No at the warning box leaves step 4 as it stood; Next asks again.
    machine.boxes.answer(Answer::No);
    next();
    EXPECT_EQ(window.intWizardStep, 4);
    EXPECT_TRUE(text().startsWith("U staat op het punt om bestanden terug te zetten."));
    EXPECT_TRUE(window.Shape1->isHidden());
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "a bad day");

    machine.boxes.answer(Answer::Yes);
    next();
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_EQ(machine.boxes.shown[1].text,
              "U staat op het punt om de backup terug te zetten. Wilt u doorgaan?");
    EXPECT_EQ(machine.boxes.shown[1].title, "Terugzetten Backup");
    EXPECT_EQ(machine.boxes.shown[1].icon, Icon::Exclamation);
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is gereed. \r\n");
    EXPECT_EQ(selectedRows(), 0);
    for (const char* name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"}) {
        std::string restored = machine.temp.native(std::string("Norvale/") + name).string();
        std::string backup = machine.temp.native(std::string("Stick/Backup2026-11-17/") + name);
        EXPECT_EQ(machine.temp.read(std::string("Norvale/") + name), std::string("good ") + name);
        EXPECT_EQ(fs::last_write_time(restored), fs::last_write_time(backup)) << name;
    }

    // Back to step 4 counts no rows; Next at the result closes the wizard.
    back();
    EXPECT_TRUE(text().contains("U heeft 0 bestanden"));
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is gereed. \r\n");
    next();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_TRUE(window.Shape1->isHidden());
    EXPECT_NEAR(window.heightTwips(), height, 15);
    EXPECT_EQ(window.fraDirectory->y(), frameTop);
    EXPECT_TRUE(window.Cmd_Backup->isEnabled());
    EXPECT_FALSE(window.CmdRestore->isHidden());
}

TEST_F(WizardTest, StopAtEveryStepAndAFailureShowsStepAndRow) {
    for (int step = 1; step <= 4; ++step) {
        window.CmdRestore_Click();
        for (int n = 1; n < step; ++n)
            next();
        EXPECT_EQ(window.intWizardStep, step);
        window.CmdWizRestore[2]->click();
        EXPECT_TRUE(window.PicRestore->isHidden()) << step;
        EXPECT_TRUE(window.Cmd_Backup->isEnabled()) << step;
    }

    // A destination the file cannot be written to: the second row's folder is read-only.
    window.CmdRestore_Click();
    next();
    next();
    window.TargetDirectories->setPath("E:\\Backup2026-11-17");
    next();
    fs::remove(machine.temp.native("Norvale/stockA.NVD"));
    fs::create_directories(machine.temp.native("Norvale/stockA.NVD"));
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_TRUE(text().startsWith("Het terugzetten van de bestanden is niet (volledig) gelukt"));
    EXPECT_TRUE(text().endsWith("Deze is opgetreden in stap 5 en in substap 1. Geef dit eventueel "
                                "door aan de leverancier"))
        << text().toStdString();
    EXPECT_EQ(window.intWizardStep, 5);
    EXPECT_FALSE(window.LstSelectedFiles->item(0)->isSelected());
    EXPECT_TRUE(window.LstSelectedFiles->item(1)->isSelected());
    EXPECT_TRUE(window.LstSelectedFiles->item(2)->isSelected());
    back();
    EXPECT_EQ(window.intWizardStep, 4);
}

TEST_F(WizardTest, AMirroredBackupComesBackOneSubfolderAPass) {
    AppSettings.Directory = 1;
    machine.clock.date += 1;
    window.Cmd_Backup_Click();
    for (const char* name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"})
        machine.temp.write(std::string("Norvale/") + name, "worse");
    window.CmdRestore_Click();
    next();
    next();
    window.TargetDirectories->setPath("E:\\Backup2026-11-18");
    next();
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_EQ(text().toStdString(),
              std::string("Het terugzetten van de bestanden is gereed. \r\n") +
                  kRestoreNotFoundText);
    EXPECT_EQ(selectedRows(), 3);

    // Back twice, open the subfolder, on twice.
    back();
    back();
    window.TargetDirectories->setPath("E:\\Backup2026-11-18\\Norvale");
    next();
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is gereed. \r\n");
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "a bad day");
    EXPECT_EQ(selectedRows(), 0);
}

TEST_F(WizardTest, TheHighlightGlidesInAThousandPaintedSteps) {
    window.CmdRestore_Click();
    const int before = window.Shape1->paints();
    next();
    EXPECT_GE(window.Shape1->paints() - before, 1000);
    // From its place at start the glide moves left only, and the rest comes in the last jump.
    EXPECT_EQ(window.Shape1->leftTwips(), 0);
    EXPECT_EQ(window.Shape1->heightTwips(), pixelsToTwips(window.LstSelectedFiles->height()));
}

TEST_F(WizardTest, EnteringAndLeavingAMaximisedWindowLeavesNoHalfPanel) {
    window.showMaximized();
    window.CmdRestore_Click();
    EXPECT_FALSE(window.PicRestore->isHidden());
    window.CmdWizRestore[2]->click();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_EQ(window.fraDirectory->y(), window.Cmd_Backup->y() + twips(1080));
}

TEST_F(WizardTest, AnEmptyListStillWalksToTheResult) {
    while (window.LstSelectedFiles->count() > 0)
        delete window.LstSelectedFiles->takeItem(0);
    window.CmdRestore_Click();
    next();
    EXPECT_EQ(selectedRows(), 0);
    next();
    next();
    EXPECT_TRUE(text().contains("U heeft 0 bestanden"));
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is gereed. \r\n");
}

} // namespace
