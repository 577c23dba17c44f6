#include "backup/BackupRunFixture.h"
#include "backup/CopyBatch.h"
#include "support/ExpectBox.h"
#include "support/FailureOf.h"
#include "support/Noise.h"

#include <csignal>
#include <cstddef>
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
    std::string sized(const std::string& name, std::size_t size) {
        return source(name, std::string(size, 'n'));
    }
    // The run stopped at its copy number copies with one box holding text.
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
    expectStopped("60 Bestand te groot voor dit backup medium", 2, {"a.ini"});
}

// A name the stick cannot hold is told before its copy, as a duplicate is; the rest is copied.
TEST_F(RealTarget, NamesAFatStickCannotHoldAreToldAndTheRestIsCopied) {
    files.fatNames = true;
    std::vector<std::pair<std::string, std::string>> refused = {
        {"tab\tnaam.txt", "bevat een stuurteken, dat"},
        {"versie.", "eindigt op een punt, wat"},
        {"los ", "eindigt op een spatie, wat"},
        {"los. ", "eindigt op een spatie, wat"},
    };
    // A digit of its own keeps the wildcards among them from matching another's file.
    for (char c : std::string("<>:\"|?*"))
        refused.push_back({std::string("a") + c + std::to_string(refused.size()) + ".txt",
                           std::string("bevat het teken ") + c + ", dat"});
    Log rows;
    for (const auto& [name, why] : refused)
        rows.push_back(source(name, "x"));
    const std::string kept = "Notulen 10.30 (kopie) [2] #1 & \u20ac.txt";
    rows.push_back(source(kept, "y"));
    list(rows);
    run();
    ASSERT_EQ(boxes.shown.size(), refused.size() + 2);
    for (std::size_t i = 0; i < refused.size(); ++i)
        expectBox(boxes.shown[i + 1], "Bestand wordt niet gekopieerd",
                  "Het bestand " + refused[i].first +
                      " kan niet naar de backup schijf worden gekopieerd: de naam " +
                      refused[i].second +
                      " de backup schijf niet toestaat.\r\n\r\nGeef het bestand een andere naam "
                      "of gebruik een backup schijf die deze naam wel toestaat.",
                  Buttons::OK, Icon::Critical);
    EXPECT_EQ(entries(kToday), Log{kept});

    // Mirrored, the subfolder's name counts too.
    AppSettings.Directory = 1;
    list({source("Map: 2026/NV.ini", "x"), source("Data/Norvale/NV.ini", "y")});
    rerun();
    EXPECT_EQ(boxes.shown.at(1).text,
              "Het bestand NV.ini kan niet naar de backup schijf worden gekopieerd: de naam van de "
              "map Map: 2026 bevat het teken :, dat de backup schijf niet toestaat.\r\n\r\nGeef de "
              "map een andere naam of gebruik een backup schijf die deze naam wel toestaat.");
    EXPECT_EQ(entries(kToday), Log{"Norvale/"});
}

// A dated folder or a mirrored subfolder on the stick made a link to elsewhere: nothing of the
// run lands there, and the leftover sweep does not reach through it either.
TEST_F(RealTarget, NoFileOfTheRunLandsWhereALinkOnTheStickLeads) {
    struct Case {
        uint8_t directory;
        std::string link, leadsTo, victim; // the link on the stick; the file that must stay
    };
    const Case cases[] = {
        {0, kToday, machine.temp.native("Thuis").string(), "Thuis/NV.ini"},
        {1, kToday + "/Norvale", "../Ander/Norvale", "stick/Ander/Norvale/NV.ini"},
    };
    list({source("Norvale/NV.ini", "ons NV.ini"), source("Norvale/stockA.NVD", "onze voorraad")});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.link);
        machine.temp.write(c.victim, "van een ander");
        machine.temp.leaveCopyLeftover(c.victim);
        fs::create_directories(stick.native(c.link).parent_path());
        fs::create_directory_symlink(c.leadsTo, stick.native(c.link));
        AppSettings.Directory = c.directory;
        boxes.shown.clear();
        run();
        const std::string victimFolder = c.victim.substr(0, c.victim.rfind('/'));
        EXPECT_EQ(machine.temp.read(c.victim), "van een ander");
        EXPECT_EQ(machine.temp.copyLeftovers(victimFolder), 1u);
        EXPECT_EQ(std::distance(fs::directory_iterator(machine.temp.native(victimFolder)), {}), 2);
        EXPECT_NE(boxes.shown.back().title, "Back Up");
        EXPECT_TRUE(fs::is_symlink(stick.native(c.link)));
        fs::remove_all(stick.native(kToday));
    }
}

// A run killed between two copies of one group leaves their data only in hidden temporaries, never
// under a final name, and the next run clears them; the large one is read back while written.
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

    windows.beforeCopy = nullptr;
    run();
    EXPECT_EQ(entries(kToday), (Log{"a.ini", "big.mdb", "c.ini"}));
    EXPECT_TRUE(onStick(kToday + "/big.mdb") == big);
}

// A medium on which the kernel answers fchmod and the setting of file times with an error, as
// FAT, exFAT and FUSE drivers may, still takes the copies; a real failure of the same calls (EIO)
// still ends the run.
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
        EXPECT_EQ(onStick(kToday + "/NV.mdb"), err == EIO ? "" : std::string(5000, 'n'));
        EXPECT_EQ(entries(kToday).size(), err == EIO ? 0u : 2u);
    }
}

// A large copy is read back while it is written: its head before the flush, its tail after. A
// worn block in the tail fails the copy; a tail that wraps onto the file's own head, after that
// was read, is found by the last look of the run.
TEST(LargeCopy, IsReadBackWhileWrittenAndOnceMoreAtTheEnd) {
    NativeMachine machine;
    machine.temp.write("src/Ledger.mdb", noise((std::size_t{100} << 20) + 1234, 5));
    const std::string source = machine.temp.drive("src/Ledger.mdb");
    FaultyMedium files;
    files.fault = [](const std::vector<StagedCopy>& copies) {
        FaultyMedium::flipByte(copies.front().temporary, 100);
    };
    StagedCopy copy = *files.stageCopy(source, machine.temp.drive("Ledger.mdb"));
    EXPECT_GT(copy.readUpTo, 0u);
    files.flushStaged({copy});
    EXPECT_EQ(files.readBackStaged({copy}).front().value().Number, kFailReadBack);
    files.discardStaged(copy);

    files.fault = [](const std::vector<StagedCopy>& copies) {
        FaultyMedium::flipByte(copies.front().temporary, copies.front().written.size - 10);
    };
    CopyBatch batch(files);
    batch.copy(source, machine.temp.drive("Ledger.mdb"));
    batch.commit();
    EXPECT_TRUE(machine.temp.exists("Ledger.mdb"));
    EXPECT_EQ(failureOf([&] { batch.checkPlaced(); }), kFailReadBack);
    EXPECT_FALSE(machine.temp.exists("Ledger.mdb"));
    EXPECT_EQ(machine.temp.copyLeftovers(), 0u);
}

} // namespace
