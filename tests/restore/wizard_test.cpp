// The restore wizard over the fake control set: its steps, the highlight's glide, and the
// restore of step 5.
#include "mainwindow/FrmMain.h"
#include "restore/RestoreRun.h"
#include "support/ExpectBox.h"
#include "support/FakeControls.h"
#include "support/ProgramFolder.h"

#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const char* const kNames[] = {"NV.ini", "stockA.NVD", "NV_Ledger01.mdb"};
const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";

// The program's window over a stick E:; by default three production files gone bad, with a
// flat backup of them.
class Wizard : public ::testing::Test {
protected:
    void SetUp() override {
        for (const std::string name : kNames) {
            machine.temp.write("Norvale/" + name, "a bad day");
            machine.temp.write("Stick/Backup2026-11-17/" + name, "good " + name);
        }
    }
    void open(const std::vector<std::string>& files = {std::begin(kNames), std::end(kNames)}) {
        nvtest::useProgramFolder(machine, "E:", files);
        w.form().Form_Load();
    }
    bool next() { return w.CmdWizRestore[0].click(); }
    bool stop() { return w.CmdWizRestore[2].click(); }
    std::string text() { return w.LblRestore[1].caption(); }
    // The whole wizard up to its run from folder, row skipped not chosen, answered Yes.
    void restoreFrom(const std::string& folder, int skipped = -1) {
        ASSERT_TRUE(w.CmdRestore.click() && next());
        if (skipped >= 0)
            w.LstSelectedFiles.setSelected(skipped, false);
        machine.boxes.answer(Answer::Yes);
        ASSERT_TRUE(next() && w.openFolder(folder) && next() && next());
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    nvtest::FakeMainWindow w;
};

TEST_F(Wizard, AFullRestoreFromAFlatBackupThroughTheFiveSteps) {
    open();
    const TwipsRect window = w.Me.place();
    ASSERT_TRUE(w.moRestore.click());
    EXPECT_TRUE(w.PicRestore.visible());
    EXPECT_EQ(w.Me.place(), (TwipsRect{window.left, 1000, window.width, window.height + 1305}));
    EXPECT_EQ(w.buttonState(), "00001000");
    EXPECT_EQ(w.LblRestore[0].caption(), "Terugzetten backup, stap 1 van 5");
    EXPECT_FALSE(w.CmdWizRestore[1].enabled());
    EXPECT_EQ(text(),
              "Deze wizard helpt u met het terugzetten van bestanden\r\nBELANGRIJK: u zet "
              "bestanden terug in het Norvale systeem, deze overschijven de huidige bestanden. Het "
              "is aan te raden om eerst een backup te maken van de huidige bestanden (u dient dan "
              "eerst op 'stoppen' te drukken)\r\nDruk op Volgende of Vorige om door de wizard "
              "heen te lopen");

    // The highlight glides sideways onto the list in a thousand painted steps from where it
    // stood at start; the rest of the way and its new size come in the last jump.
    ASSERT_TRUE(next());
    EXPECT_EQ(text(), "Selecteer in de bovenste lijst de bestanden en lokaties welke u wilt "
                      "terugzetten. U kunt meerdere bestanden selecteren door de CTRL knop "
                      "ingedrukt te houden en de bestanden naar keuze aan te klikken met de muis. "
                      "Met CTRL-A selecteert u de hele lijst (dit is reeds voor u gedaan)");
    ASSERT_EQ(w.Shape1.painted.size(), 1000u);
    EXPECT_EQ(w.Shape1.painted.back(), (TwipsRect{240, 1080, 975, 975}));
    EXPECT_EQ(w.Shape1.place(), (TwipsRect{0, 1080, 250, 2010}));
    EXPECT_TRUE(w.Shape1.visible());
    // A selection cut down at step 2 is whole again when the user comes back to it.
    ASSERT_TRUE(w.LstSelectedFiles.clickRow(1) && next());
    EXPECT_EQ(text(), "Selecteer nu uit welke map (directory) u de bestanden wilt halen om terug "
                      "te zetten. Dubbelklik op een map waardoor u ook kunt zien welke bestanden "
                      "in de map zitten.\r\nIndien een bestand in de bovenste lijst NIET in een "
                      "backup map zit dan wordt deze uiteraard ook niet teruggezet");
    ASSERT_TRUE(w.CmdWizRestore[1].click());
    EXPECT_EQ(w.LstSelectedFiles.selectedCount(), 3);
    ASSERT_TRUE(next() && w.openFolder("Backup2026-11-17") && next());
    const std::string step4 = "U staat op het punt om bestanden terug te zetten. U heeft 3 "
                              "bestanden geselecteerd om terug te zetten.\r\nDeze worden gehaald "
                              "uit de map E:\\Backup2026-11-17\r\nDruk nu op Volgende om de backup "
                              "definitief terug te zetten";
    EXPECT_EQ(text(), step4);
    // A circle just above the panel, near the window's right edge.
    EXPECT_EQ(w.Shape1.kind(), Shape::kCircle);
    EXPECT_EQ(w.Shape1.place(), (TwipsRect{9520, 6855, 250, 250}));

    // No at the warning leaves step 4 as it stood; Next asks again.
    machine.boxes.answer(Answer::No);
    ASSERT_TRUE(next());
    EXPECT_EQ(text(), step4);
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "a bad day");
    machine.boxes.answer(Answer::Yes);
    ASSERT_TRUE(next());
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    nvtest::expectBox(machine.boxes.shown[1], "Terugzetten Backup",
                      "U staat op het punt om de backup terug te zetten. Wilt u doorgaan?",
                      Buttons::YesNo, Icon::Exclamation);
    EXPECT_EQ(text(), kDone);
    EXPECT_EQ(w.LstSelectedFiles.selectedCount(), 0);
    for (const std::string name : kNames)
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "good " + name);

    // Next at the result puts the window back as it was, but for its place on the screen.
    ASSERT_TRUE(next());
    EXPECT_FALSE(w.PicRestore.visible() || w.Shape1.visible());
    EXPECT_EQ(w.Me.place(), (TwipsRect{window.left, 1000, window.width, window.height}));
}

TEST_F(Wizard, StopAtEveryStepAndAFailure) {
    open();
    for (int step = 1; step <= 4; ++step) {
        ASSERT_TRUE(w.CmdRestore.click());
        for (int n = 1; n < step; ++n)
            ASSERT_TRUE(next());
        ASSERT_TRUE(stop());
        EXPECT_FALSE(w.PicRestore.visible() || w.Shape1.visible()) << step;
        EXPECT_EQ(w.Me.place().height, 9000) << step;
        EXPECT_EQ(w.buttonState(), "11110111") << step;
    }

    // A read-only production file is not replaced; the wizard tells why, and at which row. The
    // row before it is done, it and the rows after it stay chosen and as they were.
    const fs::path readOnly = machine.temp.native("Norvale/stockA.NVD");
    fs::permissions(readOnly,
                    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    restoreFrom("Backup2026-11-17");
    EXPECT_EQ(text(), "Het terugzetten van de bestanden is niet (volledig) gelukt omdat er een "
                      "fout is ontstaan met de volgende omschrijving:\r\nFout bij toegang tot pad "
                      "of bestand\r\nDeze is opgetreden in stap 5 en in substap 1. Geef dit "
                      "eventueel door aan de leverancier");
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "good NV.ini");
    for (const std::string name : {"stockA.NVD", "NV_Ledger01.mdb"})
        EXPECT_EQ(machine.temp.read("Norvale/" + name), "a bad day");
    EXPECT_EQ(fs::status(readOnly).permissions() & fs::perms::owner_write, fs::perms::none);
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(w.LstSelectedFiles.selected(row), row > 0) << row;
    ASSERT_TRUE(w.CmdWizRestore[1].click());
    EXPECT_EQ(w.form().intWizardStep, 4);
}

// Two production files of one name in different folders, and on the stick a flat backup that
// could hold only Alpha's (Beta's got the box Duplicate) and a mirrored one.
TEST_F(Wizard, OneChosenRowNeverTakesTheBackupOfAnotherFileOfItsName) {
    machine.temp.write("x/Alpha/dup.txt", "Alpha today");
    machine.temp.write("y/Beta/dup.txt", "Beta today");
    machine.temp.write("Stick/Backup2026-11-17/dup.txt", "Alpha saved flat");
    machine.temp.write("Stick/Backup2026-11-10/Alpha/dup.txt", "Alpha saved mirrored");
    machine.temp.write("Stick/Backup2026-11-10/Beta/dup.txt", "Beta saved mirrored");
    open({machine.temp.drive("x\\Alpha\\dup.txt"), machine.temp.drive("y\\Beta\\dup.txt")});
    // The flat folder's one dup.txt is Alpha's; so is the mirrored subfolder opened by mistake.
    for (const char* folder : {"Backup2026-11-17", "Backup2026-11-10\\Alpha"}) {
        SCOPED_TRACE(folder);
        restoreFrom(folder, 0);
        EXPECT_EQ(text(), kDone + kRestoreSameNameText);
        EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta today");
        EXPECT_TRUE(w.LstSelectedFiles.selected(1));
        ASSERT_TRUE(stop() && w.TargetDirectories.doubleClick(0));
    }
    restoreFrom("Backup2026-11-10\\Beta", 0);
    EXPECT_EQ(text(), kDone);
    EXPECT_EQ(machine.temp.read("y/Beta/dup.txt"), "Beta saved mirrored");
    EXPECT_EQ(machine.temp.read("x/Alpha/dup.txt"), "Alpha today");
}

} // namespace
