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
    // A missing file is created whole by the first start; a stored "?" counts as missing; "?x" and
    // an empty value are values like any other, and the read asks for no more than the 254
    // characters the program's buffer holds.
    const std::string longValue(300, 'x');
    machine.temp.write("NVbackuptool.ini",
                       crlf("[Basic settings]\nA=?\nB=?x\nC=\nLong=" + longValue + "\n"));
    EXPECT_EQ(fIniValue("Basic settings", "A", "dflt", ""), "dflt");
    EXPECT_EQ(fIniValue("Basic settings", "B", "dflt", ""), "?x");
    EXPECT_EQ(fIniValue("Basic settings", "C", "dflt", ""), "");
    EXPECT_EQ(fIniValue("Basic settings", "Long", "dflt", ""), std::string(254, 'x'));
    EXPECT_EQ(file(), crlf("[Basic settings]\nA=dflt\nB=?x\nC=\nLong=" + longValue + "\n"));
}

TEST_F(SettingsTest, LineBreaksInAValueBecomeBlanksInTheCallersString) {
    std::string value = "regel een\r\nregel twee\n";
    subWriteIni(AppSettings.strIniFile, "Backupfiles", "BackUpfile1", value);
    EXPECT_EQ(value, "regel een  regel twee ");
    EXPECT_EQ(file(), crlf("[Backupfiles]\nBackUpfile1=regel een  regel twee \n"));
}

TEST(MakeTree, MakesMissingLevelsAndStopsWithOneBoxAtWhatBlocksThem) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("Data/keep.txt", "x");
    subMakeTree(t.drive("Data\\New\\Sub\\"));
    subMakeTree(t.drive("Data\\New\\Sub")); // levels already there pass silently
    EXPECT_TRUE(t.exists("Data/New/Sub"));
    EXPECT_TRUE(machine.boxes.shown.empty());

    t.write("Data/Blocker", "a plain file where a folder should be");
    subMakeTree(t.drive("Data\\Blocker\\Sub\\Deeper"));
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    const MessageBoxRequest& box = machine.boxes.shown[0];
    EXPECT_EQ(box.title, std::to_string(kFailPathNotFound));
    EXPECT_FALSE(box.text.empty());
    EXPECT_EQ(box.buttons, Buttons::OK);
    EXPECT_EQ(box.icon, Icon::None);
    EXPECT_FALSE(t.exists("Data/Blocker/Sub"));

    subMakeTree("Q:\\Nergens\\Map");
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_NE(machine.boxes.shown[1].title, std::to_string(kFailAccessRefused));
}

} // namespace
