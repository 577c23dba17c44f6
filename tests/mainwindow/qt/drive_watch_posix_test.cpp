#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"
#include "support/ProgramFolder.h"

#include <QLabel>
#include <QPushButton>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// Ticks with the drive away run the dots one, two, three, none, while the buttons stay usable;
// the first tick with the drive back brings the panel back without a click.
void unplugTicksAndReplug(FrmMain& window, const QString& entry,
                          const std::function<void()>& unplug,
                          const std::function<void()>& replug) {
    ASSERT_EQ(window.LblStation->text(), "");
    window.Timer1_Timer();
    EXPECT_FALSE(window.blnDriveLost);

    unplug();
    const QString text =
        QString("U heeft het station %1 ontkoppeld, sluit deze weer aan\r\n").arg(entry);
    for (const char* tail : {" .", " . .", " . . .", "", " ."}) {
        window.Timer1_Timer();
        EXPECT_EQ(window.LblStation->text(), text + tail);
        EXPECT_TRUE(window.blnDriveLost);
        EXPECT_TRUE(window.Cmd_Backup->isEnabled());
    }

    replug();
    window.Timer1_Timer();
    EXPECT_FALSE(window.blnDriveLost);
    EXPECT_EQ(window.LblStation->text(), "");
    EXPECT_TRUE(window.CmdVervers->isHidden());
    EXPECT_FALSE(window.CmdRestore->isHidden());
}

TEST(DriveWatch, AFolderDriveRenamedAwayAndBack) {
    nvtest::TestMachine machine;
    machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
    nvtest::FolderDrive stick('E', machine.temp.native("Stick"));
    nvtest::useProgramFolder(machine, "E:", {});
    FrmMain window;
    window.Form_Load();
    unplugTicksAndReplug(
        window,
        "E:", [&] { fs::rename(machine.temp.native("Stick"), machine.temp.native("Away")); },
        [&] { fs::rename(machine.temp.native("Away"), machine.temp.native("Stick")); });
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    EXPECT_EQ(window.TargetDirectories->count(), 2);
}

TEST(DriveWatch, AStickUnderMediaUnmountedAndMountedAgain) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to mount";
    fs::path point = "/media/nvwatch-" + std::to_string(::getpid());
    fs::create_directories(point);
    auto mountStick = [&] { return ::mount("nvwatch", point.c_str(), "tmpfs", 0, "size=1m") == 0; };
    if (!mountStick()) {
        fs::remove(point);
        GTEST_SKIP() << "cannot mount tmpfs here";
    }
    fs::create_directories(point / "Backup2026-11-16");
    std::string letter;
    for (const DriveInfo& d : DriveTable::machine().list())
        if (d.root == point.string())
            letter = std::string(1, d.letter) + ":";
    ASSERT_FALSE(letter.empty());

    nvtest::TestMachine machine;
    nvtest::useProgramFolder(machine, letter, {});
    {
        FrmMain window;
        window.Form_Load();
        EXPECT_EQ(window.TargetDirectories->path().toStdString(), letter + "\\");
        unplugTicksAndReplug(
            window, window.TargetDrive->drive(), [&] { ::umount2(point.c_str(), MNT_DETACH); },
            [&] {
                ASSERT_TRUE(mountStick());
                fs::create_directories(point / "Backup2026-11-17");
            });
        // The stick came back as it is now: the folder list shows its new content.
        EXPECT_EQ(window.TargetDirectories->count(), 2);
    }
    ::umount2(point.c_str(), MNT_DETACH);
    fs::remove(point);
}

} // namespace
