// A folder on the stick that links to the user's documents is no backup folder: the panel does
// not offer it, and deleting the folder it stands in never empties what it leads to.
#include "mainwindow/FrmMain.h"
#include "support/FakeControls.h"
#include "support/ProgramFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

TEST(TargetPanelLinks, ALinkedFolderIsNotOfferedAndWhatItLeadsToStays) {
    nvtest::TestMachine machine;
    machine.temp.write("Thuis/Documenten/brief.txt", "van de gebruiker");
    machine.temp.write("Stick/Backup2026-11-13/NV.ini", "backup");
    const fs::path link = machine.temp.native("Stick/Backup2026-11-13/Norvale");
    fs::create_directory_symlink(machine.temp.native("Thuis/Documenten"), link);
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    nvtest::useProgramFolder(machine, "E:", {});
    nvtest::FakeMainWindow w;
    w.form().Form_Load();

    ASSERT_TRUE(w.openFolder("Backup2026-11-13"));
    EXPECT_EQ(w.TargetDirectories.rowOf("Norvale"), -1);
    machine.boxes.answer(Answer::Yes);
    ASSERT_TRUE(w.CmdDeleteDir.click());
    EXPECT_EQ(machine.temp.read("Thuis/Documenten/brief.txt"), "van de gebruiker");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-13/NV.ini"));
}
