#include "platform/DriveFormConversion.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// An install below /opt is the program files case, with the machine's own special folders.
TEST(ProgramFilesOnLinux, AnInstallUnderOptWorksInTheXdgFolders) {
    const fs::path install = "/opt/nvtest-" + std::to_string(::getpid()) + "/Norvale";
    std::error_code ec;
    fs::create_directories(install, ec);
    if (ec || ::access(install.c_str(), W_OK) != 0)
        GTEST_SKIP() << "/opt cannot be written here";
    nvtest::TestMachine machine;
    ScopedPlatformPart<SpecialFolders> folders(&Platform::folders, nativePlatform().folders);
    const fs::path config = machine.temp.native("config"), data = machine.temp.native("data");
    ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    ::setenv("XDG_DATA_HOME", data.c_str(), 1);
    const fs::path store = data / "VirtualStore" / install.relative_path();
    fs::create_directories(store);
    for (int row : {0, 1, 3})
        std::ofstream(install / fKnownFileName(row)) << "db";
    std::ofstream(store / "NV.ini") << "from the store";

    std::string path = driveFormOf(install.string());
    uint8_t status = 9;
    EXPECT_EQ(fFindAppDir(path, status), driveFormOf((config / "Norvale").string()) + "\\");
    EXPECT_EQ(status, 2);
    for (const char* name : {"NV_Ledger01.mdb", "NVbackuptool.ini", "NV.ini"})
        EXPECT_TRUE(fs::exists(config / "Norvale" / name)) << name;
    EXPECT_FALSE(fs::exists(store / "NV.ini"));
    ::unsetenv("XDG_CONFIG_HOME");
    ::unsetenv("XDG_DATA_HOME");
    fs::remove_all(install.parent_path(), ec);
}

} // namespace
