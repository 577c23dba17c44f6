#include "restore/RestoreRun.h"
#include "support/FaultyMedium.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

#include <gtest/gtest.h>

using namespace nv;
using namespace nvtest;

namespace {

const std::string kDone = "Het terugzetten van de bestanden is gereed. \r\n";
const std::string kNotFound = kDone + kRestoreNotFoundText;

// Production files in Norvale/ and Extra/, each holding its own path, and a flat and a mirrored
// backup of them.
class RestoreRun : public ::testing::Test {
protected:
    RestoreRun() {
        for (const char* file : {"Norvale/NV.ini", "Norvale/stockA.NVD", "Extra/NV.ini"})
            machine.temp.write(file, file);
        stick.backupFolder("Flat", {"NV.ini", "stockA.NVD"});
        stick.backupFolder("Mirror", {"Norvale/NV.ini", "Extra/NV.ini"});
    }
    // Selects these files below the temporary folder, when given, and restores from a folder.
    std::string restore(const std::string& folder, std::vector<std::string> files = {}) {
        for (std::string& file : files)
            file = machine.temp.drive(file);
        if (!files.empty())
            rows.select(files);
        return fRestoreSelectedRows(rows, stick.drive() + "\\" + folder, intLoop);
    }
    std::string read(const std::string& file) { return machine.temp.read(file); }

    TestMachine machine;
    TestStick stick{machine.temp};
    RestoreRows rows;
    int16_t intLoop = -1;
};

TEST_F(RestoreRun, AFlatPassRestoresWhatItFindsAndLeavesTheRestSelected) {
    EXPECT_EQ(restore("Flat", {"Norvale/NV.ini", "Norvale/stockA.NVD", "Norvale/Gone.txt"}),
              kNotFound);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(read("Norvale/NV.ini"), "Flat/NV.ini");
    EXPECT_EQ(read("Norvale/stockA.NVD"), "Flat/stockA.NVD");
    EXPECT_EQ(intLoop, 2);
    rows.flags = {false, false, false};
    EXPECT_EQ(restore("Flat"), kDone);
}

// Two rows of one bare name come back only from a folder named after their own (a mirrored
// backup's subfolder); one path twice is one file.
TEST_F(RestoreRun, FilesOfOneNameComeBackOnlyFromTheSubfolderOfTheirOwnFolder) {
    EXPECT_EQ(restore("Mirror", {"Norvale/NV.ini", "Extra/NV.ini"}), kNotFound);
    EXPECT_EQ(restore("Mirror\\extra"), kDone + kRestoreSameNameText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false}));
    EXPECT_EQ(read("Norvale/NV.ini"), "Norvale/NV.ini");
    EXPECT_EQ(read("Extra/NV.ini"), "Mirror/Extra/NV.ini");
    EXPECT_EQ(restore("Flat", {"Norvale/NV.ini", "Norvale/NV.ini"}), kDone);
    EXPECT_EQ(read("Norvale/NV.ini"), "Flat/NV.ini");
}

// A copy that fails, also one the production disk gives back otherwise, stops the run at its row
// with the rows before it done; the file it was to replace stays as it was. What an interrupted
// restore left beside the files it is to replace goes first, and this one leaves nothing.
TEST_F(RestoreRun, AFailingCopyStopsAtItsRowWithTheRowsBeforeItDone) {
    machine.temp.leaveCopyLeftover("Norvale/NV.ini");
    machine.temp.leaveCopyLeftover("Extra/NV.ini"); // of no selected row
    std::ofstream(stick.native("Flat/stockA.NVD"), std::ios::binary) << std::string(200000, 's');
    FaultyMedium medium;
    ScopedPlatformPart<FileSystem> useMedium{&Platform::files, &medium};
    medium.fault = [](const std::vector<StagedCopy>& copies) {
        if (copies.back().destination.ends_with("stockA.NVD"))
            FaultyMedium::flipByte(copies.back().temporary, 5000);
    };
    const std::pair<std::string, std::string> cases[] = {
        {"Missing/stockA.NVD", "76 Pad niet gevonden"},
        {"Norvale/stockA.NVD", "80 Het bestand " + machine.temp.drive("Norvale/stockA.NVD") +
                                   " is niet vervangen: de schijf gaf bij het teruglezen andere "
                                   "gegevens terug dan erop geschreven zijn"},
    };
    for (const auto& [row, text] : cases) {
        std::string failure;
        try {
            restore("Flat", {"Norvale/NV.ini", row, "Norvale/Gone.txt"});
        } catch (const FileFailure& thrown) {
            failure = std::to_string(thrown.Number) + " " + thrown.Description;
        }
        EXPECT_EQ(failure, text);
        EXPECT_EQ(intLoop, 1);
        EXPECT_EQ(rows.flags, (std::vector<bool>{false, true, true}));
        EXPECT_EQ(read("Norvale/NV.ini"), "Flat/NV.ini");
        EXPECT_EQ(read("Norvale/stockA.NVD"), "Norvale/stockA.NVD");
        EXPECT_EQ(machine.temp.copyLeftovers("Norvale"), 0u);
    }
    EXPECT_EQ(machine.temp.copyLeftovers("Extra"), 1u);
}

} // namespace
