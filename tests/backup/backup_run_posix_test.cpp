#include "backup/BackupRun.h"
#include "platform/DateText.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "support/BackupFakes.h"
#include "support/TestMachine.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace nv;
using nvtest::crlf;
using Log = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const std::string kToday = "Backup2026-11-17";
const std::string kWriteTitle = "Fout bij schrijven naar backup schijf";

std::vector<std::string> entriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string() + (entry.is_directory() ? "/" : ""));
    std::sort(names.begin(), names.end());
    return names;
}

bool sameBytes(const fs::path& a, const fs::path& b) {
    if (fs::file_size(a) != fs::file_size(b))
        return false;
    std::ifstream x(a, std::ios::binary), y(b, std::ios::binary);
    std::vector<char> p(1 << 20), q(1 << 20);
    while (x && y) {
        x.read(p.data(), static_cast<std::streamsize>(p.size()));
        y.read(q.data(), static_cast<std::streamsize>(q.size()));
        if (x.gcount() != y.gcount() || !std::equal(p.begin(), p.begin() + x.gcount(), q.begin()))
            return false;
    }
    return true;
}

// A run onto a real file system under stick/, which a test may mount first.
class RealTarget : public ::testing::Test {
protected:
    RealTarget()
        : boxes(windows.log), files(*machine.platform.files), stick(machine.temp, "stick") {
        machine.platform.boxes = &boxes;
        machine.platform.files = &files;
        platform() = machine.platform;
        point = machine.temp.native("stick");
        fs::create_directories(point);
        machine.temp.write("prog/NVbackuptool.ini", kSettingsBefore);
        AppSettings.strIniFile = machine.temp.drive("prog\\NVbackuptool.ini");
        AppSettings.DriveTarget = stick.target;
        AppSettings.LastBackup = dateFromCivil({2026, 11, 1});
    }
    ~RealTarget() override {
        if (mounted)
            ::umount2(point.c_str(), MNT_DETACH);
    }
    // Mounts a size-limited tmpfs on stick/; false when this machine does not let us.
    bool mountTmpfs(const std::string& size) {
        if (::geteuid() != 0)
            return false;
        std::string options = "size=" + size + ",mode=0755";
        mounted = ::mount("nvtest", point.c_str(), "tmpfs", 0, options.c_str()) == 0;
        return mounted;
    }
    std::string source(const std::string& name, std::size_t size) {
        machine.temp.write("bron/" + name, std::string(size, 'n'));
        return machine.temp.drive("bron\\" + name);
    }
    void list(const std::vector<std::string>& rows) {
        AppSettings.strFiles = {""};
        AppSettings.strFiles.insert(AppSettings.strFiles.end(), rows.begin(), rows.end());
        AppSettings.AantalFiles = static_cast<int16_t>(rows.size());
    }
    void run() { Cmd_Backup_Click(windows, intLoop, strBackupFolder); }
    void expectNotMade() {
        EXPECT_EQ(machine.temp.read("prog/NVbackuptool.ini"), kSettingsBefore);
        EXPECT_EQ(AppSettings.LastBackup, dateFromCivil({2026, 11, 1}));
        EXPECT_FALSE(windows.copyWindowOpen);
        Log tail(windows.log.end() - 2, windows.log.end());
        EXPECT_EQ(tail, (Log{"RefreshStatus", "refreshTargetDirectories"}));
    }

    const std::string kSettingsBefore = crlf("[Basic settings]\nLastBackup=01-11-2026\n");
    nvtest::TestMachine machine;
    nvtest::FakeBackupWindows windows;
    nvtest::LoggingBoxes boxes;
    nvtest::FaultyFiles files;
    nvtest::TargetDrive stick;
    fs::path point;
    bool mounted = false;
    int16_t intLoop = 0;
    std::string strBackupFolder;
};

TEST_F(RealTarget, ATargetThatFillsUpStopsTheRunAtTheFileThatDidNotFit) {
    if (!mountTmpfs("1m"))
        GTEST_SKIP() << "needs root and tmpfs to make a full target";
    const std::string first = source("a.ini", 200 << 10);
    const std::string big = source("big.mdb", 3 << 20);
    list({first, big, source("c.ini", 10 << 10)});
    bool windowUpDuringFull = false;
    boxes.onShow = [&](const MessageBoxRequest& box) {
        if (box.title == kWriteTitle)
            windowUpDuringFull = windows.copyWindowOpen;
    };
    run();

    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, kWriteTitle);
    EXPECT_EQ(
        boxes.shown[1].text,
        "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf");
    EXPECT_TRUE(windowUpDuringFull);
    EXPECT_EQ(files.copiedFrom, (Log{first, big}));
    // No half file under its name, no temporary file, and the folder stays for the list.
    EXPECT_EQ(entriesOf(point), Log{kToday + "/"});
    EXPECT_EQ(entriesOf(point / kToday), Log{"a.ini"});
    EXPECT_EQ(fs::file_size(point / kToday / "a.ini"), 200u << 10);
    expectNotMade();
}

TEST_F(RealTarget, AWriteProtectedTargetGivesTheBoxNotOpened) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to mount";
    // A read-only ext4 image when the tools are there, else a tmpfs mounted again read-only.
    const fs::path image = machine.temp.native("stick.img");
    bool made = false;
    if (std::system("command -v mkfs.ext4 >/dev/null 2>&1") == 0) {
        std::string make = "truncate -s 8M '" + image.string() + "' && mkfs.ext4 -q -F '" +
                           image.string() + "' >/dev/null 2>&1 && mount -o loop,ro '" +
                           image.string() + "' '" + point.string() + "' 2>/dev/null";
        made = mounted = std::system(make.c_str()) == 0;
    }
    if (!made) {
        if (!mountTmpfs("1m") ||
            ::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            GTEST_SKIP() << "cannot mount a read-only file system here";
    }
    list({source("NV.ini", 10)});
    run();

    EXPECT_EQ(windows.log, (Log{"box Backup maken", "show", "max 1", "box " + kWriteTitle, "close",
                                "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text,
              "De backup schijf kan niet worden geopend, het kan zijn dat deze op 'write "
              "protection' staat, dit is vaak een schakelaartje. Pas dit aan of gebruik een ander "
              "backup medium");
    EXPECT_FALSE(fs::exists(point / kToday));
    expectNotMade();
}

TEST_F(RealTarget, ATargetTakenAwayInTheMiddleEndsTheRunWithABox) {
    if (!mountTmpfs("4m"))
        GTEST_SKIP() << "needs root and tmpfs to take a target away";
    list({source("a.ini", 1000), source("b.ini", 1000), source("c.ini", 1000)});
    windows.beforeCopy = [&](int copy) {
        if (copy == 2 && ::umount2(point.c_str(), MNT_DETACH) == 0)
            mounted = false;
    };
    run();

    ASSERT_FALSE(mounted);
    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, kWriteTitle);
    EXPECT_EQ(windows.copies, 2);
    expectNotMade();
}

// A run killed in the middle of a large file leaves nothing under the file's name that differs
// from its source, and the next run of the day clears what it left.
TEST_F(RealTarget, ARunKilledInTheMiddleOfACopyLeavesNoWrongFile) {
    const std::string big = source("big.mdb", 0);
    {
        std::ofstream out(machine.temp.native("bron/big.mdb"), std::ios::binary);
        std::string block(1 << 20, '\0');
        for (int mb = 0; mb < 200; ++mb) {
            for (std::size_t i = 0; i < block.size(); i += 4096)
                block[i] = static_cast<char>(mb + i);
            out.write(block.data(), static_cast<std::streamsize>(block.size()));
        }
    }
    list({big});
    const fs::path folder = point / kToday;

    std::fflush(nullptr);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        run();
        ::_exit(0);
    }
    // Kill it as soon as its temporary file shows, that is, while the copy is under way.
    bool sawTemporary = false;
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!sawTemporary && std::chrono::steady_clock::now() < until) {
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(folder, ec))
            sawTemporary = sawTemporary || isCopyTemporary(entry.path().filename().string());
        if (!sawTemporary)
            std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(sawTemporary);

    const fs::path copy = folder / "big.mdb";
    if (fs::exists(copy)) {
        EXPECT_TRUE(sameBytes(copy, machine.temp.native("bron/big.mdb")));
    }

    boxes.answer(Answer::OK);
    boxes.answer(Answer::Yes);
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    fs::path written = point / fs::path(strBackupFolder.substr(strBackupFolder.rfind('\\') + 1));
    EXPECT_EQ(entriesOf(written), Log{"big.mdb"});
    EXPECT_TRUE(sameBytes(written / "big.mdb", machine.temp.native("bron/big.mdb")));
}

// A run killed between two copies of one group leaves their data only in hidden temporaries,
// never under a final name, and the next run clears them.
TEST_F(RealTarget, ARunKilledBetweenTwoCopiesOfAGroupLeavesOnlyTemporaries) {
    list({source("a.ini", 1000), source("b.mdb", 300 << 10), source("c.ini", 1000)});
    windows.beforeCopy = [](int copy) {
        if (copy == 3)
            ::kill(::getpid(), SIGKILL);
    };
    std::fflush(nullptr);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        run();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

    Log left = entriesOf(point / kToday);
    EXPECT_EQ(left.size(), 2u);
    for (const std::string& name : left)
        EXPECT_TRUE(isCopyTemporary(name)) << name;

    windows.beforeCopy = nullptr;
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entriesOf(point / kToday), (Log{"a.ini", "b.mdb", "c.ini"}));
    EXPECT_TRUE(sameBytes(point / kToday / "b.mdb", machine.temp.native("bron/b.mdb")));
}

} // namespace
