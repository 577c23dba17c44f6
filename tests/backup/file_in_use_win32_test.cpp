// A production file that another handle holds without sharing, as the finance program holds its
// database, is not claimed for a restore until it is let go.

#include "platform/Platform.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(FileInUseWin32, AFileHeldWithoutSharingIsNotClaimedUntilItIsLetGo) {
    nvtest::TestMachine machine;
    machine.temp.write("NV_Ledger01.mdb", "grootboek");
    const std::string ledger = machine.temp.drive("NV_Ledger01.mdb");
    HANDLE held = CreateFileW(machine.temp.native("NV_Ledger01.mdb").c_str(), GENERIC_READ, 0,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(nv::platform().files->claimToReplace(ledger).inUse);
    CloseHandle(held);
    EXPECT_FALSE(nv::platform().files->claimToReplace(ledger).inUse);
}

} // namespace
