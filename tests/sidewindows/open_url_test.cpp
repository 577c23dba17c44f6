#include "sidewindows/OpenUrl.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;

namespace {

const std::string kShortcut = "[internetShortcut]\r\nurl =mailto:a@b.example\r\n";

} // namespace

TEST(OpenUrl, TheShortcutIsHandedOverWithItsTwoLinesAndThenGone) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Program/temp.url", "an older shortcut");

    subOpenUrl("mailto:a@b.example");
    subOpenUrl("mailto:a@b.example");

    ASSERT_EQ(machine.shell.opened.size(), 2u);
    EXPECT_EQ(machine.shell.opened[0], machine.temp.drive("Program\\temp.url"));
    EXPECT_EQ(machine.shell.contents[0], kShortcut);
    EXPECT_EQ(machine.shell.contents[1], kShortcut);
    EXPECT_FALSE(machine.temp.exists("Program/temp.url"));
}

TEST(OpenUrl, AProgramFolderThatCannotBeWrittenFallsBackToTheProductionFolder) {
    nvtest::TestMachine machine;
    // A program folder that is not there stands for one the user may not write to.
    machine.process.path = machine.temp.drive("Gone");
    machine.temp.write("Data/NV.ini", "x");
    AppSettings.strAppDir = machine.temp.drive("Data") + "\\";

    subOpenUrl("mailto:a@b.example");

    ASSERT_EQ(machine.shell.opened.size(), 1u);
    EXPECT_EQ(machine.shell.opened[0], machine.temp.drive("Data\\temp.url"));
    EXPECT_EQ(machine.shell.contents[0], kShortcut);
    EXPECT_FALSE(machine.temp.exists("Data/temp.url"));
    EXPECT_FALSE(machine.temp.exists("Gone"));
}
