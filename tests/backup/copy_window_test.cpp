#include "support/FailureOf.h"
#include "support/FakeControls.h"
#include "support/ProgramFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The program runs from a folder of its own, with the clip beside it in any letters; without
// it, the load fails by a number of its own, so that the run's box names the clip rather than
// blaming the backup drive, and the run makes nothing.
TEST(CopyWindow, PlaysTheClipBesideTheProgramAndABackupWithoutItTellsItsOwnNumber) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Program/filecopy.avi", "RIFF");
    nvtest::FakeCopyWindow window;
    window.form().Form_Load();
    EXPECT_EQ(window.Animation1.opened, machine.temp.drive("Program") + "\\FILECOPY.AVI");
    EXPECT_TRUE(window.Animation1.playing);

    fs::remove(machine.temp.native("Program/filecopy.avi"));
    EXPECT_EQ(nvtest::failureOf([] { nvtest::FakeCopyWindow().form().Form_Load(); }),
              kFailCopyClip);

    machine.temp.write("Norvale/NV.ini", "rekeningen");
    fs::create_directories(machine.temp.native("Stick"));
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    nvtest::useProgramFolder(machine, "E:", {"NV.ini"});
    nvtest::FakeMainWindow main;
    main.form().Form_Load();
    EXPECT_TRUE(main.Cmd_Backup.click());
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_EQ(machine.boxes.shown[1].text,
              "95 De animatie FILECOPY.AVI ontbreekt in de map van het programma of kan niet "
              "worden geopend. Installeer het programma opnieuw");
    EXPECT_TRUE(fs::is_empty(machine.temp.native("Stick")));
    ASSERT_EQ(main.copyWindows.size(), 1u);
    EXPECT_FALSE(main.copyWindows[0]->Me.visible());
}

} // namespace
