#include "backup/BackupRunFixture.h"
#include "backup/LeftoverSweep.h"
#include "platform/DriveFormConversion.h"
#include "support/ExpectBox.h"

#include <chrono>
#include <set>

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

const std::string kMade = "Bestanden succesvol gekopieerd naar ";

class BackupRun : public BackupRunFixture {
protected:
    const std::string kSettingsAfter = crlf("[Basic settings]\nLastBackup=17-11-2026\n");
};

TEST_F(BackupRun, TheMainPathCopiesEveryRowAndTellsTheUserEachStep) {
    std::string ledger;
    for (int i = 0; i < 300'000; ++i)
        ledger += static_cast<char>(i * 7 % 251);
    list({source("Data\\Norvale\\NV_Ledger01.mdb", ledger), AppSettings.strIniFile,
          source("Documenten\\Offertes\\Brief één.doc", "brief"),
          source("Data\\Norvale\\NV_stock.NVD", "")});
    const auto stamp = fs::file_time_type::clock::now() - std::chrono::hours(24 * 30);
    for (std::size_t row = 1; row < AppSettings.strFiles.size(); ++row)
        fs::last_write_time(fromUtf8(nativeFormOf(AppSettings.strFiles[row])), stamp);
    std::string settingsDuringLastBox;
    atBox = [&](const MessageBoxRequest&) { settingsDuringLastBox = settingsFile(); };
    run();

    // The settings file goes into the backup as it was before this run.
    const std::pair<std::string, std::string> copied[] = {{"NV_Ledger01.mdb", ledger},
                                                          {"NVbackuptool.ini", kSettingsBefore},
                                                          {"Brief één.doc", "brief"},
                                                          {"NV_stock.NVD", ""}};
    Log expected{"box Backup maken", "show", "max 4"};
    for (int row = 1; const auto& [name, bytes] : copied) {
        expected.insert(expected.end(), {"value " + std::to_string(row++),
                                         "status Kopiëren " + name, "text Kopiëren " + name});
        EXPECT_EQ(onStick(kToday + "/" + name), bytes) << name;
        EXPECT_LT(std::chrono::abs(fs::last_write_time(stick.native(kToday + "/" + name)) - stamp),
                  std::chrono::seconds(2))
            << name;
    }
    expected.insert(expected.end(),
                    {"close", "box Back Up", "RefreshStatus", "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[0], "Backup maken", "Backup maken naar map: \r\n\r\n" + folder(),
              Buttons::OKCancel, Icon::Question);
    expectBox(boxes.shown[1], "Back Up", kMade + folder(), Buttons::OK, Icon::Information);
    EXPECT_EQ(entries(), Log{kToday + "/"});
    EXPECT_EQ(entries(kToday).size(), 4u);
    EXPECT_EQ(strBackupFolder, folder());
    // The new date is on disk before the last box.
    EXPECT_EQ(settingsDuringLastBox, kSettingsAfter);
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
}

TEST_F(BackupRun, ATakenFolderOfTodayIsAskedAboutAndTheRunTakesTheFirstFreeNumber) {
    list({source("NV.ini", "nieuw"), source("NV_stock.NVD", "y")});
    boxes.answer(Answer::Cancel);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_TRUE(entries().empty());

    // Today's folder holds a file: the question comes, and No ends the run.
    machine.temp.write("stick/" + kToday + "/NV.ini", "eerder");
    auto again = [&](Answer answer) {
        boxes.shown.clear();
        boxes.answer(Answer::OK);
        boxes.answer(answer);
        run();
        return boxes.shown.back().text;
    };
    again(Answer::No);
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[1], "Backup maken",
              "Directory bestaat al, u heeft vandaag al een backup aangemaakt\r\nWilt u toch een "
              "backup aanmaken?",
              Buttons::YesNo, Icon::Exclamation, DefaultButton::Second);
    EXPECT_EQ(windows.copies, 0);
    EXPECT_EQ(onStick(kToday + "/NV.ini"), "eerder");
    expectNotMade();

    // Neither a leftover nor a folder makes a folder count; the copy refused by the folder in its
    // place (75) is passed over in silence.
    machine.temp.leaveCopyLeftover("stick/" + kToday + "(2)/NV.ini");
    fs::create_directories(stick.native(kToday + "(2)/NV.ini"));
    EXPECT_EQ(again(Answer::Yes), kMade + folder(kToday + "(2)"));
    EXPECT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(entries(kToday + "(2)"), (Log{"NV.ini/", "NV_stock.NVD"}));

    EXPECT_EQ(again(Answer::Yes), kMade + folder(kToday + "(3)"));
    // The question names the plain folder; the suffix never piles up.
    EXPECT_EQ(boxes.shown[0].text, "Backup maken naar map: \r\n\r\n" + folder());
    EXPECT_EQ(onStick(kToday + "(3)/NV.ini"), "nieuw");

    // Answered after midnight: the folder is still of the day the run began, the date the new one.
    fs::remove_all(stick.native(kToday + "(2)"));
    atBox = [&](const MessageBoxRequest& box) {
        if (box.buttons == Buttons::YesNo)
            ++machine.clock.date;
    };
    EXPECT_EQ(again(Answer::Yes), kMade + folder(kToday + "(2)"));
    EXPECT_EQ(entries(), (Log{kToday + "(2)/", kToday + "(3)/", kToday + "/"}));
    EXPECT_EQ(strBackupFolder, folder(kToday + "(2)"));
    EXPECT_EQ(settingsFile(), crlf("[Basic settings]\nLastBackup=18-11-2026\n"));
}

// A backup never replaces a file that an earlier run wrote: a folder of today counts as taken when
// it holds a file at any depth, as a mirrored backup does.
TEST_F(BackupRun, ASecondMirroredBackupOfADayNeverReplacesTheFirst) {
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV_Ledger01.mdb", "nieuw")});
    struct Case {
        std::string name;
        Log files, hidden, folders;
        bool taken;
    };
    const Case cases[] = {
        {"the same file", {"Norvale/NV_Ledger01.mdb"}, {}, {}, true},
        {"a file deep down", {"a/b/c/brief.doc"}, {}, {}, true},
        {"empty subfolders", {}, {}, {"Norvale/Leeg", "Offertes"}, false},
        {"a hidden file and a leftover", {}, {"Norvale/.verborgen"}, {}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const auto& entry : fs::directory_iterator(stick.native()))
            fs::remove_all(entry.path());
        const std::string earlier = "stick/" + kToday + "/";
        for (const std::string& file : c.files)
            machine.temp.write(earlier + file, "eerder");
        for (const std::string& file : c.hidden) {
            machine.temp.write(earlier + file, "eerder");
            machine.temp.hide(earlier + file);
            machine.temp.leaveCopyLeftover(earlier + file);
        }
        for (const std::string& sub : c.folders)
            fs::create_directories(stick.native(kToday + "/" + sub));
        boxes.shown.clear();
        boxes.answer(Answer::OK);
        if (c.taken)
            boxes.answer(Answer::Yes);
        run();
        const std::string made = kToday + (c.taken ? "(2)" : "");
        ASSERT_EQ(boxes.shown.size(), c.taken ? 3u : 2u);
        EXPECT_EQ(boxes.shown.back().text, kMade + folder(made));
        EXPECT_EQ(onStick(made + "/Norvale/NV_Ledger01.mdb"), "nieuw");
        for (const std::string& file : c.files)
            EXPECT_EQ(machine.temp.read(earlier + file), "eerder");
    }
}

TEST_F(BackupRun, RowsThatCannotBeFoundAreToldOneByOneAndBlankRowsPassWithoutAWord) {
    const std::string hidden = source(".verborgen.mdb", "x");
    machine.temp.hide("bron/.verborgen.mdb");
    const std::string missing = machine.temp.drive("bron\\Weg\\NV_Ledger01.mdb");
    // A count far above the keys leaves blank rows by the thousand; they name no file.
    Log rows{missing, "", " ", hidden};
    rows.resize(3000, " ");
    list(rows);
    run();

    ASSERT_EQ(boxes.shown.size(), 4u);
    for (std::size_t i : {1u, 2u})
        expectBox(boxes.shown[i], "Kan bestand niet vinden",
                  "Het bestand '" + (i == 1 ? missing : hidden) +
                      " kan niet gevonden worden op deze lokatie\r\n\r\nControleer, nadat het "
                      "backup programma klaar is, waar het bestand staat of verwijder deze uit "
                      "de lijst",
                  Buttons::OK, Icon::Exclamation);
    expectBox(boxes.shown[3], "Back Up met fout(en)",
              "Bestanden gekopieerd naar " + folder() +
                  "\r\n\r\nNiet alle bestanden in de lijst zijn echter gekopieerd door de "
                  "mededelingen die u op het scherm kreeg!",
              Buttons::OK, Icon::Exclamation);
    EXPECT_TRUE(entries(kToday).empty());
    EXPECT_EQ(settingsFile(), kSettingsAfter);

    // Blank rows beside files that are there leave a run without flaws.
    list({"", source("NV.ini", "ini"), " "});
    rerun();
    ASSERT_EQ(boxes.shown.size(), 2u);
    EXPECT_EQ(boxes.shown[1].title, "Back Up");
    EXPECT_EQ(entries(kToday), Log{"NV.ini"});
}

// Rows in other letters than the disk: the names keep those on disk, subfolders those of the row.
TEST_F(BackupRun, OnlyLayoutOneMirrorsAndEveryFolderWrittenIsFlushedBeforeTheLastBox) {
    source("Data/Norvale/NV.ini", "a");
    source("Data/Norvale/NV_Ledger01.mdb", "b");
    list({machine.temp.drive("BRON\\data\\NORVALE\\nv.INI"),
          machine.temp.drive("BRON\\data\\NORVALE\\nv_ledger01.MDB"),
          source("Docs\\Offertes\\brief.doc", "c")});
    AppSettings.Directory = 1;
    machine.temp.leaveCopyLeftover("stick/" + kToday + "/NORVALE/NV.ini");
    std::set<std::string> flushedBeforeLastBox;
    atBox = [&](const MessageBoxRequest&) {
        flushedBeforeLastBox = {files.flushed.begin(), files.flushed.end()};
    };
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entries(kToday), (Log{"NORVALE/", "Offertes/"}));
    EXPECT_EQ(entries(kToday + "/NORVALE"), (Log{"NV.ini", "NV_Ledger01.mdb"}));
    EXPECT_EQ(flushedBeforeLastBox,
              (std::set<std::string>{folder() + "\\NORVALE", folder() + "\\Offertes", folder(),
                                     stick.drive() + "\\"}));

    AppSettings.Directory = 2;
    rerun();
    EXPECT_EQ(entries(kToday), (Log{"NV.ini", "NV_Ledger01.mdb", "brief.doc"}));
}

// Leftovers of interrupted copies in older backup folders go at the next run, newest folder
// first, as far as its time allows; those of other folders stay.
TEST_F(BackupRun, ARunClearsWhatInterruptedCopiesLeftInEveryBackupFolder) {
    const Log older{"Backup2026-11-01", "Backup2026-11-10(2)/Norvale", "backup2026-11-12"};
    for (const std::string& where : older)
        machine.temp.leaveCopyLeftover("stick/" + where + "/NV.ini");
    machine.temp.write("stick/Backup2026-11-01/NV.ini", "eerder");
    machine.temp.leaveCopyLeftover("stick/Anders/NV.ini");
    list({source("NV.ini", "nieuw")});
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), 1u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick/Anders"), 1u);
    EXPECT_EQ(machine.temp.read("stick/Backup2026-11-01/NV.ini"), "eerder");

    // Without time to spare only the run's own folder and its subfolders are cleared.
    for (const std::string& where : older)
        machine.temp.leaveCopyLeftover("stick/" + where + "/NV.ini");
    machine.temp.leaveCopyLeftover("stick/" + kToday + "/Norvale/NV.ini");
    subSweepBackupLeftovers(stick.drive(), folder(), std::chrono::milliseconds(0));
    EXPECT_EQ(machine.temp.copyLeftovers("stick/" + kToday), 0u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), older.size() + 1);
    subSweepBackupLeftovers(stick.drive(), folder());
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), 1u);
}

// A box shown while copies wait for their commit comes after they are in place.
TEST_F(BackupRun, TwoRowsForOneDestinationGiveTheBoxDuplicateAfterTheCopiesBeforeItAreInPlace) {
    const std::string duplicate =
        " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in dezelfde "
        "backup directory zetten. \r\n\r\nInformeer over de mogelijkheden bij uw leverancier";
    std::vector<Log> onStickAtBox;
    atBox = [&](const MessageBoxRequest&) { onStickAtBox.push_back(entries(kToday)); };

    // Flat: one bare name from two folders, and one path twice.
    const std::string first = source("a\\NV.ini", "a");
    list({first, source("b\\nv.INI", "b"), source("c.ini", "c"), machine.temp.drive("bron\\weg"),
          first});
    run();
    ASSERT_EQ(boxes.shown.size(), 5u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd", "Het bestand nv.INI" + duplicate,
              Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown[3].text, "Het bestand NV.ini" + duplicate);
    const Log both{"NV.ini", "c.ini"};
    EXPECT_EQ(onStickAtBox, (std::vector<Log>{{}, {"NV.ini"}, both, both, both}));
    EXPECT_EQ(onStick(kToday + "/NV.ini"), "a");

    // Mirrored: two folders of one name (in other letters) hold one bare name.
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV.ini", "nieuw"), source("Oud\\norvale\\NV.ini", "oud"),
          source("Docs\\Offertes\\NV.ini", "offerte")});
    rerun();
    ASSERT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(boxes.shown[1].text, "Het bestand NV.ini" + duplicate);
    EXPECT_EQ(entries(kToday), (Log{"Norvale/", "Offertes/"}));
    EXPECT_EQ(onStick(kToday + "/Norvale/NV.ini"), "nieuw");
    EXPECT_EQ(onStick(kToday + "/Offertes/NV.ini"), "offerte");
}

// What was put in place before the failure is there, whole, when the user reads of it. (A clip
// that cannot be opened is tried with the real progress window.)
TEST_F(BackupRun, AFailingCopyFlushOrWindowAbandonsTheRunWithTheBoxOfItsNumber) {
    const std::string a = source("a.ini", "a"), b = source("b.mdb", "b"), c = source("c.ini", "c");
    struct Case {
        int32_t copyFailure, flushFailure;
        Log rows;
        std::string title, text;
        Icon icon;
        int copies;
        Log left;
    };
    const Case cases[] = {
        {61, 0, {a, b, c}, kWriteTitle, kFullText, Icon::Critical, 2, {"a.ini"}},
        {76, 0, {a, b, c}, kWriteTitle, kProtectedText, Icon::Critical, 2, {"a.ini"}},
        {57,
         0,
         {a, b, c},
         "Norvale Backup",
         "57 Invoer/uitvoer-fout van apparaat",
         Icon::None,
         2,
         {"a.ini"}},
        // A commit that cannot flush, at the end of the run and before a box in the middle: there
        // the user hears that the target is full, not of the row, and the rest is not tried.
        {0, 61, {a, b}, kWriteTitle, kFullText, Icon::Critical, 2, {}},
        {0,
         61,
         {a, machine.temp.drive("bron\\weg.mdb"), b},
         kWriteTitle,
         kFullText,
         Icon::Critical,
         1,
         {}},
    };
    bool windowUpDuringBox = false;
    Log atLastBox;
    atBox = [&](const MessageBoxRequest&) {
        windowUpDuringBox = windows.copyWindowOpen;
        atLastBox = entries(kToday);
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        windows.beforeCopy = [&](int copy) {
            if (copy == 2 && c.copyFailure)
                throw fileFailure(c.copyFailure);
        };
        files.failFlushNumber = c.flushFailure;
        list(c.rows);
        rerun();
        ASSERT_EQ(boxes.shown.size(), 2u);
        expectBox(boxes.shown[1], c.title, c.text, Buttons::OK, c.icon);
        EXPECT_TRUE(windowUpDuringBox);
        EXPECT_EQ(windows.copies, c.copies);
        EXPECT_EQ(atLastBox, c.left);
        expectFailed(c.text, c.left);
    }

    // A target gone by the time the status is repainted gives one box, and no second round.
    windows.refreshFailure = fileFailure(68);
    boxes.answer(Answer::Cancel);
    rerun();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "box Norvale Backup", "close",
                                "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "68 Apparaat niet beschikbaar");
}

// A stick that gives back other bytes than it was given fails the run with a box that names the
// file, whether the fault shows at once or only once later copies have landed on earlier ones.
// Nothing that read back otherwise is left under its name, and no temporary either.
TEST_F(BackupRun, ACopyTheMediumGivesBackOtherwiseFailsTheRunAndLosesItsName) {
    std::string late(3 << 20, '\0');
    for (std::size_t i = 0; i < late.size(); ++i)
        late[i] = static_cast<char>(i * 7 + i / 4096);
    const std::string a = source("a.ini", std::string(5000, 'a')), b = source("b.mdb", late);
    const std::string c = source("c.ini", std::string(6000, 'c'));
    const std::string d = source("d.ini", std::string(7000, 'd'));
    struct Case {
        const char* what;
        Log rows;
        bool wrapAround; // else a late byte of b.mdb flips
        std::string named;
        Log left;
    };
    const Case cases[] = {
        {"a late byte of one copy", {a, b, c}, false, b, {"a.ini", "c.ini"}},
        {"the first file reading back as the last, in one group",
         {a, b, c},
         true,
         a,
         {"b.mdb", "c.ini"}},
        // The box Missing puts the first copy in place before the others are written.
        {"the first file reading back as the last, groups apart",
         {a, machine.temp.drive("bron\\weg.mdb"), c, d},
         true,
         a,
         {"c.ini", "d.ini"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        files.fault = [](const std::vector<StagedCopy>& copies) {
            for (const StagedCopy& copy : copies)
                if (copy.destination.ends_with("b.mdb"))
                    FaultyMedium::flipByte(copy.temporary, 100);
        };
        if (c.wrapAround)
            files.wrapAround();
        list(c.rows);
        rerun();
        const std::string text = "80 Het bestand " + c.named +
                                 " is niet goed op de backup schijf gekomen: de backup schijf gaf "
                                 "bij het teruglezen andere gegevens terug dan erop geschreven "
                                 "zijn. Maak de backup opnieuw op een andere backup schijf";
        ASSERT_EQ(boxes.shown.size(), c.rows.size() == 4 ? 3u : 2u);
        expectBox(boxes.shown.back(), "Norvale Backup", text, Buttons::OK, Icon::None);
        expectFailed(text, c.left);
    }
}

// The real files, but every source is found under its bare name and every folder made is kept.
class NamingFiles : public NativeFiles {
public:
    std::string firstMatch(const std::string& pattern) override {
        if (matchFailure)
            throw fileFailure(matchFailure);
        return pattern.substr(pattern.find_last_of('\\') + 1);
    }
    void makeFolder(const std::string& path) override {
        if (folderFailure || !folders.insert(path).second)
            throw fileFailure(folderFailure ? folderFailure : kFailAccessRefused);
    }
    std::set<std::string> folders;
    int32_t folderFailure = 0, matchFailure = 0;
};

TEST(FullPath, MirrorsTheLastFolderOfTheSource) {
    TestMachine machine;
    NamingFiles files;
    ScopedPlatformPart<FileSystem> useFiles(&Platform::files, &files);
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
