// A restore from a backup folder that was prepared to reach elsewhere, and what a restored file
// keeps of the production file it replaces.
#include "platform/FailureText.h"
#include "restore/RestoreRun.h"
#include "support/FailureOf.h"
#include "support/TestMachine.h"

#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

class Rows : public RestoreList {
public:
    int count() const override { return static_cast<int>(texts.size()); }
    std::string text(int row) const override { return texts[row]; }
    bool selected(int row) const override { return flags[row]; }
    void setSelected(int row, bool on) override { flags[row] = on; }
    std::vector<std::string> texts;
    std::vector<bool> flags;
};

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";

class RestoreFromStick : public ::testing::Test {
protected:
    void select(const std::vector<std::string>& files) {
        rows.texts.clear();
        for (const std::string& file : files)
            rows.texts.push_back(machine.temp.drive("Norvale\\" + file));
        rows.flags.assign(files.size(), true);
    }
    // Restores on a thread of its own, so that a read that blocks fails the test instead of
    // hanging it; a FIFO is then opened for writing to let the read end.
    std::string restore(const std::string& folder) {
        auto run = std::async(std::launch::async, [&] {
            return fRestoreSelectedRows(rows, machine.temp.drive(folder), intLoop);
        });
        if (run.wait_for(std::chrono::seconds(20)) == std::future_status::timeout) {
            ADD_FAILURE() << "the restore hangs";
            for (const auto& entry : fs::directory_iterator(machine.temp.native(folder)))
                if (entry.is_fifo())
                    ::close(::open(entry.path().c_str(), O_WRONLY | O_NONBLOCK));
        }
        return run.get();
    }
    mode_t modeOf(const std::string& relative) const {
        struct stat st {};
        ::stat(machine.temp.native(relative).c_str(), &st);
        return st.st_mode & 07777;
    }

    nvtest::TestMachine machine;
    Rows rows;
    int16_t intLoop = -1;
};

TEST_F(RestoreFromStick, LinksFifosAndDevicesInTheBackupFolderAreNotFound) {
    machine.temp.write("etc/passwd", "root:x:0:0");
    machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
    machine.temp.write("Elders/NV_Ledger01.mdb", "een ander grootboek");
    const std::vector<std::string> names = {"NV.ini",  "Nota.ini",        "stockA.NVD",
                                            "Dev.NVD", "NV_Ledger01.mdb", "Goed.ini"};
    for (const std::string& name : names)
        machine.temp.write("Norvale/" + name, "productie " + name);
    const fs::path backup = machine.temp.native("Stick/Backup2026-11-17");
    fs::create_directories(backup);
    fs::create_symlink(machine.temp.native("etc/passwd"), backup / "NV.ini");
    fs::create_symlink("../../Thuis/.ssh/id_rsa", backup / "Nota.ini");
    ASSERT_EQ(::mkfifo((backup / "stockA.NVD").c_str(), 0644), 0);
    const bool device = ::mknod((backup / "Dev.NVD").c_str(), S_IFCHR | 0666, makedev(1, 3)) == 0;
    if (!device)
        machine.temp.write("Stick/Backup2026-11-17/Dev.NVD", "backup Dev.NVD");
    machine.temp.write("Stick/Backup2026-11-17/Goed.ini", "backup Goed.ini");
    // A folder of the backup that leads elsewhere holds nothing to restore either.
    fs::create_directory_symlink(machine.temp.native("Elders"), backup / "Norvale");

    select(names);
    EXPECT_EQ(restore("Stick\\Backup2026-11-17"), kDone + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, true, device, true, false}));
    EXPECT_EQ(machine.temp.read("Norvale/Goed.ini"), "backup Goed.ini");
    for (const std::string name : {"NV.ini", "Nota.ini", "stockA.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "productie " + name) << name;
    if (device) {
        EXPECT_EQ(machine.temp.read("Norvale/Dev.NVD"), "productie Dev.NVD");
    }

    select({"NV_Ledger01.mdb"});
    EXPECT_EQ(restore("Stick\\Backup2026-11-17\\Norvale"), kDone + kRestoreNotFoundText);
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "productie NV_Ledger01.mdb");
}

// The stick's own bits say nothing of the production file: exFAT shows every file as rwxrwxrwx.
TEST_F(RestoreFromStick, ARestoredFileKeepsTheModeAndOwnerOfTheFileItReplaces) {
    for (const char* name : {"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini", "stockA.NVD"}) {
        machine.temp.write(std::string("Stick/B/") + name, std::string("backup ") + name);
        fs::permissions(machine.temp.native(std::string("Stick/B/") + name), fs::perms(0777));
    }
    machine.temp.write("Norvale/NV_Ledger01.mdb", "productie");
    fs::permissions(machine.temp.native("Norvale/NV_Ledger01.mdb"), fs::perms(0600));
    machine.temp.write("Norvale/NV.ini", "productie");
    fs::permissions(machine.temp.native("Norvale/NV.ini"), fs::perms(0640));
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(machine.temp.native("Norvale/NV.ini").c_str(), 4321, 4321), 0);
    }

    const mode_t umask = ::umask(022);
    ::umask(umask);
    select({"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini"});
    EXPECT_EQ(restore("Stick\\B"), kDone);
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "backup NV_Ledger01.mdb");
    EXPECT_EQ(modeOf("Norvale/NV_Ledger01.mdb"), 0600u);
    EXPECT_EQ(modeOf("Norvale/NV.ini"), 0640u);
    if (root) {
        struct stat st {};
        ::stat(machine.temp.native("Norvale/NV.ini").c_str(), &st);
        EXPECT_EQ(st.st_uid, 4321u);
        EXPECT_EQ(st.st_gid, 4321u);
    }
    // A file that was not there takes the user's umask, and is never writable for all.
    EXPECT_EQ(modeOf("Norvale/Nieuw.ini"), 0775u & ~umask);

    // The source allows no more than it has.
    machine.temp.write("Stick/C/Nieuw2.ini", "x");
    fs::permissions(machine.temp.native("Stick/C/Nieuw2.ini"), fs::perms(0600));
    select({"Nieuw2.ini"});
    EXPECT_EQ(restore("Stick\\C"), kDone);
    EXPECT_EQ(modeOf("Norvale/Nieuw2.ini"), 0600u & ~umask);
}

TEST_F(RestoreFromStick, AReadOnlyProductionFileIsAFailureAtItsRow) {
    for (const char* name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"}) {
        machine.temp.write(std::string("Stick/B/") + name, "backup");
        machine.temp.write(std::string("Norvale/") + name, "productie");
    }
    fs::permissions(machine.temp.native("Norvale/stockA.NVD"), fs::perms(0444));
    select({"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"});
    EXPECT_EQ(nvtest::failureOf([&] { restore("Stick\\B"); }), kFailAccessRefused);
    EXPECT_EQ(intLoop, 1);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "backup");
    EXPECT_EQ(machine.temp.read("Norvale/stockA.NVD"), "productie");
    EXPECT_EQ(modeOf("Norvale/stockA.NVD"), 0444u);
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "productie");
}

} // namespace
