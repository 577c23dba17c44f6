#include "sidewindows/OpenUrl.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;

// A program folder that is not there stands for one the user may not write to: the production
// folder takes the shortcut, which goes once handed over. (The program folder's own case is tried
// through the about window.)
TEST(OpenUrl, WithoutAProgramFolderTheProductionFolderTakesTheShortcut) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Gone");
    machine.temp.write("Data/NV.ini", "x");
    AppSettings.strAppDir = machine.temp.drive("Data") + "\\";
    subOpenUrl("mailto:a@b.example");
    EXPECT_FALSE(machine.temp.exists("Data/temp.url"));
    EXPECT_FALSE(machine.temp.exists("Gone"));
    EXPECT_EQ(machine.shell.opened, std::vector{machine.temp.drive("Data\\temp.url")});
    EXPECT_EQ(machine.shell.contents,
              std::vector<std::string>{"[internetShortcut]\r\nurl =mailto:a@b.example\r\n"});
}
