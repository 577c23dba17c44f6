#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/posix/DriveTable.h"
#include "startup/AppSettings.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <QAction>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;

namespace {

// A window over a settings file with n rows and a stick E: with three kinds of backup folder.
class ListAndPanelTest : public ::testing::Test {
protected:
    void load(int rows) {
        std::string ini = "[Basic settings]\nAantalFiles=" + std::to_string(rows) +
                          "\ndirfrom=C:\\Data\nDriveTarget=E:\n[Backupfiles]\n";
        auto& s = AppSettings;
        s.strFiles = {""};
        for (int n = 1; n <= rows; ++n) {
            std::string row = "C:\\Data\\file" + std::to_string(n) + ".txt";
            ini += "BackUpfile" + std::to_string(n) + "=" + row + "\n";
            s.strFiles.push_back(row);
        }
        machine.temp.write("Norvale/NVbackuptool.ini", crlf(ini));
        s.strIniFile = machine.temp.drive("Norvale\\NVbackuptool.ini");
        s.AantalFiles = static_cast<int16_t>(rows);
        s.dirfrom = "C:\\Data";
        s.DriveTarget = "E:";
        s.LastBackup = machine.clock.date;
        window.Form_Load();
    }
    void SetUp() override {
        machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-16/stockA.NVD", "x");
        machine.temp.write("Stick/Backup2026-11-15/Norvale/NV.ini", "x");
        std::filesystem::create_directories(machine.temp.native("Stick/Backup2026-11-14"));
        DriveTable::machine().setFolder('E', machine.temp.native("Stick").string());
    }
    void TearDown() override { DriveTable::machine().remove('E'); }

    std::string ini() { return machine.temp.read("Norvale/NVbackuptool.ini"); }
    std::string value(const char* section, const std::string& key) {
        return fReadIni(AppSettings.strIniFile, section, key, "?");
    }

    nvtest::TestMachine machine;
    FrmMain window;
};

TEST_F(ListAndPanelTest, AddingAFileAppendsItsRowAndStartsTheNextDialogInItsFolder) {
    load(2);
    machine.dialogs.answers = {"C:\\kas\\kas", "C:\\boot.ini"};
    window.CmdSelectFiles_Click();
    window.MoVoegToe->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(machine.dialogs.titles[0], "Files voor BackUp");
    EXPECT_EQ(machine.dialogs.startedIn, (std::vector<std::string>{"C:\\Data", "C:"}));
    EXPECT_EQ(AppSettings.dirfrom, "C:");
    EXPECT_EQ(window.panelText(1), "Aantal files: 4");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile3"), "C:\\kas\\kas");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile4"), "C:\\boot.ini");
    EXPECT_EQ(value(kSectionBasic, "AantalFiles"), "4");
    EXPECT_EQ(value(kSectionBasic, "dirfrom"), "C:");
    EXPECT_EQ(AppSettings.strFiles.size(), 5u);
    EXPECT_EQ(AppSettings.strFiles[4], "C:\\boot.ini");

    // A cancel adds nothing and leaves dirfrom, yet the list is written all the same.
    std::filesystem::remove(machine.temp.native("Norvale/NVbackuptool.ini"));
    window.CmdSelectFiles_Click();
    EXPECT_EQ(window.LstSelectedFiles->count(), 4);
    EXPECT_EQ(value(kSectionBasic, "AantalFiles"), "4");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile1"), "C:\\Data\\file1.txt");
}

TEST_F(ListAndPanelTest, RemovingRowsAsksFirstAndLeavesHigherKeysInTheFile) {
    load(12);
    // Nothing current: the box, whatever the list holds.
    window.CmdVerwijder_Click();
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text,
              "Selecteer eerst het te verwijderen bestand uit de lijst");
    EXPECT_EQ(machine.boxes.shown[0].title, "Verwijderen bestanden");

    window.LstSelectedFiles->setCurrentRow(4);
    machine.boxes.answer(Answer::No);
    window.CmdVerwijder_Click();
    EXPECT_EQ(machine.boxes.shown[1].text,
              "Wilt u het bestand C:\\Data\\file5.txt niet meer meenemen in de backup?\r\n\r\nHet "
              "bestand blijft wel gewoon bewaard maar loopt niet meer mee in de automatische "
              "backup");
    EXPECT_EQ(machine.boxes.shown[1].title, "Backup files");
    EXPECT_EQ(machine.boxes.shown[1].buttons, Buttons::YesNo);
    EXPECT_EQ(machine.boxes.shown[1].icon, Icon::Question);
    EXPECT_EQ(window.LstSelectedFiles->count(), 12);

    // With all rows selected only the current one goes; down to 3 rows.
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(window.LstSelectedFiles->selectedItems().size(), 12);
    for (int left = 12; left > 3; --left) {
        window.LstSelectedFiles->setCurrentRow(0);
        machine.boxes.answer(Answer::Yes);
        window.MoVerwijder->trigger();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(window.LstSelectedFiles->count(), 3);
    EXPECT_EQ(window.LstSelectedFiles->item(0)->text(), "C:\\Data\\file10.txt");
    EXPECT_EQ(value(kSectionBasic, "AantalFiles"), "3");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile1"), "C:\\Data\\file10.txt");
    // Keys above the count keep the last text they were given.
    EXPECT_EQ(value(kSectionFiles, "BackUpfile4"), "C:\\Data\\file12.txt");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile12"), "C:\\Data\\file12.txt");
    EXPECT_EQ(AppSettings.strFiles.size(), 4u);

    for (int left = 3; left > 0; --left) {
        window.LstSelectedFiles->setCurrentRow(0);
        machine.boxes.answer(Answer::Yes);
        window.CmdVerwijder_Click();
    }
    EXPECT_EQ(value(kSectionBasic, "AantalFiles"), "0");
    EXPECT_EQ(value(kSectionFiles, "BackUpfile1"), "C:\\Data\\file12.txt");
    EXPECT_EQ(AppSettings.strFiles, std::vector<std::string>{""});
    EXPECT_EQ(window.panelText(1), "Aantal files: 0");
}

TEST_F(ListAndPanelTest, OnlyCtrlAloneWithASelectsAll) {
    load(3);
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window.LstSelectedFiles->selectedItems().size(), 0);
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(window.LstSelectedFiles->selectedItems().size(), 3);
}

TEST_F(ListAndPanelTest, DeletingBackupFoldersFlatMirroredAndEmpty) {
    load(1);
    const std::string several =
        "U heeft meerdere directories in deze file staan, u dient deze \u00e9\u00e9n voor "
        "\u00e9\u00e9n te verwijderen";
    // A flat folder goes, after the question.
    window.TargetDirectories->setPath("E:\\Backup2026-11-16");
    machine.boxes.answer(Answer::Yes);
    QTest::mouseClick(window.CmdDeleteDir, Qt::LeftButton);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text, "Wilt u de map E:\\Backup2026-11-16 verwijderen?");
    EXPECT_EQ(machine.boxes.shown[0].title, "Verwijderen Map");
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-16"));
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    EXPECT_EQ(window.panelText(1), "Aantal files: 1");

    // A mirrored one, only subfolders, and an empty one: the box, and both stay.
    for (const char* folder : {"Backup2026-11-15", "Backup2026-11-14"}) {
        window.TargetDirectories->setPath(QString("E:\\") + folder);
        machine.boxes.answer(Answer::Yes);
        window.CmdDeleteDir_Click();
        EXPECT_EQ(machine.boxes.shown.back().text, several);
        EXPECT_TRUE(machine.temp.exists(std::string("Stick/") + folder));
        EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    }
    EXPECT_TRUE(machine.temp.exists("Stick/Backup2026-11-15/Norvale/NV.ini"));

    // No keeps the folder and still goes back to the root.
    window.TargetDirectories->setPath("E:\\Backup2026-11-15\\Norvale");
    machine.boxes.answer(Answer::No);
    window.CmdDeleteDir_Click();
    EXPECT_TRUE(machine.temp.exists("Stick/Backup2026-11-15/Norvale/NV.ini"));
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
}

} // namespace
