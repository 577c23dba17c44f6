#include "platform/FileFailure.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

std::string mountLine(int id, const std::string& point, const std::string& source) {
    return std::to_string(id) + " 1 8:1 / " + point + " rw,relatime shared:1 - ext4 " + source +
           " rw\n";
}

TEST(DriveTable, LettersFollowTheMountsAndKeepTheirPlace) {
    nvtest::TempFolder temp;
    fs::path info = temp.native("mountinfo");
    auto setMounts = [&](const std::string& text) { std::ofstream(info) << text; };
    setMounts(mountLine(1, "/", "/dev/vda") + mountLine(2, "/media/anna/STICK", "/dev/sdb1") +
              mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1") + mountLine(4, "/mnt", "/dev/x"));

    DriveTable table({"/home/anna", "E=/srv/demo-stick;C=/", info.string(), true});
    auto letters = [&] {
        std::string out;
        for (const DriveInfo& d : table.list())
            out += std::string(1, d.letter) + "=" + d.root + " ";
        return out;
    };
    // E: is taken by the variable, so the two mounts get D: and F:, in mount point order.
    EXPECT_EQ(letters(),
              "C=/ D=/media/anna/STICK E=/srv/demo-stick F=/mnt/backup disk H=/home/anna ");
    EXPECT_EQ(table.toDriveForm("/media/anna/STICK/Backup2026-11-17"), "D:\\Backup2026-11-17");
    EXPECT_EQ(table.toDriveForm("/home/anna/.config/Norvale"), "H:\\.config\\Norvale");
    EXPECT_EQ(table.toDriveForm("/home/annabel"), "C:\\home\\annabel");
    EXPECT_EQ(table.toDriveForm("/opt"), "C:\\opt");
    EXPECT_EQ(table.toDriveForm("/"), "C:\\");

    // The stick goes: D: is gone, F: stays F:. It comes back as D:.
    setMounts(mountLine(1, "/", "/dev/vda") + mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1"));
    EXPECT_EQ(letters(), "C=/ E=/srv/demo-stick F=/mnt/backup disk H=/home/anna ");
    EXPECT_FALSE(table.ready('D'));
    setMounts(mountLine(1, "/", "/dev/vda") + mountLine(3, "/mnt/backup\\040disk", "/dev/sdc1") +
              mountLine(5, "/media/anna/STICK", "/dev/sdb1"));
    EXPECT_TRUE(table.find('d').has_value());
    EXPECT_EQ(table.find('D')->root, "/media/anna/STICK");
}

TEST(DriveTable, TheVariableIsReadLeniently) {
    auto entries = parseDrivesVariable("e=/srv/a;;F:=/tmp/b;G=relative;=/x;H=/home/kees/");
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0], std::make_pair('E', std::string("/srv/a")));
    EXPECT_EQ(entries[1], std::make_pair('F', std::string("/tmp/b")));
    EXPECT_EQ(entries[2].first, 'H');
}

TEST(NativePath, FindsComponentsWithoutRegardToCaseAndNoticesAnUnpluggedDrive) {
    nvtest::TempFolder temp;
    fs::create_directories(temp.native("Data/Norvale"));
    std::ofstream(temp.native("Data/Norvale/NV_Ledger01.mdb")) << "x";
    DriveTable table({"", "", "", false});
    table.setFolder('T', temp.native().string());

    EXPECT_EQ(nativePath(table, "t:\\DATA\\norvale\\nv_ledger01.MDB"),
              temp.native().string() + "/Data/Norvale/NV_Ledger01.mdb");
    // Components that are not there keep their letters.
    EXPECT_EQ(nativePath(table, "T:\\data\\Nieuw\\Map"),
              temp.native().string() + "/Data/Nieuw/Map");
    EXPECT_EQ(nativePath(table, "T:"), temp.native().string());
    EXPECT_EQ(failureOf([&] { nativePath(table, "Q:\\x"); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { nativePath(table, "geen pad"); }), kFailBadFileName);

    // Nothing leads out of the drive: not a ".." the system would read before a NUL, not dots
    // written as overlong UTF-8, which upper-case to '.'.
    EXPECT_EQ(failureOf([&] { nativePath(table, std::string("T:\\..\0a\\x", 9)); }),
              kFailBadFileName);
    PosixFileSystem guarded(table);
    const std::string overlong = "\xC0\xAE\xC0\xAE";
    for (const std::string& path : {"T:\\" + overlong + "\\" + overlong + "\\x",
                                    "T:\\Data\\" + overlong + "\\" + overlong + "\\x"}) {
        const std::string native = nativePath(table, path);
        EXPECT_EQ(native.rfind(temp.native().string() + "/", 0), 0u) << native;
        EXPECT_EQ(native.find("/../"), std::string::npos) << native;
        EXPECT_TRUE(guarded.firstMatch(path).empty());
    }

    // Renaming the drive's folder away is an unplug; back, a replug.
    PosixFileSystem files(table);
    fs::rename(temp.native(), temp.native().string() + ".weg");
    EXPECT_FALSE(table.ready('T'));
    EXPECT_EQ(failureOf([&] { files.firstMatch("T:\\*."); }), kFailDeviceUnavailable);
    fs::rename(temp.native().string() + ".weg", temp.native());
    EXPECT_TRUE(table.ready('T'));
    EXPECT_EQ(files.firstMatch("T:\\data\\norvale\\*.mdb"), "NV_Ledger01.mdb");
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
    DriveTable table({"", "", "", false});
    table.setFolder('E', point.string());
    PosixFileSystem files(table);
    std::ofstream(point / "OUD.TXT") << "x";
    EXPECT_EQ(files.firstMatch("E:\\oud.txt"), "OUD.TXT");
    ASSERT_EQ(::umount2(point.c_str(), MNT_DETACH), 0);
    ASSERT_EQ(::mount("nvtest", point.c_str(), "tmpfs", 0, "size=1m"), 0);
    std::ofstream(point / "Nieuw.txt") << "x";
    EXPECT_EQ(files.firstMatch("E:\\oud.txt"), "");
    EXPECT_EQ(files.firstMatch("E:\\NIEUW.TXT"), "Nieuw.txt");
    ::umount2(point.c_str(), MNT_DETACH);
}

TEST(MachineDrives, AStickMountedUnderMediaAppearsAndGoes) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to mount";
    fs::path point = "/media/nvtest-" + std::to_string(::getpid());
    fs::create_directories(point);
    DriveTable table({"", "", "/proc/self/mountinfo", true});
    if (::mount("nvtest", point.c_str(), "tmpfs", 0, "size=1m") != 0) {
        fs::remove(point);
        GTEST_SKIP() << "cannot mount tmpfs here";
    }
    auto letterOf = [&]() -> char {
        for (const DriveInfo& d : table.list())
            if (d.root == point.string())
                return d.letter;
        return 0;
    };
    char letter = letterOf();
    EXPECT_GE(letter, 'D');
    EXPECT_TRUE(table.ready(letter));
    ::umount2(point.c_str(), MNT_DETACH);
    EXPECT_EQ(letterOf(), 0);
    EXPECT_FALSE(table.ready(letter));
    fs::remove(point);
}

} // namespace
