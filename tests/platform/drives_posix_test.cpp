#include "platform/FileFailure.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

std::string mountLine(int id, const std::string& point, const std::string& source,
                      const std::string& type = "ext4", const std::string& root = "/") {
    return std::to_string(id) + " 1 8:" + std::to_string(id) + " " + root + " " + point +
           " rw,relatime shared:1 - " + type + " " + source + " rw\n";
}

// The letters a new start of the program gives over the mount table, and how it writes paths.
std::string startOver(const nvtest::TempFolder& temp, const std::string& mounts,
                      const std::string& variable = "") {
    std::ofstream(temp.native("mountinfo")) << mounts;
    DriveTable::Options o;
    o.home = "/home/anna";
    o.drivesVariable = variable;
    o.mountinfoPath = temp.native("mountinfo").string();
    o.lettersPath = temp.native("state").string();
    o.devDisk = "";
    DriveTable table(o);
    std::string out;
    for (const DriveInfo& d : table.list())
        out += std::string(1, d.letter) + "=" + d.root + " ";
    for (const char* path :
         {"/media/anna/STICK/Backup", "/home/anna/.config", "/home/annabel", "/"})
        out += table.toDriveForm(path) + " ";
    return out;
}

TEST(DriveTable, DrivesAreWhatAFileManagerShowsAndKeepTheirLetters) {
    nvtest::TempFolder temp;
    // Pseudo and sandbox mounts, a bind of the root file system, a part of one, overlay.
    const std::string system = mountLine(1, "/", "/dev/vda") +
                               "27 26 0:24 / /mnt/sandboxing/tools ro,nosuid - tmpfs tools ro\n" +
                               "28 26 0:25 / /media/anna/RAM rw - tmpfs tmpfs rw\n" +
                               "29 26 8:1 / /media/anna/root rw - ext4 /dev/vda rw\n" +
                               mountLine(30, "/media/anna/part", "/dev/sdd1", "ext4", "/photos") +
                               "31 26 0:26 / /media/anna/merged rw - overlay overlay rw\n" +
                               mountLine(32, "/mnt", "/dev/x");
    const std::string disk = mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1");
    // E: is taken by the variable (its bad entries left out), so the two mounts get D: and F:,
    // in mount point order.
    EXPECT_EQ(startOver(temp, system + mountLine(2, "/media/anna/STICK", "/dev/sdb1") + disk,
                        "e=/srv/demo-stick/;;G=relative;=/x;C:=/"),
              "C=/ D=/media/anna/STICK E=/srv/demo-stick F=/mnt/backup disk H=/home/anna "
              "D:\\Backup H:\\.config C:\\home\\annabel C:\\ ");
    // Without the variable: the disk under /mnt keeps F:, E: is free again, and a volume never
    // seen before takes the first letter nobody holds.
    EXPECT_EQ(startOver(temp, system + disk + mountLine(6, "/media/anna/NEW", "/dev/sdf1")),
              "C=/ E=/media/anna/NEW F=/mnt/backup disk H=/home/anna "
              "C:\\media\\anna\\STICK\\Backup H:\\.config C:\\home\\annabel C:\\ ");
}

TEST(NativePath, FindsComponentsWithoutRegardToCaseAndNeverLeadsOutOfTheDrive) {
    nvtest::TempFolder temp;
    temp.write("Data/Norvale/NV_Ledger01.mdb", "x");
    DriveTable table(DriveTable::foldersOnly());
    table.setFolder('T', temp.native().string());
    const std::string root = temp.native().string();
    EXPECT_EQ(nativePath(table, "t:\\DATA\\norvale\\nv_ledger01.MDB"),
              root + "/Data/Norvale/NV_Ledger01.mdb");
    // Components that are not there keep their letters.
    EXPECT_EQ(nativePath(table, "T:\\data\\Nieuw\\Map"), root + "/Data/Nieuw/Map");
    EXPECT_EQ(nativePath(table, "T:"), root);
    EXPECT_EQ(failureOf([&] { nativePath(table, "Q:\\x"); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { nativePath(table, "geen pad"); }), kFailBadFileName);
    // Not a ".." the system would read before a NUL, nor dots written as overlong UTF-8, which
    // upper-case to '.'.
    EXPECT_EQ(failureOf([&] { nativePath(table, std::string("T:\\..\0a\\x", 9)); }),
              kFailBadFileName);
    const std::string dots = "\xC0\xAE\xC0\xAE";
    for (const std::string& path :
         {"T:\\" + dots + "\\" + dots + "\\x", "T:\\Data\\" + dots + "\\" + dots + "\\x"}) {
        const std::string native = nativePath(table, path);
        EXPECT_TRUE(native.starts_with(root + "/") && native.find("/../") == std::string::npos)
            << native;
    }
}

// The same mount point with another file system behind it.
TEST(MountedStick, AnotherStickInTheSamePlaceIsReadAnew) {
    nvtest::TempFolder temp;
    const fs::path point = temp.native("stick");
    fs::create_directories(point);
    if (::geteuid() != 0 || ::mount("nvtest", point.c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "needs root to mount tmpfs";
    DriveTable::Options o = DriveTable::foldersOnly();
    o.mountinfoPath = "/proc/self/mountinfo";
    DriveTable table(o);
    table.setFolder('E', point.string());
    PosixFileSystem files(table);
    std::ofstream(point / "OUD.TXT") << "x";
    EXPECT_EQ(files.firstMatch("E:\\oud.txt"), "OUD.TXT");
    ASSERT_EQ(::umount2(point.c_str(), MNT_DETACH), 0);
    EXPECT_FALSE(table.ready('E'));
    ASSERT_EQ(::mount("nvtest", point.c_str(), "tmpfs", 0, "size=1m"), 0);
    std::ofstream(point / "Nieuw.txt") << "x";
    EXPECT_EQ(files.firstMatch("E:\\oud.txt"), "");
    EXPECT_EQ(files.firstMatch("E:\\NIEUW.TXT"), "Nieuw.txt");
    ::umount2(point.c_str(), MNT_DETACH);
}

} // namespace
