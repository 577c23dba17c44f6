#include "backup/BackupRunFixture.h"
#include "support/ExpectBox.h"

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

// A run onto a real file system on the stick, which a test may mount first.
class RealTarget : public BackupRunFixture {
protected:
    ~RealTarget() override {
        if (mounted)
            ::umount2(point.c_str(), MNT_DETACH);
    }
    // Mounts a size-limited tmpfs on the stick; false when this machine does not let us.
    bool mountTmpfs(const std::string& size) {
        std::string options = "size=" + size + ",mode=0755";
        mounted =
            ::geteuid() == 0 && ::mount("nvtest", point.c_str(), "tmpfs", 0, options.c_str()) == 0;
        return mounted;
    }
    std::string sized(const std::string& name, std::size_t size) {
        return source(name, std::string(size, 'n'));
    }
    // The run stopped at its copy number copies with one box, leaving today's folder for the
    // list with only whole copies in it.
    void expectStopped(const std::string& text, int copies, const Log& left) {
        ASSERT_EQ(boxes.shown.size(), 2u);
        EXPECT_EQ(windows.copies, copies);
        expectFailed(text, left);
    }

    const fs::path point = stick.native();
    bool mounted = false;
};

TEST_F(RealTarget, AWriteProtectedTargetGivesTheBoxNotOpened) {
    if (!mountTmpfs("1m") ||
        ::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        GTEST_SKIP() << "needs root to mount a read-only file system";
    list({sized("NV.ini", 10)});
    run();
    EXPECT_FALSE(fs::exists(point / kToday));
    expectStopped(kProtectedText, 0, {});
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
    EXPECT_EQ(boxes.shown.back().title, kWriteTitle);
    expectStopped(kProtectedText, 2, {});
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
    EXPECT_EQ(boxes.shown.back().title, "Norvale Backup");
    expectStopped("60 Bestand te groot voor dit backup medium", 2, {"a.ini"});
}

// A name the stick cannot hold is told before its copy, as a duplicate is; the rest is copied.
TEST_F(RealTarget, NamesAFatStickCannotHoldAreToldAndTheRestIsCopied) {
    files.fatNames = true;
    const std::string rest = " de backup schijf niet toestaat.\r\n\r\nGeef het bestand een andere "
                             "naam of gebruik een backup schijf die deze naam wel toestaat.";
    std::vector<std::pair<std::string, std::string>> refused = {
        {"tab\tnaam.txt", "bevat een stuurteken, dat"},
        {"versie.", "eindigt op een punt, wat"},
        {"los ", "eindigt op een spatie, wat"},
        {"los. ", "eindigt op een spatie, wat"},
    };
    // A digit of its own keeps the wildcards among them from matching another's file.
    for (char c : std::string("<>:\"|?*"))
        refused.insert(refused.begin(),
                       {std::string("a") + c + std::to_string(refused.size()) + ".txt",
                        std::string("bevat het teken ") + c + ", dat"});
    Log rows, copied;
    for (const auto& [name, why] : refused)
        rows.push_back(source(name, "x"));
    for (int n = 1; n <= 8; ++n)
        copied.push_back("NV_Ledger0" + std::to_string(n) + ".mdb");
    copied.push_back("Notulen 10.30 (kopie) [2] #1 & \u20ac.txt");
    for (const std::string& name : copied)
        rows.push_back(source(name, name));
    list(rows);
    run();

    ASSERT_EQ(boxes.shown.size(), refused.size() + 2);
    for (std::size_t i = 0; i < refused.size(); ++i)
        expectBox(boxes.shown[i + 1], "Bestand wordt niet gekopieerd",
                  "Het bestand " + refused[i].first +
                      " kan niet naar de backup schijf worden gekopieerd: de naam " +
                      refused[i].second + rest,
                  Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown.back().title, "Back Up met fout(en)");
    EXPECT_EQ(entries(kToday), copied);

    // Mirrored, the subfolder's name counts too.
    AppSettings.Directory = 1;
    list({source("Map: 2026/NV.ini", "x"), source("Data/Norvale/NV.ini", "y")});
    rerun();
    ASSERT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(boxes.shown[1].text,
              "Het bestand NV.ini kan niet naar de backup schijf worden gekopieerd: de naam van de "
              "map Map: 2026 bevat het teken :, dat de backup schijf niet toestaat.\r\n\r\nGeef de "
              "map een andere naam of gebruik een backup schijf die deze naam wel toestaat.");
    EXPECT_EQ(entries(kToday), Log{"Norvale/"});
    EXPECT_EQ(onStick(kToday + "/Norvale/NV.ini"), "y");
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
    fs::remove_all(point / kToday);
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
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
            if ((inTheMiddle && machine.temp.copyLeftovers("stick/" + kToday) == 2) ||
                std::chrono::steady_clock::now() > until)
                ::kill(child, SIGKILL);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        EXPECT_EQ(machine.temp.copyLeftovers("stick/" + kToday), 2u);
        EXPECT_EQ(entries(kToday).size(), 2u);

        windows.beforeCopy = nullptr;
        run();
        EXPECT_EQ(boxes.shown.back().title, "Back Up");
        EXPECT_EQ(entries(kToday), (Log{"a.ini", "big.mdb", "c.ini"}));
        EXPECT_TRUE(onStick(kToday + "/big.mdb") == big);
    }
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
    // A real failure of the same calls still ends the run.
    for (int err : {EPERM, ENOSYS, EOPNOTSUPP, EIO}) {
        SCOPED_TRACE(err);
        fs::remove_all(point / kToday);
        boxes.shown.clear();
        if (!onThreadRefusingBitsAndTimes(err, [&] { run(); }))
            GTEST_SKIP() << "cannot filter system calls here";
        ASSERT_EQ(boxes.shown.size(), 2u);
        if (err == EIO) {
            EXPECT_EQ(boxes.shown[1].text, "57 Invoer/uitvoer-fout van apparaat");
            EXPECT_EQ(entries(kToday), Log{});
        } else {
            EXPECT_EQ(boxes.shown[1].title, "Back Up");
            EXPECT_EQ(entries(kToday), (Log{"NV.ini", "NV.mdb"}));
            EXPECT_EQ(onStick(kToday + "/NV.mdb"), std::string(5000, 'n'));
        }
    }
}

} // namespace
