// A restore while another process, as the finance program, has a production file open.

#include "support/RestoreRows.h"
#include "support/TestMachine.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nvtest;

namespace {

// Sets whether this thread may take leases on files of other owners; false when it cannot.
bool mayLeaseAnyFile(bool may) {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct caps[2] = {};
    if (::syscall(SYS_capget, &header, caps) != 0)
        return false;
    unsigned& effective = caps[CAP_LEASE / 32].effective;
    effective = may ? effective | 1u << (CAP_LEASE % 32) : effective & ~(1u << (CAP_LEASE % 32));
    return ::syscall(SYS_capset, &header, caps) == 0;
}

// The ledger is held by a child process: seen by the lease that cannot be had, and, where this
// process may not lease a file of its owner at all, through /proc. It stays as it is and is
// named; the other file is restored, and once the child has gone, so is the ledger.
TEST(RestoreInUse, AFileAnotherProcessHoldsOpenIsLeftSelectedAndNamed) {
    TestMachine machine;
    const std::string ledger = machine.temp.drive("Norvale\\NV_Ledger01.mdb");
    const std::string backup = machine.temp.drive("Backup2026-11-16");
    const std::string done = "Het terugzetten van de bestanden is gereed. \r\n";
    for (const bool byLease : {true, false}) {
        SCOPED_TRACE(byLease);
        for (const std::string name : {"NV_Ledger01.mdb", "NV.ini"}) {
            machine.temp.write("Norvale/" + name, "vandaag");
            machine.temp.write("Backup2026-11-16/" + name, "gisteren");
        }
        const std::string file = machine.temp.native("Norvale/NV_Ledger01.mdb").string();
        if (!byLease &&
            (::geteuid() != 0 || ::chown(file.c_str(), 4242, 4242) != 0 || !mayLeaseAnyFile(false)))
            GTEST_SKIP() << "needs root to give the ledger another owner";
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            const char opened = ::open(file.c_str(), O_RDONLY) >= 0 ? 'y' : 'n';
            if (::write(ready[1], &opened, 1) == 1)
                ::pause();
            ::_exit(1);
        }
        char opened = 'n';
        EXPECT_EQ(::read(ready[0], &opened, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
        ASSERT_EQ(opened, 'y');
        RestoreRows rows({ledger, machine.temp.drive("Norvale\\NV.ini")});
        int16_t intLoop = 0;
        EXPECT_EQ(fRestoreSelectedRows(rows, backup, intLoop),
                  done +
                      "\r\n\r\nDeze bestanden zijn NIET teruggezet omdat een ander programma ze "
                      "open heeft, waarschijnlijk Norvale:\r\n" +
                      ledger + "\r\nSluit Norvale af en zet de backup opnieuw terug.");
        EXPECT_EQ(rows.flags, (std::vector<bool>{true, false}));
        EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "vandaag");
        EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "gisteren");

        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_EQ(fRestoreSelectedRows(rows, backup, intLoop), done);
        EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "gisteren");
        mayLeaseAnyFile(true);
    }
}

} // namespace
