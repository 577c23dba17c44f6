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

// A name the stick cannot hold, of a file or of its mirrored folder, is told before its copy.
TEST_F(RealTarget, NamesAFatStickCannotHoldAreToldAndTheRestIsCopied) {
    files.fatNames = true;
    AppSettings.Directory = 1;
    std::vector<std::pair<std::string, std::string>> refused = {
        {"tab\tnaam.txt", "bevat een stuurteken, dat"},
        {"versie.", "eindigt op een punt, wat"},
        {"los. ", "eindigt op een spatie, wat"},
    };
    // A digit of its own keeps the wildcards among them from matching another's file.
    for (char c : std::string("<>:\"|?*"))
        refused.push_back({std::string("a") + c + std::to_string(refused.size()) + ".txt",
                           std::string("bevat het teken ") + c + ", dat"});
    Log listed;
    for (const auto& [name, why] : refused)
        listed.push_back(source(name, "x"));
    const std::string kept = "Notulen 10.30 (kopie) [2] #1 & \u20ac.txt";
    listed.push_back(source(kept, "y"));
    listed.push_back(source("Map: 2026/NV.ini", "x"));
    list(listed);
    run();
    ASSERT_EQ(boxes.shown.size(), refused.size() + 3);
    for (std::size_t i = 0; i < refused.size(); ++i)
        expectBox(boxes.shown[i + 1], "Bestand wordt niet gekopieerd",
                  "Het bestand " + refused[i].first +
                      " kan niet naar de backup schijf worden gekopieerd: de naam " +
                      refused[i].second +
                      " de backup schijf niet toestaat.\r\n\r\nGeef het bestand een andere naam "
                      "of gebruik een backup schijf die deze naam wel toestaat.",
                  Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown[refused.size() + 1].text,
              "Het bestand NV.ini kan niet naar de backup schijf worden gekopieerd: de naam van de "
              "map Map: 2026 bevat het teken :, dat de backup schijf niet toestaat.\r\n\r\nGeef de "
              "map een andere naam of gebruik een backup schijf die deze naam wel toestaat.");
    EXPECT_EQ(entries(kToday), Log{"bron/"});
    EXPECT_EQ(entries(kToday + "/bron"), Log{kept});
}

// Nothing of the run, nor of its leftover sweep, goes where a link on the stick leads.
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

// A run killed between two copies of a group leaves only temporaries, which the next run clears.
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

    // A stick that wraps the large copy's tail onto its early-read head is found at the end.
    windows.beforeCopy = nullptr;
    files.fault = [](const std::vector<StagedCopy>& copies) {
        if (const StagedCopy& big = copies.at(1); big.readUpTo > 0)
            FaultyMedium::flipByte(big.temporary, big.written.size - 10);
    };
    run();
    EXPECT_TRUE(boxes.shown.back().text.starts_with("80 "));
    EXPECT_EQ(entries(kToday), (Log{"a.ini", "c.ini"}));
    files.fault = nullptr;
    rerun();
    EXPECT_EQ(entries(kToday), (Log{"a.ini", "big.mdb", "c.ini"}));
    EXPECT_TRUE(onStick(kToday + "/big.mdb") == big);
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
        EXPECT_EQ(onStick(kToday + "/NV.mdb"), err == EIO ? "" : std::string(5000, 'n'));
        EXPECT_EQ(entries(kToday).size(), err == EIO ? 0u : 2u);
    }
}

// A restore finds nothing through a link to a file or folder, nor in a FIFO (that would hang).
TEST_F(RealTarget, ARestoreFindsNothingThroughLinksAndFifos) {
    machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
    machine.temp.write("Elders/NV_Ledger01.mdb", "een ander grootboek");
    for (const std::string name : {"NV.ini", "stockA.NVD", "Goed.ini", "NV_Ledger01.mdb"})
        machine.temp.write("Norvale/" + name, name);
    const fs::path backup = stick.native("B");
    stick.backupFolder("B", {"Goed.ini"});
    fs::create_symlink("../../Thuis/.ssh/id_rsa", backup / "NV.ini");
    ASSERT_EQ(::mkfifo((backup / "stockA.NVD").c_str(), 0644), 0);
    fs::create_directory_symlink(machine.temp.native("Elders"), backup / "Norvale");
    ::alarm(20);
    EXPECT_EQ(restore("B", {"Norvale/NV.ini", "Norvale/stockA.NVD", "Norvale/Goed.ini"}),
              kRestored + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, false}));
    EXPECT_EQ(restore("B\\Norvale", {"Norvale/NV_Ledger01.mdb"}), kRestored + kRestoreNotFoundText);
    ::alarm(0);
    for (const std::string name : {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(machine.temp.read("Norvale/" + name), name);
    EXPECT_EQ(machine.temp.read("Norvale/Goed.ini"), "B/Goed.ini");
}

// The stick's bits say nothing (exFAT shows rwxrwxrwx): a new file takes the umask, never more
// than its source allows.
TEST_F(RealTarget, ARestoredFileKeepsTheModeAndOwnerOfTheFileItReplaces) {
    const std::vector<std::string> names{"NV_Ledger01.mdb", "NV.ini", "Nieuw.ini", "Nieuw2.ini"};
    stick.backupFolder("B", names);
    for (const std::string& name : names)
        fs::permissions(stick.native("B/" + name), fs::perms(name == "Nieuw2.ini" ? 0600 : 0777));
    const mode_t mask = ::umask(022);
    ::umask(mask);
    const mode_t modes[] = {0600, 0640, 0775 & ~mask, 0600 & ~mask};
    for (int i : {0, 1}) {
        machine.temp.write("Norvale/" + names[i], "productie");
        fs::permissions(machine.temp.native("Norvale/" + names[i]), fs::perms(modes[i]));
    }
    const bool root = ::chown(machine.temp.native("Norvale/NV.ini").c_str(), 4321, 4321) == 0;
    std::vector<std::string> paths;
    for (const std::string& name : names)
        paths.push_back("Norvale/" + name);
    EXPECT_EQ(restore("B", paths), kRestored);
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "B/NV_Ledger01.mdb");
    for (std::size_t i = 0; i < names.size(); ++i) {
        struct stat st {};
        ::stat(machine.temp.native("Norvale/" + names[i]).c_str(), &st);
        EXPECT_EQ(st.st_mode & 07777, modes[i]) << names[i];
        if (root && i == 1) {
            EXPECT_EQ(std::pair(st.st_uid, st.st_gid), std::pair(4321u, 4321u));
        }
    }
}

} // namespace
