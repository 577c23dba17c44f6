#include "backup/BackupRunFixture.h"
#include "backup/LeftoverSweep.h"
#include "platform/DriveFormConversion.h"

#include <chrono>
#include <fstream>
#include <set>

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void expectBox(const MessageBoxRequest& box, const std::string& title, const std::string& text,
               Buttons buttons, Icon icon, DefaultButton defaultButton = DefaultButton::First) {
    EXPECT_EQ(box.title, title);
    EXPECT_EQ(box.text, text);
    EXPECT_EQ(box.buttons, buttons);
    EXPECT_EQ(box.icon, icon);
    EXPECT_EQ(box.defaultButton, defaultButton);
}

class BackupRun : public BackupRunFixture {
protected:
    // Runs again from a clean stick and a clean record of what was shown.
    void rerun() {
        fs::remove_all(onStick(kToday));
        windows.log.clear();
        windows.copies = 0;
        boxes.shown.clear();
        run();
    }
    // What an interrupted copy left in a folder on the stick.
    void leftover(const std::string& folder) {
        machine.temp.leaveCopyLeftover("stick/" + folder + "/NV.ini");
    }
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
    boxes.onShow = [&](const MessageBoxRequest&) { settingsDuringLastBox = settingsFile(); };
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
        EXPECT_EQ(bytesOf(onStick(kToday + "/" + name)), bytes) << name;
        EXPECT_LT(std::chrono::abs(fs::last_write_time(onStick(kToday + "/" + name)) - stamp),
                  std::chrono::seconds(2))
            << name;
    }
    expected.insert(expected.end(),
                    {"close", "box Back Up", "RefreshStatus", "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);
    ASSERT_EQ(boxes.shown.size(), 2u);
    expectBox(boxes.shown[0], "Backup maken", "Backup maken naar map: \r\n\r\n" + folder(),
              Buttons::OKCancel, Icon::Question);
    expectBox(boxes.shown[1], "Back Up", "Bestanden succesvol gekopieerd naar " + folder(),
              Buttons::OK, Icon::Information);
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
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV.ini")), "eerder");
    expectNotMade();

    // Neither a leftover nor a folder makes a folder count; the copy refused by the folder in its
    // place (75) is passed over in silence.
    leftover(kToday + "(2)");
    fs::create_directories(onStick(kToday + "(2)/NV.ini"));
    EXPECT_EQ(again(Answer::Yes), "Bestanden succesvol gekopieerd naar " + folder(kToday + "(2)"));
    EXPECT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(entries(kToday + "(2)"), (Log{"NV.ini/", "NV_stock.NVD"}));

    EXPECT_EQ(again(Answer::Yes), "Bestanden succesvol gekopieerd naar " + folder(kToday + "(3)"));
    // The question names the plain folder; the suffix never piles up.
    EXPECT_EQ(boxes.shown[0].text, "Backup maken naar map: \r\n\r\n" + folder());
    EXPECT_EQ(bytesOf(onStick(kToday + "(3)/NV.ini")), "nieuw");

    // Answered after midnight: the folder is still of the day the run began, the date the new one.
    fs::remove_all(onStick(kToday + "(2)"));
    boxes.onShow = [&](const MessageBoxRequest& box) {
        if (box.buttons == Buttons::YesNo)
            ++machine.clock.date;
    };
    EXPECT_EQ(again(Answer::Yes), "Bestanden succesvol gekopieerd naar " + folder(kToday + "(2)"));
    EXPECT_EQ(entries(), (Log{kToday + "(2)/", kToday + "(3)/", kToday + "/"}));
    EXPECT_EQ(strBackupFolder, folder(kToday + "(2)"));
    EXPECT_EQ(settingsFile(), crlf("[Basic settings]\nLastBackup=18-11-2026\n"));
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
    leftover(kToday + "/NORVALE");
    std::set<std::string> flushedBeforeLastBox;
    boxes.onShow = [&](const MessageBoxRequest&) {
        flushedBeforeLastBox = {files.flushed.begin(), files.flushed.end()};
    };
    run();
    EXPECT_EQ(boxes.shown.back().title, "Back Up");
    EXPECT_EQ(entries(kToday), (Log{"NORVALE/", "Offertes/"}));
    EXPECT_EQ(entries(kToday + "/NORVALE"), (Log{"NV.ini", "NV_Ledger01.mdb"}));
    EXPECT_EQ(flushedBeforeLastBox,
              (std::set<std::string>{folder() + "\\NORVALE", folder() + "\\Offertes", folder(),
                                     target + "\\"}));

    AppSettings.Directory = 2;
    rerun();
    EXPECT_EQ(entries(kToday), (Log{"NV.ini", "NV_Ledger01.mdb", "brief.doc"}));
}

// A backup never replaces a file that an earlier run wrote: a folder of today counts as taken when
// it holds a file at any depth, as a mirrored backup does.
TEST_F(BackupRun, ASecondMirroredBackupOfADayNeverReplacesTheFirst) {
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV_Ledger01.mdb", "ochtend")});
    run();
    ASSERT_EQ(boxes.shown.back().title, "Back Up");

    // At noon the ledger is damaged, and the user makes a backup all the same.
    source("Data\\Norvale\\NV_Ledger01.mdb", "beschadigd");
    boxes.shown.clear();
    boxes.answer(Answer::OK);
    boxes.answer(Answer::Yes);
    run();
    ASSERT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(boxes.shown[1].buttons, Buttons::YesNo);
    EXPECT_EQ(boxes.shown[2].text, "Bestanden succesvol gekopieerd naar " + folder(kToday + "(2)"));
    EXPECT_EQ(bytesOf(onStick(kToday + "/Norvale/NV_Ledger01.mdb")), "ochtend");
    EXPECT_EQ(bytesOf(onStick(kToday + "(2)/Norvale/NV_Ledger01.mdb")), "beschadigd");

    struct Case {
        std::string name;
        Log files, hidden, folders;
        bool taken;
    };
    const Case cases[] = {
        {"a file deep down", {"a/b/c/brief.doc"}, {}, {}, true},
        {"empty subfolders", {}, {}, {"Norvale/Leeg", "Offertes"}, false},
        {"a hidden file and a leftover", {}, {"Norvale/.verborgen"}, {}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const auto& entry : fs::directory_iterator(onStick()))
            fs::remove_all(entry.path());
        for (const std::string& file : c.files)
            machine.temp.write("stick/" + kToday + "/" + file, "eerder");
        for (const std::string& file : c.hidden) {
            machine.temp.write("stick/" + kToday + "/" + file, "eerder");
            machine.temp.hide("stick/" + kToday + "/" + file);
            machine.temp.leaveCopyLeftover("stick/" + kToday + "/" + file);
        }
        for (const std::string& sub : c.folders)
            fs::create_directories(onStick(kToday + "/" + sub));
        boxes.shown.clear();
        boxes.answer(Answer::OK);
        if (c.taken)
            boxes.answer(Answer::Yes);
        run();
        ASSERT_EQ(boxes.shown.size(), c.taken ? 3u : 2u);
        EXPECT_EQ(boxes.shown.back().text,
                  "Bestanden succesvol gekopieerd naar " + folder(kToday + (c.taken ? "(2)" : "")));
        for (const std::string& file : c.files)
            EXPECT_EQ(machine.temp.read("stick/" + kToday + "/" + file), "eerder");
    }
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
    subSweepBackupLeftovers(target, folder(), std::chrono::milliseconds(0));
    EXPECT_EQ(machine.temp.copyLeftovers("stick/" + kToday), 0u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), older.size() + 1);
    subSweepBackupLeftovers(target, folder());
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), 1u);
}

// A box shown while copies wait for their commit comes after they are in place.
TEST_F(BackupRun, TwoRowsForOneDestinationGiveTheBoxDuplicateAfterTheCopiesBeforeItAreInPlace) {
    const std::string duplicate =
        " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in dezelfde "
        "backup directory zetten. \r\n\r\nInformeer over de mogelijkheden bij uw leverancier";
    std::vector<Log> onStickAtBox;
    boxes.onShow = [&](const MessageBoxRequest&) {
        onStickAtBox.push_back(fs::exists(onStick(kToday)) ? entries(kToday) : Log{});
    };

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
    EXPECT_EQ(bytesOf(onStick(kToday + "/NV.ini")), "a");

    // Mirrored: two folders of one name (in other letters) hold one bare name.
    AppSettings.Directory = 1;
    list({source("Data\\Norvale\\NV.ini", "nieuw"), source("Oud\\norvale\\NV.ini", "oud"),
          source("Docs\\Offertes\\NV.ini", "offerte")});
    rerun();
    ASSERT_EQ(boxes.shown.size(), 3u);
    EXPECT_EQ(boxes.shown[1].text, "Het bestand NV.ini" + duplicate);
    EXPECT_EQ(entries(kToday), (Log{"Norvale/", "Offertes/"}));
    EXPECT_EQ(bytesOf(onStick(kToday + "/Norvale/NV.ini")), "nieuw");
    EXPECT_EQ(bytesOf(onStick(kToday + "/Offertes/NV.ini")), "offerte");
}

TEST_F(BackupRun, AFailingCopyOrWindowAbandonsTheRunWithTheBoxOfItsNumber) {
    list({source("a.ini", "a"), source("b.mdb", "b"), source("c.ini", "c")});
    struct Case {
        int32_t number;
        std::string title, text;
        Icon icon;
    };
    const Case cases[] = {
        {61, kWriteTitle, kFullText, Icon::Critical},
        {76, kWriteTitle, kProtectedText, Icon::Critical},
        {57, "Norvale Backup", "57 Invoer/uitvoer-fout van apparaat", Icon::None}};
    bool windowUpDuringBox = false;
    Log onStickAtBox;
    boxes.onShow = [&](const MessageBoxRequest&) {
        windowUpDuringBox = windows.copyWindowOpen;
        onStickAtBox = fs::exists(onStick(kToday)) ? entries(kToday) : Log{};
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.number);
        windows.beforeCopy = [&](int copy) {
            if (copy == 2)
                throw fileFailure(c.number);
        };
        rerun();

        ASSERT_EQ(boxes.shown.size(), 2u);
        expectBox(boxes.shown[1], c.title, c.text, Buttons::OK, c.icon);
        EXPECT_TRUE(windowUpDuringBox);
        // What was copied before the failure is in place when the user reads of it.
        EXPECT_EQ(onStickAtBox, Log{"a.ini"});
        EXPECT_EQ(entries(kToday), Log{"a.ini"});
        expectNotMade();
    }

    // A clip that cannot be opened takes the same path, before anything is made.
    windows.beforeCopy = nullptr;
    windows.showFailure = fileFailure(53);
    rerun();
    EXPECT_EQ(boxes.shown.back().text, "53 Bestand niet gevonden");
    EXPECT_FALSE(windowUpDuringBox);
    EXPECT_TRUE(entries().empty());
    expectNotMade();

    // A target gone by the time the status is repainted gives one box, and no second round.
    windows.showFailure.reset();
    windows.refreshFailure = fileFailure(68);
    boxes.answer(Answer::Cancel);
    rerun();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "box Norvale Backup", "close",
                                "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "68 Apparaat niet beschikbaar");
}

TEST_F(BackupRun, ACommitThatCannotFlushGivesTheBoxOfItsNumberAndLeavesNoFile) {
    files.failFlushNumber = kFailTargetFull;
    bool windowUpDuringBox = false;
    boxes.onShow = [&](const MessageBoxRequest&) { windowUpDuringBox = windows.copyWindowOpen; };
    // At the end of the run, and before a box in the middle: there the user hears that the
    // target is full, not of the row, and the rest of the list is not tried.
    const std::pair<Log, int> cases[] = {
        {{source("a.ini", "a"), source("b.mdb", "b")}, 2},
        {{source("a.ini", "a"), machine.temp.drive("bron\\weg.mdb"), source("b.mdb", "b")}, 1}};
    for (const auto& [rows, copies] : cases) {
        list(rows);
        rerun();
        ASSERT_EQ(boxes.shown.size(), 2u);
        EXPECT_EQ(boxes.shown[1].text, kFullText);
        EXPECT_TRUE(windowUpDuringBox);
        EXPECT_EQ(windows.copies, copies);
        EXPECT_TRUE(entries(kToday).empty());
        expectNotMade();
    }
}

// A stick that gives back other bytes than it was given fails the run with a box that names the
// file, whether the fault shows at once or only once later copies have landed on earlier ones.
TEST_F(BackupRun, ACopyTheMediumGivesBackOtherwiseFailsTheRunAndLosesItsName) {
    std::string late(3 << 20, '\0');
    for (std::size_t i = 0; i < late.size(); ++i)
        late[i] = static_cast<char>(i * 7 + i / 4096);
    const std::string a = source("a.ini", std::string(5000, 'a'));
    const std::string b = source("b.mdb", late);
    const std::string c = source("c.ini", std::string(6000, 'c'));
    const std::string d = source("d.ini", std::string(7000, 'd'));
    const std::string missing = machine.temp.drive("bron\\weg.mdb");
    struct Case {
        const char* what;
        Log rows;
        std::function<void()> fault;
        std::string named;
        Log left;
    };
    const Case cases[] = {
        {"a late byte of one copy",
         {a, b, c},
         [&] {
             files.fault = [](const std::vector<StagedCopy>& copies) {
                 for (const StagedCopy& copy : copies)
                     if (copy.destination.ends_with("b.mdb"))
                         FaultyMedium::flipByte(copy.temporary, 100);
             };
         },
         b,
         {"a.ini", "c.ini"}},
        {"the first file reading back as the last, in one group",
         {a, b, c},
         [&] { files.wrapAround(); },
         a,
         {"b.mdb", "c.ini"}},
        // The box Missing puts the first copy in place before the others are written.
        {"the first file reading back as the last, groups apart",
         {a, missing, c, d},
         [&] { files.wrapAround(); },
         a,
         {"c.ini", "d.ini"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        c.fault();
        list(c.rows);
        rerun();

        ASSERT_FALSE(boxes.shown.empty());
        expectBox(boxes.shown.back(), "Norvale Backup",
                  "80 Het bestand " + c.named +
                      " is niet goed op de backup schijf gekomen: de backup schijf gaf bij het "
                      "teruglezen andere gegevens terug dan erop geschreven zijn. Maak de backup "
                      "opnieuw op een andere backup schijf",
                  Buttons::OK, Icon::None);
        EXPECT_EQ(boxes.shown.size(), c.rows.size() == 4 ? 3u : 2u);
        // Nothing that read back otherwise is left under its name, and no temporary either.
        EXPECT_EQ(entries(kToday), c.left);
        for (const std::string& name : c.left)
            EXPECT_EQ(bytesOf(onStick(kToday + "/" + name)),
                      bytesOf(machine.temp.native("bron/" + name)));
        expectNotMade();
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
