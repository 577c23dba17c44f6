#include "backup/BackupRunFixture.h"
#include "support/ExpectBox.h"
#include "support/Noise.h"

#include <set>

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

const std::string kMade = "Bestanden succesvol gekopieerd naar ";
const std::string kSettingsAfter = crlf("[Basic settings]\nLastBackup=17-11-2026\n");

using BackupRun = BackupRunFixture;

// Mirrored subfolders keep the row's letters, names those on disk; leftovers go from backup
// folders.
TEST_F(BackupRun, TheMainPathCopiesEveryRowAndTellsTheUserEachStep) {
    const std::string ledger = noise(300'000, 7);
    source("Data/Norvale/NV_Ledger01.mdb", ledger);
    list({machine.temp.drive("BRON\\data\\NORVALE\\nv_ledger01.MDB"), AppSettings.strIniFile,
          source("Documenten\\Offertes\\Brief één.doc", "brief"),
          source("Oud\\norvale\\NV_stock.NVD", ""), "", " "});
    AppSettings.Directory = 1;
    machine.temp.write("stick/Backup2026-11-01/NV_stock.NVD", "eerder");
    for (const char* where : {"Backup2026-11-01", "Backup2026-11-10(2)/Norvale", "backup2026-11-12",
                              "Anders", "Backup2026-11-17/NORVALE"})
        machine.temp.leaveCopyLeftover("stick/" + std::string(where) + "/NV_stock.NVD");
    std::string settingsAtLastBox;
    std::set<std::string> flushedAtLastBox;
    atBox = [&](const MessageBoxRequest&) {
        settingsAtLastBox = settingsFile();
        flushedAtLastBox = {files.flushed.begin(), files.flushed.end()};
    };
    run();

    // The settings file goes into the backup as it was before this run.
    const std::pair<std::string, std::string> copied[] = {
        {"NORVALE/NV_Ledger01.mdb", ledger},
        {"prog/NVbackuptool.ini", kSettingsBefore},
        {"Offertes/Brief één.doc", "brief"},
        {"NORVALE/NV_stock.NVD", ""}};
    Log expected{"box Backup maken", "show", "max 6"};
    for (int row = 1; const auto& [copy, bytes] : copied) {
        const std::string status = "Kopiëren " + copy.substr(copy.find('/') + 1);
        expected.insert(expected.end(),
                        {"value " + std::to_string(row++), "status " + status, "text " + status});
        EXPECT_EQ(onStick(kToday + "/" + copy), bytes) << copy;
    }
    expected.insert(expected.end(), {"value 5", "value 6", "close", "box Back Up", "RefreshStatus",
                                     "refreshTargetDirectories"});
    EXPECT_EQ(windows.log, expected);
    expectBox(boxes.shown.at(0), "Backup maken", "Backup maken naar map: \r\n\r\n" + folder(),
              Buttons::OKCancel, Icon::Question);
    expectBox(boxes.shown.at(1), "Back Up", kMade + folder(), Buttons::OK, Icon::Information);
    EXPECT_EQ(entries(kToday), (Log{"NORVALE/", "Offertes/", "prog/"}));
    EXPECT_EQ(entries(kToday + "/NORVALE"), (Log{"NV_Ledger01.mdb", "NV_stock.NVD"}));
    EXPECT_EQ(machine.temp.copyLeftovers("stick"), 1u);
    EXPECT_EQ(machine.temp.copyLeftovers("stick/Anders"), 1u);
    EXPECT_EQ(machine.temp.read("stick/Backup2026-11-01/NV_stock.NVD"), "eerder");
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
    // The new date and every folder written are on disk before the last box.
    EXPECT_EQ(settingsAtLastBox, kSettingsAfter);
    EXPECT_EQ(flushedAtLastBox,
              (std::set<std::string>{folder(), folder() + "\\NORVALE", folder() + "\\Offertes",
                                     folder() + "\\prog", stick.drive() + "\\"}));
}

// A file at any depth makes today's folder taken, never written over; leftovers do not, and a copy
// refused by a folder in its place (75) passes in silence.
TEST_F(BackupRun, ATakenFolderOfTodayIsAskedAboutAndTheRunTakesTheFirstFreeNumber) {
    list({source("NV.ini", "nieuw"), source("NV_stock.NVD", "y")});
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
    again(Answer::No); // the last box: nothing more is done
    expectBox(boxes.shown.back(), "Backup maken",
              "Directory bestaat al, u heeft vandaag al een backup aangemaakt\r\nWilt u toch een "
              "backup aanmaken?",
              Buttons::YesNo, Icon::Exclamation, DefaultButton::Second);

    machine.temp.leaveCopyLeftover(second + "NV.ini");
    fs::create_directories(stick.native(kToday + "(2)/NV.ini"));
    EXPECT_EQ(again(Answer::Yes), kMade + folder(kToday + "(2)"));
    EXPECT_EQ(entries(kToday + "(2)"), (Log{"NV.ini/", "NV_stock.NVD"}));
    EXPECT_EQ(machine.temp.read(earlier), "eerder");
}

// Blank rows, by the thousand, pass unsaid.
TEST_F(BackupRun, RowsThatCannotBeCopiedAreToldOneByOneAndTheRestGoesOn) {
    const std::string first = source("a\\NV.ini", "a");
    const std::string missing = machine.temp.drive("bron\\Weg\\NV_Ledger01.mdb");
    Log listed{first, source("b\\nv.INI", "b"), source("c.ini", "c"), missing, "", first};
    listed.resize(3000, " ");
    list(listed);
    run();

    const std::string duplicate =
        " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in dezelfde "
        "backup directory zetten. \r\n\r\nInformeer over de mogelijkheden bij uw leverancier";
    ASSERT_EQ(boxes.shown.size(), 5u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd", "Het bestand nv.INI" + duplicate,
              Buttons::OK, Icon::Critical);
    expectBox(boxes.shown[2], "Kan bestand niet vinden",
              "Het bestand '" + missing +
                  " kan niet gevonden worden op deze lokatie\r\n\r\nControleer, nadat het backup "
                  "programma klaar is, waar het bestand staat of verwijder deze uit de lijst",
              Buttons::OK, Icon::Exclamation);
    expectBox(boxes.shown[4], "Back Up met fout(en)",
              "Bestanden gekopieerd naar " + folder() +
                  "\r\n\r\nNiet alle bestanden in de lijst zijn echter gekopieerd door de "
                  "mededelingen die u op het scherm kreeg!",
              Buttons::OK, Icon::Exclamation);
    EXPECT_EQ(entries(kToday), (Log{"NV.ini", "c.ini"}));
    EXPECT_EQ(onStick(kToday + "/NV.ini"), "a");
    EXPECT_EQ(settingsFile(), kSettingsAfter);
}

// What was put in place before a failure is whole when its box shows. (A clip that cannot be
// opened is tried with the real progress window.)
TEST_F(BackupRun, AFailureAbandonsTheRunWithTheBoxOfItsNumber) {
    const std::string a = source("a.ini", std::string(5000, 'a'));
    const std::string b = source("b.mdb", noise(3 << 20, 3)), c = source("c.ini", "c");
    const std::string gone = machine.temp.drive("bron\\weg.mdb"), plain = "Norvale Backup";
    const std::string write = "Fout bij schrijven naar backup schijf";
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
    const Fault lateByteOfB = [](const auto& copies) {
        FaultyMedium::flipByte(copies[1].temporary, 100);
    };
    // A stick that holds less than it says: a later group lands on the copy placed before Missing.
    const Fault wraps = [&, groups = 0](const std::vector<StagedCopy>&) mutable {
        if (++groups == 2)
            std::ofstream(stick.native(kToday + "/a.ini"), std::ios::binary | std::ios::in) << 'c';
    };
    // The failing copy, the fault, the rows, the box, how many copies and boxes, what is left.
    using Case = std::tuple<int32_t, Fault, Log, std::string, std::string, int, std::size_t, Log>;
    const Case cases[] = {
        {61, {}, {a, b, c}, write, full, 2, 2, {"a.ini"}},
        {76, {}, {a, b, c}, write, kProtectedText, 2, 2, {"a.ini"}},
        {57, {}, {a, b, c}, plain, "57 Invoer/uitvoer-fout van apparaat", 2, 2, {"a.ini"}},
        {0, flushFails, {a, b}, write, full, 2, 2, {}},
        {0, lateByteOfB, {a, b, c}, plain, readBack(b), 3, 2, {"a.ini", "c.ini"}},
        {0, wraps, {a, gone, c}, plain, readBack(a), 2, 3, {"c.ini"}},
    };
    for (const auto& [copyFailure, fault, listed, title, text, copies, shown, left] : cases) {
        SCOPED_TRACE(text);
        windows.beforeCopy = [n = copyFailure](int copy) {
            if (copy == 2 && n)
                throw fileFailure(n);
        };
        files.fault = fault;
        list(listed);
        rerun();
        EXPECT_EQ(boxes.shown.size(), shown);
        expectBox(boxes.shown.back(), title, text, Buttons::OK,
                  title == write ? Icon::Critical : Icon::None);
        EXPECT_EQ(windows.copies, copies);
        expectFailed(title, left);
    }

    // A target gone by the time the status is repainted gives one box, and no second round.
    windows.refreshFailure = fileFailure(68);
    boxes.answer(Answer::Cancel);
    rerun();
    EXPECT_EQ(windows.log, (Log{"box Backup maken", "RefreshStatus", "box Norvale Backup", "close",
                                "refreshTargetDirectories"}));
    EXPECT_EQ(boxes.shown[1].text, "68 Apparaat niet beschikbaar");
}

TEST(FullPath, MirrorsTheLastFolderOfTheSource) {
    EXPECT_EQ(mirroredFolderPart("\\\\server\\deel\\map\\x.txt"), "\\map");
    EXPECT_EQ(mirroredFolderPart("\\\\server\\deel\\x.txt"), "\\deel");
    EXPECT_EQ(mirroredFolderPart("C:\\Norvale\\NV_Ledger01.mdb"), "\\Norvale");
    EXPECT_EQ(mirroredFolderPart("C:\\NV_Ledger01.mdb"), "");
}

// Production files in Norvale/ and Extra/, each holding its path, and a flat and a mirrored backup.
class RestoreRun : public BackupRunFixture {
protected:
    RestoreRun() {
        for (const char* file : {"Norvale/NV.ini", "Norvale/stockA.NVD", "Extra/NV.ini"})
            machine.temp.write(file, file);
        stick.backupFolder("Flat", {"NV.ini", "stockA.NVD"});
        stick.backupFolder("Mirror", {"Norvale/NV.ini", "Extra/NV.ini"});
    }
};

// Two files of one bare name come back only from a folder named after their own.
TEST_F(RestoreRun, APassRestoresWhatItFindsAndFilesOfOneNameOnlyFromTheirOwnFolder) {
    const std::string notFound = kRestored + kRestoreNotFoundText;
    EXPECT_EQ(restore("Flat", {"Norvale/NV.ini", "Norvale/stockA.NVD", "Norvale/Gone.txt"}),
              notFound);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(machine.temp.read("Norvale/stockA.NVD"), "Flat/stockA.NVD");

    EXPECT_EQ(restore("Mirror", {"Norvale/NV.ini", "Extra/NV.ini"}), notFound);
    EXPECT_EQ(restore("Mirror\\extra"), kRestored + kRestoreSameNameText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false}));
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "Flat/NV.ini");
    EXPECT_EQ(machine.temp.read("Extra/NV.ini"), "Mirror/Extra/NV.ini");
    EXPECT_EQ(restore("Flat", {"Norvale/NV.ini", "Norvale/NV.ini"}), kRestored); // one file, twice
}

// A copy that reads back wrong stops at its row and leaves the file there as it was; leftovers
// of a killed restore beside its rows go first.
TEST_F(RestoreRun, AFailingCopyStopsAtItsRowWithTheRowsBeforeItDone) {
    machine.temp.leaveCopyLeftover("Norvale/NV.ini");
    std::ofstream(stick.native("Flat/stockA.NVD"), std::ios::binary) << std::string(200000, 's');
    files.fault = [](const std::vector<StagedCopy>& copies) {
        if (copies.back().destination.ends_with("stockA.NVD"))
            FaultyMedium::flipByte(copies.back().temporary, 5000);
    };
    try {
        restore("Flat", {"Norvale/NV.ini", "Norvale/stockA.NVD", "Norvale/Gone.txt"});
        ADD_FAILURE() << "no failure";
    } catch (const FileFailure& thrown) {
        EXPECT_EQ(std::to_string(thrown.Number) + " " + thrown.Description,
                  "80 Het bestand " + machine.temp.drive("Norvale/stockA.NVD") +
                      " is niet vervangen: de schijf gaf bij het teruglezen andere gegevens "
                      "terug dan erop geschreven zijn");
    }
    EXPECT_EQ(intLoop, 1);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "Flat/NV.ini");
    EXPECT_EQ(machine.temp.read("Norvale/stockA.NVD"), "Norvale/stockA.NVD");
    EXPECT_EQ(machine.temp.copyLeftovers("Norvale"), 0u);
}

// A source another program holds (a sharing violation on Windows) is told, and the run goes on.
struct HeldSource : FaultyMedium {
    std::optional<StagedCopy> stageCopy(const std::string& from, const std::string& to) override {
        if (from == held)
            throw fileFailure(kFailSourceInUse);
        return FaultyMedium::stageCopy(from, to);
    }
    std::string held;
};

TEST_F(BackupRun, AHeldSourceIsToldAndTheRunGoesOnFlawed) {
    HeldSource files;
    ScopedPlatformPart<FileSystem> use(&Platform::files, &files);
    files.held = source("NV_Ledger01.mdb", "grootboek");
    list({source("NV.ini", "ini"), files.held, source("Nota.ini", "nota")});
    run();
    ASSERT_EQ(boxes.shown.size(), 3u);
    expectBox(boxes.shown[1], "Bestand wordt niet gekopieerd",
              "Het bestand " + files.held +
                  " is in gebruik bij een ander programma, waarschijnlijk Norvale, en kan daarom "
                  "niet gekopieerd worden.\r\n\r\nSluit Norvale af en maak de backup opnieuw.",
              Buttons::OK, Icon::Critical);
    EXPECT_EQ(boxes.shown[2].title, "Back Up met fout(en)");
    EXPECT_EQ(entries(kToday), (Log{"NV.ini", "Nota.ini"}));
}

} // namespace
