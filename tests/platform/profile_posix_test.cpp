// The settings file on Linux: what the cache, the atomic replace and the failure paths must
// hold when the disk or another process does not play along.
#include "platform/Platform.h"
#include "support/TempFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <set>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const std::string kIni = "NVbackuptool.ini";

std::string settings(const std::string& drive) {
    return "[Basic settings]\r\nDriveTarget=" + drive + "\r\n";
}

class ProfilePosix : public ::testing::Test {
protected:
    std::string get(const std::string& key, const std::string& relative = kIni,
                    const std::string& section = "Basic settings") {
        return store.getString(section, key, "?", 255, dir.drive(relative));
    }
    std::vector<std::string> others(const std::string& folder = "") {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir.native(folder)))
            if (entry.path().filename() != kIni)
                names.push_back(entry.path().filename().string());
        return names;
    }
    // A store that cannot be made: false, no temporary file left, and reads show the disk.
    void expectRefused(const std::string& folder) {
        SCOPED_TRACE(folder);
        const std::string relative = folder + "/" + kIni, ini = dir.drive(relative);
        EXPECT_FALSE(store.writeString("Basic settings", "DriveTarget", "F:", ini));
        {
            nv::ProfileBatch batch(store);
            store.writeString("Basic settings", "Directory", "1", ini);
        }
        EXPECT_EQ(get("DriveTarget", relative), "E:");
        EXPECT_EQ(get("Directory", relative), "?");
        EXPECT_EQ(dir.read(relative), settings("E:"));
        for (const std::string& name : others(folder))
            EXPECT_NE(name[0], '.') << name;
    }

    nv::ProfileStore& store = *nv::nativePlatform().profiles;
    nvtest::TempFolder dir;
    const std::string ini = dir.drive(kIni);
};

TEST_F(ProfilePosix, TheCacheSeesEditsFromOutsideAndAStoreKeepsThePermissions) {
    // Another file of the same size with the old time stamp put back: rewritten in place, at
    // once and after the file has aged past the coarse clock that stamps it, or put in its place
    // as a restore of a backup does.
    dir.write(kIni, settings("E:"));
    EXPECT_EQ(get("DriveTarget"), "E:");
    for (const std::string drive : {"F:", "G:", "H:"}) {
        const auto stamp = fs::last_write_time(dir.native(kIni));
        const std::string name = drive == "H:" ? "other.ini" : kIni;
        dir.write(name, settings(drive));
        fs::last_write_time(dir.native(name), stamp);
        fs::rename(dir.native(name), dir.native(kIni));
        EXPECT_EQ(get("DriveTarget"), drive);
        std::this_thread::sleep_for(std::chrono::milliseconds(drive == "F:" ? 120 : 0));
        EXPECT_EQ(get("DriveTarget"), drive);
    }
    // Taken away, and the store's own writes afterwards: a replaced file keeps its permissions,
    // and no temporary file stays.
    fs::remove(dir.native(kIni));
    EXPECT_EQ(get("DriveTarget"), "?");
    EXPECT_TRUE(store.writeString("Basic settings", "DriveTarget", "E:", ini));
    fs::permissions(dir.native(kIni), fs::perms(0640));
    EXPECT_TRUE(store.writeString("Basic settings", "DriveTarget", "F:", ini));
    EXPECT_EQ(fs::status(dir.native(kIni)).permissions(), fs::perms(0640));
    EXPECT_EQ(dir.read(kIni), settings("F:"));
    EXPECT_EQ(others(), std::vector<std::string>{});
}

TEST_F(ProfilePosix, AFailedStoreLeavesTheFileAsItWas) {
    // A read-only file is refused, to root as well, as on the home platform. (A settings folder
    // on a read-only mount is tried through the start.)
    dir.write("file/" + kIni, settings("E:"));
    EXPECT_EQ(get("DriveTarget", "file/" + kIni), "E:");
    fs::permissions(dir.native("file/" + kIni), fs::perms(0444));
    expectRefused("file");

    // A full disk: a small file system filled up behind the settings file. Root ignores
    // permission bits, so it gets its faults from mounts in a namespace of this process alone.
    const fs::path stick = dir.native("stick");
    fs::create_directories(stick);
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", stick.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "a full disk needs a file system of its own, which needs root";
    dir.write("stick/" + kIni, settings("E:"));
    EXPECT_EQ(get("DriveTarget", "stick/" + kIni), "E:");
    const int fd = ::open((stick / "filler").c_str(), O_WRONLY | O_CREAT, 0644);
    const std::string block(4096, 'x');
    while (fd >= 0 && ::write(fd, block.data(), block.size()) > 0) {
    }
    ::close(fd);
    expectRefused("stick");
    ::umount2(stick.c_str(), MNT_DETACH);
}

TEST_F(ProfilePosix, AKilledWriterLeavesTheOldOrTheNewFileAndNothingToMistakeForIt) {
    auto fill = [&](const std::string& stem) {
        {
            nv::ProfileBatch batch(store);
            store.writeString("Basic settings", "AantalFiles", "3000", ini);
            for (int n = 1; n <= 3000; ++n)
                store.writeString("Backupfiles", "BackUpfile" + std::to_string(n),
                                  "C:\\Data\\" + stem + std::to_string(n) + ".mdb", ini);
        }
        return dir.read(kIni);
    };
    const std::set<std::string> whole = {fill("new"), fill("old")};
    std::mt19937 random(75);
    int leftovers = 0;
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        for (int n = 0; child == 0; ++n)
            fill(n % 2 == 0 ? "new" : "old");
        // Every other round the kill waits for the child's temporary, so it comes inside a replace.
        const std::string temp = ".NVbackuptool.ini.nvtmp-" + std::to_string(child) + "-";
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (round % 2 == 1 && std::chrono::steady_clock::now() < until &&
               std::ranges::none_of(others(), [&](auto& name) { return name.starts_with(temp); })) {
        }
        std::this_thread::sleep_for(
            std::chrono::microseconds(random() % (round % 2 ? 200 : 40000)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_TRUE(whole.contains(dir.read(kIni)));
        EXPECT_TRUE(get("BackUpfile3000", kIni, "Backupfiles").ends_with("3000.mdb"));
        // Whatever the kill left behind is hidden, so nothing takes it for a settings file.
        for (const std::string& name : others()) {
            EXPECT_TRUE(name.starts_with(".NVbackuptool.ini.")) << name;
            ++leftovers;
        }
    }
    EXPECT_GT(leftovers, 0);
    EXPECT_TRUE(store.writeString("Basic settings", "AantalFiles", "1", ini));
    EXPECT_EQ(others(), std::vector<std::string>{});
}

} // namespace
