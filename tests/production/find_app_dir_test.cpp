#include "platform/CaseFold.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Paths.h"
#include "startup/Settings.h"
#include "support/ExpectBox.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;
namespace fs = std::filesystem;

namespace {

// The temporary folder stands in for the program files folder, so that an install below it is
// an install under program files: only the first two components take part in that compare.
class FindAppDirTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::vector<std::string> parts = splitPath(machine.temp.drive());
        programFiles = parts[0] + "\\" + parts[1];
        machine.folders.folders[CSIDL_PROGRAM_FILES] = programFiles;
        machine.folders.folders[CSIDL_APPDATA] =
            machine.temp.drive("Users\\user1\\AppData\\Roaming");
        machine.folders.folders[CSIDL_LOCAL_APPDATA] =
            machine.temp.drive("Users\\user1\\AppData\\Local");
    }

    std::string read(const std::string& ini, const std::string& section, const std::string& key) {
        return fReadIni(ini, section, key, "<missing>");
    }

    // The VirtualStore folder of the install, relative to the temporary folder: the install's
    // whole path below the drive shows up again under VirtualStore.
    std::string virtualStore() const {
        std::string tail = machine.temp.drive().substr(2) + "\\Program Files\\Norvale\\";
        for (char& c : tail)
            if (c == '\\')
                c = '/';
        return "Users/user1/AppData/Local/VirtualStore" + tail;
    }

    nvtest::TestMachine machine;
    std::string programFiles;
};

TEST_F(FindAppDirTest, InstallUnderProgramFilesBringsTheFilesToThePerUserFolder) {
    auto& t = machine.temp;
    const std::string vsSub = virtualStore();
    const std::string prod = "Users/user1/AppData/Roaming/Norvale/";
    t.write(prod + "NV_Ledger01.mdb", "prod");
    for (const char* name :
         {"NV_Ledger01.mdb", "NV_Lists97.mdb", "NV.ini", "NV_stock.NVD", "stockA.NVD"})
        t.write(vsSub + name, std::string("vs:") + name);
    for (const char* name :
         {"NV_Ledger01.mdb", "NV_Lists97.mdb", "panels.ini", "NV_Entity.NVD", "Nota.ini"})
        t.write(std::string("Program Files/Norvale/") + name, std::string("prog:") + name);
    const std::string program = t.drive("Program Files\\Norvale");
    t.write("Program Files/Norvale/NVbackuptool.ini",
            crlf("[Basic settings]\nAantalFiles=3\n[Backupfiles]\nBackUpfile1=" + program +
                 "\\NV_Ledger01.mdb\nBackUpfile2=" + program +
                 "\\stockA.NVD\nBackUpfile3=D:\\Brieven\\offerte.doc\n"));

    std::string path = program;
    uint8_t status = 0;
    std::string production = fFindAppDir(path, status);

    EXPECT_EQ(path, program + "\\");
    EXPECT_EQ(production, t.drive("Users\\user1\\AppData\\Roaming\\Norvale\\"));
    EXPECT_EQ(status, 2); // Refresh.ini is nowhere
    // A file already in the per-user folder stays, and so does the one that would replace it.
    EXPECT_EQ(t.read(prod + "NV_Ledger01.mdb"), "prod");
    EXPECT_EQ(t.read(vsSub + "NV_Ledger01.mdb"), "vs:NV_Ledger01.mdb");
    for (const char* moved : {"NV_Lists97.mdb", "NV.ini", "NV_stock.NVD"}) {
        EXPECT_EQ(t.read(prod + moved), std::string("vs:") + moved);
        EXPECT_FALSE(t.exists(vsSub + moved)) << moved;
    }
    for (const char* copied : {"panels.ini", "NV_Entity.NVD", "Nota.ini"})
        EXPECT_EQ(t.read(prod + copied), std::string("prog:") + copied);
    // The program folder keeps all it had; the old-style file goes from the VirtualStore.
    for (const char* name : {"NV_Ledger01.mdb", "NV_Lists97.mdb", "panels.ini", "NV_Entity.NVD",
                             "Nota.ini", "NVbackuptool.ini"})
        EXPECT_TRUE(t.exists(std::string("Program Files/Norvale/") + name)) << name;
    EXPECT_FALSE(t.exists(vsSub + "stockA.NVD"));
    EXPECT_FALSE(t.exists(prod + "Refresh.ini"));

    // The settings file came along, lost its old-style row and kept the user's own.
    const std::string ini = production + "NVbackuptool.ini";
    EXPECT_EQ(read(ini, "Basic settings", "dirfrom"), production);
    EXPECT_EQ(read(ini, "Basic settings", "AantalFiles"), "10");
    EXPECT_EQ(read(ini, "Backupfiles", "BackUpfile1"), production + "NV_Ledger01.mdb");
    EXPECT_EQ(read(ini, "Backupfiles", "BackUpfile2"), "D:\\Brieven\\offerte.doc");
    EXPECT_EQ(read(ini, "Backupfiles", "BackUpfile10"), production + "NV_stock.NVD");
    EXPECT_TRUE(machine.boxes.shown.empty());
    for (const auto& name : AppSettings.strKnownFiles)
        EXPECT_TRUE(name.empty());

    // The next start finds every file in place and leaves the list as it is.
    EXPECT_EQ(fFindAppDir(path, status), production);
    EXPECT_EQ(read(ini, "Basic settings", "AantalFiles"), "10");
}

TEST_F(FindAppDirTest, TheProgramFilesCompareTakesWholeComponentsInAnyCase) {
    auto& t = machine.temp;
    t.write("Program Files/Norvale/NV_Ledger01.mdb", "x");
    std::string path = t.drive("Program Files\\Norvale\\");
    uint8_t status = 0;

    machine.folders.folders[CSIDL_PROGRAM_FILES] = upperCase(programFiles);
    EXPECT_EQ(fFindAppDir(path, status), t.drive("Users\\user1\\AppData\\Roaming\\Norvale\\"));
    EXPECT_EQ(status, 1); // NV_Lists97.mdb is nowhere

    // A folder that merely begins with the same letters is elsewhere.
    machine.folders.folders[CSIDL_PROGRAM_FILES] = programFiles.substr(0, programFiles.size() - 1);
    EXPECT_EQ(fFindAppDir(path, status), path);
}

// Not under program files the files stay put; the list is reconciled all the same.
TEST_F(FindAppDirTest, ElsewhereTheFilesStayAndOnlyAMissingRequiredOneGivesStatusOne) {
    auto& t = machine.temp;
    machine.folders.folders[CSIDL_PROGRAM_FILES] = "C:\\Program Files";
    for (int row = 0; row <= 10; ++row)
        if (row != 8 && row != 9)
            t.write("Apps/Norvale/" + fKnownFileName(row), "data");
    t.write("Apps/Norvale/stockA.NVD", "old");
    const std::string program = t.drive("Apps\\Norvale\\");
    const std::string ini = program + "NVbackuptool.ini";
    std::string path = program;
    uint8_t status = 0;
    EXPECT_EQ(fFindAppDir(path, status), program);
    EXPECT_EQ(status, 2);
    EXPECT_FALSE(t.exists("Apps/Norvale/stockA.NVD"));
    EXPECT_FALSE(t.exists("Users"));
    EXPECT_EQ(read(ini, "Basic settings", "dirfrom"), program);

    fs::remove(t.native("Apps/Norvale/NV_Entity.NVD"));
    t.write("Apps/Norvale/NVbackuptool.ini", "");
    EXPECT_EQ(fFindAppDir(path, status), program);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(read(ini, "Basic settings", "AantalFiles"), "9");
    EXPECT_EQ(read(ini, "Basic settings", "dirfrom"), program);

    // Without a drive letter it gives up, with one box.
    path = "\\\\server\\share\\Norvale";
    status = 7;
    EXPECT_EQ(fFindAppDir(path, status), "");
    EXPECT_EQ(status, 7);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    nvtest::expectBox(machine.boxes.shown[0], "Norvale Backup", "Geen Directory", Buttons::OK,
                      Icon::None);
}

} // namespace
