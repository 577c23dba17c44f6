// Real sticks: labelled file system images on loop devices, mounted under /media as a desktop
// mounts them, across several starts of the program. Root only; skipped elsewhere.
#include "platform/posix/DriveTable.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

bool shell(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

std::string readAll(const char* path) {
    std::ostringstream all;
    all << std::ifstream(path).rdbuf();
    return all.str();
}

// A labelled stick image (STICKA has uuid aaaaaaaa-...), with the links the device manager gives
// it under disk/ while it is plugged in.
struct Stick {
    Stick(const fs::path& folder, char name, const std::string& type)
        : image(folder / (std::string(1, name) + ".img")), disk(folder / "disk"),
          label("STICK" + std::string(1, name)), type(type),
          uuid(std::string(8, name + 32) + "-0000-4000-8000-00000000000" + char(name + 32)) {
        // A FAT volume id is 8 hex digits, shown as AAAA-AAAA.
        const std::string make = type == "vfat"
                                     ? "mkfs.vfat -n " + label + " -i " + uuid.substr(0, 8)
                                     : "mkfs.ext4 -q -F -L " + label + " -U " + uuid;
        made = shell("truncate -s 40M '" + image.string() + "'") &&
               shell(make + " '" + image.string() + "'");
    }
    ~Stick() { unplug(); }
    std::vector<fs::path> links() const {
        return {disk / "by-uuid" / uuid, disk / "by-label" / label};
    }
    bool plugIn(const fs::path& at) {
        fs::create_directories(at);
        if (!shell("mount -t " + type + " -o loop '" + image.string() + "' '" + at.string() + "'"))
            return false;
        point = at;
        const auto mounts = parseMountinfo(readAll("/proc/self/mountinfo"));
        for (const fs::path& link : links()) {
            fs::create_directories(link.parent_path());
            fs::create_symlink(mountHolding(mounts, at)->source, link);
        }
        return true;
    }
    void unplug() {
        if (point.empty())
            return;
        for (const fs::path& link : links())
            fs::remove(link);
        ::umount2(point.c_str(), 0);
        fs::remove(point);
        point.clear();
    }

    fs::path image, disk, point;
    std::string label, type, uuid;
    bool made = false;
};

class RealSticks : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string kernel = readAll("/proc/filesystems");
        auto has = [&](const std::string& type) {
            return shell("command -v mkfs." + type) &&
                   kernel.find("\t" + type + "\n") != kernel.npos;
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
        fs::remove_all(media, ec);
    }

    Stick& stick(char name) { return *sticks[static_cast<std::size_t>(name - 'A')]; }
    bool plug(char name) { return stick(name).plugIn(media / ("STICK" + std::string(1, name))); }
    // A start of the program for this user.
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
    // The user's folder below /media, as a desktop makes it.
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
        for (char name : {'A', 'B', 'C'}) {
            const bool wanted = plugged.find(name) != std::string::npos;
            if (!wanted)
                stick(name).unplug();
            ASSERT_TRUE(!wanted || !stick(name).point.empty() || plug(name));
        }
        if (newStart) {
            table.reset();
            table = start();
        }
        std::set<char> seen;
        for (char name : plugged) {
            const DriveInfo d = listed(*table, 0, stick(name).point);
            EXPECT_EQ(d.label, "STICK" + std::string(1, name));
            EXPECT_EQ(letters.try_emplace(name, d.letter).first->second, d.letter) << name;
            EXPECT_TRUE(d.letter != 0 && seen.insert(d.letter).second)
                << name << " shares a letter";
        }
        const char target = letters.at('B');
        const bool there = plugged.find('B') != std::string::npos;
        EXPECT_EQ(table->ready(target), there);
        PosixFileSystem files(*table);
        EXPECT_EQ(failureOf([&] { files.writeFile(std::string(1, target) + ":\\NV.ini", "x"); }),
                  there ? 0 : kFailDeviceUnavailable);
        for (char name : plugged)
            EXPECT_EQ(fs::exists(stick(name).point / "NV.ini"), name == 'B') << name;
    }
}

// A stick given with NVBACKUP_DRIVES and then unmounted leaves its empty mount point: that is
// not the drive, and another stick mounted there is not either.
TEST_F(RealSticks, AGivenStickIsConnectedOnlyWhileItIsMountedWhereItWas) {
    ASSERT_TRUE(plug('B'));
    const fs::path point = stick('B').point;
    auto table = start("E=" + point.string() + ";F=" + temp.native().string());
    PosixFileSystem files(*table);
    for (const char mounted : {'B', ' ', 'C', 'B'}) {
        SCOPED_TRACE(mounted);
        for (char name : {'B', 'C'})
            stick(name).unplug();
        fs::create_directories(point); // the empty folder a forced removal leaves
        ASSERT_TRUE(mounted == ' ' || stick(mounted).plugIn(point));
        const bool ready = mounted == 'B';
        EXPECT_EQ(table->ready('E'), ready);
        EXPECT_EQ(failureOf([&] { files.makeFolder("E:\\Backup2026-11-17"); }),
                  ready ? 0 : kFailDeviceUnavailable);
        EXPECT_EQ(fs::exists(point / "Backup2026-11-17"), ready);
        fs::remove(point / "Backup2026-11-17");
        // The list still names the letter, with the label while the stick is there; a plain
        // folder given the same way is there all along.
        EXPECT_EQ(listed(*table, 'E').label, ready ? "STICKB" : "");
        EXPECT_EQ(listed(*table, 'E').letter, 'E');
        EXPECT_TRUE(table->ready('F'));
    }
}

} // namespace
