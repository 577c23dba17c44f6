#include "backup/BackupRunFixture.h"
#include "backup/LeftoverSweep.h"
#include "platform/DriveFormConversion.h"
#include "support/ExpectBox.h"
#include "support/Noise.h"

#include <chrono>
#include <set>

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

const std::string kMade = "Bestanden succesvol gekopieerd naar ";
const std::string kWriteTitle = "Fout bij schrijven naar backup schijf";
const std::string kSettingsAfter = crlf("[Basic settings]\nLastBackup=17-11-2026\n");

using BackupRun = BackupRunFixture;

// Mirrored, subfolders keep the letters of the row and names those on disk; folders of one name
// in other letters meet in one subfolder.
TEST_F(BackupRun, TheMainPathCopiesEveryRowAndTellsTheUserEachStep) {
    const std::string ledger = noise(300'000, 7);
    const Log sources{source("Data/Norvale/NV_Ledger01.mdb", ledger), AppSettings.strIniFile,
                      source("Documenten\\Offertes\\Brief één.doc", "brief"),
                      source("Oud\\norvale\\NV_stock.NVD", "")};
    const auto stamp = fs::file_time_type::clock::now() - std::chrono::hours(24 * 30);
    for (const std::string& file : sources)
        fs::last_write_time(fromUtf8(nativeFormOf(file)), stamp);
    list({machine.temp.drive("BRON\\data\\NORVALE\\nv_ledger01.MDB"), sources[1], sources[2],
          sources[3]});
    AppSettings.Directory = 1;
    machine.temp.leaveCopyLeftover("stick/" + kToday + "/NORVALE/NV_stock.NVD");
    std::string settingsAtLastBox;
    std::set<std::string> flushedAtLastBox;
    atBox = [&](const MessageBoxRequest&) {
        settingsAtLastBox = settingsFile();
        flushedAtLastBox = {files.flushed.begin(), files.flushed.end()};
    };
    run();

    // The settings file goes into the backup as it was before this run; every copy keeps its time.
    const std::pair<std::string, std::string> copied[] = {
        {"NORVALE/NV_Ledger01.mdb", ledger},
        {"prog/NVbackuptool.ini", kSettingsBefore},
        {"Offertes/Brief één.doc", "brief"},
        {"NORVALE/NV_stock.NVD", ""}};
    Log expected{"box Backup maken", "show", "max 4"};
    for (int row = 1; const auto& [copy, bytes] : copied) {
        const std::string status = "Kopiëren " + copy.substr(copy.find('/') + 1);
        expected.insert(expected.end(),
                        {"value " + std::to_string(row++), "status " + status, "text " + status});
        EXPECT_EQ(onStick(kToday + "/" + copy), bytes) << copy;
        EXPECT_LT(std::chrono::abs(fs::last_write_time(stick.native(kToday + "/" + copy)) - stamp),
                  std::chrono::seconds(2));
    }
    expected.insert(expected.end(),
                    {"close", "box Back Up", "RefreshStatus", "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);
    expectBox(boxes.shown.at(0), "Backup maken", "Backup maken naar map: \r\n\r\n" + folder(),
              Buttons::OKCancel, Icon::Question);
    expectBox(boxes.shown.at(1), "Back Up", kMade + folder(), Buttons::OK, Icon::Information);
    EXPECT_EQ(entries(), Log{kToday + "/"});
    EXPECT_EQ(entries(kToday), (Log{"NORVALE/", "Offertes/", "prog/"}));
    EXPECT_EQ(entries(kToday + "/NORVALE"), (Log{"NV_Ledger01.mdb", "NV_stock.NVD"}));
    EXPECT_EQ(strBackupFolder, folder());
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
    // The new date and every folder written are on disk before the last box.
    EXPECT_EQ(settingsAtLastBox, kSettingsAfter);
    EXPECT_EQ(flushedAtLastBox,
              (std::set<std::string>{folder(), folder() + "\\NORVALE", folder() + "\\Offertes",
                                     folder() + "\\prog", stick.drive() + "\\"}));

    AppSettings.Directory = 2;
    rerun();
    EXPECT_EQ(entries(kToday),
              (Log{"Brief één.doc", "NV_Ledger01.mdb", "NV_stock.NVD", "NVbackuptool.ini"}));
}

// A backup never replaces what an earlier run wrote: a file at any depth makes today's folder
// taken (a mirrored backup keeps its files in subfolders); folders, hidden files and leftovers
// do not, and the copy refused by a folder in its place (75) passes in silence.
TEST_F(BackupRun, ATakenFolderOfTodayIsAskedAboutAndTheRunTakesTheFirstFreeNumber) {
    list({source("NV.ini", "nieuw"), source("NV_stock.NVD", "y")});
    boxes.answer(Answer::Cancel);
    run();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "refreshTargetDirectories"}));
    EXPECT_TRUE(entries().empty());

    const std::string earlier = "stick/" + kToday + "/Norvale/Oud/NV.ini";
    const std::string second = "stick/" + kToday + "(2)/";
    machine.temp.write(earlier, "eerder");
    auto again = [&](Answer answer) {
        boxes.shown.clear();
        boxes.answer(Answer::OK);
        boxes.answer(answer);
        run();
        return boxes.shown.back().text;
    };
    again(Answer::No);
    expectBox(boxes.shown.back(), "Backup maken",
              "Directory bestaat al, u heeft vandaag al een backup aangemaakt\r\nWilt u toch een "
              "backup aanmaken?",
              Buttons::YesNo, Icon::Exclamation, DefaultButton::Second);
    EXPECT_EQ(windows.copies, 0);
    EXPECT_EQ(settingsFile(), kSettingsBefore);

    machine.temp.leaveCopyLeftover(second + "NV.ini");
    machine.temp.write(second + "Leeg/.verborgen", "");
    machine.temp.hide(second + "Leeg/.verborgen");
    fs::create_directories(stick.native(kToday + "(2)/NV.ini"));
    EXPECT_EQ(again(Answer::Yes), kMade + folder(kToday + "(2)"));
    EXPECT_EQ(entries(kToday + "(2)"), (Log{"Leeg/", "NV.ini/", "NV_stock.NVD"}));
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
    EXPECT_EQ(settingsFile(), crlf("[Basic settings]\nLastBackup=18-11-2026\n"));
    EXPECT_EQ(machine.temp.read(earlier), "eerder");
}

// Rows that cannot be copied are told one by one, each box after the copies before it are in
// place, and the rest goes on. Blank rows name no file: a count far above the keys leaves them by
// the thousand, and they pass without a word.
TEST_F(BackupRun, RowsThatCannotBeCopiedAreToldOneByOneAndTheRestGoesOn) {
    const std::string first = source("a\\NV.ini", "a"), hidden = source(".verborgen.mdb", "x");
    machine.temp.hide("bron/.verborgen.mdb");
    const std::string missing = machine.temp.drive("bron\\Weg\\NV_Ledger01.mdb");
    Log rows{first, source("b\\nv.INI", "b"), source("c.ini", "c"), missing, "", hidden, first};
    rows.resize(3000, " ");
    list(rows);
    std::vector<Log> onStickAtBox;
    atBox = [&](const MessageBoxRequest&) { onStickAtBox.push_back(entries(kToday)); };
    run();

    const std::string duplicate =
        " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in dezelfde "
        "backup directory zetten. \r\n\r\nInformeer over de mogelijkheden bij uw leverancier";
    auto notFound = [](const std::string& row) {
        return "Het bestand '" + row +
               " kan niet gevonden worden op deze lokatie\r\n\r\nControleer, nadat het backup "
               "programma klaar is, waar het bestand staat of verwijder deze uit de lijst";
    };
    ASSERT_EQ(boxes.shown.size(), 6u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd", "Het bestand nv.INI" + duplicate,
              Buttons::OK, Icon::Critical);
    expectBox(boxes.shown[2], "Kan bestand niet vinden", notFound(missing), Buttons::OK,
              Icon::Exclamation);
    EXPECT_EQ(boxes.shown[3].text, notFound(hidden));
    EXPECT_EQ(boxes.shown[4].text, "Het bestand NV.ini" + duplicate);
    expectBox(boxes.shown[5], "Back Up met fout(en)",
              "Bestanden gekopieerd naar " + folder() +
                  "\r\n\r\nNiet alle bestanden in de lijst zijn echter gekopieerd door de "
                  "mededelingen die u op het scherm kreeg!",
              Buttons::OK, Icon::Exclamation);
    const Log both{"NV.ini", "c.ini"};
    EXPECT_EQ(onStickAtBox, (std::vector<Log>{{}, {"NV.ini"}, both, both, both, both}));
    EXPECT_EQ(onStick(kToday + "/NV.ini"), "a");
    EXPECT_EQ(settingsFile(), kSettingsAfter);

    list({"", source("NV.ini", "ini"), " "});
    rerun();
    EXPECT_EQ(boxes.shown.back().text, kMade + folder());
}

// Leftovers of interrupted copies go at the next run: in its own folder first, then in the
// newest older backup folders as far as its time allows; those of other folders stay.
TEST_F(BackupRun, ARunClearsWhatInterruptedCopiesLeftInEveryBackupFolder) {
    const Log older{"Backup2026-11-01", "Backup2026-11-10(2)/Norvale", "backup2026-11-12"};
    auto leave = [&] {
        for (const std::string& where : older)
            machine.temp.leaveCopyLeftover("stick/" + where + "/NV.ini");
    };
    leave();
    machine.temp.write("stick/Backup2026-11-01/NV.ini", "eerder");
    machine.temp.leaveCopyLeftover("stick/Anders/NV.ini");
    list({source("NV.ini", "nieuw")});
    run();
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), 1u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick/Anders"), 1u);
    EXPECT_EQ(machine.temp.read("stick/Backup2026-11-01/NV.ini"), "eerder");

    leave();
    machine.temp.leaveCopyLeftover("stick/" + kToday + "/Norvale/NV.ini");
    subSweepBackupLeftovers(stick.drive(), folder(), std::chrono::milliseconds(0));
    EXPECT_EQ(machine.temp.copyLeftovers("stick/" + kToday), 0u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), older.size() + 1);
}

// A failure ends the run with the box of its number. What was put in place before it is there,
// whole, when the user reads of it, and no copy that read back otherwise keeps its name. (A clip
// that cannot be opened is tried with the real progress window.)
TEST_F(BackupRun, AFailureAbandonsTheRunWithTheBoxOfItsNumber) {
    const std::string a = source("a.ini", std::string(5000, 'a'));
    const std::string b = source("b.mdb", noise(3 << 20, 3)), c = source("c.ini", "c");
    const std::string gone = machine.temp.drive("bron\\weg.mdb");
    const std::string full =
        "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf";
    auto readBack = [](const std::string& file) {
        return "80 Het bestand " + file +
               " is niet goed op de backup schijf gekomen: de backup schijf gaf bij het "
               "teruglezen andere gegevens terug dan erop geschreven zijn. Maak de backup "
               "opnieuw op een andere backup schijf";
    };
    using Fault = std::function<void(const std::vector<StagedCopy>&)>;
    const Fault flushFails = [](const auto&) { throw fileFailure(kFailTargetFull); };
    const Fault lateByteOfB = [](const std::vector<StagedCopy>& copies) {
        for (const StagedCopy& copy : copies)
            if (copy.destination.ends_with("b.mdb"))
                FaultyMedium::flipByte(copy.temporary, 100);
    };
    // A stick that holds less than it says: a later group lands on the first copy, which the box
    // Missing had put in place.
    const Fault wraps = [&, groups = 0](const std::vector<StagedCopy>&) mutable {
        if (++groups == 2)
            std::ofstream(stick.native(kToday + "/a.ini"), std::ios::binary | std::ios::in) << 'c';
    };
    struct Case {
        int32_t copyFailure;
        Fault fault;
        Log rows;
        std::string text;
        int copies;
        std::size_t boxes;
        Log left;
    };
    // A commit that cannot flush, at the end or before a box in the middle: the user hears that
    // the target is full, not of the row, and the rest is not tried.
    const Case cases[] = {
        {61, {}, {a, b, c}, full, 2, 2, {"a.ini"}},
        {76, {}, {a, b, c}, kProtectedText, 2, 2, {"a.ini"}},
        {57, {}, {a, b, c}, "57 Invoer/uitvoer-fout van apparaat", 2, 2, {"a.ini"}},
        {0, flushFails, {a, b}, full, 2, 2, {}},
        {0, flushFails, {a, gone, b}, full, 1, 2, {}},
        {0, lateByteOfB, {a, b, c}, readBack(b), 3, 2, {"a.ini", "c.ini"}},
        {0, wraps, {a, gone, c}, readBack(a), 2, 3, {"c.ini"}},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(&k - cases);
        windows.beforeCopy = [&](int copy) {
            if (copy == 2 && k.copyFailure)
                throw fileFailure(k.copyFailure);
        };
        files.fault = k.fault;
        list(k.rows);
        rerun();
        const bool write = k.text == full || k.text == kProtectedText;
        EXPECT_EQ(boxes.shown.size(), k.boxes);
        expectBox(boxes.shown.back(), write ? kWriteTitle : "Norvale Backup", k.text, Buttons::OK,
                  write ? Icon::Critical : Icon::None);
        EXPECT_EQ(windows.copies, k.copies);
        expectFailed(boxes.shown.back().title, k.left);
    }

    // A target gone by the time the status is repainted gives one box, and no second round.
    windows.refreshFailure = fileFailure(68);
    boxes.answer(Answer::Cancel);
    rerun();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "box Norvale Backup", "close",
                                "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "68 Apparaat niet beschikbaar");
}

// A failure on the way to the mirrored folder is told once, and leaves no destination.
TEST_F(BackupRun, FullPathMirrorsTheLastFolderOfTheSource) {
    const std::pair<std::string, std::string> examples[] = {
        {"C:\\Users\\user1\\Documenten\\Offertes\\brief.doc", "\\Offertes"},
        {"\\\\server\\deel\\map\\x.txt", "\\map"},
        {"\\\\server\\deel\\x.txt", "\\deel"},
        // One level deep the one folder there is mirrors; at a drive's root, nothing.
        {"C:\\Norvale\\NV_Ledger01.mdb", "\\Norvale"},
        {"C:\\NV_Ledger01.mdb", ""},
    };
    for (const auto& [path, part] : examples)
        EXPECT_EQ(mirroredFolderPart(path), part) << path;
    const std::string ini = source("Data/Norvale/NV.ini", "x");
    EXPECT_EQ(fFullPath(ini, folder("Weg")), "");
    expectBox(boxes.shown.at(0), "Norvale Backup", "Pad niet gevonden\r\nModule: fFullPath 76",
              Buttons::OK, Icon::None);
}

} // namespace
