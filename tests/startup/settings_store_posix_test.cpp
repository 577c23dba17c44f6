// A program folder that cannot be written, as on a read-only mount: the settings file is there,
// but no change of it is kept.

#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Main.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;

namespace {

struct NoWindows : StartWindows {
    void loadMainWindow() override {}
    void showMainWindow() override {}
    void loadSplash() override {}
    void showSplash() override {}
};

// Every action of the user that stores settings there says so once: the start, a whole list
// written back in one batch, and a single store.
TEST(SettingsStore, AReadOnlyProgramFolderIsToldOncePerAction) {
    nvtest::TestMachine machine;
    for (int row : {0, 1, 2, 3, 5, 6, 7, 10})
        machine.temp.write("Norvale/" + fKnownFileName(row), "data");
    machine.process.path = machine.temp.drive("Norvale");
    NoWindows windows;
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    ASSERT_TRUE(machine.boxes.shown.empty());

    const std::string folder = machine.temp.native("Norvale").string();
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "needs root to mount the program folder read-only";
    struct Unmount {
        std::string point;
        ~Unmount() { ::umount2(point.c_str(), MNT_DETACH); }
    } unmount{folder};
    ASSERT_EQ(::mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr),
              0);

    ASSERT_EQ(Main(windows), MainOutcome::Running);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    {
        ProfileBatch batch(*platform().profiles);
        for (int n = 1; n <= 5000; ++n)
            subWriteIni(AppSettings.strIniFile, kSectionFiles, rowKey(n), "C:\\" + rowKey(n));
    }
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    subWriteIni(AppSettings.strIniFile, kSectionBasic, "LastBackup", "17-11-2026");
    ASSERT_EQ(machine.boxes.shown.size(), 3u);
    for (const MessageBoxRequest& box : machine.boxes.shown)
        EXPECT_EQ(box.text, fSettingsNotStoredText(AppSettings.strAppDir));
}

} // namespace
