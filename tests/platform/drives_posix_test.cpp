#include "platform/FileFailure.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <algorithm>
#include <filesystem>
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

// A table over a mount table of the test's own, as a new start of the program would build it.
DriveTable::Options startOver(const fs::path& info, const fs::path& state,
                              const std::string& variable = "") {
    DriveTable::Options o;
    o.home = "/home/anna";
    o.drivesVariable = variable;
    o.mountinfoPath = info.string();
    o.lettersPath = state.string();
    o.devDisk = "";
    return o;
}

std::string lettersOf(DriveTable& table) {
    std::string out;
    for (const DriveInfo& d : table.list())
        out += std::string(1, d.letter) + "=" + d.root + " ";
    return out;
}

TEST(DriveTable, DrivesAreWhatAFileManagerShowsAndKeepTheirLetters) {
    nvtest::TempFolder temp;
    fs::path info = temp.native("mountinfo");
    fs::path state = temp.native("state");
    auto setMounts = [&](const std::string& text) { std::ofstream(info) << text; };
    const std::string system =
        mountLine(1, "/", "/dev/vda") +
        // Pseudo and sandbox mounts, a bind of the root file system, a part of one, overlay.
        "27 26 0:24 / /mnt/sandboxing/tools ro,nosuid - tmpfs tools ro,size=4k\n" +
        "28 26 0:25 / /media/anna/RAM rw - tmpfs tmpfs rw\n" +
        "29 26 8:1 / /media/anna/root rw - ext4 /dev/vda rw\n" +
        mountLine(30, "/media/anna/part", "/dev/sdd1", "ext4", "/photos") +
        "31 26 0:26 / /media/anna/merged rw - overlay overlay rw\n" +
        mountLine(32, "/mnt", "/dev/x");
    setMounts(system + mountLine(2, "/media/anna/STICK", "/dev/sdb1") +
              mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1"));

    {
        DriveTable table(startOver(info, state, "E=/srv/demo-stick;C=/"));
        // E: is taken by the variable, so the two mounts get D: and F:, in mount point order.
        EXPECT_EQ(lettersOf(table),
                  "C=/ D=/media/anna/STICK E=/srv/demo-stick F=/mnt/backup disk H=/home/anna ");
        EXPECT_EQ(table.toDriveForm("/media/anna/STICK/Backup2026-11-17"), "D:\\Backup2026-11-17");
        EXPECT_EQ(table.toDriveForm("/home/anna/.config/Norvale"), "H:\\.config\\Norvale");
        EXPECT_EQ(table.toDriveForm("/home/annabel"), "C:\\home\\annabel");
        EXPECT_EQ(table.toDriveForm("/opt"), "C:\\opt");
        EXPECT_EQ(table.toDriveForm("/"), "C:\\");
    }
    // A new start without the variable: the disk under /mnt keeps F:, E: is free again, and a
    // volume never seen before takes the first letter nobody holds.
    setMounts(system + mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1") +
              mountLine(6, "/media/anna/NEW", "/dev/sdf1"));
    DriveTable table(startOver(info, state));
    EXPECT_EQ(lettersOf(table), "C=/ E=/media/anna/NEW F=/mnt/backup disk H=/home/anna ");
}

TEST(DriveTable, TheVariableIsReadLeniently) {
    auto entries = parseDrivesVariable("e=/srv/a;;F:=/tmp/b;G=relative;=/x;H=/home/kees/");
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0], std::make_pair('E', std::string("/srv/a")));
    EXPECT_EQ(entries[1], std::make_pair('F', std::string("/tmp/b")));
    EXPECT_EQ(entries[2].first, 'H');
}

TEST(NativePath, FindsComponentsWithoutRegardToCaseAndNeverLeadsOutOfTheDrive) {
    nvtest::TempFolder temp;
    temp.write("Data/Norvale/NV_Ledger01.mdb", "x");
    DriveTable table(DriveTable::foldersOnly());
    table.setFolder('T', temp.native().string());

    EXPECT_EQ(nativePath(table, "t:\\DATA\\norvale\\nv_ledger01.MDB"),
              temp.native().string() + "/Data/Norvale/NV_Ledger01.mdb");
    // Components that are not there keep their letters.
    EXPECT_EQ(nativePath(table, "T:\\data\\Nieuw\\Map"),
              temp.native().string() + "/Data/Nieuw/Map");
    EXPECT_EQ(nativePath(table, "T:"), temp.native().string());
    EXPECT_EQ(failureOf([&] { nativePath(table, "Q:\\x"); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { nativePath(table, "geen pad"); }), kFailBadFileName);

    // Nothing leads out of the drive: not a ".." the system would read before a NUL, nor dots
    // written as overlong UTF-8, which upper-case to '.'.
    EXPECT_EQ(failureOf([&] { nativePath(table, std::string("T:\\..\0a\\x", 9)); }),
              kFailBadFileName);
    const std::string dots = "\xC0\xAE\xC0\xAE";
    for (const std::string& path :
         {"T:\\" + dots + "\\" + dots + "\\x", "T:\\Data\\" + dots + "\\" + dots + "\\x"}) {
        const std::string native = nativePath(table, path);
        EXPECT_EQ(native.rfind(temp.native().string() + "/", 0), 0u) << native;
        EXPECT_EQ(native.find("/../"), std::string::npos) << native;
    }
}

// The same mount point with another file system behind it: root only, skipped elsewhere.
TEST(MountedStick, AnotherStickInTheSamePlaceIsReadAnew) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to mount";
    nvtest::TempFolder temp;
    fs::path point = temp.native("stick");
    fs::create_directories(point);
    if (::mount("nvtest", point.c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "cannot mount tmpfs here";
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
