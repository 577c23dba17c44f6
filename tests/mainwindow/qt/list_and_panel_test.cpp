#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/FileFailure.h"
#include "support/ProgramFolder.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace nv;

namespace {

// A window over a list of n rows and an empty stick E:.
class ListAndPanelTest : public ::testing::Test {
protected:
    void load(int rows) {
        std::vector<std::string> files;
        std::string ini = "[Basic settings]\nAantalFiles=" + std::to_string(rows) +
                          "\ndirfrom=C:\\Data\nDriveTarget=E:\n[Backupfiles]\n";
        for (int n = 1; n <= rows; ++n) {
            files.push_back("C:\\Data\\file" + std::to_string(n) + ".txt");
            ini += "BackUpfile" + std::to_string(n) + "=" + files.back() + "\n";
        }
        nvtest::useProgramFolder(machine, "E:", files);
        machine.temp.write("Norvale/NVbackuptool.ini", nvtest::crlf(ini));
        AppSettings.dirfrom = "C:\\Data";
        window.Form_Load();
    }
    void SetUp() override { std::filesystem::create_directories(machine.temp.native("Stick")); }
    // Removes the top row with the current row's button, answering Yes.
    void removeTopRow() {
        window.LstSelectedFiles->setCurrentRow(0);
        machine.boxes.answer(Answer::Yes);
        window.CmdVerwijder_Click();
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    FrmMain window;
};

TEST_F(ListAndPanelTest, EditsOfTheListAreWrittenAndKeysAboveTheCountStay) {
    load(10);
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window.LstSelectedFiles->selectedItems().size(), 0);
    // The next dialog starts where the last file came from; a cancel adds nothing.
    machine.dialogs.answers = {"C:\\kas\\kas"};
    window.MoVoegToe->trigger();
    QCoreApplication::processEvents();
    window.CmdSelectFiles_Click();
    EXPECT_EQ(machine.dialogs.titles[0], "Files voor BackUp");
    EXPECT_EQ(machine.dialogs.startedIn, (std::vector<std::string>{"C:\\Data", "C:"}));
    EXPECT_EQ(window.panelText(1), "Aantal files: 11");

    window.LstSelectedFiles->setCurrentRow(4);
    machine.boxes.answer(Answer::No);
    window.CmdVerwijder_Click();
    EXPECT_EQ(machine.boxes.shown[0].text,
              "Wilt u het bestand C:\\Data\\file5.txt niet meer meenemen in de backup?\r\n\r\nHet "
              "bestand blijft wel gewoon bewaard maar loopt niet meer mee in de automatische "
              "backup");
    EXPECT_EQ(machine.boxes.shown[0].buttons, Buttons::YesNo);
    EXPECT_EQ(window.LstSelectedFiles->count(), 11);

    // Ctrl A selects all (Ctrl Shift A did not), yet only the current row goes.
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(window.LstSelectedFiles->selectedItems().size(), 11);
    window.LstSelectedFiles->setCurrentRow(0);
    machine.boxes.answer(Answer::Yes);
    window.MoVerwijder->trigger();
    QCoreApplication::processEvents();
    for (int left = 10; left > 2; --left)
        removeTopRow();
    // Keys are changed in place; those above the count keep the last text they were given.
    std::string ini = "[Basic settings]\nAantalFiles=2\ndirfrom=C:\nDriveTarget=E:\n"
                      "[Backupfiles]\nBackUpfile1=C:\\Data\\file10.txt\n";
    for (int key = 2; key <= 11; ++key)
        ini += "BackUpfile" + std::to_string(key) + "=C:\\kas\\kas\n";
    EXPECT_EQ(machine.temp.read("Norvale/NVbackuptool.ini"), nvtest::crlf(ini));

    removeTopRow();
    removeTopRow();
    EXPECT_EQ(AppSettings.strFiles, std::vector<std::string>{""});
    EXPECT_EQ(window.panelText(1), "Aantal files: 0");
}

// Focus alone chooses no row: tabbing into the list, or the list taking the focus when the
// window opens with the backup buttons off for an absent drive, leaves nothing to remove.
TEST_F(ListAndPanelTest, FocusAloneChoosesNoRowToRemove) {
    for (const char* drive : {"E:", "Q:"}) {
        SCOPED_TRACE(drive);
        FrmMain main;
        nvtest::useProgramFolder(machine, drive, {"C:\\Data\\NV_Ledger01.mdb", "C:\\Data\\b.txt"});
        main.Form_Load();
        main.show();
        main.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
        if (main.CmdSelectFiles->isEnabled()) {
            main.CmdSelectFiles->setFocus(Qt::OtherFocusReason);
            QTest::keyClick(main.CmdSelectFiles, Qt::Key_Tab);
        }
        ASSERT_TRUE(main.LstSelectedFiles->hasFocus());
        machine.boxes.shown.clear();
        main.MoVerwijder->trigger();
        QCoreApplication::processEvents();
        ASSERT_EQ(machine.boxes.shown.size(), 1u);
        EXPECT_EQ(machine.boxes.shown[0].text,
                  "Selecteer eerst het te verwijderen bestand uit de lijst");
        EXPECT_EQ(machine.boxes.shown[0].title, "Verwijderen bestanden");
        EXPECT_EQ(main.LstSelectedFiles->count(), 2);

        // A row the user walks to with the keyboard is chosen, and is the one asked about.
        QTest::keyClick(main.LstSelectedFiles, Qt::Key_Down);
        machine.boxes.answer(Answer::No);
        main.MoVerwijder->trigger();
        QCoreApplication::processEvents();
        ASSERT_EQ(machine.boxes.shown.size(), 2u);
        EXPECT_TRUE(QString::fromStdString(machine.boxes.shown[1].text)
                        .startsWith("Wilt u het bestand C:\\Data\\NV_Ledger01.mdb niet meer"));
    }
}

// A folder on the stick that links to the user's documents is no backup folder: it is not
// offered, and "Verwijder" never empties what it leads to.
TEST_F(ListAndPanelTest, ALinkedFolderIsNotOfferedAndWhatItLeadsToStays) {
    machine.temp.write("Thuis/Documenten/brief.txt", "van de gebruiker");
    std::filesystem::create_directory_symlink(machine.temp.native("Thuis/Documenten"),
                                              machine.temp.native("Stick/Backup2026-11-13"));
    load(1);
    for (int i = 0; i < window.TargetDirectories->count(); ++i)
        EXPECT_FALSE(window.TargetDirectories->item(i)->text().endsWith("Backup2026-11-13"));
    try {
        window.TargetDirectories->setPath("E:\\Backup2026-11-13");
    } catch (const FileFailure&) {
    }
    machine.boxes.answer(Answer::Yes);
    window.CmdDeleteDir_Click();
    EXPECT_EQ(machine.temp.read("Thuis/Documenten/brief.txt"), "van de gebruiker");
    EXPECT_TRUE(std::filesystem::is_symlink(machine.temp.native("Stick/Backup2026-11-13")));
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
}

} // namespace
