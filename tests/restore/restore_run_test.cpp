#include "platform/FileFailure.h"
#include "restore/RestoreRun.h"
#include "support/FaultyMedium.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;

namespace {

class Rows : public RestoreList {
public:
    int count() const override { return static_cast<int>(texts.size()); }
    std::string text(int row) const override { return texts[row]; }
    bool selected(int row) const override { return flags[row]; }
    void setSelected(int row, bool on) override { flags[row] = on; }
    std::vector<std::string> texts;
    std::vector<bool> flags;
};

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";
const std::string kNotFound = kDone + kRestoreNotFoundText;
const std::string kSameName = kDone + kRestoreSameNameText;

// Production files in Data/Norvale and Data/Extra, and a flat and a mirrored backup of them.
class RestoreRun : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* file :
             {"Data/Norvale/NV.ini", "Data/Norvale/stockA.NVD", "Data/Extra/NV.ini", "Flat/NV.ini",
              "Flat/stockA.NVD", "Mirror/Norvale/NV.ini", "Mirror/Extra/NV.ini"})
            machine.temp.write(file, file);
        select({"Data\\Norvale\\NV.ini", "Data\\Norvale\\stockA.NVD", "Data\\Norvale\\Gone.txt"});
    }
    // Rows for these files below the temporary folder, all selected.
    void select(const std::vector<std::string>& files) {
        rows.texts.clear();
        for (const std::string& file : files)
            rows.texts.push_back(machine.temp.drive(file));
        rows.flags.assign(files.size(), true);
    }
    std::string restoreFrom(const std::string& folder) {
        return fRestoreSelectedRows(rows, machine.temp.drive(folder), intLoop);
    }

    nvtest::TestMachine machine;
    Rows rows;
    int16_t intLoop = -1;
};

// What an interrupted restore left beside the files it was to replace goes at the next one.
TEST_F(RestoreRun, ARestoreClearsWhatAnInterruptedOneLeftBesideItsFiles) {
    machine.temp.leaveCopyLeftover("Data/Norvale/NV.ini");
    machine.temp.leaveCopyLeftover("Data/Norvale/stockA.NVD");
    machine.temp.leaveCopyLeftover("Data/Extra/NV.ini"); // of no selected row
    EXPECT_EQ(restoreFrom("Flat"), kNotFound);
    EXPECT_EQ(machine.temp.copyLeftovers("Data/Norvale"), 0u);
    EXPECT_EQ(machine.temp.copyLeftovers("Data/Extra"), 1u);
}

TEST_F(RestoreRun, AFlatPassRestoresWhatItFindsAndLeavesTheRestSelected) {
    EXPECT_EQ(restoreFrom("Flat"), kNotFound);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Flat/NV.ini");
    EXPECT_EQ(machine.temp.read("Data/Norvale/stockA.NVD"), "Flat/stockA.NVD");
    EXPECT_EQ(intLoop, 2);

    // The same folder again finds nothing more; with nothing selected it is simply done.
    EXPECT_EQ(restoreFrom("Flat"), kNotFound);
    rows.flags = {false, false, false};
    EXPECT_EQ(restoreFrom("Flat"), kDone);
}

// A flat folder does not tell whose its one NV.ini is; a mirrored backup's subfolder does.
TEST_F(RestoreRun, FilesOfOneNameComeBackOnlyFromTheSubfolderOfTheirOwnFolder) {
    select({"Data\\Norvale\\NV.ini", "Data\\Extra\\NV.ini", "Data\\Norvale\\stockA.NVD"});
    EXPECT_EQ(restoreFrom("Flat"), kSameName);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, false}));
    // The dated folder itself holds no files; its subfolders do.
    EXPECT_EQ(restoreFrom("Mirror"), kNotFound);
    EXPECT_EQ(restoreFrom("Mirror\\extra"), kSameName);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false, false}));
    EXPECT_EQ(machine.temp.read("Data/Extra/NV.ini"), "Mirror/Extra/NV.ini");
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Data/Norvale/NV.ini");

    // The row left selected is still in doubt in the flat folder, though the other row that
    // shares its name is no longer selected; its own subfolder settles it.
    EXPECT_EQ(restoreFrom("Flat"), kSameName);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Data/Norvale/NV.ini");
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false, false}));
    EXPECT_EQ(restoreFrom("Mirror\\Norvale"), kDone);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Mirror/Norvale/NV.ini");

    // The same path twice is one file, which a flat folder holds without doubt.
    select({"Data\\Norvale\\NV.ini", "Data\\Norvale\\NV.ini"});
    EXPECT_EQ(restoreFrom("Flat"), kDone);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Flat/NV.ini");
}

TEST_F(RestoreRun, AFailingCopyStopsAtItsRowWithTheRowsBeforeItDone) {
    rows.texts[1] = machine.temp.drive("Data\\Missing\\stockA.NVD");
    try {
        restoreFrom("Flat");
        FAIL() << "the copy into a missing folder should fail";
    } catch (const FileFailure& failure) {
        EXPECT_EQ(failure.Number, 76);
    }
    EXPECT_EQ(intLoop, 1);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
    EXPECT_EQ(fWizardFailureText("Pad niet gevonden", 5, intLoop),
              "Het terugzetten van de bestanden is niet (volledig) gelukt omdat er een fout is "
              "ontstaan met de volgende omschrijving:\r\nPad niet gevonden\r\nDeze is opgetreden "
              "in stap 5 en in substap 1. Geef dit eventueel door aan de leverancier");

    rows.texts = {""};
    rows.flags = {true};
    EXPECT_THROW(restoreFrom("Flat"), FileFailure);
}

// A production disk that gives back other bytes than it was given: the file it was to replace
// stays as it was, and the run stops there as at any failing copy.
TEST_F(RestoreRun, ACopyThatReadsBackOtherwiseLeavesTheProductionFileAsItWas) {
    machine.temp.write("Flat/stockA.NVD", std::string(200000, 's'));
    nvtest::FaultyMedium medium;
    medium.fault = [](const std::vector<StagedCopy>& copies) {
        for (const StagedCopy& copy : copies)
            if (copy.destination.ends_with("stockA.NVD"))
                nvtest::FaultyMedium::flipByte(copy.temporary, 5000);
    };
    ScopedPlatformPart<FileSystem> useMedium{&Platform::files, &medium};
    try {
        restoreFrom("Flat");
        FAIL() << "the copy that read back otherwise should fail";
    } catch (const FileFailure& failure) {
        EXPECT_EQ(failure.Number, 80);
        EXPECT_EQ(failure.Description,
                  "Het bestand " + rows.texts[1] +
                      " is niet vervangen: de schijf gaf bij het teruglezen andere gegevens "
                      "terug dan erop geschreven zijn");
    }
    EXPECT_EQ(intLoop, 1);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Flat/NV.ini");
    EXPECT_EQ(machine.temp.read("Data/Norvale/stockA.NVD"), "Data/Norvale/stockA.NVD");
    // No temporary of the refused copy stays beside the production files.
    std::vector<std::string> left;
    for (const auto& entry :
         std::filesystem::directory_iterator(machine.temp.native("Data/Norvale")))
        left.push_back(entry.path().filename().string());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"NV.ini", "stockA.NVD"}));
}

} // namespace
