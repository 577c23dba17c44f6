#include "mainwindow/qt/StartWindows.h"
#include "platform/qt/SingleInstance.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"
#include "support/qt/BoxRobot.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nv;

namespace {

class SingleInstanceTest : public ::testing::Test {
protected:
    SingleInstanceTest() { machine.temp.write("prog/NVbackuptool.ini", ""); }
    QString settings(const std::string& folder = "prog") const {
        return QString::fromStdString(machine.temp.native(folder).string() + "/NVbackuptool.ini");
    }

    nvtest::TestMachine machine;
};

TEST_F(SingleInstanceTest, ASecondStartOnOneSettingsFileTellsTheUserAndBringsTheFirstForward) {
    auto first = std::make_unique<SingleInstance>(settings());
    ASSERT_TRUE(first->first());
    QSignalSpy cameForward(first.get(), &SingleInstance::comeForward);

    // Another settings file is another program.
    machine.temp.write("elders/NVbackuptool.ini", "");
    SingleInstance elsewhere(settings("elders"));
    EXPECT_TRUE(elsewhere.first());

    {
        SingleInstance second(settings());
        EXPECT_FALSE(second.first());
        nvtest::BoxRobot robot;
        EXPECT_FALSE(goOnAsOnlyStart(second));
        ASSERT_EQ(robot.seen.size(), 1u);
        EXPECT_EQ(robot.seen[0].title, QString::fromStdString(App.Title));
        EXPECT_EQ(robot.seen[0].text,
                  "Norvale Backup is al geopend.\r\n\r\nU kunt verder werken in het venster dat "
                  "al openstaat.");
    }
    EXPECT_TRUE(cameForward.count() == 1 || cameForward.wait(3000));
    EXPECT_EQ(cameForward.count(), 1);

    // Once the first has ended, a start goes on without a word.
    first.reset();
    SingleInstance after(settings());
    EXPECT_TRUE(after.first());
    nvtest::BoxRobot robot;
    EXPECT_TRUE(goOnAsOnlyStart(after));
    EXPECT_TRUE(robot.seen.empty());
}

// A program that crashed leaves its lock and its socket; the next start takes both over.
TEST_F(SingleInstanceTest, TheLockOfAProgramThatCrashedIsTakenOver) {
    std::fflush(nullptr);
    const pid_t crashed = ::fork();
    ASSERT_GE(crashed, 0);
    if (crashed == 0) {
        SingleInstance lost(settings());
        ::_exit(lost.first() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(crashed, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    SingleInstance next(settings());
    EXPECT_TRUE(next.first());
    QSignalSpy cameForward(&next, &SingleInstance::comeForward);
    SingleInstance later(settings());
    EXPECT_FALSE(later.first());
    EXPECT_TRUE(later.askFirstToComeForward());
    EXPECT_TRUE(cameForward.count() == 1 || cameForward.wait(3000));
}

} // namespace
