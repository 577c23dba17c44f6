#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/StartWindows.h"
#include "mainwindow/qt/TargetLists.h"
#include "production/KnownFile.h"
#include "startup/Settings.h"
#include "support/ProgramFolder.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// A production folder with a list of three rows, and a stick E: holding one loose file.
class FrmMainTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Stick/notes.txt", "x");
        nvtest::useProgramFolder(machine, "E:", {"NV.ini", "stockA.NVD", "C:\\Docs\\a.doc"});
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
    // Each tick with the drive away steps the dots on the label's text.
    void tickDots(FrmMain& window, const QString& text, std::initializer_list<const char*> tails) {
        for (const char* tail : tails) {
            EXPECT_EQ(window.LblStation->text(), text + tail);
            window.Timer1_Timer();
        }
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
};

TEST_F(FrmMainTest, FormLoadFillsTheWindowAndOpensTheTargetDrive) {
    FrmMain window;
    window.Form_Load();

    EXPECT_EQ(window.windowTitle(), "Norvale Backup & Restore ");
    ASSERT_EQ(window.LstSelectedFiles->count(), 3);
    EXPECT_EQ(window.LstSelectedFiles->item(2)->text(), "C:\\Docs\\a.doc");
    // The assignment of E: moved the selection, so the drive change did its whole work.
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    EXPECT_EQ(window.Lbl_InhoudDir->text(), "Bestanden in de map E:\\");
    ASSERT_EQ(window.TargetFileLst->count(), 1);
    EXPECT_EQ(window.TargetFileLst->item(0)->text(), "notes.txt");
    EXPECT_EQ(buttonState(window), "11110111");
    EXPECT_TRUE(window.CmdDeleteDir->isHidden());
    EXPECT_EQ(fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?"), "E:");

    // The window snaps back to its minimum height, and grows freely.
    window.show();
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    window.resize(window.width(), window.height() / 2);
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    window.resize(window.width() - 100, window.height() + 150);
    EXPECT_GT(window.heightTwips(), 9000);
}

TEST_F(FrmMainTest, ATargetDriveAbsentAtStartOrPulledLaterIsWatchedUntilItComesBack) {
    AppSettings.DriveTarget = "Q:";
    FrmMain window;
    window.Form_Load();
    EXPECT_TRUE(window.blnDriveLost);
    // The backup controls go off; the menu's other entries stay.
    EXPECT_EQ(buttonState(window), "00001000");
    EXPECT_TRUE(window.MoVoegToe->isEnabled() && window.MoAfsluiten->isEnabled());
    tickDots(window,
             "Het doelstation Q: is niet aangesloten. Sluit deze aan of selecteer een ander "
             "station hierboven\r\n",
             {"", " .", " . .", " . . .", ""});

    nvtest::FolderDrive q('Q', machine.temp.native("Stick"));
    window.Timer1_Timer();
    EXPECT_FALSE(window.blnDriveLost);
    EXPECT_EQ(window.LblStation->text(), "");
    EXPECT_EQ(buttonState(window), "11110111");
    EXPECT_EQ(window.TargetDirectories->path(), "Q:\\");

    // Pulled while watched: the buttons stay usable, and the first tick with the stick back
    // shows it as it is now, without a click.
    fs::rename(machine.temp.native("Stick"), machine.temp.native("Away"));
    window.Timer1_Timer();
    tickDots(window, "U heeft het station Q: ontkoppeld, sluit deze weer aan\r\n",
             {" .", " . .", " . . .", ""});
    EXPECT_TRUE(window.blnDriveLost);
    EXPECT_EQ(buttonState(window), "11110111");
    fs::create_directories(machine.temp.native("Away/Backup2026-11-17"));
    fs::rename(machine.temp.native("Away"), machine.temp.native("Stick"));
    window.Timer1_Timer();
    EXPECT_FALSE(window.blnDriveLost);
    EXPECT_EQ(window.LblStation->text(), "");
    EXPECT_EQ(window.TargetDirectories->count(), 2);
}

TEST_F(FrmMainTest, ClosingTheMainWindowEndsTheProgramOnlyAfterTheSplash) {
    for (int row : {0, 1, 2, 3, 5, 6, 7, 10})
        machine.temp.write("Norvale/" + fKnownFileName(row), "data");
    machine.process.path = machine.temp.drive("Norvale");
    QtStartWindows windows;
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    ASSERT_TRUE(windows.mainWindow() && windows.splash());

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

} // namespace
