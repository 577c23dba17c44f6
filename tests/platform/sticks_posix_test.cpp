// Real sticks: labelled file system images on loop devices, mounted under /media as a desktop
// mounts them, across several starts of the program. Root only; skipped elsewhere.
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPathResolution.h"
#include "support/FailureOf.h"
#include "support/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
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

// The source device of what is mounted at point, from this process's mount table.
std::string deviceAt(const fs::path& point) {
    std::ifstream in("/proc/self/mountinfo");
    std::string found;
    for (std::string line; std::getline(in, line);) {
        std::istringstream f(line);
        std::string id, parent, dev, root, at, word;
        f >> id >> parent >> dev >> root >> at;
        while (f >> word && word != "-") {
        }
        std::string type, source;
        f >> type >> source;
        if (at == point.string())
            found = source;
    }
    return found;
}

// A labelled stick image of one file system type, with the names the device manager gives it
// (links in by-uuid and by-label under disk/) while it is plugged in.
class Stick {
public:
    Stick(const fs::path& folder, std::string label, std::string type, std::string uuid)
        : image_(folder / (label + ".img")), disk_(folder / "disk"), label_(std::move(label)),
          type_(std::move(type)), uuid_(std::move(uuid)) {
        fs::create_directories(disk_ / "by-uuid");
        fs::create_directories(disk_ / "by-label");
        made_ = shell("truncate -s 40M '" + image_.string() + "'") &&
                (type_ == "vfat" ? shell("mkfs.vfat -n " + label_ + " -i " + volumeId() + " '" +
                                         image_.string() + "'")
                                 : shell("mkfs.ext4 -q -F -L " + label_ + " -U " + uuid_ + " '" +
                                         image_.string() + "'"));
    }
    ~Stick() { unplug(); }
    bool made() const { return made_; }

    bool plugIn(const fs::path& point) {
        fs::create_directories(point);
        if (!shell("mount -t " + type_ + " -o loop '" + image_.string() + "' '" + point.string() +
                   "'"))
            return false;
        point_ = point;
        const std::string device = deviceAt(point);
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
    // The volume id of a FAT file system: 8 hex digits, shown as ABCD-1234.
    std::string volumeId() const { return uuid_.substr(0, 4) + uuid_.substr(5, 4); }

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
        const std::string type =
            shell("command -v mkfs.vfat") && kernelHas("vfat") ? "vfat" : "ext4";
        sticks_.push_back(std::make_unique<Stick>(temp_.native(), "STICKA", "ext4",
                                                  "a1a1a1a1-0000-4000-8000-00000000000a"));
        sticks_.push_back(std::make_unique<Stick>(temp_.native(), "STICKB", type,
                                                  "b2b2b2b2-0000-4000-8000-00000000000b"));
        sticks_.push_back(std::make_unique<Stick>(temp_.native(), "STICKC", "ext4",
                                                  "c3c3c3c3-0000-4000-8000-00000000000c"));
        for (auto& stick : sticks_)
            if (!stick->made())
                GTEST_SKIP() << "cannot make a stick image here";
        if (!plug('A'))
            GTEST_SKIP() << "cannot mount a loop device here";
        unplug('A');
    }
    void TearDown() override {
        sticks_.clear();
        std::error_code ec;
        fs::remove_all(media_, ec);
    }

    Stick& stick(char name) { return *sticks_[static_cast<std::size_t>(name - 'A')]; }
    bool plug(char name) { return stick(name).plugIn(media_ / ("STICK" + std::string(1, name))); }
    void unplug(char name) { stick(name).unplug(); }

    // A start of the program for this user.
    std::unique_ptr<DriveTable> start(const std::string& variable = "") {
        DriveTable::Options o;
        o.drivesVariable = variable;
        o.lettersPath = temp_.native("state/norvale-backup/drive-letters").string();
        o.devDisk = temp_.native("disk").string();
        return std::make_unique<DriveTable>(o);
    }
    // The letter of a stick in a table's list, 0 when it is not listed; its label beside it.
    static std::pair<char, std::string> entryOf(DriveTable& table, const fs::path& point) {
        for (const DriveInfo& d : table.list())
            if (d.root == point.string())
                return {d.letter, d.label};
        return {0, ""};
    }
    char letterOf(DriveTable& table, char name) {
        return entryOf(table, stick(name).point()).first;
    }

    nvtest::TempFolder temp_;
    // The user's folder below /media, as a desktop makes it.
    const fs::path media_ = "/media/nvtest" + std::to_string(::getpid());
    std::vector<std::unique_ptr<Stick>> sticks_;
};

TEST_F(RealSticks, TheChosenTargetKeepsItsStickAcrossStartsAndPlugOrders) {
    // Start 1 with A and B: the user picks B's letter as target.
    ASSERT_TRUE(plug('A') && plug('B'));
    auto table = start();
    const char target = letterOf(*table, 'B');
    const char letterA = letterOf(*table, 'A');
    ASSERT_GE(target, 'D');
    EXPECT_EQ(entryOf(*table, stick('B').point()).second, "STICKB");
    EXPECT_NE(letterA, target);
    table.reset();

    // Start 2 with B and C, A gone; C was mounted first.
    unplug('A');
    unplug('B');
    ASSERT_TRUE(plug('C') && plug('B'));
    table = start();
    EXPECT_EQ(letterOf(*table, 'B'), target);
    const char letterC = letterOf(*table, 'C');
    EXPECT_TRUE(letterC != 0 && letterC != target && letterC != letterA);
    PosixFileSystem files(*table);
    files.makeFolder(std::string(1, target) + ":\\Backup2026-11-17");
    files.writeFile(std::string(1, target) + ":\\Backup2026-11-17\\NV.ini", "x");
    EXPECT_TRUE(fs::is_regular_file(stick('B').point() / "Backup2026-11-17" / "NV.ini"));
    table.reset();

    // Start 3 with C alone: the target is not connected, and nothing reaches C through it.
    unplug('B');
    table = start();
    EXPECT_EQ(letterOf(*table, 'C'), letterC);
    EXPECT_FALSE(table->ready(target));
    PosixFileSystem files3(*table);
    EXPECT_EQ(failureOf([&] { files3.makeFolder(std::string(1, target) + ":\\Backup"); }),
              kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { files3.firstMatch(std::string(1, target) + ":\\*."); }),
              kFailDeviceUnavailable);
    EXPECT_FALSE(fs::exists(stick('C').point() / "Backup"));

    // While it runs, A comes back and then B: each takes its own letter again.
    ASSERT_TRUE(plug('A'));
    EXPECT_EQ(letterOf(*table, 'A'), letterA);
    EXPECT_FALSE(table->ready(target));
    ASSERT_TRUE(plug('B'));
    EXPECT_TRUE(table->ready(target));
    EXPECT_EQ(files3.firstMatch(std::string(1, target) + ":\\backup2026-11-17\\*.ini"), "NV.ini");
}

TEST_F(RealSticks, SystemMountsAreNotListed) {
    ASSERT_TRUE(plug('A'));
    // A memory file system under /media and under /mnt, and a second view of the stick.
    fs::path ram = media_ / "RAM", sandbox = "/mnt/nvtest" + std::to_string(::getpid());
    fs::path view = media_ / "view";
    for (const fs::path& p : {ram, sandbox, view})
        fs::create_directories(p);
    ASSERT_EQ(::mount("nvtest", ram.c_str(), "tmpfs", 0, "size=1m"), 0);
    ASSERT_EQ(::mount("nvtest", sandbox.c_str(), "tmpfs", MS_RDONLY, "size=1m"), 0);
    ASSERT_EQ(::mount(stick('A').point().c_str(), view.c_str(), nullptr, MS_BIND, nullptr), 0);
    auto table = start();
    for (const fs::path& p : {ram, sandbox, view})
        EXPECT_EQ(entryOf(*table, p).first, 0) << p;
    EXPECT_NE(letterOf(*table, 'A'), 0);
    for (const fs::path& p : {view, sandbox, ram}) {
        ::umount2(p.c_str(), MNT_DETACH);
        fs::remove(p);
    }
}

// A stick given with NVBACKUP_DRIVES and then unmounted leaves its empty mount point: that is
// not the drive, and another stick mounted there is not either.
TEST_F(RealSticks, AGivenStickThatIsUnmountedIsNotConnected) {
    ASSERT_TRUE(plug('B'));
    auto table = start("E=" + stick('B').point().string());
    PosixFileSystem files(*table);
    EXPECT_TRUE(table->ready('E'));
    const fs::path point = stick('B').point();
    stick('B').unplug();
    fs::create_directories(point); // the empty folder a forced removal leaves
    EXPECT_FALSE(table->ready('E'));
    EXPECT_EQ(failureOf([&] { files.makeFolder("E:\\Backup2026-11-17"); }), kFailDeviceUnavailable);
    EXPECT_FALSE(fs::exists(point / "Backup2026-11-17"));
    // C mounted in the same place is another stick.
    ASSERT_TRUE(stick('C').plugIn(point));
    EXPECT_FALSE(table->ready('E'));
    stick('C').unplug();
    ASSERT_TRUE(stick('B').plugIn(point));
    EXPECT_TRUE(table->ready('E'));
}

} // namespace
