// The settings file on Linux: what the cache, the atomic replace and the failure paths must
// hold when the disk or another process does not play along.

#include "platform/Platform.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sched.h>
#include <signal.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

nv::ProfileStore& store() {
    return *nv::nativePlatform().profiles;
}

std::string get(const std::string& section, const std::string& key, const std::string& file) {
    return store().getString(section, key, "?", 255, file);
}

// Names in a folder other than the given one.
std::vector<std::string> othersIn(const fs::path& folder, const std::string& except) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename() != except)
            names.push_back(entry.path().filename().string());
    return names;
}

// Root ignores permission bits, so it gets its faults from mounts of its own, in a mount
// namespace of this process that the rest of the machine does not see.
bool privateMounts() {
    static const bool ok = ::geteuid() == 0 && ::unshare(CLONE_NEWNS) == 0 &&
                           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return ok;
}

struct Mount {
    std::string point;
    ~Mount() {
        if (!point.empty())
            ::umount2(point.c_str(), MNT_DETACH);
    }
};

TEST(ProfilePosix, CacheSeesEditsFromOutside) {
    nvtest::TempFolder dir;
    std::string ini = dir.drive("NVbackuptool.ini");
    fs::path native = dir.native("NVbackuptool.ini");

    // Rewritten in place, same size, with its old time stamp put back: at once, and again
    // after the file has aged past the coarse clock that stamps it.
    auto rewrite = [&](const std::string& letter) {
        auto stamp = fs::last_write_time(native);
        dir.write("NVbackuptool.ini", "[Basic settings]\r\nDriveTarget=" + letter + "\r\n");
        fs::last_write_time(native, stamp);
    };
    dir.write("NVbackuptool.ini", "[Basic settings]\r\nDriveTarget=E:\r\n");
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "E:");
    rewrite("F:");
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "F:");
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "F:");
    rewrite("G:");
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "G:");

    // Replaced by another file of the same size and time, as a restore of a backup does.
    dir.write("other.ini", "[Basic settings]\r\nDriveTarget=H:\r\n");
    fs::last_write_time(dir.native("other.ini"), fs::last_write_time(native));
    fs::rename(dir.native("other.ini"), native);
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "H:");

    // Taken away, and the store's own writes afterwards: a new file is not writable by all even
    // under an open umask, a replaced one keeps its permissions, and no temporary file stays.
    fs::remove(native);
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "?");
    mode_t mask = ::umask(0);
    EXPECT_TRUE(store().writeString("Basic settings", "DriveTarget", "E:", ini));
    ::umask(mask);
    EXPECT_EQ(dir.read("NVbackuptool.ini"), "[Basic settings]\r\nDriveTarget=E:\r\n");
    EXPECT_EQ(fs::status(native).permissions(), fs::perms(0644));
    fs::permissions(native, fs::perms(0640));
    EXPECT_TRUE(store().writeString("Basic settings", "DriveTarget", "F:", ini));
    EXPECT_EQ(fs::status(native).permissions(), fs::perms(0640));
    EXPECT_TRUE(othersIn(dir.native(), "NVbackuptool.ini").empty());
}

// A store that cannot be made: false, no temporary file left, and reads show the disk.
void expectRefused(const nvtest::TempFolder& dir, const std::string& relative,
                   const std::string& before) {
    SCOPED_TRACE(relative);
    std::string ini = dir.drive(relative);
    EXPECT_FALSE(store().writeString("Basic settings", "DriveTarget", "F:", ini));
    {
        nv::ProfileBatch batch(store());
        store().writeString("Basic settings", "Directory", "1", ini);
    }
    EXPECT_EQ(get("Basic settings", "DriveTarget", ini), "E:");
    EXPECT_EQ(get("Basic settings", "Directory", ini), "?");
    EXPECT_EQ(dir.read(relative), before);
    for (const auto& entry : fs::directory_iterator(dir.native(relative).parent_path()))
        EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
}

TEST(ProfilePosix, FailedStoreLeavesTheFileAsItWas) {
    nvtest::TempFolder dir;
    const std::string before = "[Basic settings]\r\nDriveTarget=E:\r\n";

    // A read-only file is refused, to root as well, as on the home platform. (A settings folder
    // on a read-only mount is tried through the start.)
    dir.write("file/NVbackuptool.ini", before);
    EXPECT_EQ(get("Basic settings", "DriveTarget", dir.drive("file\\NVbackuptool.ini")), "E:");
    fs::permissions(dir.native("file/NVbackuptool.ini"), fs::perms(0444));
    expectRefused(dir, "file/NVbackuptool.ini", before);

    // A full disk: a small file system filled up behind the settings file.
    if (!privateMounts())
        GTEST_SKIP() << "a full disk needs a file system of its own, which needs root";
    fs::create_directories(dir.native("stick"));
    Mount full;
    ASSERT_EQ(::mount("tmpfs", dir.native("stick").c_str(), "tmpfs", 0, "size=64k"), 0);
    full.point = dir.native("stick").string();
    dir.write("stick/NVbackuptool.ini", before);
    EXPECT_EQ(get("Basic settings", "DriveTarget", dir.drive("stick\\NVbackuptool.ini")), "E:");
    int fd = ::open(dir.native("stick/filler").c_str(), O_WRONLY | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    std::string block(4096, 'x');
    while (::write(fd, block.data(), block.size()) > 0) {
    }
    ::close(fd);
    expectRefused(dir, "stick/NVbackuptool.ini", before);
}

TEST(ProfilePosix, KilledWriterLeavesTheOldOrTheNewFile) {
    nvtest::TempFolder dir;
    std::string ini = dir.drive("NVbackuptool.ini");
    const int rows = 3000;
    auto fill = [&](const std::string& stem) {
        nv::ProfileBatch batch(store());
        store().writeString("Basic settings", "AantalFiles", std::to_string(rows), ini);
        for (int n = 1; n <= rows; ++n)
            store().writeString("Backupfiles", "BackUpfile" + std::to_string(n),
                                "C:\\Data\\" + stem + std::to_string(n) + ".mdb", ini);
    };
    fill("new");
    const std::string second = dir.read("NVbackuptool.ini");
    fill("old");
    const std::string first = dir.read("NVbackuptool.ini");
    ASSERT_NE(first, second);

    std::mt19937 random(75);
    int leftovers = 0;
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int n = 0;; ++n)
                fill(n % 2 == 0 ? "new" : "old");
        }
        if (round % 2 == 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 40000));
        } else {
            // Catch the child inside a replace: its temporary file is there.
            const std::string temp = ".NVbackuptool.ini.nvtmp-" + std::to_string(child) + "-";
            auto writing = [&] {
                for (const std::string& name : othersIn(dir.native(), "NVbackuptool.ini"))
                    if (name.rfind(temp, 0) == 0)
                        return true;
                return false;
            };
            auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
            while (!writing() && std::chrono::steady_clock::now() < until) {
            }
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
        }
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);

        std::string now = dir.read("NVbackuptool.ini");
        EXPECT_TRUE(now == first || now == second) << now.size() << " bytes";
        std::string row = get("Backupfiles", "BackUpfile" + std::to_string(rows), ini);
        EXPECT_TRUE(row == "C:\\Data\\old3000.mdb" || row == "C:\\Data\\new3000.mdb") << row;
        // Whatever the kill left behind is hidden, so nothing takes it for a settings file.
        for (const std::string& name : othersIn(dir.native(), "NVbackuptool.ini")) {
            EXPECT_EQ(name.rfind(".NVbackuptool.ini.", 0), 0u) << name;
            ++leftovers;
        }
        EXPECT_EQ(nv::nativePlatform().files->firstMatch(dir.drive("*.*")), "NVbackuptool.ini");
    }
    // The next store clears what crashed runs left.
    EXPECT_GT(leftovers, 0);
    EXPECT_TRUE(store().writeString("Basic settings", "AantalFiles", "1", ini));
    EXPECT_TRUE(othersIn(dir.native(), "NVbackuptool.ini").empty()) << leftovers << " left";
}

} // namespace
