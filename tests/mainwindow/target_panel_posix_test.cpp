// The target panel on a drive only Linux can give a test: a letter whose medium is not in.
#include "mainwindow/FrmMain.h"
#include "startup/Settings.h"
#include "support/FakeControls.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

class TargetPanel : public ::testing::Test {
protected:
    void load(const std::string& drive) {
        nvtest::useProgramFolder(machine, drive, {});
        w.form().Form_Load();
    }
    std::string driveTarget() {
        return fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?");
    }

    nvtest::TestMachine machine;
    nvtest::FakeMainWindow w;
};

// No target at all (DriveTarget= in a hand-edited file), then a card reader without its card:
// refused, the dots run on that text, and "Ververs" says nothing until the card is in.
TEST_F(TargetPanel, AReaderWithoutItsCardIsRefusedUntilVerversFindsTheCard) {
    nvtest::FolderDrive reader{'F', machine.temp.native("Reader")};
    load("");
    EXPECT_EQ(w.buttonState(), "00001000");
    ASSERT_TRUE(w.TargetDrive.choose("F:") && w.CmdVervers.click());
    const std::string refused = "Station niet aangesloten of er zit geen kaart of data stick in. "
                                "Sluit het station aan en druk op 'Ververs'\r\n";
    EXPECT_EQ(w.LblStation.caption(), refused);
    ASSERT_TRUE(w.Timer1.tick());
    EXPECT_EQ(w.LblStation.caption(), refused + " .");
    EXPECT_EQ(driveTarget(), "?");
    fs::create_directories(machine.temp.native("Reader"));
    ASSERT_TRUE(w.CmdVervers.click());
    EXPECT_FALSE(w.LblStation.visible());
    EXPECT_EQ(w.buttonState(), "11110111");
    EXPECT_EQ(driveTarget(), "F:");
}

// A folder on the stick that links to the user's documents is no backup folder: the panel does
// not offer it, and deleting the folder it stands in never empties what it leads to.
TEST_F(TargetPanel, ALinkedFolderIsNotOfferedAndWhatItLeadsToStays) {
    machine.temp.write("Thuis/Documenten/brief.txt", "van de gebruiker");
    machine.temp.write("Stick/Backup2026-11-13/NV.ini", "backup");
    const fs::path link = machine.temp.native("Stick/Backup2026-11-13/Norvale");
    fs::create_directory_symlink(machine.temp.native("Thuis/Documenten"), link);
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    load("E:");
    ASSERT_TRUE(w.openFolder("Backup2026-11-13"));
    EXPECT_EQ(w.TargetDirectories.rowOf("Norvale"), -1);
    machine.boxes.answer(Answer::Yes);
    ASSERT_TRUE(w.CmdDeleteDir.click());
    EXPECT_EQ(machine.temp.read("Thuis/Documenten/brief.txt"), "van de gebruiker");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-13/NV.ini"));
}

} // namespace
