#include "platform/FileFailure.h"
#include "restore/RestoreRun.h"
#include "support/FaultyMedium.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

using namespace nv;

namespace {

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";
const std::string kNotFound = kDone + kRestoreNotFoundText;
const std::string kSameName = kDone + kRestoreSameNameText;

// Production files in Data/Norvale and Data/Extra, and a flat and a mirrored backup of them.
class RestoreRun : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* file :
             {"Data/Norvale/NV.ini", "Data/Norvale/stockA.NVD", "Data/Extra/NV.ini"})
            machine.temp.write(file, file);
        stick.backupFolder("Flat", {"NV.ini", "stockA.NVD"});
        stick.backupFolder("Mirror", {"Norvale/NV.ini", "Extra/NV.ini"});
        select({"Data\\Norvale\\NV.ini", "Data\\Norvale\\stockA.NVD", "Data\\Norvale\\Gone.txt"});
    }
    void select(std::vector<std::string> files) {
        for (std::string& file : files)
            file = machine.temp.drive(file);
        rows.select(files);
    }
    std::string restoreFrom(const std::string& folder) {
        return fRestoreSelectedRows(rows, stick.drive() + "\\" + folder, intLoop);
    }

    nvtest::TestMachine machine;
    nvtest::TestStick stick{machine.temp};
    nvtest::RestoreRows rows;
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

// Which of two files of one name a folder holds is tried through the wizard; here what is left:
// a mirrored backup's dated folder holds no files itself, and one path twice is one file.
TEST_F(RestoreRun, FilesOfOneNameComeBackOnlyFromTheSubfolderOfTheirOwnFolder) {
    select({"Data\\Norvale\\NV.ini", "Data\\Extra\\NV.ini"});
    EXPECT_EQ(restoreFrom("Mirror"), kNotFound);
    EXPECT_EQ(restoreFrom("Mirror\\extra"), kSameName);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false}));
    EXPECT_EQ(machine.temp.read("Data/Extra/NV.ini"), "Mirror/Extra/NV.ini");

    select({"Data\\Norvale\\NV.ini", "Data\\Norvale\\NV.ini"});
    EXPECT_EQ(restoreFrom("Flat"), kDone);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Flat/NV.ini");
}

// A copy that fails, also one the production disk gives back otherwise, stops the run at its row
// with the rows before it done; the file it was to replace stays as it was, with no temporary.
TEST_F(RestoreRun, AFailingCopyStopsAtItsRowWithTheRowsBeforeItDone) {
    std::ofstream(stick.native("Flat/stockA.NVD"), std::ios::binary) << std::string(200000, 's');
    nvtest::FaultyMedium medium;
    ScopedPlatformPart<FileSystem> useMedium{&Platform::files, &medium};
    const struct {
        std::string row;
        int32_t number;
        std::string text;
    } cases[] = {
        {"Data\\Missing\\stockA.NVD", kFailPathNotFound, "Pad niet gevonden"},
        {"Data\\Norvale\\stockA.NVD", kFailReadBack,
         "Het bestand " + machine.temp.drive("Data\\Norvale\\stockA.NVD") +
             " is niet vervangen: de schijf gaf bij het teruglezen andere gegevens terug dan erop "
             "geschreven zijn"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.row);
        select({"Data\\Norvale\\NV.ini", c.row, "Data\\Norvale\\Gone.txt"});
        medium.fault = [](const std::vector<StagedCopy>& copies) {
            for (const StagedCopy& copy : copies)
                if (copy.destination.ends_with("stockA.NVD"))
                    nvtest::FaultyMedium::flipByte(copy.temporary, 5000);
        };
        std::optional<FileFailure> failure;
        try {
            restoreFrom("Flat");
        } catch (const FileFailure& thrown) {
            failure = thrown;
        }
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->Number, c.number);
        EXPECT_EQ(failure->Description, c.text);
        EXPECT_EQ(intLoop, 1);
        EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
        EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "Flat/NV.ini");
        EXPECT_EQ(machine.temp.read("Data/Norvale/stockA.NVD"), "Data/Norvale/stockA.NVD");
        std::vector<std::string> left;
        for (const auto& entry :
             std::filesystem::directory_iterator(machine.temp.native("Data/Norvale")))
            left.push_back(entry.path().filename().string());
        std::sort(left.begin(), left.end());
        EXPECT_EQ(left, (std::vector<std::string>{"NV.ini", "stockA.NVD"}));
    }

    rows.select({""});
    EXPECT_THROW(restoreFrom("Flat"), FileFailure);
}

} // namespace
