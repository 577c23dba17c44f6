// A restore from a backup folder that was prepared to reach elsewhere, and what a restored file
// keeps of the production file it replaces.
#include "restore/RestoreRun.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";

// Production files of the given names in Norvale/, each holding its name, restored from a folder
// on the stick. A read that blocks (on a FIFO) ends the test instead of hanging it.
class RestoreFromStick : public ::testing::Test {
protected:
    std::string restore(std::vector<std::string> names, const std::string& folder = "B") {
        for (std::string& name : names)
            name = machine.temp.drive("Norvale\\" + name);
        rows.select(names);
        ::alarm(20);
        const std::string done = fRestoreSelectedRows(rows, stick.drive() + "\\" + folder, intLoop);
        ::alarm(0);
        return done;
    }
    void produce(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            machine.temp.write("Norvale/" + name, name);
    }
    std::string read(const std::string& name) { return machine.temp.read("Norvale/" + name); }

    nvtest::TestMachine machine;
    nvtest::TestStick stick{machine.temp};
    nvtest::RestoreRows rows;
    int16_t intLoop = -1;
};

TEST_F(RestoreFromStick, LinksFifosAndDevicesInTheBackupFolderAreNotFound) {
    machine.temp.write("etc/passwd", "root:x:0:0");
    machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
    machine.temp.write("Elders/NV_Ledger01.mdb", "een ander grootboek");
    const std::vector<std::string> names{"NV.ini", "Nota.ini", "stockA.NVD", "Dev.NVD", "Goed.ini"};
    produce(names);
    produce({"NV_Ledger01.mdb"});
    const fs::path backup = stick.native("B");
    stick.backupFolder("B", {"Goed.ini"});
    fs::create_symlink(machine.temp.native("etc/passwd"), backup / "NV.ini");
    fs::create_symlink("../../Thuis/.ssh/id_rsa", backup / "Nota.ini");
    ASSERT_EQ(::mkfifo((backup / "stockA.NVD").c_str(), 0644), 0);
    // Without root there is no device, and nothing of that name to find either.
    ::mknod((backup / "Dev.NVD").c_str(), S_IFCHR | 0666, makedev(1, 3));
    // A folder of the backup that leads elsewhere holds nothing to restore either.
    fs::create_directory_symlink(machine.temp.native("Elders"), backup / "Norvale");

    EXPECT_EQ(restore(names), kDone + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, true, true, false}));
    EXPECT_EQ(restore({"NV_Ledger01.mdb"}, "B\\Norvale"), kDone + kRestoreNotFoundText);
    for (const char* name : {"NV.ini", "Nota.ini", "stockA.NVD", "Dev.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(read(name), name);
    EXPECT_EQ(read("Goed.ini"), "B/Goed.ini");
}

// The stick's own bits say nothing of the production file: exFAT shows every file as rwxrwxrwx.
// A file that was not there takes the user's umask, is never writable for all and allows no more
// than its source.
TEST_F(RestoreFromStick, ARestoredFileKeepsTheModeAndOwnerOfTheFileItReplaces) {
    const std::vector<std::string> names{"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini", "Nieuw2.ini"};
    stick.backupFolder("B", names);
    for (const std::string& name : names)
        fs::permissions(stick.native("B/" + name), fs::perms(name == "Nieuw2.ini" ? 0600 : 0777));
    produce({"NV_Ledger01.mdb", "NV.ini"});
    fs::permissions(machine.temp.native("Norvale/NV_Ledger01.mdb"), fs::perms(0600));
    fs::permissions(machine.temp.native("Norvale/NV.ini"), fs::perms(0640));
    const bool root = ::chown(machine.temp.native("Norvale/NV.ini").c_str(), 4321, 4321) == 0;
    const mode_t umask = ::umask(022);
    ::umask(umask);

    EXPECT_EQ(restore(names), kDone);
    EXPECT_EQ(read("NV_Ledger01.mdb"), "B/NV_Ledger01.mdb");
    const mode_t modes[] = {0600, 0640, 0775 & ~umask, 0600 & ~umask};
    for (std::size_t i = 0; i < names.size(); ++i) {
        struct stat st {};
        ::stat(machine.temp.native("Norvale/" + names[i]).c_str(), &st);
        EXPECT_EQ(st.st_mode & 07777, modes[i]) << names[i];
        if (root && names[i] == "NV.ini") {
            EXPECT_EQ(std::pair(st.st_uid, st.st_gid), std::pair(4321u, 4321u));
        }
    }
}

} // namespace
