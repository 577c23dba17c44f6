#include "platform/CaseFold.h"
#include "production/KnownFile.h"
#include "startup/Paths.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;
using Rows = std::vector<std::string>;

namespace {

// The temporary folder stands in for program files: the first two components compare, in any case.
class FindAppDirTest : public ::testing::Test {
protected:
    FindAppDirTest() {
        const Rows parts = splitPath(t.drive());
        programFiles = upperCase(parts[0] + "\\" + parts[1]);
        machine.folders.folders = {{CSIDL_PROGRAM_FILES, programFiles},
                                   {CSIDL_APPDATA, t.drive("Users\\user1\\AppData\\Roaming")},
                                   {CSIDL_LOCAL_APPDATA, t.drive("Users\\user1\\AppData\\Local")}};
    }
    std::string read(const std::string& section, const std::string& key) {
        return fReadIni(ini, section, key, "<missing>");
    }

    nvtest::TestMachine machine;
    nvtest::TempFolder& t = machine.temp;
    std::string programFiles, path, ini;
    uint8_t status = 0;
};

TEST_F(FindAppDirTest, InstallUnderProgramFilesBringsTheFilesToThePerUserFolder) {
    // The install's whole path below the drive shows up again under VirtualStore.
    std::string vs =
        "Users/user1/AppData/Local/VirtualStore" + t.drive().substr(2) + "/Program Files/Norvale/";
    std::replace(vs.begin(), vs.end(), '\\', '/');
    const std::string prod = "Users/user1/AppData/Roaming/Norvale/";
    const std::string inProgram = "Program Files/Norvale/", program = t.drive(inProgram);
    t.write(prod + "NV_Ledger01.mdb", "prod");
    for (const std::string name :
         {"NV_Ledger01.mdb", "NV_Lists97.mdb", "NV.ini", "NV_stock.NVD", "stockA.NVD"})
        t.write(vs + name, "vs:" + name);
    for (const std::string name :
         {"NV_Ledger01.mdb", "NV_Lists97.mdb", "panels.ini", "NV_Entity.NVD", "Nota.ini"})
        t.write(inProgram + name, "prog:" + name);
    t.write(inProgram + "NVbackuptool.ini",
            crlf("[Basic settings]\nAantalFiles=3\n[Backupfiles]\nBackUpfile1=" + program +
                 "NV_Ledger01.mdb\nBackUpfile2=" + program +
                 "stockA.NVD\nBackUpfile3=D:\\Brieven\\offerte.doc\n"));

    path = program.substr(0, program.size() - 1);
    const std::string production = fFindAppDir(path, status);
    ini = production + "NVbackuptool.ini";
    EXPECT_EQ(production, t.drive(prod));
    EXPECT_EQ(status, 2); // Refresh.ini is nowhere
    EXPECT_TRUE(machine.boxes.shown.empty());
    // The VirtualStore's files move, the program's are copied; none replaces one already there.
    EXPECT_EQ(t.read(prod + "NV_Ledger01.mdb") + t.read(vs + "NV_Ledger01.mdb"),
              "prodvs:NV_Ledger01.mdb");
    for (const std::string name : {"NV_Lists97.mdb", "NV.ini", "NV_stock.NVD"}) {
        EXPECT_EQ(t.read(prod + name), "vs:" + name);
        EXPECT_FALSE(t.exists(vs + name)) << name;
    }
    for (const std::string name : {"panels.ini", "NV_Entity.NVD", "Nota.ini", "NVbackuptool.ini"})
        EXPECT_TRUE(t.exists(prod + name) && t.exists(inProgram + name)) << name;
    EXPECT_FALSE(t.exists(vs + "stockA.NVD"));
    EXPECT_EQ(read("Basic settings", "dirfrom"), production);
    EXPECT_EQ(read("Backupfiles", "BackUpfile1"), production + "NV_Ledger01.mdb");
    EXPECT_EQ(read("Backupfiles", "BackUpfile2"), "D:\\Brieven\\offerte.doc");
    EXPECT_EQ(read("Basic settings", "AantalFiles"), "10");
}

} // namespace
