#include "sidewindows/OpenUrl.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

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

#ifndef _WIN32
// A temp.url in the program folder that links to another file is replaced, never written
// through, and goes when the shortcut has been handed over.
TEST(OpenUrl, ALinkNamedTempUrlLeavesWhatItPointsToAlone) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Thuis/.bashrc", "export PATH");
    fs::create_directories(machine.temp.native("Program"));
    fs::create_symlink(machine.temp.native("Thuis/.bashrc"),
                       machine.temp.native("Program/temp.url"));
    subOpenUrl("mailto:a@b.example");
    EXPECT_EQ(machine.temp.read("Thuis/.bashrc"), "export PATH");
    EXPECT_FALSE(fs::exists(fs::symlink_status(machine.temp.native("Program/temp.url"))));
    EXPECT_EQ(machine.shell.opened, std::vector{machine.temp.drive("Program\\temp.url")});
}
#endif
