// Starts on Linux with what real machines bring: a settings file written on Windows, and a
// production folder on a read-only file system.
#include "backup/BackupRunFixture.h"
#include "production/KnownFile.h"
#include "startup/Main.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

class NoWindows : public StartWindows {
public:
    void loadMainWindow() override {}
    void showMainWindow() override {}
    void loadSplash() override {}
    void showSplash() override {}
};

const int kListed[] = {0, 1, 2, 3, 5, 6, 7, 10};

class StartPosix : public ::testing::Test {
protected:
    // The production files in a folder below the temporary one, and the program started there.
    void install(const std::string& folder) {
        for (int row : kListed)
            machine.temp.write(folder + "/" + fKnownFileName(row), fKnownFileName(row));
        machine.process.path = machine.temp.drive(folder);
    }

    nvtest::TestMachine machine;
    NoWindows windows;
};

// As the home platform writes it, é the byte 0xE9; the folder it names is an old one, which the
// start stores in the file's own code page. Every row is in place already, so no other byte moves.
TEST_F(StartPosix, ASettingsFileFromWindowsIsReadAndKeptByteForByte) {
    const std::string folder = "Donn\u00e9es", p = machine.temp.drive() + "\\Donn\xE9\x65s\\";
    install(folder);
    std::string windowsFile = "[Basic settings]\r\nAantalFiles=10\r\ndirfrom=C:\\Oud\\\r\n"
                              "DriveTarget=E:\r\nLastBackup=01-11-2026\r\nDirectory=0\r\n"
                              "[Backupfiles]\r\n";
    int n = 0;
    for (int row : {0, 1, 2, 3, 4, 5, 6, 7, 10})
        windowsFile += "BackUpfile" + std::to_string(++n) + "=" + p + fKnownFileName(row) + "\r\n";
    windowsFile += "BackUpfile10=D:\\Brieven\\Caf\xE9.doc\r\n";
    machine.temp.write(folder + "/NVbackuptool.ini", windowsFile);
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    EXPECT_TRUE(machine.boxes.shown.empty());
    EXPECT_EQ(AppSettings.AantalFiles, 10);
    EXPECT_EQ(AppSettings.strFiles[10], "D:\\Brieven\\Caf\u00e9.doc");
    EXPECT_EQ(AppSettings.dirfrom, machine.temp.drive(folder) + "\\");
    windowsFile.replace(windowsFile.find("C:\\Oud\\"), 7, p);
    EXPECT_EQ(machine.temp.read(folder + "/NVbackuptool.ini"), windowsFile);
}

TEST_F(StartPosix, AProductionFolderOnAReadOnlyFileSystemIsToldAsWriteProtected) {
    const fs::path roaming = machine.temp.native("roaming");
    fs::create_directories(roaming);
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", roaming.c_str(), "tmpfs", MS_RDONLY, "size=64k") != 0)
        GTEST_SKIP() << "needs root to mount a read-only file system";
    // The temporary folder as a drive of its own, so that Program Files lies at its top.
    driveTableOf(machine.platform).setFolder('P', machine.temp.native().string());
    machine.folders.folders[CSIDL_PROGRAM_FILES] = "P:\\Program Files";
    machine.folders.folders[CSIDL_APPDATA] = "P:\\roaming";
    machine.folders.folders[CSIDL_LOCAL_APPDATA] = "P:\\local";
    install("Program Files/Norvale");
    machine.process.path = "P:\\Program Files\\Norvale";
    Main(windows);
    ::umount2(roaming.c_str(), MNT_DETACH);
    driveTableOf(machine.platform).remove('P');
    ASSERT_GE(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].title, "76");
    EXPECT_EQ(machine.boxes.shown[0].text, "Schijf is tegen schrijven beveiligd");
    EXPECT_EQ(machine.boxes.shown.back().text, fSettingsNotStoredText("P:\\roaming\\Norvale\\"));
}

} // namespace
