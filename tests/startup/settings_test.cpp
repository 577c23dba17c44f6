#include "platform/FileFailure.h"
#include "startup/AppSettings.h"
#include "startup/Paths.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;

namespace {

class SettingsTest : public ::testing::Test {
protected:
    void SetUp() override { AppSettings.strIniFile = machine.temp.drive("NVbackuptool.ini"); }
    std::string file() const { return machine.temp.read("NVbackuptool.ini"); }

    nvtest::TestMachine machine;
};

TEST_F(SettingsTest, MissingKeyTakesDefaultAndCompletesTheFile) {
    // A first read of a missing file creates it, with the section and the key.
    EXPECT_EQ(fIniValue("Basic settings", "DriveTarget", "C:", ""), "C:");
    EXPECT_EQ(file(), crlf("[Basic settings]\nDriveTarget=C:\n"));

    // A stored "?" counts as missing; "?x" is a value like any other.
    machine.temp.write("NVbackuptool.ini", crlf("[Basic settings]\nA=?\nB=?x\n"));
    EXPECT_EQ(fIniValue("Basic settings", "A", "dflt", ""), "dflt");
    EXPECT_EQ(fIniValue("Basic settings", "B", "dflt", ""), "?x");
    EXPECT_EQ(file(), crlf("[Basic settings]\nA=dflt\nB=?x\n"));
}

TEST_F(SettingsTest, StoredValuesComeBackCleanedAndCut) {
    std::string longValue(300, 'x');
    machine.temp.write(
        "NVbackuptool.ini",
        crlf("[basic SETTINGS]\ndriveTARGET=\nquoted=  \"E:\"  \nLong=" + longValue + "\n"));
    const std::string before = file();
    // Present but empty: no default, nothing written.
    EXPECT_EQ(fIniValue("Basic settings", "DriveTarget", "C:", ""), "");
    EXPECT_EQ(fIniValue("Basic settings", "Quoted", "", ""), "E:");
    EXPECT_EQ(fIniValue("Basic settings", "long", "", ""), std::string(254, 'x'));
    EXPECT_EQ(file(), before);

    // A store to a key in other letters keeps the letters of the file.
    subWriteIni(AppSettings.strIniFile, "Basic settings", "DriveTarget", "E:");
    const std::string quoted = nvtest::runningUnderWine() ? "quoted=\"E:\"" : "quoted=  \"E:\"  ";
    EXPECT_EQ(file(),
              crlf("[basic SETTINGS]\ndriveTARGET=E:\n" + quoted + "\nLong=" + longValue + "\n"));
}

TEST_F(SettingsTest, LineBreaksInAValueBecomeBlanksInTheCallersString) {
    std::string value = "regel een\r\nregel twee\n";
    subWriteIni(AppSettings.strIniFile, "Backupfiles", "BackUpfile1", value);
    EXPECT_EQ(value, "regel een  regel twee ");
    EXPECT_EQ(file(), crlf("[Backupfiles]\nBackUpfile1=regel een  regel twee \n"));
}

TEST(FileOfPath, TakesTheLastComponentAndOneTrailingBackslash) {
    std::string path = "C:\\a\\b.txt";
    EXPECT_EQ(fFileOfPath(path), "b.txt");
    EXPECT_EQ(path, "C:\\a\\b.txt");
    path = "b.txt";
    EXPECT_EQ(fFileOfPath(path), "b.txt");
    path = "C:\\a\\b\\";
    EXPECT_EQ(fFileOfPath(path), "b");
    EXPECT_EQ(path, "C:\\a\\b");
    path = "C:\\";
    EXPECT_EQ(fFileOfPath(path), "C:");
    EXPECT_EQ(path, "C:");
    path = "C:\\a\\\\";
    EXPECT_EQ(fFileOfPath(path), "");
    EXPECT_EQ(path, "C:\\a\\");
    path = "";
    EXPECT_THROW(fFileOfPath(path), FileFailure);
    path = "\\";
    EXPECT_THROW(fFileOfPath(path), FileFailure);
}

TEST(MakeTree, CreatesMissingLevelsAndPassesExistingOnesSilently) {
    nvtest::TestMachine machine;
    machine.temp.write("Data/keep.txt", "x");
    subMakeTree(machine.temp.drive("Data\\New\\Sub\\"));
    EXPECT_TRUE(machine.temp.exists("Data/New/Sub"));
    EXPECT_TRUE(machine.boxes.shown.empty());

    subMakeTree(machine.temp.drive("Data\\New\\Sub"));
    EXPECT_TRUE(machine.boxes.shown.empty());
}

TEST(MakeTree, StopsWithABoxAtAPlainFileInThePath) {
    nvtest::TestMachine machine;
    machine.temp.write("Data/Blocker", "a plain file where a folder should be");
    subMakeTree(machine.temp.drive("Data\\Blocker\\Sub\\Deeper"));
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    const MessageBoxRequest& box = machine.boxes.shown[0];
    EXPECT_EQ(box.title, std::to_string(kFailPathNotFound));
    EXPECT_FALSE(box.text.empty());
    EXPECT_EQ(box.buttons, Buttons::OK);
    EXPECT_EQ(box.icon, Icon::None);
    EXPECT_FALSE(machine.temp.exists("Data/Blocker/Sub"));
}

TEST(MakeTree, AnUnknownDriveGivesOneBoxAndNoFolder) {
    nvtest::TestMachine machine;
    subMakeTree("Q:\\Nergens\\Map");
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_NE(machine.boxes.shown[0].title, std::to_string(kFailAccessRefused));
}

} // namespace
