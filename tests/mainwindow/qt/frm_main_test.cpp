#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/StartWindows.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/posix/DriveTable.h"
#include "platform/qt/HelpKey.h"
#include "production/KnownFile.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/AppSettings.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;

namespace {

// A machine with a production folder of three rows and a stick as drive E:.
class FrmMainTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Stick/Backup 16-11-2026/NV.ini", "x");
        machine.temp.write("Stick/Backup 16-11-2026/stockA.NVD", "x");
        machine.temp.write("Stick/notes.txt", "x");
        DriveTable::machine().setFolder('E', machine.temp.native("Stick").string());
        auto& s = AppSettings;
        s.strAppDir = machine.temp.drive("Norvale") + "\\";
        s.strIniFile = s.strAppDir + "NVbackuptool.ini";
        machine.temp.write("Norvale/NVbackuptool.ini", "");
        s.DriveTarget = "E:";
        s.LastBackup = machine.clock.date;
        s.strFiles = {"", s.strAppDir + "NV.ini", s.strAppDir + "stockA.NVD", "C:\\Docs\\a.doc"};
        s.AantalFiles = 3;
    }
    void TearDown() override { DriveTable::machine().remove('E'); }

    std::vector<QString> rows(const FrmMain& window) {
        std::vector<QString> out;
        for (int i = 0; i < window.LstSelectedFiles->count(); ++i)
            out.push_back(window.LstSelectedFiles->item(i)->text());
        return out;
    }

    // Whether each backup control is on, in the order subButtons sets them.
    std::string buttonState(const FrmMain& w) {
        std::string state;
        for (bool on :
             {w.Cmd_Backup->isEnabled(), w.CmdDeleteDir->isEnabled(), w.CmdSelectFiles->isEnabled(),
              w.CmdVerwijder->isEnabled(), !w.CmdVervers->isHidden(), w.moBackUp->isEnabled(),
              w.moRestore->isEnabled(), !w.CmdRestore->isHidden()})
            state += on ? '1' : '0';
        return state;
    }

    nvtest::TestMachine machine;
};

TEST_F(FrmMainTest, FormLoadFillsTheWindowAndOpensTheTargetDrive) {
    FrmMain window;
    window.Form_Load();

    EXPECT_EQ(window.windowTitle(), "Norvale Backup & Restore ");
    EXPECT_EQ(rows(window), (std::vector<QString>{QString::fromStdString(AppSettings.strFiles[1]),
                                                  QString::fromStdString(AppSettings.strFiles[2]),
                                                  "C:\\Docs\\a.doc"}));
    EXPECT_EQ(window.TxtLastBackup->text(), "Laatste backup gemaakt op: 17-nov-2026 (Vandaag)");
    EXPECT_EQ(window.panelText(1), "Aantal files: 3");
    EXPECT_EQ(window.panelText(2), "Versie 1.7.1");
    EXPECT_EQ(window.LblStation->text(), "");
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    EXPECT_TRUE(window.Timer1->isActive());
    EXPECT_EQ(window.Timer1->interval(), 1000);

    // The assignment of E: moved the selection, so the drive change did its whole work.
    EXPECT_EQ(window.TargetDrive->drive().left(2), "E:");
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    EXPECT_EQ(window.Lbl_InhoudDir->text(), "Bestanden in de map E:\\");
    EXPECT_EQ(window.TargetFileLst->count(), 1);
    EXPECT_EQ(window.TargetFileLst->item(0)->text(), "notes.txt");
    EXPECT_EQ(buttonState(window), "11110111");
    EXPECT_TRUE(window.CmdDeleteDir->isHidden());
    EXPECT_EQ(fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?"), "E:");
}

TEST_F(FrmMainTest, AnEmptyListCountsZeroAndATargetAlreadySelectedRaisesNoChange) {
    AppSettings.AantalFiles = 0;
    AppSettings.strFiles = {""};
    AppSettings.DriveTarget = "C:";
    FrmMain window;
    window.Form_Load();

    EXPECT_EQ(window.LstSelectedFiles->count(), 0);
    EXPECT_EQ(window.panelText(1), "Aantal files: 0");
    // The list starts on C:, so the assignment moves nothing: the restore button stays hidden
    // and the menu entry is the way into the wizard.
    EXPECT_TRUE(window.CmdRestore->isHidden());
    EXPECT_TRUE(window.moRestore->isEnabled());
    EXPECT_EQ(window.TargetDirectories->path(), "C:\\");
    EXPECT_EQ(fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?"), "?");
}

TEST_F(FrmMainTest, ATargetDriveAbsentAtStartDisablesBackupAndRecoversWhenItComes) {
    AppSettings.DriveTarget = "Q:";
    FrmMain window;
    window.Form_Load();

    const QString absent = "Het doelstation Q: is niet aangesloten. Sluit deze aan of selecteer "
                           "een ander station hierboven\r\n";
    EXPECT_EQ(window.LblStation->text(), absent);
    EXPECT_TRUE(window.blnDriveLost);
    EXPECT_EQ(buttonState(window), "00001000");
    EXPECT_TRUE(window.Timer1->isActive());

    // Each tick with the drive still away steps the dots on the text of the start.
    window.Timer1_Timer();
    EXPECT_EQ(window.LblStation->text(), absent + " .");
    window.Timer1_Timer();
    window.Timer1_Timer();
    EXPECT_EQ(window.LblStation->text(), absent + " . . .");
    window.Timer1_Timer();
    EXPECT_EQ(window.LblStation->text(), absent);

    DriveTable::machine().setFolder('Q', machine.temp.native("Stick").string());
    window.Timer1_Timer();
    EXPECT_FALSE(window.blnDriveLost);
    EXPECT_EQ(window.LblStation->text(), "");
    EXPECT_EQ(buttonState(window), "11110111");
    EXPECT_EQ(window.TargetDirectories->path(), "Q:\\");
    DriveTable::machine().remove('Q');
}

TEST_F(FrmMainTest, RestoreOnlyHidesTheThreeBackupButtonsForGood) {
    AppSettings.blnRestoreOnly = true;
    FrmMain window;
    window.Form_Load();
    EXPECT_TRUE(window.Cmd_Backup->isHidden());
    EXPECT_TRUE(window.CmdSelectFiles->isHidden());
    EXPECT_TRUE(window.CmdVerwijder->isHidden());
    window.subButtons(true);
    EXPECT_TRUE(window.Cmd_Backup->isHidden());
    EXPECT_TRUE(window.Cmd_Backup->isEnabled());
}

TEST_F(FrmMainTest, SubButtonsSwitchesExactlyItsEightControls) {
    FrmMain window;
    window.Form_Load();
    window.subButtons(false);
    EXPECT_EQ(buttonState(window), "00001000");
    for (QAction* stays :
         {window.MoVoegToe, window.MoVerwijder, window.MoAfsluiten, window.MoHelp, window.MoAbout})
        EXPECT_TRUE(stays->isEnabled()) << stays->objectName().toStdString();
    for (QWidget* stays :
         {static_cast<QWidget*>(window.LstSelectedFiles), static_cast<QWidget*>(window.TargetDrive),
          static_cast<QWidget*>(window.TargetDirectories),
          static_cast<QWidget*>(window.TargetFileLst)})
        EXPECT_TRUE(stays->isEnabled()) << stays->objectName().toStdString();
    window.subButtons(true);
    EXPECT_EQ(buttonState(window), "11110111");
}

TEST_F(FrmMainTest, RefreshStatusReplacesPassingTextsAndCountsTheList) {
    AppSettings.LastBackup = machine.clock.date - 1;
    FrmMain window;
    window.Form_Load();
    EXPECT_EQ(window.TxtLastBackup->text(),
              "Laatste backup gemaakt op: 16-nov-2026 (1 dagen geleden)");
    window.setPanelText(1, "Files verwijderd");
    window.LstSelectedFiles->addItem("C:\\Docs\\b.doc");
    window.RefreshStatus();
    EXPECT_EQ(window.panelText(1), "Aantal files: 4");
    EXPECT_EQ(AppSettings.AantalFiles, 4);
}

TEST_F(FrmMainTest, TheWindowSnapsBackToItsMinimumHeight) {
    FrmMain window;
    window.Form_Load();
    window.show();
    window.resize(window.width(), window.height() / 2);
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    window.resize(window.width() - 100, window.height() + 150);
    EXPECT_GT(window.heightTwips(), 9000);
}

TEST_F(FrmMainTest, OpeningABackupFolderOffersItsDeletionAndShowsItsFiles) {
    FrmMain window;
    window.Form_Load();
    window.TargetDirectories->setPath("E:\\Backup 16-11-2026");
    EXPECT_FALSE(window.CmdDeleteDir->isHidden());
    EXPECT_EQ(window.CmdDeleteDir->text(), "Verwijder E:\\Backup 16-11-2026");
    EXPECT_EQ(window.Lbl_InhoudDir->text(), "Bestanden in de map E:\\Backup 16-11-2026");
    EXPECT_EQ(window.TargetFileLst->count(), 2);
}

TEST_F(FrmMainTest, TheHelpMenuAndF1BothOpenTheHelpFile) {
    App.HelpFile = "C:\\Program\\NV BU tool.chm";
    HelpKey help;
    qApp->installEventFilter(&help);
    FrmMain window;
    window.Form_Load();
    window.show();
    window.MoHelp->trigger();
    QCoreApplication::processEvents();
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_F1);
    QCoreApplication::processEvents();
    qApp->removeEventFilter(&help);
    EXPECT_EQ(machine.shell.opened, (std::vector<std::string>{App.HelpFile, App.HelpFile}));
}

TEST_F(FrmMainTest, ClosingTheMainWindowEndsTheProgramOnlyAfterTheSplash) {
    for (int row : {0, 1, 2, 3, 5, 6, 7, 10})
        machine.temp.write("Norvale/" + fKnownFileName(row), "data");
    machine.temp.write("Norvale/NVbackuptool.ini", "");
    machine.process.path = machine.temp.drive("Norvale");
    QtStartWindows windows;
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    ASSERT_TRUE(windows.mainWindow() && windows.splash());
    EXPECT_EQ(windows.mainWindow()->LstSelectedFiles->count(), 9);
    EXPECT_EQ(windows.mainWindow()->panelText(1), "Aantal files: 9");

    // The timers die with the test, whatever becomes of the event loop.
    QObject scope;
    QTimer::singleShot(0, &scope, [&] { windows.mainWindow()->MoAfsluiten_Click(); });
    QTimer::singleShot(50, &scope, [&] {
        EXPECT_TRUE(windows.splash() != nullptr);
        machine.clock.timeOfDay += 2001;
    });
    QTimer::singleShot(5000, &scope, [&] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_FALSE(windows.mainWindow());
    EXPECT_FALSE(windows.splash());
}

TEST_F(FrmMainTest, RestoreOnlyStartOpensTheWindowWithoutTheBackupButtons) {
    // A required file, row 1, is missing.
    for (int row : {0, 2, 3, 5, 6, 7, 10})
        machine.temp.write("Norvale/" + fKnownFileName(row), "data");
    machine.process.path = machine.temp.drive("Norvale");
    machine.boxes.answer(Answer::Yes);
    auto windows = std::make_unique<QtStartWindows>();
    ASSERT_EQ(Main(*windows), MainOutcome::Running);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    std::unique_ptr<FrmMain> window(windows->mainWindow());
    std::unique_ptr<FrmSplash> splash(windows->splash());
    // Without the watch, closing these windows does not end the test's event loop.
    windows.reset();
    EXPECT_TRUE(window->Cmd_Backup->isHidden());
    EXPECT_TRUE(window->CmdSelectFiles->isHidden());
    EXPECT_TRUE(window->CmdVerwijder->isHidden());
    EXPECT_FALSE(window->isHidden());
    // The wizard is open from the start, and its Stop leaves the buttons hidden.
    EXPECT_EQ(window->intWizardStep, 1);
    EXPECT_FALSE(window->PicRestore->isHidden());
    window->CmdWizRestore_Click(2);
    EXPECT_TRUE(window->Cmd_Backup->isHidden());
    EXPECT_FALSE(window->CmdRestore->isHidden());
}

} // namespace
