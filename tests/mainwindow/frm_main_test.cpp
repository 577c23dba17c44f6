// The main window over the fake control set: its load, the backup list, the target panel with
// its watch on the drive, and deleting a backup folder.
#include "mainwindow/FrmMain.h"
#include "platform/FailureText.h"
#include "platform/ProfileText.h"
#include "startup/Settings.h"
#include "support/ExpectBox.h"
#include "support/FakeControls.h"
#include "support/FaultyMedium.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

// A production folder, a list of three rows and a stick E: holding one loose file.
class MainWindow : public ::testing::Test {
protected:
    void SetUp() override { machine.temp.write("Stick/notes.txt", "x"); }
    void load(const std::string& drive = "E:",
              const Names& files = {"C:\\Data\\a.txt", "C:\\Data\\b.txt", "C:\\Data\\c.txt"}) {
        nvtest::useProgramFolder(machine, drive, files);
        show();
    }
    void show() {
        w = std::make_unique<nvtest::FakeMainWindow>();
        w->form().Form_Load();
    }
    std::string basic(const std::string& key) {
        return fReadIni(AppSettings.strIniFile, kSectionBasic, key, "?");
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    std::unique_ptr<nvtest::FakeMainWindow> w;
};

TEST_F(MainWindow, LoadFillsTheWindowAndOpensTheTargetDrive) {
    machine.temp.write("Stick/Backup2026-11-10/Norvale/NV.ini", "saved");
    load();
    // The assignment of E: moved the selection from C:, so the drive change did its whole work.
    EXPECT_EQ(w->buttonState(), "11110111");
    EXPECT_FALSE(w->LblStation.visible());
    EXPECT_EQ(basic("DriveTarget"), "E:");

    // A double click or Enter opens a folder: its levels open above, its subfolders closed
    // below, its files beside it.
    ASSERT_TRUE(w->openFolder("Backup2026-11-10"));
    EXPECT_EQ(w->TargetDirectories.texts(), (Names{"E:\\", "  Backup2026-11-10", "    Norvale"}));
    EXPECT_EQ(w->CmdDeleteDir.caption(), "Verwijder E:\\Backup2026-11-10");
    ASSERT_TRUE(w->TargetDirectories.clickRow(2) && w->TargetDirectories.keyDown(kKeyReturn, 0));
    EXPECT_EQ(w->TargetFileLst.texts(), Names{"NV.ini"});
    EXPECT_EQ(w->Lbl_InhoudDir.caption(), "Bestanden in de map E:\\Backup2026-11-10\\Norvale");
    ASSERT_TRUE(w->TargetDirectories.doubleClick(0));
    EXPECT_FALSE(w->CmdDeleteDir.visible());
    EXPECT_EQ(w->TargetFileLst.texts(), Names{"notes.txt"});
}

// A stick whose root cannot be read is no drive that is away: its number is told, and the load
// stops there, before the restore-only wizard.
TEST_F(MainWindow, AnyOtherFailureOfTheLoadIsToldByItsNumber) {
    struct UnreadableRoot : nvtest::NativeFiles {
        std::vector<std::string> listFolders(const std::string& folder) override {
            if (folder.starts_with("E:"))
                throw fileFailure(kFailDeviceIo);
            return nvtest::NativeFiles::listFolders(folder);
        }
    } files;
    ScopedPlatformPart<FileSystem> part(&Platform::files, &files);
    AppSettings.blnRestoreOnly = true;
    load();
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text, "57 - Invoer/uitvoer-fout van apparaat");
    EXPECT_FALSE(w->PicRestore.visible());
}

// A target drive absent at start: no box, the backup controls go off, the dots run, and the
// drive opens when it comes. In restore-only mode the wizard opens all the same, and the
// buttons it hid stay hidden.
TEST_F(MainWindow, ATargetDriveAbsentAtStartIsWatchedUntilItComes) {
    AppSettings.blnRestoreOnly = true;
    load("Q:");
    EXPECT_TRUE(machine.boxes.shown.empty());
    EXPECT_EQ(w->buttonState(), "00001000");
    EXPECT_TRUE(w->PicRestore.visible());
    for (const char* dots : {"", " .", " . .", " . . .", ""}) {
        EXPECT_EQ(w->LblStation.caption(), "Het doelstation Q: is niet aangesloten. Sluit deze aan "
                                           "of selecteer een ander station hierboven\r\n" +
                                               std::string(dots));
        EXPECT_TRUE(w->Timer1.tick());
    }
    nvtest::FolderDrive q{'Q', machine.temp.native("Stick")};
    ASSERT_TRUE(w->Timer1.tick());
    EXPECT_FALSE(w->LblStation.visible() || w->Cmd_Backup.visible());
    EXPECT_EQ(w->buttonState(), "11110111");
}

// A row goes only when chosen and confirmed, Ctrl+A selects all, and every change goes
// to the settings at once.
TEST_F(MainWindow, EditsOfTheListAreWrittenAtOnce) {
    // The middle row is one a damaged settings file left empty: it cannot be removed by hand.
    nvtest::useProgramFolder(machine, "E:", {"C:\\Data\\a.txt", "", "C:\\Data\\c.txt"});
    AppSettings.strFiles[2] = "";
    AppSettings.dirfrom = "C:\\Data";
    show();
    auto& list = w->LstSelectedFiles;
    ASSERT_TRUE(w->MoVerwijder.click() && list.clickRow(1) && w->CmdVerwijder.click());
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    nvtest::expectBox(machine.boxes.shown[1], "Verwijderen bestanden",
                      "Selecteer eerst het te verwijderen bestand uit de lijst", Buttons::OK,
                      Icon::None);
    ASSERT_TRUE(list.keyDown(kKeyA, kCtrlMask));
    EXPECT_EQ(list.selectedCount(), 3);
    // With all selected, only the current row is asked about and goes.
    list.setListIndex(2);
    machine.boxes.answer(Answer::No);
    machine.boxes.answer(Answer::Yes);
    ASSERT_TRUE(w->CmdVerwijder.click());
    nvtest::expectBox(machine.boxes.shown.back(), "Backup files",
                      "Wilt u het bestand C:\\Data\\c.txt niet meer meenemen in de backup?\r\n\r\n"
                      "Het bestand blijft wel gewoon bewaard maar loopt niet meer mee in de "
                      "automatische backup",
                      Buttons::YesNo, Icon::Question);
    ASSERT_TRUE(w->CmdVerwijder.click());
    EXPECT_EQ(list.texts(), (Names{"C:\\Data\\a.txt", ""}));

    // The next dialog starts where the last file came from, the first occurrence of its name
    // deciding; a cancel adds nothing and still writes the list.
    machine.dialogs.answers = {"C:\\kas\\kas"};
    ASSERT_TRUE(w->CmdSelectFiles.click() && w->MoVoegToe.click());
    EXPECT_EQ(machine.dialogs.titles[0], "Files voor BackUp");
    EXPECT_EQ(machine.dialogs.startedIn, (Names{"C:\\Data", "C:"}));
    EXPECT_EQ(w->StatusBar.panelText(1), "Aantal files: 3");
    EXPECT_EQ(basic("AantalFiles"), "3");
    EXPECT_EQ(basic("dirfrom"), "C:");
}

// The settings in memory: 32,767 single stores through the home platform's own services take
// minutes under Wine.
struct MemoryProfiles : ProfileStore {
    std::string getString(const std::string& section, const std::string& key,
                          const std::string& fallback, std::size_t, const std::string&) override {
        return text.find(section, key).value_or(fallback);
    }
    bool writeString(const std::string& section, const std::string& key, const std::string& value,
                     const std::string&) override {
        text.set(section, key, value);
        return true;
    }
    ProfileText text;
};

TEST_F(MainWindow, AFullListOf32767RowsTakesNoMoreAndIsWrittenWhole) {
    MemoryProfiles profiles;
    ScopedPlatformPart<ProfileStore> part(&Platform::profiles, &profiles);
    Names files;
    for (int n = 1; n <= kMaximumRows; ++n)
        files.push_back("C:\\Data\\f" + std::to_string(n) + ".txt");
    load("E:", files);
    auto setting = [&](const char* section, const std::string& key) {
        return profiles.text.find(section, key).value_or("?");
    };
    machine.dialogs.answers = {"C:\\Data\\new.txt", "C:\\Data\\new.txt"};
    ASSERT_TRUE(w->CmdSelectFiles.click());
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    nvtest::expectBox(machine.boxes.shown[0], "Voeg bestand toe",
                      "De lijst bevat al 32767 bestanden, meer kunnen er niet in", Buttons::OK,
                      Icon::Exclamation);
    EXPECT_EQ(w->StatusBar.panelText(1), "Aantal files: 32767");
    EXPECT_EQ(setting(kSectionFiles, rowKey(kMaximumRows + 1)), "?");

    // One row out makes room for exactly one.
    machine.boxes.answer(Answer::Yes);
    ASSERT_TRUE(w->LstSelectedFiles.clickRow(0) && w->CmdVerwijder.click());
    EXPECT_EQ(setting(kSectionFiles, rowKey(1)), "C:\\Data\\f2.txt");
    ASSERT_TRUE(w->CmdSelectFiles.click());
    EXPECT_EQ(setting(kSectionBasic, "AantalFiles"), "32767");
    EXPECT_EQ(setting(kSectionFiles, rowKey(kMaximumRows)), "C:\\Data\\new.txt");
}

// "Verwijder map" takes a backup folder's own files, and the folder when nothing else is in it;
// what it cannot take gets one box.
TEST_F(MainWindow, DeletingABackupFolderTakesOnlyWhatItCan) {
    const std::string several = "U heeft meerdere directories in deze file staan, u dient deze "
                                "\u00e9\u00e9n voor \u00e9\u00e9n te verwijderen";
    const struct {
        std::string folder;
        Names files, left; // "" for the folder itself
        Answer answer;
        size_t boxes;
    } cases[] = {
        {"Backup2026-11-01", {"a.txt", "b.txt"}, {}, Answer::Yes, 1},
        {"Backup2026-11-02", {"a.txt", "N/NV.ini"}, {"", "N", "N/NV.ini"}, Answer::Yes, 2},
        {"Backup2026-11-04", {"a.txt"}, {"", "a.txt"}, Answer::No, 1},
    };
    for (const auto& c : cases) {
        fs::create_directories(machine.temp.native("Stick/" + c.folder));
        for (const std::string& file : c.files)
            machine.temp.write("Stick/" + c.folder + "/" + file, "x");
    }
    load();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.folder);
        machine.boxes.shown.clear();
        ASSERT_TRUE(w->openFolder(c.folder));
        machine.boxes.answer(c.answer);
        ASSERT_TRUE(w->CmdDeleteDir.click());
        Names left;
        const fs::path folder = machine.temp.native("Stick/" + c.folder);
        if (fs::exists(folder)) {
            left.push_back("");
            for (const auto& entry : fs::recursive_directory_iterator(folder))
                left.push_back(fs::relative(entry.path(), folder).generic_string());
        }
        EXPECT_EQ(left, c.left);
        ASSERT_EQ(machine.boxes.shown.size(), c.boxes);
        EXPECT_EQ(machine.boxes.shown.back().text == several, c.boxes == 2);
    }
    nvtest::expectBox(machine.boxes.shown[0], "Verwijderen Map",
                      "Wilt u de map E:\\Backup2026-11-04 verwijderen?", Buttons::YesNo,
                      Icon::Question);
}

} // namespace
