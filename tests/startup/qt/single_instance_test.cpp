#include "startup/qt/SingleInstance.h"
#include "support/TestMachine.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nv;

namespace {

// One program per settings file: a second start is told apart, asks the first forward, and a
// lock that a crashed program left behind is taken over.
TEST(SingleInstance, ASecondStartIsRefusedAndTheLockOfACrashedOneIsTakenOver) {
    nvtest::TestMachine machine;
    auto settings = [&](const std::string& folder) {
        machine.temp.write(folder + "/NVbackuptool.ini", "");
        return QString::fromStdString(machine.temp.native(folder).string() + "/NVbackuptool.ini");
    };
    std::fflush(nullptr);
    const pid_t crashed = ::fork();
    ASSERT_GE(crashed, 0);
    if (crashed == 0) {
        SingleInstance lost(settings("prog"));
        ::_exit(lost.first() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(crashed, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    auto first = std::make_unique<SingleInstance>(settings("prog"));
    EXPECT_TRUE(first->first());
    EXPECT_TRUE(SingleInstance(settings("elders")).first());
    QSignalSpy cameForward(first.get(), &SingleInstance::comeForward);
    {
        SingleInstance second(settings("prog"));
        EXPECT_FALSE(second.first());
        EXPECT_TRUE(second.askFirstToComeForward());
    }
    EXPECT_TRUE(cameForward.count() == 1 || cameForward.wait(3000));
    first.reset();
    EXPECT_TRUE(SingleInstance(settings("prog")).first());
}

} // namespace
