// A file that another handle holds without sharing, as the finance program holds its database.

#include "platform/Platform.h"
#include "support/FailureOf.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(FileInUseWin32, AFileHeldWithoutSharingIsNeitherCopiedNorClaimedUntilItIsLetGo) {
    nvtest::TestMachine machine;
    machine.temp.write("NV_Ledger01.mdb", "grootboek");
    const std::string ledger = machine.temp.drive("NV_Ledger01.mdb");
    nv::FileSystem& files = *nv::platform().files;
    HANDLE held = CreateFileW(machine.temp.native("NV_Ledger01.mdb").c_str(), GENERIC_WRITE, 0,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_EQ(nvtest::failureOf([&] { files.copyFile(ledger, ledger + ".kopie"); }),
              nv::kFailSourceInUse);
    EXPECT_TRUE(files.claimToReplace(ledger).inUse);
    CloseHandle(held);
    EXPECT_FALSE(files.claimToReplace(ledger).inUse);
    EXPECT_EQ(nvtest::failureOf([&] { files.copyFile(ledger, ledger + ".kopie"); }), 0);
}

} // namespace
