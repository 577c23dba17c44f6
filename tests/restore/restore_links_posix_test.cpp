// A restore from a backup folder that was prepared to reach elsewhere, and what a restored file
// keeps of the production file it replaces.
#include "platform/FailureText.h"
#include "restore/RestoreRun.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

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

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";

class RestoreFromStick : public ::testing::Test {
protected:
    // Production files in Norvale/, each holding "productie <name>".
    void produce(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            machine.temp.write("Norvale/" + name, "productie " + name);
    }
    void select(std::vector<std::string> names) {
        for (std::string& name : names)
            name = machine.temp.drive("Norvale\\" + name);
        rows.select(names);
    }
    // Restores on a thread of its own, so that a read that blocks fails the test instead of
    // hanging it; a FIFO is then opened for writing to let the read end.
    std::string restore(const std::string& folder) {
        auto run = std::async(std::launch::async, [&] {
            return fRestoreSelectedRows(rows, stick.drive() + "\\" + folder, intLoop);
        });
        if (run.wait_for(std::chrono::seconds(20)) == std::future_status::timeout) {
            ADD_FAILURE() << "the restore hangs";
            for (const auto& entry : fs::directory_iterator(stick.native(folder)))
                if (entry.is_fifo())
                    ::close(::open(entry.path().c_str(), O_WRONLY | O_NONBLOCK));
        }
        return run.get();
    }
    struct stat statOf(const std::string& name) const {
        struct stat st {};
        ::stat(machine.temp.native("Norvale/" + name).c_str(), &st);
        return st;
    }
    mode_t modeOf(const std::string& name) const { return statOf(name).st_mode & 07777; }
    std::string production(const std::string& name) const {
        return machine.temp.read("Norvale/" + name);
    }

    nvtest::TestMachine machine;
    nvtest::TestStick stick{machine.temp};
    nvtest::RestoreRows rows;
    int16_t intLoop = -1;
};

TEST_F(RestoreFromStick, LinksFifosAndDevicesInTheBackupFolderAreNotFound) {
    machine.temp.write("etc/passwd", "root:x:0:0");
    machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
    machine.temp.write("Elders/NV_Ledger01.mdb", "een ander grootboek");
    const std::vector<std::string> names{"NV.ini",  "Nota.ini",        "stockA.NVD",
                                         "Dev.NVD", "NV_Ledger01.mdb", "Goed.ini"};
    produce(names);
    select(names);
    stick.backupFolder("B", {"Goed.ini"});
    const fs::path backup = stick.native("B");
    fs::create_symlink(machine.temp.native("etc/passwd"), backup / "NV.ini");
    fs::create_symlink("../../Thuis/.ssh/id_rsa", backup / "Nota.ini");
    ASSERT_EQ(::mkfifo((backup / "stockA.NVD").c_str(), 0644), 0);
    const bool device = ::mknod((backup / "Dev.NVD").c_str(), S_IFCHR | 0666, makedev(1, 3)) == 0;
    if (!device)
        stick.backupFolder("B", {"Dev.NVD"});
    // A folder of the backup that leads elsewhere holds nothing to restore either.
    fs::create_directory_symlink(machine.temp.native("Elders"), backup / "Norvale");

    EXPECT_EQ(restore("B"), kDone + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, true, device, true, false}));
    EXPECT_EQ(production("Goed.ini"), "B/Goed.ini");
    for (const std::string name : {"NV.ini", "Nota.ini", "stockA.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(production(name), "productie " + name);
    if (device) {
        EXPECT_EQ(production("Dev.NVD"), "productie Dev.NVD");
    }

    select({"NV_Ledger01.mdb"});
    EXPECT_EQ(restore("B\\Norvale"), kDone + kRestoreNotFoundText);
    EXPECT_EQ(production("NV_Ledger01.mdb"), "productie NV_Ledger01.mdb");
}

// The stick's own bits say nothing of the production file: exFAT shows every file as rwxrwxrwx.
TEST_F(RestoreFromStick, ARestoredFileKeepsTheModeAndOwnerOfTheFileItReplaces) {
    stick.backupFolder("B", {"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini", "Nieuw2.ini"});
    for (const char* name : {"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini"})
        fs::permissions(stick.native("B/") / name, fs::perms(0777));
    produce({"NV_Ledger01.mdb", "NV.ini"});
    select({"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini"});
    fs::permissions(machine.temp.native("Norvale/NV_Ledger01.mdb"), fs::perms(0600));
    fs::permissions(machine.temp.native("Norvale/NV.ini"), fs::perms(0640));
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(machine.temp.native("Norvale/NV.ini").c_str(), 4321, 4321), 0);
    }

    const mode_t umask = ::umask(022);
    ::umask(umask);
    EXPECT_EQ(restore("B"), kDone);
    EXPECT_EQ(production("NV_Ledger01.mdb"), "B/NV_Ledger01.mdb");
    EXPECT_EQ(modeOf("NV_Ledger01.mdb"), 0600u);
    EXPECT_EQ(modeOf("NV.ini"), 0640u);
    if (root) {
        EXPECT_EQ(statOf("NV.ini").st_uid, 4321u);
        EXPECT_EQ(statOf("NV.ini").st_gid, 4321u);
    }
    // A file that was not there takes the user's umask, and is never writable for all.
    EXPECT_EQ(modeOf("Nieuw.ini"), 0775u & ~umask);

    // The source allows no more than it has.
    fs::permissions(stick.native("B/Nieuw2.ini"), fs::perms(0600));
    select({"Nieuw2.ini"});
    EXPECT_EQ(restore("B"), kDone);
    EXPECT_EQ(modeOf("Nieuw2.ini"), 0600u & ~umask);
}

} // namespace
