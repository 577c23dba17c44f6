#include "platform/DateText.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Main.h"
#include "startup/Paths.h"
#include "startup/Settings.h"
#include "support/ExpectBox.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

using namespace nv;
using nvtest::crlf;

namespace {

class RecordingWindows : public StartWindows {
public:
    void loadMainWindow() override {
        calls += "loadMain ";
        // The main window's load handler may rely on all of these.
        settingsSeenByMain = AppSettings;
    }
    void showMainWindow() override { calls += "showMain "; }
    void loadSplash() override { calls += "loadSplash "; }
    void showSplash() override { calls += "showSplash "; }
    std::string calls;
    AppSettingsRecord settingsSeenByMain;
};

class MainTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.folders.folders[CSIDL_PROGRAM_FILES] = "C:\\Program Files";
        for (int row : {0, 1, 2, 3, 5, 6, 7, 10})
            machine.temp.write("Data/Norvale/" + fKnownFileName(row), "data");
        machine.process.path = program;
    }
    std::string settingsFile() { return machine.temp.read("Data/Norvale/NVbackuptool.ini"); }
    AppSettingsRecord startOver(const std::string& content) {
        machine.temp.write("Data/Norvale/NVbackuptool.ini", content);
        RecordingWindows w;
        EXPECT_EQ(Main(w), MainOutcome::Running);
        return w.settingsSeenByMain;
    }

    nvtest::TestMachine machine;
    RecordingWindows windows;
    const std::string program = machine.temp.drive("Data\\Norvale");
};

TEST_F(MainTest, AFirstStartLeavesTheSettingsFileOfAFirstStartAndASecondReadsIt) {
    // Interrupted restores and settings writes leave hidden copies in the production folder.
    machine.temp.leaveCopyLeftover("Data/Norvale/" + fKnownFileName(0));
    machine.temp.leaveCopyLeftover("Data/Norvale/NVbackuptool.ini");
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    EXPECT_EQ(machine.temp.copyLeftovers("Data/Norvale"), 0u);

    const std::string p = program + "\\";
    std::string expected = "[Basic settings]\nAantalFiles=9\ndirfrom=" + p +
                           "\nDriveTarget=C:\nLastBackup=17-11-2026\nDirectory=0\n[Backupfiles]\n";
    std::vector<std::string> rows{""};
    for (int row : {0, 1, 2, 3, 4, 5, 6, 7, 10}) {
        rows.push_back(p + fKnownFileName(row));
        expected += "BackUpfile" + std::to_string(rows.size() - 1) + "=" + rows.back() + "\n";
    }
    EXPECT_EQ(settingsFile(), crlf(expected));
    EXPECT_TRUE(machine.boxes.shown.empty());
    EXPECT_EQ(windows.calls, "loadMain showMain loadSplash showSplash ");
    EXPECT_EQ(windows.settingsSeenByMain.strFiles, rows);

    EXPECT_EQ(startOver(crlf(expected)).strFiles, rows);
    EXPECT_EQ(settingsFile(), crlf(expected));
}

TEST_F(MainTest, AMissingDatabaseOffersTheRestoreOnly) {
    std::filesystem::remove(machine.temp.native("Data/Norvale/NV_Ledger01.mdb"));
    machine.boxes.answer(Answer::No);
    EXPECT_EQ(Main(windows), MainOutcome::Ended);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    nvtest::expectBox(machine.boxes.shown[0], "Norvale Backup",
                      "Norvale kan de productiebestanden nog niet vinden dus u kunt nog geen "
                      "backup maken. \r\n\r\nU kunt wel een bestaande backup terugzetten. Wilt u "
                      "dit doen?",
                      Buttons::YesNo, Icon::Question);
    EXPECT_EQ(windows.calls, "");
    // The list was reconciled before the question; nothing after it was written.
    EXPECT_NE(settingsFile().find("AantalFiles=9"), std::string::npos);
    EXPECT_EQ(settingsFile().find("DriveTarget"), std::string::npos);
}

// Files as a hand, another tool or a broken disk leave them. Whatever the file holds, the start
// goes on to the windows with a list that can be sized.
TEST_F(MainTest, ADamagedRowCountKeepsTheUsersRows) {
    // Ten rows of the user's own: the count must not let the known files overwrite them.
    std::string rows;
    std::vector<std::string> users;
    for (int n = 1; n <= 10; ++n) {
        users.push_back("D:\\Brieven\\brief" + std::to_string(n) + ".doc");
        rows += "BackUpfile" + std::to_string(n) + "=" + users.back() + "\n";
    }
    for (const char* count : {"abc", "", "-5", "32768", "99999999999", "2.5"}) {
        SCOPED_TRACE(count);
        const AppSettingsRecord s =
            startOver(crlf(std::string("[Basic settings]\nAantalFiles=") + count +
                           "\n[Backupfiles]\n" + rows + "\nBackUpfile12=D:\\na een gat.doc\n"));
        // The ten rows stand first; the nine known files follow them, and the row behind the
        // gap is not part of the list.
        ASSERT_EQ(s.AantalFiles, 19);
        EXPECT_EQ(std::vector(s.strFiles.begin() + 1, s.strFiles.begin() + 11), users);
        EXPECT_EQ(s.strFiles[11], program + "\\NV_Ledger01.mdb");
        EXPECT_NE(settingsFile().find("AantalFiles=19\r\n"), std::string::npos);
        EXPECT_NE(settingsFile().find("BackUpfile12=" + program + "\\NV_Lists97.mdb"),
                  std::string::npos);
    }
}

// A date that cannot be read claims no backup and stays in the file for the user to see.
TEST_F(MainTest, OtherDamageTakesTheDefaultsWithoutAWord) {
    const struct {
        std::string content, drive;
        const char* lastBackup; // as the file holds it, when it does
        std::optional<Date> date;
    } cases[] = {
        {"[Basic settings]\nAantalFiles=twaalf\nDirectory=300\nLastBackup=03-MRT-2026\n",
         "C:", "03-MRT-2026", dateFromCivil({2026, 3, 3})},
        {"[Basic settings]\nLastBackup=31-02-2026\n", "C:", "31-02-2026", std::nullopt},
        // Present but empty, the target drive stays empty rather than the default.
        {"[Basic settings]\nAantalFiles=2\nDriveTarget=\nLastBackup=\n[Backupfiles]\n"
         "BackUpfile1=\nBackUpfile2=\n",
         "", "", std::nullopt},
        {std::string("\x00\xff\xfe[\x01=\x00\r\r\n\x80garbage=\xff", 20), "C:", nullptr, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.content);
        const AppSettingsRecord s = startOver(crlf(c.content));
        EXPECT_GE(s.AantalFiles, 9);
        EXPECT_EQ(s.strFiles.size(), static_cast<std::size_t>(s.AantalFiles) + 1);
        EXPECT_EQ(s.Directory, 0);
        EXPECT_EQ(s.DriveTarget, c.drive);
        EXPECT_TRUE(machine.boxes.shown.empty());
        if (c.lastBackup) {
            EXPECT_EQ(s.LastBackup, c.date);
            EXPECT_NE(settingsFile().find(std::string("LastBackup=") + c.lastBackup + "\r"),
                      std::string::npos);
        }
    }
}

TEST_F(MainTest, ASettingsFileThatCannotBeStoredIsToldOnce) {
    // A folder in the place of the settings file can be neither read nor written: an empty list,
    // and one word why.
    std::filesystem::create_directory(machine.temp.native("Data/Norvale/NVbackuptool.ini"));
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    EXPECT_EQ(windows.settingsSeenByMain.strFiles, std::vector<std::string>{""});
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    nvtest::expectBox(machine.boxes.shown[0], "Norvale Backup",
                      "De instellingen kunnen niet worden opgeslagen in de map " + program +
                          ".\r\n\r\nDe lijst met bestanden en het gekozen station worden "
                          "daarom niet bewaard. Zorg dat u in deze map mag schrijven.",
                      Buttons::OK, Icon::Exclamation);
    EXPECT_EQ(windows.calls, "loadMain showMain loadSplash showSplash ");
}

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
    const MessageBoxRequest& box = machine.boxes.shown[0];
    EXPECT_TRUE(box.title == "76" && box.buttons == Buttons::OK && box.icon == Icon::None);
    EXPECT_FALSE(t.exists("Data/Blocker/Sub"));
}

} // namespace
