#include "backup/BackupRun.h"
#include "backup/CopyBatch.h"
#include "platform/DateText.h"
#include "startup/AppSettings.h"
#include "support/BackupFakes.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

#ifdef _WIN32
#include <windows.h>
#endif

using namespace nv;
using nvtest::crlf;
using Log = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const std::string kToday = "Backup2026-11-17";

fs::path fromUtf8(const std::string& text) {
    return fs::path(std::u8string(text.begin(), text.end()));
}

std::string utf8Of(const fs::path& path) {
    std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A dot name is hidden on Linux; Windows wants the attribute as well.
void hide(const fs::path& path) {
#ifdef _WIN32
    std::wstring wide = path.wstring();
    ASSERT_TRUE(
        SetFileAttributesW(wide.c_str(), GetFileAttributesW(wide.c_str()) | FILE_ATTRIBUTE_HIDDEN));
#else
    (void)path;
#endif
}

void expectBox(const MessageBoxRequest& box, const std::string& title, const std::string& text,
               Buttons buttons, Icon icon, DefaultButton defaultButton = DefaultButton::First) {
    EXPECT_EQ(box.title, title);
    EXPECT_EQ(box.text, text);
    EXPECT_EQ(box.buttons, buttons);
    EXPECT_EQ(box.icon, icon);
    EXPECT_EQ(box.defaultButton, defaultButton);
}

class BackupRun : public ::testing::Test {
protected:
    BackupRun() : boxes(windows.log), files(*machine.platform.files), stick(machine.temp, "stick") {
        machine.platform.boxes = &boxes;
        machine.platform.files = &files;
        platform() = machine.platform;
        fs::create_directories(machine.temp.native("stick"));
        machine.temp.write("prog/NVbackuptool.ini", kSettingsBefore);
        AppSettings.strIniFile = machine.temp.drive("prog\\NVbackuptool.ini");
        AppSettings.DriveTarget = stick.target;
        AppSettings.LastBackup = dateFromCivil({2026, 11, 1});
    }

    // A file below bron/, written through the platform so that its name may hold any letter.
    std::string source(const std::string& relative, const std::string& bytes) {
        std::string path = machine.temp.drive("bron\\" + relative);
        fs::create_directories(machine.temp.native("bron/" + relative).parent_path());
        platform().files->writeFile(path, bytes);
        return path;
    }
    void list(const std::vector<std::string>& rows) {
        AppSettings.strFiles = {""};
        AppSettings.strFiles.insert(AppSettings.strFiles.end(), rows.begin(), rows.end());
        AppSettings.AantalFiles = static_cast<int16_t>(rows.size());
    }
    void run() { Cmd_Backup_Click(windows, intLoop, strBackupFolder); }

    fs::path onStick(const std::string& relative = "") const {
        return relative.empty() ? machine.temp.native("stick")
                                : machine.temp.native("stick") / fromUtf8(relative);
    }
    // Every entry of a folder on the stick, hidden ones too; folders end in '/'.
    std::vector<std::string> entries(const std::string& relative = "") const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(onStick(relative)))
            names.push_back(utf8Of(entry.path().filename()) + (entry.is_directory() ? "/" : ""));
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string settingsFile() const { return machine.temp.read("prog/NVbackuptool.ini"); }
    std::string folder(const std::string& name = kToday) const {
        return stick.target + "\\" + name;
    }

    const std::string kSettingsBefore = crlf("[Basic settings]\nLastBackup=01-11-2026\n");
    const Log kClosing{"RefreshStatus", "refreshTargetDirectories"};

    nvtest::TestMachine machine;
    nvtest::FakeBackupWindows windows;
    nvtest::LoggingBoxes boxes;
    nvtest::FaultyFiles files;
    nvtest::TargetDrive stick;
    int16_t intLoop = 0;
    std::string strBackupFolder;
};

TEST_F(BackupRun, TheMainPathCopiesEveryRowAndTellsTheUserEachStep) {
    std::string ledger;
    for (int i = 0; i < 300'000; ++i)
        ledger += static_cast<char>(i * 7 % 251);
    const std::string rows[] = {
        source("Data\\Norvale\\NV_Ledger01.mdb", ledger),
        AppSettings.strIniFile,
        source("Documenten\\Offertes\\Brief één.doc", "brief"),
        source("Data\\Norvale\\NV_stock.NVD", ""),
    };
    list({rows[0], rows[1], rows[2], rows[3]});
    const auto stamp = fs::file_time_type::clock::now() - std::chrono::hours(24 * 30);
    for (const char* rel : {"bron/Data/Norvale/NV_Ledger01.mdb", "prog/NVbackuptool.ini",
                            "bron/Data/Norvale/NV_stock.NVD"})
        fs::last_write_time(machine.temp.native(rel), stamp);
    fs::last_write_time(machine.temp.native("bron/Documenten/Offertes") / fromUtf8("Brief één.doc"),
                        stamp);

    std::string settingsDuringLastBox;
    std::vector<std::string> flushedBeforeLastBox;
    boxes.onShow = [&](const MessageBoxRequest&) {
        settingsDuringLastBox = settingsFile();
        flushedBeforeLastBox = files.flushed;
    };
    run();

    auto copying = [](const std::string& name) {
        return Log{"status Kopiëren " + name, "text Kopiëren " + name, "copy"};
    };
    Log expected{"box Backup maken", "show", "max 4"};
    const char* names[] = {"NV_Ledger01.mdb", "NVbackuptool.ini", "Brief één.doc", "NV_stock.NVD"};
    for (int row = 0; row < 4; ++row) {
        expected.push_back("value " + std::to_string(row + 1));
        Log step = copying(names[row]);
        expected.insert(expected.end(), step.begin(), step.end());
    }
    expected.insert(expected.end(),
                    {"close", "box Back Up", "RefreshStatus", "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);

    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[0], "Backup maken", "Backup maken naar map: \r\n\r\n" + folder(),
              Buttons::OKCancel, Icon::Question);
    expectBox(boxes.shown[1], "Back Up", "Bestanden succesvol gekopieerd naar " + folder(),
              Buttons::OK, Icon::Information);

    // The new date is on disk before the last box, and the folder's entries are flushed.
    const std::string settingsAfter = crlf("[Basic settings]\nLastBackup=17-11-2026\n");
    EXPECT_EQ(settingsDuringLastBox, settingsAfter);
    EXPECT_EQ(settingsFile(), settingsAfter);
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
    EXPECT_EQ(flushedBeforeLastBox, (Log{folder(), stick.target + "\\"}));

    EXPECT_EQ(entries(), Log{kToday + "/"});
    EXPECT_EQ(entries(kToday),
              (Log{"Brief één.doc", "NV_Ledger01.mdb", "NV_stock.NVD", "NVbackuptool.ini"}));
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV_Ledger01.mdb")), ledger);
    EXPECT_EQ(bytesOf(onStick(kToday + "/Brief één.doc")), "brief");
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV_stock.NVD")), "");
    // The settings file went into the backup as it was before this run.
    EXPECT_EQ(bytesOf(onStick(kToday + "/NVbackuptool.ini")), kSettingsBefore);
    for (const char* name : names)
        EXPECT_LT(std::chrono::abs(fs::last_write_time(onStick(kToday + "/" + name)) - stamp),
                  std::chrono::seconds(2))
            << name;

    EXPECT_EQ(strBackupFolder, folder());
    EXPECT_EQ(intLoop, 4);
    EXPECT_EQ(AppSettings.AantalFiles, 4);
    EXPECT_EQ(AppSettings.strFiles[3], rows[2]);
}

TEST_F(BackupRun, CancelAndNoLeaveTheTargetAndTheSettingsAsTheyWere) {
    list({source("NV.ini", "x")});
    boxes.answer(Answer::Cancel);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_TRUE(entries().empty());

    // Today's folder holds a file: the question comes, and No ends the run.
    machine.temp.write("stick/" + kToday + "/NV.ini", "eerder");
    windows.log.clear();
    boxes.shown.clear();
    boxes.answer(Answer::OK);
    boxes.answer(Answer::No);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "box Backup maken", "RefreshStatus",
                                "refreshTargetDirectories"}));
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[1], "Backup maken",
              "Directory bestaat al, u heeft vandaag al een backup aangemaakt\r\nWilt u toch een "
              "backup aanmaken?",
              Buttons::YesNo, Icon::Exclamation, DefaultButton::Second);
    EXPECT_EQ(entries(), Log{kToday + "/"});
    EXPECT_EQ(entries(kToday), Log{"NV.ini"});
    EXPECT_EQ(settingsFile(), kSettingsBefore);
    EXPECT_EQ(AppSettings.LastBackup, dateFromCivil({2026, 11, 1}));
}

TEST_F(BackupRun, FurtherBackupsOfADayTakeTheFirstFreeNumber) {
    list({source("NV.ini", "nieuw")});
    machine.temp.write("stick/" + kToday + "/NV.ini", "1");
    machine.temp.write("stick/" + kToday + "(2)/NV.ini", "2");
    auto further = [&] {
        windows.log.clear();
        boxes.shown.clear();
        boxes.answer(Answer::OK);
        boxes.answer(Answer::Yes);
        run();
        return boxes.shown.back().text;
    };
    EXPECT_EQ(further(), "Bestanden succesvol gekopieerd naar " + folder(kToday + "(3)"));
    // The question names the plain folder; the suffix never piles up.
    EXPECT_EQ(boxes.shown[0].text, "Backup maken naar map: \r\n\r\n" + folder());
    EXPECT_EQ(bytesOf(onStick(kToday + "(3)/NV.ini")), "nieuw");

    fs::remove_all(onStick(kToday + "(2)"));
    EXPECT_EQ(further(), "Bestanden succesvol gekopieerd naar " + folder(kToday + "(2)"));
    EXPECT_EQ(entries(), (Log{kToday + "(2)/", kToday + "(3)/", kToday + "/"}));
    EXPECT_EQ(strBackupFolder, folder(kToday + "(2)"));
}

TEST_F(BackupRun, AFolderOfTodayWithoutPlainFilesIsUsedWithoutAQuestion) {
    list({source("NV.ini", "nieuw")});
    // What an interrupted copy left, and a subfolder: neither makes the folder count.
    machine.temp.write("stick/" + kToday + "/.NV.ini.nvtmp-4242-0", "half");
    hide(onStick(kToday + "/.NV.ini.nvtmp-4242-0"));
    fs::create_directories(onStick(kToday + "/Norvale"));
    run();
    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, "Back Up");
    EXPECT_EQ(entries(kToday), (Log{"NV.ini", "Norvale/"}));
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV.ini")), "nieuw");
}

TEST_F(BackupRun, RowsThatCannotBeFoundAreToldOneByOneAndTheRunCountsAsMade) {
    const std::string gone = machine.temp.drive("bron\\Weg\\NV_Ledger01.mdb");
    const std::string hidden = source(".verborgen.mdb", "x");
    hide(machine.temp.native("bron/.verborgen.mdb"));
    list({gone, "", " ", hidden});
    run();

    Log expected{"box Backup maken", "show", "max 4"};
    for (int row = 1; row <= 4; ++row)
        expected.insert(expected.end(),
                        {"value " + std::to_string(row), "box Kan bestand niet vinden"});
    expected.insert(expected.end(), {"close", "box Back Up met fout(en)", "RefreshStatus",
                                     "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);
    ASSERT_EQ(boxes.shown.size(), 6u);
    const std::string advice = "\r\n\r\nControleer, nadat het backup programma klaar is, waar het "
                               "bestand staat of verwijder deze uit de lijst";
    expectBox(boxes.shown[1], "Kan bestand niet vinden",
              "Het bestand '" + gone + " kan niet gevonden worden op deze lokatie" + advice,
              Buttons::OK, Icon::Exclamation);
    EXPECT_EQ(boxes.shown[2].text,
              "Het bestand ' kan niet gevonden worden op deze lokatie" + advice);
    EXPECT_EQ(boxes.shown[3].text,
              "Het bestand '  kan niet gevonden worden op deze lokatie" + advice);
    EXPECT_EQ(boxes.shown[4].text,
              "Het bestand '" + hidden + " kan niet gevonden worden op deze lokatie" + advice);
    expectBox(boxes.shown[5], "Back Up met fout(en)",
              "Bestanden gekopieerd naar " + folder() +
                  "\r\n\r\nNiet alle bestanden in de lijst zijn echter gekopieerd door de "
                  "mededelingen die u op het scherm kreeg!",
              Buttons::OK, Icon::Exclamation);

    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(settingsFile(), crlf("[Basic settings]\nLastBackup=17-11-2026\n"));
    EXPECT_EQ(AppSettings.AantalFiles, 4);
}

TEST_F(BackupRun, NamesKeepTheLettersOnDiskAndSubfoldersThoseOfTheRow) {
    source("Data/Norvale/NV_Ledger01.mdb", "db");
    list({machine.temp.drive("BRON\\data\\NORVALE\\nv_ledger01.MDB")});
    for (uint8_t layout : {0, 1}) {
        SCOPED_TRACE(layout);
        fs::remove_all(onStick(kToday));
        windows.log.clear();
        AppSettings.Directory = layout;
        run();
        EXPECT_EQ(
            std::count(windows.log.begin(), windows.log.end(), "status Kopiëren NV_Ledger01.mdb"),
            1);
        EXPECT_EQ(entries(kToday), layout == 0 ? Log{"NV_Ledger01.mdb"} : Log{"NORVALE/"});
        if (layout == 1) {
            EXPECT_EQ(entries(kToday + "/NORVALE"), Log{"NV_Ledger01.mdb"});
        }
    }
}

TEST_F(BackupRun, TwoRowsForOneDestinationGiveTheBoxDuplicate) {
    const std::string duplicateText =
        " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in dezelfde "
        "backup directory zetten. \r\n\r\nInformeer over de mogelijkheden bij uw leverancier";

    // Flat: one bare name from two folders, and one path twice.
    const std::string first = source("a\\NV.ini", "a");
    list({first, source("b\\nv.INI", "b"), first});
    run();
    ASSERT_EQ(boxes.shown.size(), 4u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd", "Het bestand nv.INI" + duplicateText,
              Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown[2].text, "Het bestand NV.ini" + duplicateText);
    EXPECT_EQ(boxes.shown[3].title, "Back Up met fout(en)");
    EXPECT_EQ(entries(kToday), Log{"NV.ini"});
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV.ini")), "a");
    EXPECT_EQ(windows.copies, 1);

    // Mirrored: two folders of one name (in other letters) hold one bare name.
    fs::remove_all(onStick(kToday));
    boxes.shown.clear();
    windows.copies = 0;
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV.ini", "nieuw"), source("Oud\\norvale\\NV.ini", "oud"),
          source("Docs\\Offertes\\NV.ini", "offerte")});
    run();
    ASSERT_EQ(boxes.shown.size(), 3u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd", "Het bestand NV.ini" + duplicateText,
              Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown[2].title, "Back Up met fout(en)");
    EXPECT_EQ(entries(kToday), (Log{"Norvale/", "Offertes/"}));
    EXPECT_EQ(bytesOf(onStick(kToday + "/Norvale/NV.ini")), "nieuw");
    EXPECT_EQ(bytesOf(onStick(kToday + "/Offertes/NV.ini")), "offerte");
    EXPECT_EQ(windows.copies, 2);
}

TEST_F(BackupRun, EveryLayoutButOneIsFlat) {
    list({source("Data\\Norvale\\NV.ini", "x")});
    for (uint8_t layout : {2, 255}) {
        fs::remove_all(onStick(kToday));
        AppSettings.Directory = layout;
        run();
        EXPECT_EQ(entries(kToday), Log{"NV.ini"}) << int(layout);
    }
}

TEST_F(BackupRun, TheMirroredLayoutFlushesEverySubfolderAndClearsItsLeftovers) {
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV.ini", "a"), source("Data\\Norvale\\NV_Ledger01.mdb", "b"),
          source("Docs\\Offertes\\brief.doc", "c")});
    machine.temp.write("stick/" + kToday + "/Norvale/.NV.ini.nvtmp-4242-0", "half");
    hide(onStick(kToday + "/Norvale/.NV.ini.nvtmp-4242-0"));
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entries(kToday + "/Norvale"), (Log{"NV.ini", "NV_Ledger01.mdb"}));
    std::set<std::string> flushed(files.flushed.begin(), files.flushed.end());
    EXPECT_EQ(flushed, (std::set<std::string>{folder() + "\\Norvale", folder() + "\\Offertes",
                                              folder(), stick.target + "\\"}));
}

TEST_F(BackupRun, AnEmptyListMakesAnEmptyFolder) {
    list({});
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "show", "max 0", "close", "box Back Up",
                                "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
}

TEST_F(BackupRun, ARunPastMidnightKeepsTheFolderOfTheDayItBegan) {
    list({source("NV.ini", "x")});
    windows.beforeCopy = [&](int) { ++machine.clock.date; };
    run();
    EXPECT_EQ(boxes.shown.back().text, "Bestanden succesvol gekopieerd naar " + folder());
    EXPECT_EQ(settingsFile(), crlf("[Basic settings]\nLastBackup=18-11-2026\n"));
}

TEST_F(BackupRun, ACopyRefusedWithSeventyFiveIsPassedOverInSilence) {
    // A folder in the place of the destination refuses the copy.
    fs::create_directories(onStick(kToday + "/NV.ini"));
    list({source("NV.ini", "x"), source("NV_stock.NVD", "y")});
    run();
    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, "Back Up");
    EXPECT_EQ(windows.copies, 2);
    EXPECT_EQ(entries(kToday), (Log{"NV.ini/", "NV_stock.NVD"}));
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
}

TEST_F(BackupRun, AFailingCopyAbandonsTheRunWithTheBoxOfItsNumber) {
    const std::string first = source("a.ini", "a");
    const std::string failing = source("b.mdb", "b");
    const std::string last = source("c.ini", "c");
    list({first, failing, last});
    const std::string writeTitle = "Fout bij schrijven naar backup schijf";
    struct Case {
        int32_t number;
        std::string title;
        std::string text;
        Icon icon;
    };
    const Case cases[] = {
        {61, writeTitle,
         "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf",
         Icon::Critical},
        {76, writeTitle,
         "De backup schijf kan niet worden geopend, het kan zijn dat deze op 'write protection' "
         "staat, dit is vaak een schakelaartje. Pas dit aan of gebruik een ander backup medium",
         Icon::Critical},
        {57, "Norvale Backup", "57 Invoer/uitvoer-fout van apparaat", Icon::None},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.number);
        fs::remove_all(onStick(kToday));
        windows.log.clear();
        boxes.shown.clear();
        files.copiedFrom.clear();
        files.failCopyFrom(failing, c.number);
        bool windowUpDuringBox = false;
        Log onStickAtBox;
        boxes.onShow = [&](const MessageBoxRequest& box) {
            windowUpDuringBox = windows.copyWindowOpen;
            if (box.title == c.title)
                onStickAtBox = entries(kToday);
        };
        run();

        ASSERT_EQ(boxes.shown.size(), 2u);
        expectBox(boxes.shown[1], c.title, c.text, Buttons::OK, c.icon);
        EXPECT_TRUE(windowUpDuringBox);
        Log tail(windows.log.end() - 4, windows.log.end());
        EXPECT_EQ(tail,
                  (Log{"box " + c.title, "close", "RefreshStatus", "refreshTargetDirectories"}));
        EXPECT_EQ(files.copiedFrom, (Log{first, failing}));
        // What was copied before the failure is in place when the user reads of it.
        EXPECT_EQ(onStickAtBox, Log{"a.ini"});
        EXPECT_EQ(entries(kToday), Log{"a.ini"});
        EXPECT_EQ(settingsFile(), kSettingsBefore);
        EXPECT_EQ(AppSettings.LastBackup, dateFromCivil({2026, 11, 1}));
    }
}

TEST_F(BackupRun, EveryBoxComesAfterTheCopiesBeforeItAreInPlace) {
    const std::string first = source("a\\NV.ini", "a");
    list({first, source("b\\NV.ini", "b"), source("c.ini", "c"),
          machine.temp.drive("bron\\weg.mdb")});
    std::vector<Log> onStickAtBox;
    boxes.onShow = [&](const MessageBoxRequest&) {
        onStickAtBox.push_back(fs::exists(onStick(kToday)) ? entries(kToday) : Log{});
    };
    run();

    // The second NV.ini is refused although the first still waited for its commit.
    ASSERT_EQ(boxes.shown.size(), 4u);
    EXPECT_EQ(boxes.shown[1].title, "Bestand wordt niet gekopieerd");
    EXPECT_EQ(boxes.shown[2].title, "Kan bestand niet vinden");
    EXPECT_EQ(boxes.shown[3].title, "Back Up met fout(en)");
    EXPECT_EQ(onStickAtBox[1], Log{"NV.ini"});
    EXPECT_EQ(onStickAtBox[2], (Log{"NV.ini", "c.ini"}));
    EXPECT_EQ(onStickAtBox[3], (Log{"NV.ini", "c.ini"}));
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV.ini")), "a");
}

TEST_F(BackupRun, ACommitThatCannotFlushGivesTheBoxOfItsNumberAndLeavesNoFile) {
    const std::string writeTitle = "Fout bij schrijven naar backup schijf";
    const std::string fullText =
        "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf";
    files.failStagedFlush(kFailTargetFull);
    bool windowUpDuringBox = false;
    boxes.onShow = [&](const MessageBoxRequest&) { windowUpDuringBox = windows.copyWindowOpen; };

    // At the end of the run.
    list({source("a.ini", "a"), source("b.mdb", "b")});
    run();
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[1], writeTitle, fullText, Buttons::OK, Icon::Critical);
    EXPECT_TRUE(windowUpDuringBox);
    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(settingsFile(), kSettingsBefore);
    EXPECT_EQ(AppSettings.LastBackup, dateFromCivil({2026, 11, 1}));

    // Before a box in the middle: the user hears that the target is full, not of the row.
    fs::remove_all(onStick(kToday));
    boxes.shown.clear();
    list({source("a.ini", "a"), machine.temp.drive("bron\\weg.mdb"), source("b.mdb", "b")});
    run();
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[1], writeTitle, fullText, Buttons::OK, Icon::Critical);
    EXPECT_EQ(windows.copies, 3);
    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(AppSettings.LastBackup, dateFromCivil({2026, 11, 1}));
}

TEST_F(BackupRun, AGroupThatReachesItsBoundIsInPlaceBeforeTheNextCopy) {
    const int count = static_cast<int>(CopyBatch::kMaxFiles) + 1;
    std::vector<std::string> rows;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        rows.push_back(source("f" + number + ".ini", number));
    }
    list(rows);
    Log beforeLast;
    windows.beforeCopy = [&](int copy) {
        if (copy == count)
            beforeLast = entries(kToday);
    };
    run();

    EXPECT_EQ(beforeLast.size(), CopyBatch::kMaxFiles);
    EXPECT_EQ(std::count_if(beforeLast.begin(), beforeLast.end(), isCopyTemporary), 0);
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entries(kToday).size(), static_cast<std::size_t>(count));
    EXPECT_EQ(bytesOf(onStick(kToday + "/f256.ini")), "256");
}

TEST_F(BackupRun, FailuresOfTheWindowsTakeTheSamePathAndTheClosingStepsRunOnce) {
    list({source("NV.ini", "x")});
    // A clip that cannot be opened: nothing is made.
    windows.showFailure = fileFailure(53);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "show", "box Norvale Backup", "close",
                                "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "53 Bestand niet gevonden");
    EXPECT_TRUE(entries().empty());

    // Refused with 75: the run goes on with the window as far as it got.
    windows.showFailure = fileFailure(75);
    windows.log.clear();
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entries(kToday), Log{"NV.ini"});

    // A target gone by the time the status is repainted: one box, and no second round.
    windows.showFailure.reset();
    windows.refreshFailure = fileFailure(68);
    windows.log.clear();
    boxes.shown.clear();
    boxes.answer(Answer::Cancel);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "box Norvale Backup", "close",
                                "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "68 Apparaat niet beschikbaar");
}

TEST_F(BackupRun, ASubfolderThatCannotBeMadeIsToldByFullPathAndThenByTheRun) {
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV.ini", "x")});
    files.failMakeFolder(folder() + "\\Norvale", 61);
    run();
    ASSERT_EQ(boxes.shown.size(), 3u);
    expectBox(boxes.shown[1], "Norvale Backup", "Schijf vol\r\nModule: fFullPath 61", Buttons::OK,
              Icon::None);
    // The copy to the empty destination fails with the file layer's number for a bad name.
    expectBox(boxes.shown[2], "Norvale Backup", "52 Ongeldige bestandsnaam of -nummer", Buttons::OK,
              Icon::None);
    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(settingsFile(), kSettingsBefore);
}

// Answers with the bare name of whatever it is asked for, and keeps the folders made.
class NamingFiles : public FileSystem {
public:
    std::string firstMatch(const std::string& pattern) override {
        if (matchFailure)
            throw fileFailure(matchFailure);
        return pattern.substr(pattern.find_last_of('\\') + 1);
    }
    void makeFolder(const std::string& path) override {
        if (folderFailure)
            throw fileFailure(folderFailure);
        if (!folders.insert(path).second)
            throw fileFailure(kFailAccessRefused);
    }
    void moveFile(const std::string&, const std::string&) override {}
    void copyFile(const std::string&, const std::string&) override {}
    void deleteFile(const std::string&) override {}
    void writeFile(const std::string&, const std::string&) override {}
    void deleteByPattern(const std::string&) override {}
    void removeFolder(const std::string&) override {}
    std::vector<std::string> listFolders(const std::string&) override { return {}; }
    std::vector<std::string> listFiles(const std::string&, const std::string&) override {
        return {};
    }
    void flushFolder(const std::string&) override {}
    void removeCopyLeftovers(const std::string&) override {}

    std::set<std::string> folders;
    int32_t folderFailure = 0;
    int32_t matchFailure = 0;
};

TEST(FullPath, MirrorsTheLastFolderOfTheSource) {
    nvtest::TestMachine machine;
    NamingFiles files;
    platform().files = &files;
    const std::string b = "E:\\Backup2026-11-17";
    files.folders.insert(b);
    const std::pair<std::string, std::string> examples[] = {
        {"C:\\Data\\Norvale\\NV_Ledger01.mdb", b + "\\Norvale\\NV_Ledger01.mdb"},
        {"D:\\Oud\\Norvale\\NV_Ledger01.mdb", b + "\\Norvale\\NV_Ledger01.mdb"},
        {"C:\\Users\\user1\\Documenten\\Offertes\\brief.doc", b + "\\Offertes\\brief.doc"},
        {"C:\\a\\b\\x.txt", b + "\\b\\x.txt"},
        {"\\\\server\\deel\\map\\x.txt", b + "\\map\\x.txt"},
        {"\\\\server\\deel\\x.txt", b + "\\deel\\x.txt"},
        // One level deep the one folder there is mirrors; at a drive's root, nothing.
        {"C:\\Norvale\\NV_Ledger01.mdb", b + "\\Norvale\\NV_Ledger01.mdb"},
        {"C:\\NV_Ledger01.mdb", b + "\\NV_Ledger01.mdb"},
    };
    for (const auto& [source, destination] : examples)
        EXPECT_EQ(fFullPath(source, b), destination) << source;
    EXPECT_EQ(files.folders, (std::set<std::string>{b, b + "\\Norvale", b + "\\Offertes", b + "\\b",
                                                    b + "\\map", b + "\\deel"}));
    EXPECT_TRUE(machine.boxes.shown.empty());

    // Its own failure path: 75 in silence, any other number one box; both leave the result empty.
    files.matchFailure = kFailAccessRefused;
    EXPECT_EQ(fFullPath("C:\\Data\\Norvale\\NV.ini", b), "");
    EXPECT_TRUE(machine.boxes.shown.empty());
    files.matchFailure = 0;
    files.folderFailure = kFailDeviceUnavailable;
    EXPECT_EQ(fFullPath("C:\\Data\\Norvale\\NV.ini", b), "");
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    expectBox(machine.boxes.shown[0], "Norvale Backup",
              "Apparaat niet beschikbaar\r\nModule: fFullPath 68", Buttons::OK, Icon::None);
}

} // namespace
