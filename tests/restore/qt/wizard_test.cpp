#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/ShapeControl.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/qt/Twips.h"
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
namespace fs = std::filesystem;

namespace {

const fs::path kClip = fs::path(__FILE__).parent_path() / "../../../assets/install/FILECOPY.GIF";
const char* const kNames[] = {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"};
const QString kDone = "Het terugzetten van de bestanden is gereed. \r\n";

// Three production files, a program folder with the clip, a stick E:, and a backup of the
// files made by the program's own run; then the production files go bad.
class WizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : kNames)
            machine.temp.write(std::string("Norvale/") + name, std::string("good ") + name);
        fs::create_directories(machine.temp.native("Program"));
        fs::copy_file(kClip, machine.temp.native("Program/FILECOPY.GIF"));
        machine.process.path = machine.temp.drive("Program");
        fs::create_directories(machine.temp.native("Stick"));
        nvtest::useProgramFolder(machine, "E:", {std::begin(kNames), std::end(kNames)});
        window.Form_Load();
        window.show();
        // Confirm, then Done.
        window.Cmd_Backup_Click();
        EXPECT_EQ(machine.boxes.shown.back().title, "Back Up");
        for (const char* name : kNames)
            machine.temp.write(std::string("Norvale/") + name, "a bad day");
        machine.boxes.shown.clear();
    }

    void next() { window.CmdWizRestore[0]->click(); }
    void back() { window.CmdWizRestore[1]->click(); }
    QString text() { return window.LblRestore[1]->text(); }
    QString heading() { return window.LblRestore[0]->text(); }
    int selectedRows() { return static_cast<int>(window.LstSelectedFiles->selectedItems().size()); }

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

    // Step 2 selects every row; the highlight glides onto the list in a thousand painted
    // steps, left only from its place at start, the rest coming in the last jump.
    window.LstSelectedFiles->clearSelection();
    const int paints = window.Shape1->paints();
    next();
    EXPECT_EQ(heading(), "Terugzetten backup, stap 2 van 5");
    EXPECT_TRUE(window.CmdWizRestore[1]->isEnabled());
    EXPECT_EQ(selectedRows(), 3);
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
    EXPECT_EQ(text(), kDone);
    EXPECT_EQ(selectedRows(), 0);
    for (const std::string name : kNames) {
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "good " + name);
        EXPECT_EQ(fs::last_write_time(machine.temp.native("Norvale/" + name)),
                  fs::last_write_time(machine.temp.native("Stick/Backup2026-11-17/" + name)));
    }

    // Back to step 4 counts no rows, and a pass over none is done; Next at the result closes.
    back();
    EXPECT_TRUE(text().contains("U heeft 0 bestanden"));
    machine.boxes.answer(Answer::Yes);
    next();
    EXPECT_EQ(text(), kDone);
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
        window.CmdWizRestore[2]->click();
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
    window.CmdWizRestore[2]->click();
    window.showMaximized();
    window.CmdRestore_Click();
    window.CmdWizRestore[2]->click();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_EQ(window.fraDirectory->y(), window.Cmd_Backup->y() + twips(1080));
}

} // namespace
