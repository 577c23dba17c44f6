// Drive letters on Linux: the memory that keeps a volume's letter across starts and plug orders,
// the table a start builds from the mounts, paths below a letter, and real sticks on loop
// devices, mounted under /media as a desktop mounts them (root only; skipped elsewhere).
#include "platform/FileFailure.h"
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

// The letters a new start of the program on the file gives the volumes present, in their order.
std::string given(const fs::path& file, const std::vector<std::string>& present, int64_t now,
                  const std::set<char>& blocked = {'C'}) {
    const std::vector<char> letters =
        DriveLetterMemory(file.string()).assign(present, blocked, now);
    return std::string(letters.begin(), letters.end());
}

// The table after its first line, which says what the file is.
std::string rows(const nvtest::TempFolder& temp, const std::string& relative) {
    const std::string text = temp.read(relative);
    return text.substr(text.find('\n') + 1);
}

TEST(DriveLetterMemory, AVolumeKeepsItsLetterAcrossStartsAndPlugOrders) {
    nvtest::TempFolder temp;
    const fs::path file = temp.native("state/norvale-backup/drive-letters");
    const struct {
        std::vector<std::string> present; // in mount point order
        std::set<char> blocked;
        std::string letters;
    } starts[] = {
        {{"label:STICKA", "label:STICKB"}, {'C'}, "DE"},
        // B keeps E:, the newcomer C passes over A's D:.
        {{"label:STICKB", "label:STICKC"}, {'C'}, "EF"},
        {{"label:STICKB"}, {'C'}, "E"},
        {{"label:STICKC", "label:STICKA"}, {'C'}, "FD"},
        // A letter another drive takes now: B gets a free one for this start alone, and E:
        // again once it is free.
        {{"label:STICKB"}, {'C', 'E'}, "G"},
        {{"label:STICKB", "label:STICKD"}, {'C'}, "EG"},
        // Two volumes with one uuid (a copied stick): the second gets a letter of its own.
        {{"uuid:1234-ABCD", "uuid:1234-ABCD"}, {'C'}, "HI"},
    };
    int64_t now = 1000;
    for (const auto& s : starts)
        EXPECT_EQ(given(file, s.present, ++now, s.blocked), s.letters);
    // The guest letters were not kept; the file says what a user would read in it.
    EXPECT_EQ(rows(temp, "state/norvale-backup/drive-letters"),
              "D 1004 label:STICKA\nE 1006 label:STICKB\nF 1004 label:STICKC\n"
              "G 1006 label:STICKD\nH 1007 uuid:1234-ABCD\n");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(DriveLetterMemory, ADamagedFileIsRebuiltNeverAReasonToFail) {
    nvtest::TempFolder temp;
    const fs::path file = temp.native("letters");
    // What could be read stands; the rest is gone from the file.
    const std::pair<std::string, char> files[] = {
        {"\x01\x02 niet te lezen\n", 'D'},
        {"E 5 label:STICKB\nE 6 label:OTHER\nF 7 label:STICKB\nG 8\nQ x label:Q\nB 1 label:B\n",
         'E'},
    };
    for (const auto& [text, letter] : files) {
        std::ofstream(file, std::ios::binary) << text;
        EXPECT_EQ(given(file, {"label:STICKB"}, 50), std::string(1, letter)) << text;
        EXPECT_EQ(rows(temp, "letters"), std::string(1, letter) + " 50 label:STICKB\n");
    }
}

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
    // Not a ".." the system would read before a NUL.
    EXPECT_EQ(failureOf([&] { nativePath(table, std::string("T:\\..\0a\\x", 9)); }),
              kFailBadFileName);
}

bool shell(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// A labelled stick image (STICKA has uuid aaaaaaaa-...; a FAT volume id is its first 8 digits),
// with the links the device manager gives it under disk/ while it is plugged in.
struct Stick {
    Stick(const fs::path& folder, char name, const std::string& type)
        : image((folder / (std::string(1, name) + ".img")).string()),
          label("STICK" + std::string(1, name)), type(type),
          uuid(std::string(8, name + 32) + "-0000-4000-8000-00000000000" + char(name + 32)),
          links((folder / "disk/by-uuid" / uuid).string() + " " +
                (folder / "disk/by-label" / label).string()) {
        made = shell("truncate -s 40M " + image + " && " +
                     (type == "vfat" ? "mkfs.vfat -n " + label + " -i " + uuid.substr(0, 8)
                                     : "mkfs.ext4 -q -F -L " + label + " -U " + uuid) +
                     " " + image);
    }
    ~Stick() { unplug(); }
    bool plugIn(const fs::path& at) {
        point = at;
        return shell("mkdir -p " + at.string() + " && mount -t " + type + " -o loop " + image +
                     " " + at.string() + " && for l in " + links +
                     "; do mkdir -p $(dirname $l) && ln -s $(findmnt -no SOURCE " + at.string() +
                     ") $l; done");
    }
    void unplug() {
        if (!point.empty())
            shell("rm -f " + links + "; umount " + point.string() + "; rmdir " + point.string());
        point.clear();
    }

    std::string image, label, type, uuid, links;
    fs::path point;
    bool made = false;
};

class RealSticks : public ::testing::Test {
protected:
    void SetUp() override {
        auto has = [](const std::string& type) {
            return shell("command -v mkfs." + type + " && grep -qw " + type + " /proc/filesystems");
        };
        if (::geteuid() != 0 || !has("ext4"))
            GTEST_SKIP() << "needs root, mkfs.ext4 and ext4 in the kernel";
        for (char name : {'A', 'B', 'C'}) {
            sticks.push_back(std::make_unique<Stick>(temp.native(), name,
                                                     name == 'B' && has("vfat") ? "vfat" : "ext4"));
            if (!sticks.back()->made)
                GTEST_SKIP() << "cannot make a stick image here";
        }
        if (!plug('A'))
            GTEST_SKIP() << "cannot mount a loop device here";
        stick('A').unplug();
    }
    void TearDown() override {
        sticks.clear();
        std::error_code ec;
        fs::remove(media, ec);
    }

    Stick& stick(char name) { return *sticks[static_cast<std::size_t>(name - 'A')]; }
    bool plug(char name) { return stick(name).plugIn(media / ("STICK" + std::string(1, name))); }
    std::unique_ptr<DriveTable> start(const std::string& variable = "") {
        DriveTable::Options o;
        o.drivesVariable = variable;
        o.lettersPath = temp.native("state/norvale-backup/drive-letters").string();
        o.devDisk = temp.native("disk").string();
        return std::make_unique<DriveTable>(o);
    }
    // The drive a table lists with this letter or at this root; letter 0 when none.
    static DriveInfo listed(DriveTable& table, char letter, const fs::path& root = "") {
        for (const DriveInfo& d : table.list())
            if (d.letter == letter || d.root == root)
                return d;
        return DriveInfo{0, "", "", false};
    }

    nvtest::TempFolder temp;
    const fs::path media = "/media/nvtest" + std::to_string(::getpid());
    std::vector<std::unique_ptr<Stick>> sticks;
};

// The user picks B's letter as target at the first start. Each row is a new start, or a plug
// while the program runs: every stick keeps its first letter, with its label, and the target
// reaches B or nothing at all.
TEST_F(RealSticks, EveryStickKeepsItsLetterAndTheTargetReachesOnlyItsOwn) {
    const std::pair<bool, std::string> steps[] = {
        {true, "AB"}, {true, "BC"}, {true, "C"}, {false, "AC"}, {false, "ABC"}};
    std::unique_ptr<DriveTable> table;
    std::map<char, char> letters; // stick → the letter it got first
    for (const auto& [newStart, plugged] : steps) {
        SCOPED_TRACE(plugged);
        for (char name : {'A', 'B', 'C'})
            if (plugged.find(name) == std::string::npos)
                stick(name).unplug();
            else
                ASSERT_TRUE(!stick(name).point.empty() || plug(name));
        if (newStart) {
            table.reset();
            table = start();
        }
        std::set<char> seen;
        for (char name : plugged) {
            const DriveInfo d = listed(*table, 0, stick(name).point);
            EXPECT_EQ(d.label, stick(name).label);
            EXPECT_EQ(letters.try_emplace(name, d.letter).first->second, d.letter) << name;
            EXPECT_TRUE(d.letter != 0 && seen.insert(d.letter).second) << name << " shares one";
        }
        const bool there = plugged.find('B') != std::string::npos;
        PosixFileSystem files(*table);
        const std::string ini = std::string(1, letters.at('B')) + ":\\NV.ini";
        EXPECT_EQ(failureOf([&] { files.writeFile(ini, "x"); }),
                  there ? 0 : kFailDeviceUnavailable);
        for (char name : plugged)
            EXPECT_EQ(fs::exists(stick(name).point / "NV.ini"), name == 'B') << name;
    }
}

// A stick given with NVBACKUP_DRIVES and then unmounted leaves its empty mount point: that is
// not the drive, and another stick mounted there is not either. B: sorts before the letters
// mounts get, so a path there must not fall to it while it is away.
TEST_F(RealSticks, AGivenStickIsConnectedOnlyWhileItIsMountedWhereItWas) {
    ASSERT_TRUE(plug('B'));
    const fs::path point = stick('B').point;
    auto table = start("B=" + point.string());
    PosixFileSystem files(*table);
    for (const char mounted : {'B', ' ', 'C', 'B'}) {
        SCOPED_TRACE(mounted);
        stick('B').unplug();
        stick('C').unplug();
        fs::create_directories(point); // the empty folder a forced removal leaves
        ASSERT_TRUE(mounted == ' ' || stick(mounted).plugIn(point));
        const bool ready = mounted == 'B';
        EXPECT_EQ(table->ready('B'), ready);
        EXPECT_EQ(failureOf([&] { files.makeFolder("B:\\Backup2026-11-17"); }),
                  ready ? 0 : kFailDeviceUnavailable);
        EXPECT_EQ(fs::exists(point / "Backup2026-11-17"), ready);
        fs::remove(point / "Backup2026-11-17");
        // The list still names the letter, with the label while the stick is there.
        const DriveInfo b = listed(*table, 'B');
        EXPECT_EQ(b.letter + b.label, ready ? "BSTICKB" : "B");
        // A path there is written with the letter of the stick that is in, when one is.
        const std::string form = table->toDriveForm((point / "Boeken").string());
        EXPECT_EQ(table->find(form[0]).has_value(), mounted != ' ') << form;
    }
}

} // namespace
