#include "backup/BackupRunFixture.h"

#include <chrono>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

// A run onto a real file system on stick/, which a test may mount first.
class RealTarget : public BackupRunFixture {
protected:
    ~RealTarget() override {
        if (mounted)
            ::umount2(point.c_str(), MNT_DETACH);
    }
    // Mounts a size-limited tmpfs on stick/; false when this machine does not let us.
    bool mountTmpfs(const std::string& size) {
        std::string options = "size=" + size + ",mode=0755";
        mounted =
            ::geteuid() == 0 && ::mount("nvtest", point.c_str(), "tmpfs", 0, options.c_str()) == 0;
        return mounted;
    }
    std::string sized(const std::string& name, std::size_t size) {
        return source(name, std::string(size, 'n'));
    }
    std::size_t temporariesOfToday() const {
        std::error_code ec;
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(point / kToday, ec))
            count += isCopyTemporary(entry.path().filename().string());
        return count;
    }

    const fs::path point = machine.temp.native("stick");
    bool mounted = false;
};

TEST_F(RealTarget, ATargetThatFillsUpStopsTheRunAtTheFileThatDidNotFit) {
    if (!mountTmpfs("1m"))
        GTEST_SKIP() << "needs root and tmpfs to make a full target";
    list({sized("a.ini", 200 << 10), sized("big.mdb", 3 << 20), sized("c.ini", 10 << 10)});
    bool windowUpDuringFull = false;
    boxes.onShow = [&](const MessageBoxRequest&) { windowUpDuringFull = windows.copyWindowOpen; };
    run();

    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].text, kFullText);
    EXPECT_TRUE(windowUpDuringFull);
    // No half file under its name, no temporary file, and the folder stays for the list.
    EXPECT_EQ(entries(), Log{kToday + "/"});
    EXPECT_EQ(entries(kToday), Log{"a.ini"});
    EXPECT_EQ(fs::file_size(point / kToday / "a.ini"), 200u << 10);
    EXPECT_EQ(windows.copies, 2);
    expectNotMade();
}

TEST_F(RealTarget, AWriteProtectedTargetGivesTheBoxNotOpened) {
    if (!mountTmpfs("1m") ||
        ::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        GTEST_SKIP() << "needs root to mount a read-only file system";
    list({sized("NV.ini", 10)});
    run();

    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].text, kProtectedText);
    EXPECT_EQ(windows.copies, 0);
    EXPECT_FALSE(fs::exists(point / kToday));
    expectNotMade();
}

TEST_F(RealTarget, ATargetTakenAwayInTheMiddleEndsTheRunWithABox) {
    if (!mountTmpfs("4m"))
        GTEST_SKIP() << "needs root and tmpfs to take a target away";
    list({sized("a.ini", 1000), sized("b.ini", 1000), sized("c.ini", 1000)});
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

// A name the stick cannot hold is told before its copy, as a duplicate is; the rest is copied.
TEST_F(RealTarget, NamesAFatStickCannotHoldAreToldAndTheRestIsCopied) {
    files.fatNames = true;
    const std::string rest =
        ", dat de backup schijf niet toestaat.\r\n\r\nGeef het bestand een andere "
        "naam of gebruik een backup schijf die deze naam wel toestaat.";
    const std::pair<std::string, std::string> refused[] = {
        {"Notulen 10:30.txt", "bevat het teken :" + rest},
        {"Wat?.doc", "bevat het teken ?" + rest},
        {"\"citaat\".txt", "bevat het teken \"" + rest},
        {"a<b>c|d*.txt", "bevat het teken <" + rest},
        {"tab\tnaam.txt", "bevat een stuurteken" + rest},
        {"versie.",
         "eindigt op een punt, wat de backup schijf niet toestaat.\r\n\r\nGeef het "
         "bestand een andere naam of gebruik een backup schijf die deze naam wel toestaat."},
        {"los ",
         "eindigt op een spatie, wat de backup schijf niet toestaat.\r\n\r\nGeef het "
         "bestand een andere naam of gebruik een backup schijf die deze naam wel toestaat."},
    };
    Log rows, copied;
    for (const auto& [name, why] : refused)
        rows.push_back(source(name, "x"));
    for (int n = 1; n <= 8; ++n) {
        copied.push_back("NV_Ledger0" + std::to_string(n) + ".mdb");
        rows.push_back(source(copied.back(), copied.back()));
    }
    list(rows);
    run();

    ASSERT_EQ(boxes.shown.size(), std::size(refused) + 2);
    for (std::size_t i = 0; i < std::size(refused); ++i) {
        const MessageBoxRequest& box = boxes.shown[i + 1];
        EXPECT_EQ(box.title, "Bestand wordt niet gekopieerd");
        EXPECT_EQ(box.text, "Het bestand " + refused[i].first +
                                " kan niet naar de backup schijf worden gekopieerd: de naam " +
                                refused[i].second);
        EXPECT_EQ(box.icon, Icon::Critical);
    }
    EXPECT_EQ(boxes.shown.back().title, "Back Up met fout(en)");
    EXPECT_EQ(entries(kToday), copied);

    // Mirrored, the subfolder's name counts too.
    AppSettings.Directory = 1;
    fs::remove_all(point / kToday);
    list({source("Map: 2026/NV.ini", "x"), source("Data/Norvale/NV.ini", "y")});
    boxes.shown.clear();
    run();
    ASSERT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(boxes.shown[1].text,
              "Het bestand NV.ini kan niet naar de backup schijf worden gekopieerd: de naam van de "
              "map Map: 2026 bevat het teken :, dat de backup schijf niet toestaat.\r\n\r\nGeef de "
              "map een andere naam of gebruik een backup schijf die deze naam wel toestaat.");
    EXPECT_EQ(entries(kToday), Log{"Norvale/"});
    EXPECT_EQ(machine.temp.read("stick/" + kToday + "/Norvale/NV.ini"), "y");
}

// A temporary whose writer still runs may be a copy under way: it stays until that process ends.
TEST_F(RealTarget, ALeftoverIsClearedOnlyOnceItsWriterHasEnded) {
    const pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        ::pause();
        ::_exit(0);
    }
    const std::string temp = "Backup2026-11-01/.NV.ini" + std::string(kCopyTemporaryMark) +
                             std::to_string(writer) + "-0";
    machine.temp.write("stick/" + temp, "onderweg");
    list({source("NV.ini", "x")});
    run();
    EXPECT_TRUE(fs::exists(point / temp));

    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    boxes.answer(Answer::OK);
    boxes.answer(Answer::Yes);
    run();
    EXPECT_EQ(boxes.shown.back().text,
              "Bestanden succesvol gekopieerd naar " + folder(kToday + "(2)"));
    EXPECT_FALSE(fs::exists(point / temp));
}

// A run killed in the middle of a copy, or between two copies of one group, leaves their data
// only in hidden temporaries, never under a final name, and the next run clears them.
TEST_F(RealTarget, ARunKilledInTheMiddleOfAGroupLeavesOnlyTemporaries) {
    // Large enough to be killed in the middle of; each block marked, so that none goes astray.
    std::string big(200 << 20, '\0');
    for (std::size_t i = 0; i < big.size(); i += 4096)
        big[i] = static_cast<char>(i >> 12);
    list({sized("a.ini", 1000), source("big.mdb", big), sized("c.ini", 1000)});
    // Killed by the test as soon as the large file's temporary shows, or else by itself before
    // the third copy.
    for (bool inTheMiddle : {true, false}) {
        SCOPED_TRACE(inTheMiddle);
        fs::remove_all(point / kToday);
        windows.copies = 0;
        windows.beforeCopy = [](int copy) {
            if (copy == 3)
                ::kill(::getpid(), SIGKILL);
        };
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            run();
            ::_exit(0);
        }
        int status = 0;
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (child > 0 && ::waitpid(child, &status, WNOHANG) == 0) {
            if ((inTheMiddle && temporariesOfToday() == 2) ||
                std::chrono::steady_clock::now() > until)
                ::kill(child, SIGKILL);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        EXPECT_EQ(temporariesOfToday(), 2u);
        EXPECT_EQ(entries(kToday).size(), 2u);

        windows.beforeCopy = nullptr;
        run();
        EXPECT_EQ(boxes.shown.back().title, "Back Up");
        EXPECT_EQ(entries(kToday), (Log{"a.ini", "big.mdb", "c.ini"}));
        std::ifstream copy(point / kToday / "big.mdb", std::ios::binary);
        EXPECT_TRUE(std::string(std::istreambuf_iterator<char>(copy), {}) == big);
    }
}

// FAT32 holds no file of 4 GiB or more, and the kernel says so with EFBIG. A process's own file
// size limit gives the same answer, from the same place, for a smaller file.
TEST_F(RealTarget, AFileTooLargeForTheMediumEndsTheRunInPlainWords) {
    list({sized("a.ini", 1000), sized("big.mdb", 256 << 10), sized("c.ini", 1000)});
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const rlimit small{128 << 10, old.rlim_max};
    auto* oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    run();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, "Norvale Backup");
    EXPECT_EQ(boxes.shown[1].text, "60 Bestand te groot voor dit backup medium");
    // Nothing half-written: the file that did not fit is not there, nor its temporary.
    EXPECT_EQ(entries(kToday), Log{"a.ini"});
    EXPECT_EQ(windows.copies, 2);
    expectNotMade();
}

// Runs work on a thread of its own on which the kernel answers fchmod and the setting of file
// times with err, as FAT, exFAT and FUSE drivers may; false when this kernel cannot be told so.
bool onThreadRefusingBitsAndTimes(int err, const std::function<void()>& work) {
    bool filtered = false;
    std::thread thread([&] {
        const unsigned answer = SECCOMP_RET_ERRNO | (static_cast<unsigned>(err) & SECCOMP_RET_DATA);
        sock_filter code[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_fchmod, 2, 0),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_utimensat, 1, 0),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
            BPF_STMT(BPF_RET | BPF_K, answer),
        };
        sock_fprog program{static_cast<unsigned short>(std::size(code)), code};
        // Without TSYNC the filter holds for this thread alone, and goes with it.
        filtered = ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                   ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
        if (filtered)
            work();
    });
    thread.join();
    return filtered;
}

TEST_F(RealTarget, AMediumThatKeepsNoPermissionBitsOrTimesStillTakesTheCopies) {
    list({sized("NV.ini", 1000), sized("NV.mdb", 5000)});
    struct Case {
        int err;
        std::string lastBox;
    };
    for (const Case& c :
         {Case{EPERM, "Back Up"}, Case{ENOSYS, "Back Up"}, Case{EOPNOTSUPP, "Back Up"},
          // A real failure of the same calls still ends the run.
          Case{EIO, "57 Invoer/uitvoer-fout van apparaat"}}) {
        SCOPED_TRACE(c.err);
        fs::remove_all(point / kToday);
        boxes.shown.clear();
        if (!onThreadRefusingBitsAndTimes(c.err, [&] { run(); }))
            GTEST_SKIP() << "cannot filter system calls here";
        ASSERT_EQ(boxes.shown.size(), 2u);
        if (c.err == EIO) {
            EXPECT_EQ(boxes.shown[1].text, c.lastBox);
            EXPECT_EQ(entries(kToday), Log{});
        } else {
            EXPECT_EQ(boxes.shown[1].title, c.lastBox);
            EXPECT_EQ(entries(kToday), (Log{"NV.ini", "NV.mdb"}));
            EXPECT_EQ(fs::file_size(point / kToday / "NV.mdb"), 5000u);
        }
    }
}

} // namespace
