#include "backup/BackupRunFixture.h"
#include "support/ExpectBox.h"
#include "support/Noise.h"

#include <csignal>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
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
    std::string sized(const std::string& name, std::size_t size) {
        return source(name, std::string(size, 'n'));
    }
    void expectStopped(const std::string& text, int copies, const Log& left) {
        EXPECT_EQ(boxes.shown.size(), 2u);
        EXPECT_EQ(boxes.shown.back().text, text);
        EXPECT_EQ(windows.copies, copies);
        expectFailed(boxes.shown.back().title, left);
    }

    const fs::path point = stick.native();
    bool mounted = false;
};

TEST_F(RealTarget, AWriteProtectedTargetOrOneTakenAwayInTheMiddleGivesTheBoxNotOpened) {
    mounted = ::geteuid() == 0 && ::mount("nvtest", point.c_str(), "tmpfs", 0, "size=4m") == 0;
    if (!mounted || ::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        GTEST_SKIP() << "needs root to mount a file system";
    list({sized("a.ini", 1000), sized("b.ini", 1000), sized("c.ini", 1000)});
    run();
    expectStopped(kProtectedText, 0, {});

    ASSERT_EQ(::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT, nullptr), 0);
    windows.beforeCopy = [&](int copy) {
        if (copy == 2 && ::umount2(point.c_str(), MNT_DETACH) == 0)
            mounted = false;
    };
    rerun();
    ASSERT_FALSE(mounted);
    expectStopped(kProtectedText, 2, {});
}

// FAT32 holds no file of 4 GiB, and says so with EFBIG, as a process's own size limit does.
// Linux takes names that a FAT stick refuses; each gets its box, and the rest is copied.
TEST_F(RealTarget, NamesAFatStickCannotHoldAreToldAndTheRestIsCopied) {
    files.fatNames = true;
    AppSettings.Directory = 1;
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"tab\tnaam.txt", "bevat een stuurteken, dat"},
        {"versie.", "eindigt op een punt, wat"},
        {"a?b.txt", "bevat het teken ?, dat"}};
    Log listed;
    for (const auto& [name, why] : refused)
        listed.push_back(source(name, "x"));
    listed.push_back(source("Notulen 10.30 (kopie) #1.txt", "y"));
    list(listed);
    run();
    ASSERT_EQ(boxes.shown.size(), refused.size() + 2);
    for (std::size_t i = 0; i < refused.size(); ++i)
        EXPECT_EQ(boxes.shown[i + 1].text,
                  "Het bestand " + refused[i].first +
                      " kan niet naar de backup schijf worden gekopieerd: de naam " +
                      refused[i].second +
                      " de backup schijf niet toestaat.\r\n\r\nGeef het bestand een andere naam "
                      "of gebruik een backup schijf die deze naam wel toestaat.");
    EXPECT_EQ(entries(kToday + "/bron"), Log{"Notulen 10.30 (kopie) #1.txt"});
}

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
    expectStopped("60 Bestand te groot voor dit backup medium", 2, {"a.ini"});
}

// Nothing of the run, nor of its leftover sweep, goes where a link on the stick leads.
TEST_F(RealTarget, NoFileOfTheRunLandsWhereALinkOnTheStickLeads) {
    list({source("Norvale/NV.ini", "ons NV.ini"), source("Norvale/stockA.NVD", "onze voorraad")});
    machine.temp.write("Thuis/NV.ini", "van een ander");
    machine.temp.leaveCopyLeftover("Thuis/NV.ini");
    fs::create_directory_symlink(machine.temp.native("Thuis"), stick.native(kToday));
    run();
    EXPECT_EQ(machine.temp.read("Thuis/NV.ini"), "van een ander");
    EXPECT_EQ(machine.temp.copyLeftovers("Thuis"), 1u);
    EXPECT_EQ(std::distance(fs::directory_iterator(machine.temp.native("Thuis")), {}), 2);
    EXPECT_NE(boxes.shown.back().title, "Back Up");
    EXPECT_TRUE(fs::is_symlink(stick.native(kToday)));
}

// A run killed between two copies of a group leaves only temporaries, never a part of a file.
TEST_F(RealTarget, ARunKilledInTheMiddleOfAGroupLeavesOnlyTemporaries) {
    const std::string big = noise((std::size_t{100} << 20) + 1234, 0x2545F4914F6CDD1Dull);
    list({sized("a.ini", 1000), source("big.mdb", big), sized("c.ini", 1000)});
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
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    EXPECT_EQ(machine.temp.copyLeftovers("stick/" + kToday), 2u);
    EXPECT_EQ(entries(kToday).size(), 2u);
}

// FAT, exFAT and FUSE drivers may refuse fchmod and file times; a real failure (EIO) still counts.
TEST_F(RealTarget, AMediumThatKeepsNoPermissionBitsOrTimesStillTakesTheCopies) {
    list({sized("NV.ini", 1000), sized("NV.mdb", 5000)});
    for (int err : {EPERM, ENOSYS, EOPNOTSUPP, EIO}) {
        SCOPED_TRACE(err);
        sock_filter code[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_fchmod, 2, 0),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_utimensat, 1, 0),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(err)),
        };
        sock_fprog program{static_cast<unsigned short>(std::size(code)), code};
        bool filtered = false;
        // Without TSYNC the filter holds for this thread alone, and goes with it.
        std::thread([&] {
            filtered = ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                       ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
            if (filtered)
                rerun();
        }).join();
        if (!filtered)
            GTEST_SKIP() << "cannot filter system calls here";
        EXPECT_EQ(boxes.shown.at(1).title, err == EIO ? "Norvale Backup" : "Back Up");
        EXPECT_EQ(entries(kToday), err == EIO ? Log{} : (Log{"NV.ini", "NV.mdb"}));
    }
}

// A restore finds nothing through a link, nor in a FIFO (that would hang).
TEST_F(RealTarget, ARestoreFindsNothingThroughLinksAndFifos) {
    machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
    for (const std::string name : {"NV.ini", "stockA.NVD", "Goed.ini"})
        machine.temp.write("Norvale/" + name, name);
    const fs::path backup = stick.native("B");
    stick.backupFolder("B", {"Goed.ini"});
    fs::create_symlink("../../Thuis/.ssh/id_rsa", backup / "NV.ini");
    ASSERT_EQ(::mkfifo((backup / "stockA.NVD").c_str(), 0644), 0);
    ::alarm(20);
    EXPECT_EQ(restore("B", {"Norvale/NV.ini", "Norvale/stockA.NVD", "Norvale/Goed.ini"}),
              kRestored + kRestoreNotFoundText);
    ::alarm(0);
    for (const std::string name : {"NV.ini", "stockA.NVD"})
        EXPECT_EQ(machine.temp.read("Norvale/" + name), name);
    EXPECT_EQ(machine.temp.read("Norvale/Goed.ini"), "B/Goed.ini");
}

// The stick's bits say nothing (exFAT shows rwxrwxrwx): a replaced file keeps its mode, a new
// one takes the umask and never more than its source allows.
TEST_F(RealTarget, ARestoredFileKeepsTheModeOfTheFileItReplaces) {
    stick.backupFolder("B", {"NV.ini", "Nieuw.ini", "Nieuw2.ini"});
    for (const char* name : {"NV.ini", "Nieuw.ini"})
        fs::permissions(stick.native("B/") / name, fs::perms(0777));
    fs::permissions(stick.native("B/Nieuw2.ini"), fs::perms(0600));
    machine.temp.write("Norvale/NV.ini", "productie");
    fs::permissions(machine.temp.native("Norvale/NV.ini"), fs::perms(0640));
    const mode_t mask = ::umask(022);
    ::umask(mask);
    EXPECT_EQ(restore("B", {"Norvale/NV.ini", "Norvale/Nieuw.ini", "Norvale/Nieuw2.ini"}),
              kRestored);
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "B/NV.ini");
    const std::pair<const char*, mode_t> modes[] = {
        {"NV.ini", 0640}, {"Nieuw.ini", 0775 & ~mask}, {"Nieuw2.ini", 0600 & ~mask}};
    for (const auto& [name, mode] : modes)
        EXPECT_EQ(fs::status(machine.temp.native("Norvale/") / name).permissions(), fs::perms(mode))
            << name;
}

} // namespace
