#include "platform/FileFailure.h"
#include "startup/AppSettings.h"
#include "startup/Paths.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;

namespace {

// A stored "?" counts as missing and takes the default, which completes the file; "?x" and an
// empty value are values like any other; a read holds no more than the program's 254 characters;
// line breaks in a value stored become blanks in the caller's string too.
TEST(Settings, AMissingKeyTakesItsDefaultAndAValueStaysOnItsLine) {
    nvtest::TestMachine machine;
    AppSettings.strIniFile = machine.temp.drive("NVbackuptool.ini");
    const std::string longValue(300, 'x');
    machine.temp.write("NVbackuptool.ini",
                       crlf("[Basic settings]\nA=?\nB=?x\nC=\nLong=" + longValue + "\n"));
    EXPECT_EQ(fIniValue("Basic settings", "A", "dflt", ""), "dflt");
    EXPECT_EQ(fIniValue("Basic settings", "B", "dflt", ""), "?x");
    EXPECT_EQ(fIniValue("Basic settings", "C", "dflt", ""), "");
    EXPECT_EQ(fIniValue("Basic settings", "Long", "dflt", ""), std::string(254, 'x'));
    std::string value = "regel een\r\nregel twee\n";
    subWriteIni(AppSettings.strIniFile, "Backupfiles", "BackUpfile1", value);
    EXPECT_EQ(value, "regel een  regel twee ");
    EXPECT_EQ(machine.temp.read("NVbackuptool.ini"),
              crlf("[Basic settings]\nA=dflt\nB=?x\nC=\nLong=" + longValue +
                   "\n[Backupfiles]\nBackUpfile1=regel een  regel twee \n"));
}

TEST(MakeTree, MakesMissingLevelsAndStopsWithOneBoxAtWhatBlocksThem) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("Data/Blocker", "a plain file where a folder should be");
    subMakeTree(t.drive("Data\\New\\Sub\\"));
    subMakeTree(t.drive("Data\\New\\Sub")); // levels already there pass silently
    EXPECT_TRUE(t.exists("Data/New/Sub"));
    EXPECT_TRUE(machine.boxes.shown.empty());

    subMakeTree(t.drive("Data\\Blocker\\Sub\\Deeper"));
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].title, std::to_string(kFailPathNotFound));
    EXPECT_FALSE(machine.boxes.shown[0].text.empty());
    EXPECT_EQ(machine.boxes.shown[0].buttons, Buttons::OK);
    EXPECT_EQ(machine.boxes.shown[0].icon, Icon::None);
    EXPECT_FALSE(t.exists("Data/Blocker/Sub"));
    // An unplugged drive is told too; only a level that is there already passes.
    subMakeTree("Q:\\Nergens\\Map");
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    EXPECT_NE(machine.boxes.shown[1].title, std::to_string(kFailAccessRefused));
}

} // namespace
