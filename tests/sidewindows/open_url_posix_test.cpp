#include "sidewindows/OpenUrl.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

// A temp.url in the program folder that links to another file is replaced, never written
// through, and goes when the shortcut has been handed over.
TEST(OpenUrl, ALinkNamedTempUrlLeavesWhatItPointsToAlone) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Thuis/.bashrc", "export PATH");
    fs::create_directories(machine.temp.native("Program"));
    fs::create_symlink(machine.temp.native("Thuis/.bashrc"),
                       machine.temp.native("Program/temp.url"));
    nv::subOpenUrl("mailto:a@b.example");
    EXPECT_EQ(machine.temp.read("Thuis/.bashrc"), "export PATH");
    EXPECT_FALSE(fs::exists(fs::symlink_status(machine.temp.native("Program/temp.url"))));
    EXPECT_EQ(machine.shell.opened, std::vector{machine.temp.drive("Program\\temp.url")});
}
