// A copy large enough to be read back while it is written: the part read early and the tail
// read after the flush must come to the whole file, in a backup's batch and in a restore.
#include "backup/CopyBatch.h"
#include "platform/FailureText.h"
#include "support/FaultyMedium.h"
#include "support/Noise.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

namespace {

using nvtest::FaultyMedium;

// 100 MiB and an odd tail: three segments written early, one read before the flush.
std::string largeBytes() {
    return nvtest::noise((std::size_t{100} << 20) + 1234, 0x2545F4914F6CDD1Dull);
}

TEST(LargeCopy, IsReadBackWhileWrittenAndWholeAfterTheFlush) {
    nvtest::NativeMachine machine;
    const std::string bytes = largeBytes();
    machine.temp.write("src/Ledger.mdb", bytes);
    machine.temp.write("prod/Ledger.mdb", "old ledger");
    FaultyMedium files;

    struct Case {
        const char* what;
        std::uintmax_t flipFromEnd; // 0: the medium gives back what it took
    };
    for (const Case& c : {Case{"a sound medium", 0}, Case{"a worn block in the tail", 100}}) {
        SCOPED_TRACE(c.what);
        files.fault = [&](const std::vector<nv::StagedCopy>& copies) {
            if (c.flipFromEnd != 0)
                FaultyMedium::flipByte(copies.front().temporary, c.flipFromEnd);
        };
        nv::StagedCopy copy = *files.stageCopy(machine.temp.drive("src/Ledger.mdb"),
                                               machine.temp.drive("Ledger.mdb"));
        EXPECT_GT(copy.readUpTo, 0u);
        EXPECT_LT(copy.readUpTo, bytes.size());
        files.flushStaged({copy});
        const std::optional<nv::FileFailure> failure = files.readBackStaged({copy}).front();
        if (c.flipFromEnd == 0) {
            EXPECT_FALSE(failure);
            files.placeStaged(copy);
            EXPECT_TRUE(machine.temp.read("Ledger.mdb") == bytes);
        } else {
            ASSERT_TRUE(failure);
            EXPECT_EQ(failure->Number, nv::kFailReadBack);
            files.discardStaged(copy);
        }
    }

    // A restore proves its copy the same way before it takes the production file's name.
    files.fault = nullptr;
    files.copyFile(machine.temp.drive("src/Ledger.mdb"), machine.temp.drive("prod/Ledger.mdb"));
    EXPECT_TRUE(machine.temp.read("prod/Ledger.mdb") == bytes);
    EXPECT_EQ(machine.temp.copyLeftovers(), 0u);
}

// A stick that holds less than it says, taking one large ledger: what lands past its real end
// wraps onto the file's own head, after that head was read back behind the writing.
TEST(LargeCopy, ATailThatWrapsOntoItsOwnHeadIsFoundAtTheEnd) {
    nvtest::NativeMachine machine;
    machine.temp.write("src/Ledger.mdb", largeBytes());
    FaultyMedium files;
    files.fault = [](const std::vector<nv::StagedCopy>& copies) {
        FaultyMedium::flipByte(copies.front().temporary, copies.front().written.size - 10);
    };
    nv::CopyBatch batch(files);
    batch.copy(machine.temp.drive("src/Ledger.mdb"), machine.temp.drive("Ledger.mdb"));
    batch.commit();
    EXPECT_TRUE(machine.temp.exists("Ledger.mdb"));
    try {
        batch.checkPlaced();
        ADD_FAILURE() << "the wrapped head passed";
    } catch (const nv::FileFailure& failure) {
        EXPECT_EQ(failure.Number, nv::kFailReadBack);
    }
    EXPECT_FALSE(machine.temp.exists("Ledger.mdb"));
}

} // namespace
