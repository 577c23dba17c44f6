// Real sticks: labelled file system images on loop devices, mounted under /media as a desktop
// mounts them, across several starts of the program. Root only; skipped elsewhere.
#include "platform/posix/DriveTable.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
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

bool kernelHas(const std::string& type) {
    std::ifstream in("/proc/filesystems");
    for (std::string line; std::getline(in, line);)
        if (line.ends_with("\t" + type))
            return true;
    return false;
}

// A labelled stick image (STICKA has uuid aaaaaaaa-..., of ext4 unless told), with the names
// the device manager gives it (links in by-uuid and by-label under disk/) while it is plugged in.
class Stick {
public:
    Stick(const fs::path& folder, char name, const std::string& type)
        : image_(folder / (std::string(1, name) + ".img")), disk_(folder / "disk"),
          label_("STICK" + std::string(1, name)), type_(type),
          uuid_(std::string(8, name + 32) + "-0000-4000-8000-00000000000" + char(name + 32)) {
        fs::create_directories(disk_ / "by-uuid");
        fs::create_directories(disk_ / "by-label");
        // A FAT volume id is 8 hex digits, shown as AAAA-AAAA.
        const std::string make = type_ == "vfat"
                                     ? "mkfs.vfat -n " + label_ + " -i " + uuid_.substr(0, 8)
                                     : "mkfs.ext4 -q -F -L " + label_ + " -U " + uuid_;
        made_ = shell("truncate -s 40M '" + image_.string() + "'") &&
                shell(make + " '" + image_.string() + "'");
    }
    ~Stick() { unplug(); }
    bool made() const { return made_; }

    bool plugIn(const fs::path& point) {
        fs::create_directories(point);
        if (!shell("mount -t " + type_ + " -o loop '" + image_.string() + "' '" + point.string() +
                   "'"))
            return false;
        point_ = point;
        std::ostringstream table;
        table << std::ifstream("/proc/self/mountinfo").rdbuf();
        const std::string device = mountHolding(parseMountinfo(table.str()), point)->source;
        fs::create_symlink(device, disk_ / "by-uuid" / uuid_);
        fs::create_symlink(device, disk_ / "by-label" / label_);
        return true;
    }
    void unplug() {
        if (point_.empty())
            return;
        fs::remove(disk_ / "by-uuid" / uuid_);
        fs::remove(disk_ / "by-label" / label_);
        ::umount2(point_.c_str(), 0);
        fs::remove(point_);
        point_.clear();
    }
    const fs::path& point() const { return point_; }

private:
    fs::path image_, disk_, point_;
    std::string label_, type_, uuid_;
    bool made_ = false;
};

class RealSticks : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root to mount";
        if (!shell("command -v mkfs.ext4") || !kernelHas("ext4"))
            GTEST_SKIP() << "needs mkfs.ext4 and ext4 in the kernel";
        const std::string fat =
            shell("command -v mkfs.vfat") && kernelHas("vfat") ? "vfat" : "ext4";
        for (char name : {'A', 'B', 'C'})
            sticks_.push_back(std::make_unique<Stick>(temp_.native(), name,
                                                      name == 'B' ? fat : std::string("ext4")));
        for (auto& stick : sticks_)
            if (!stick->made())
                GTEST_SKIP() << "cannot make a stick image here";
        if (!plug('A'))
            GTEST_SKIP() << "cannot mount a loop device here";
        stick('A').unplug();
    }
    void TearDown() override {
        sticks_.clear();
        std::error_code ec;
        fs::remove_all(media_, ec);
    }

    Stick& stick(char name) { return *sticks_[static_cast<std::size_t>(name - 'A')]; }
    bool plug(char name) { return stick(name).plugIn(media_ / ("STICK" + std::string(1, name))); }

    // A start of the program for this user.
    std::unique_ptr<DriveTable> start(const std::string& variable = "") {
        DriveTable::Options o;
        o.drivesVariable = variable;
        o.lettersPath = temp_.native("state/norvale-backup/drive-letters").string();
        o.devDisk = temp_.native("disk").string();
        return std::make_unique<DriveTable>(o);
    }
    // The first drive a table lists that matches; letter 0 when none does.
    template <class Match> static DriveInfo listed(DriveTable& table, Match match) {
        for (const DriveInfo& d : table.list())
            if (match(d))
                return d;
        return DriveInfo{0, "", "", false};
    }

    nvtest::TempFolder temp_;
    // The user's folder below /media, as a desktop makes it.
    const fs::path media_ = "/media/nvtest" + std::to_string(::getpid());
    std::vector<std::unique_ptr<Stick>> sticks_;
};

// The user picks B's letter as target at the first start. Each row is a new start, or a plug
// while the program runs: every stick keeps its first letter, and the target reaches B or
// nothing at all.
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
            ASSERT_TRUE(!wanted || !stick(name).point().empty() || plug(name));
        }
        if (newStart) {
            table.reset();
            table = start();
        }
        std::set<char> seen;
        for (char name : plugged) {
            const DriveInfo d =
                listed(*table, [&](auto& d) { return d.root == stick(name).point(); });
            ASSERT_NE(d.letter, 0) << name;
            EXPECT_EQ(d.label, "STICK" + std::string(1, name));
            EXPECT_EQ(letters.try_emplace(name, d.letter).first->second, d.letter) << name;
            EXPECT_TRUE(seen.insert(d.letter).second) << name << " shares a letter";
        }
        const std::string target(1, letters.at('B'));
        const bool there = plugged.find('B') != std::string::npos;
        EXPECT_EQ(table->ready(target[0]), there);
        PosixFileSystem files(*table);
        EXPECT_EQ(failureOf([&] { files.writeFile(target + ":\\NV.ini", "x"); }),
                  there ? 0 : kFailDeviceUnavailable);
        EXPECT_EQ(failureOf([&] { files.firstMatch(target + ":\\nv.INI"); }),
                  there ? 0 : kFailDeviceUnavailable);
        for (char name : plugged)
            EXPECT_EQ(fs::exists(stick(name).point() / "NV.ini"), name == 'B') << name;
    }
}

// A stick given with NVBACKUP_DRIVES and then unmounted leaves its empty mount point: that is
// not the drive, and another stick mounted there is not either.
TEST_F(RealSticks, AGivenStickIsConnectedOnlyWhileItIsMountedWhereItWas) {
    ASSERT_TRUE(plug('B'));
    const fs::path point = stick('B').point();
    auto table = start("E=" + point.string() + ";F=" + temp_.native().string());
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
        // The list still names the letter, with the label while the stick is there.
        const DriveInfo e = listed(*table, [](auto& d) { return d.letter == 'E'; });
        ASSERT_EQ(e.letter, 'E');
        EXPECT_EQ(e.label, ready ? "STICKB" : "");
        // A plain folder given the same way is there all along.
        EXPECT_TRUE(table->ready('F'));
    }
}

} // namespace
