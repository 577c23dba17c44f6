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
const QString kDone = "Het terugzetten van de bestanden is gereed. \r\n";

// The program's window over a stick E:; by default three production files gone bad, with a
// flat backup of them from a month ago.
class WizardTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const std::string name : kNames) {
            machine.temp.write("Norvale/" + name, "a bad day");
            machine.temp.write("Stick/Backup2026-11-17/" + name, "good " + name);
            fs::last_write_time(backup(name), fs::last_write_time(backup(name)) - 720h);
        }
    }
    void open(const std::vector<std::string>& files = {std::begin(kNames), std::end(kNames)}) {
        nvtest::useProgramFolder(machine, "E:", files);
        window.Form_Load();
        window.show();
    }
    fs::path backup(const std::string& name) {
        return machine.temp.native("Stick/Backup2026-11-17/" + name);
    }
    void next() { window.CmdWizRestore[0]->click(); }
    void stop() { window.CmdWizRestore[2]->click(); }
    QString text() { return window.LblRestore[1]->text(); }
    QString heading() { return window.LblRestore[0]->text(); }
    // The whole wizard up to its run from `folder`, row `skipped` not chosen, answered Yes.
    void restoreFrom(const QString& folder, int skipped = -1) {
        window.CmdRestore_Click();
        next();
        if (skipped >= 0)
            window.LstSelectedFiles->item(skipped)->setSelected(false);
        next();
        window.TargetDirectories->setPath(folder);
        next();
        machine.boxes.answer(Answer::Yes);
        next();
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    FrmMain window;
};

TEST_F(WizardTest, AFullRestoreFromAFlatBackupThroughTheFiveSteps) {
    open();
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
    EXPECT_EQ(text(), step4);
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "a bad day");
    machine.boxes.answer(Answer::Yes);
    next();
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_EQ(machine.boxes.shown[1].text,
              "U staat op het punt om de backup terug te zetten. Wilt u doorgaan?");
    EXPECT_EQ(text(), kDone);
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
    open();
    for (int step = 1; step <= 4; ++step) {
        window.CmdRestore_Click();
        for (int n = 1; n < step; ++n)
            next();
        EXPECT_EQ(window.intWizardStep, step);
        stop();
        EXPECT_TRUE(window.PicRestore->isHidden()) << step;
        EXPECT_TRUE(window.Cmd_Backup->isEnabled()) << step;
    }

    // A read-only production file is not replaced; the wizard tells why, and at which row. The
    // row before it is done, it and the rows after it stay chosen and as they were.
    fs::permissions(machine.temp.native("Norvale/stockA.NVD"), fs::perms(0444));
    restoreFrom("E:\\Backup2026-11-17");
    EXPECT_EQ(text(),
              "Het terugzetten van de bestanden is niet (volledig) gelukt omdat er een fout "
              "is ontstaan met de volgende omschrijving:\r\nFout bij toegang tot pad of "
              "bestand\r\nDeze is opgetreden in stap 5 en in substap 1. Geef dit "
              "eventueel door aan de leverancier");
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "good NV.ini");
    for (const std::string name : {"stockA.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "a bad day");
    EXPECT_EQ(fs::status(machine.temp.native("Norvale/stockA.NVD")).permissions(), fs::perms(0444));
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(window.LstSelectedFiles->item(row)->isSelected(), row > 0) << row;
    EXPECT_EQ(window.intWizardStep, 5);
    window.CmdWizRestore[1]->click();
    EXPECT_EQ(window.intWizardStep, 4);

    // Entering and leaving a maximised window leaves no half panel.
    stop();
    window.showMaximized();
    window.CmdRestore_Click();
    stop();
    EXPECT_TRUE(window.PicRestore->isHidden());
    EXPECT_EQ(window.fraDirectory->y(), window.Cmd_Backup->y() + twips(1080));
}

// Two production files of one name in different folders, and on the stick a flat backup that
// could hold only Alpha's (Beta's got the box Duplicate) and a mirrored one.
TEST_F(WizardTest, OneChosenRowNeverTakesTheBackupOfAnotherFileOfItsName) {
    machine.temp.write("x/Alpha/dup.txt", "Alpha today");
    machine.temp.write("y/Beta/dup.txt", "Beta today");
    machine.temp.write("Stick/Backup2026-11-17/dup.txt", "Alpha saved flat");
    machine.temp.write("Stick/Backup2026-11-10/Alpha/dup.txt", "Alpha saved mirrored");
    machine.temp.write("Stick/Backup2026-11-10/Beta/dup.txt", "Beta saved mirrored");
    open({machine.temp.drive("x\\Alpha\\dup.txt"), machine.temp.drive("y\\Beta\\dup.txt")});
    // The flat folder's one dup.txt is Alpha's; so is the mirrored subfolder opened by mistake.
    for (const char* folder : {"E:\\Backup2026-11-17", "E:\\Backup2026-11-10\\Alpha"}) {
        SCOPED_TRACE(folder);
        restoreFrom(folder, 0);
        EXPECT_EQ(text().toStdString(), kDone.toStdString() + kRestoreSameNameText);
        EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta today");
        EXPECT_EQ(machine.temp.read("x/Alpha/dup.txt"), "Alpha today");
        EXPECT_TRUE(window.LstSelectedFiles->item(1)->isSelected());
        EXPECT_FALSE(window.LstSelectedFiles->item(0)->isSelected());
        stop();
    }
    restoreFrom("E:\\Backup2026-11-10\\Beta", 0);
    EXPECT_EQ(text(), kDone);
    EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta saved mirrored");
    EXPECT_EQ(machine.temp.read("x/Alpha/dup.txt"), "Alpha today");
}

} // namespace
