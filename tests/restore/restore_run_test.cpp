#include "platform/FileFailure.h"
#include "restore/Glide.h"
#include "restore/RestoreRun.h"
#include "support/TestMachine.h"

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

// Production files in Data/Norvale and Data/Extra, and a flat and a mirrored backup of them.
class RestoreRun : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Data/Norvale/NV.ini", "now");
        machine.temp.write("Data/Norvale/stockA.NVD", "now");
        machine.temp.write("Data/Extra/NV.ini", "extra now");
        machine.temp.write("Flat/NV.ini", "flat backup");
        machine.temp.write("Flat/stockA.NVD", "flat stock");
        machine.temp.write("Mirror/Norvale/NV.ini", "mirror norvale");
        machine.temp.write("Mirror/Extra/NV.ini", "mirror extra");
        rows.texts = {machine.temp.drive("Data\\Norvale\\NV.ini"),
                      machine.temp.drive("Data\\Norvale\\stockA.NVD"),
                      machine.temp.drive("Data\\Norvale\\Gone.txt")};
        rows.flags = {true, true, true};
    }
    nvtest::TestMachine machine;
    Rows rows;
    int16_t intLoop = -1;
};

TEST_F(RestoreRun, AFlatPassRestoresWhatItFindsAndLeavesTheRestSelected) {
    std::string caption = fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop);
    EXPECT_EQ(caption, kDone + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "flat backup");
    EXPECT_EQ(machine.temp.read("Data/Norvale/stockA.NVD"), "flat stock");
    EXPECT_EQ(intLoop, 2);

    // The same folder again finds nothing more, and says so once.
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop),
              kDone + kRestoreNotFoundText);
    rows.flags = {false, false, false};
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop), kDone);
}

TEST_F(RestoreRun, AMirroredBackupComesBackOneSubfolderAPass) {
    rows.texts = {machine.temp.drive("Data\\Norvale\\NV.ini"),
                  machine.temp.drive("Data\\Extra\\NV.ini")};
    rows.flags = {true, true};
    // The dated folder itself holds no files; its subfolders do.
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Mirror"), intLoop),
              kDone + kRestoreNotFoundText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true}));

    // The other row's name stands in this subfolder too, but it is not its own.
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Mirror\\Extra"), intLoop),
              kDone + kRestoreSameNameText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, false}));
    EXPECT_EQ(machine.temp.read("Data/Extra/NV.ini"), "mirror extra");
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "now");

    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Mirror\\norvale"), intLoop), kDone);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "mirror norvale");
}

TEST_F(RestoreRun, TwoFilesOfOneNameNeverBothTakeTheOneFileOfAFlatFolder) {
    rows.texts = {machine.temp.drive("Data\\Norvale\\NV.ini"),
                  machine.temp.drive("Data\\Extra\\NV.ini"),
                  machine.temp.drive("Data\\Norvale\\stockA.NVD")};
    rows.flags = {true, true, true};
    std::string caption = fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop);
    EXPECT_EQ(caption, kDone + kRestoreSameNameText);
    EXPECT_EQ(rows.flags, (std::vector<bool>{true, true, false}));
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "now");
    EXPECT_EQ(machine.temp.read("Data/Extra/NV.ini"), "extra now");

    // One of them alone is no longer in doubt.
    rows.flags = {true, false, false};
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop), kDone);
    EXPECT_EQ(machine.temp.read("Data/Norvale/NV.ini"), "flat backup");

    // The same path twice is one file.
    rows.texts = {rows.texts[0], rows.texts[0]};
    rows.flags = {true, true};
    EXPECT_EQ(fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop), kDone);
}

TEST_F(RestoreRun, AFailingCopyStopsAtItsRowWithTheRowsBeforeItDone) {
    rows.texts[1] = machine.temp.drive("Data\\Missing\\stockA.NVD");
    try {
        fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop);
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
    EXPECT_THROW(fRestoreSelectedRows(rows, machine.temp.drive("Flat"), intLoop), FileFailure);
}

TEST(Glide, StepsRoundHalfToEvenAndLeaveTheRestForTheLastJump) {
    EXPECT_EQ(fGlideStep(-9240), -9);
    EXPECT_EQ(fGlideStep(2160), 2);
    EXPECT_EQ(fGlideStep(500), 0);
    EXPECT_EQ(fGlideStep(1500), 2);
    EXPECT_EQ(fGlideStep(2500), 2);
    EXPECT_EQ(fGlideStep(-2500), -2);
    EXPECT_EQ(fGlideStep(-3500), -4);
    EXPECT_EQ(fRoundHalfEven(40000.0), 32767);
}

} // namespace
