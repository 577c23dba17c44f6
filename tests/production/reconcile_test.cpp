#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace nv;
using nvtest::crlf;

namespace {

const std::string kFolder = "C:\\Users\\user1\\AppData\\Roaming\\Norvale\\";

class ReconcileTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (int row = 0; row <= 10; ++row)
            AppSettings.strKnownFiles[static_cast<std::size_t>(row)] = fKnownFileName(row);
        ini = machine.temp.drive("NVbackuptool.ini");
    }

    std::vector<std::string> rows() {
        std::vector<std::string> out;
        long count = std::stol(fReadIni(ini, "Basic settings", "AantalFiles", "-1"));
        for (long n = 1; n <= count; ++n)
            out.push_back(fReadIni(ini, "Backupfiles", rowKey(static_cast<int>(n)), "<missing>"));
        return out;
    }

    nvtest::TestMachine machine;
    std::string ini;
};

TEST_F(ReconcileTest, AnOldListIsCorrectedCompletedAndCleared) {
    machine.temp.write("NVbackuptool.ini",
                       crlf("[Basic settings]\nAantalFiles=4\n[Backupfiles]\n"
                            "BackUpfile1=C:\\Program Files\\Norvale\\NV_Ledger01.mdb\n"
                            "BackUpfile2=C:\\Program Files\\Norvale\\stockA.NVD\n"
                            "BackUpfile3=D:\\Letters\\offer.doc\n"
                            "BackUpfile4=C:\\Program Files\\Norvale\\NV.ini\n"));
    subReconcileBackupList(kFolder, ini);
    std::vector<std::string> expected = {kFolder + "NV_Ledger01.mdb",  "D:\\Letters\\offer.doc",
                                         kFolder + "NV.ini",           kFolder + "NV_Lists97.mdb",
                                         kFolder + "panels.ini",       kFolder + "NV_Entity.NVD",
                                         kFolder + "NVbackuptool.ini", kFolder + "Nota.ini",
                                         kFolder + "Refresh.ini",      kFolder + "NV_stock.NVD"};
    EXPECT_EQ(rows(), expected);

    // A second pass over a sound list changes nothing in the file.
    const std::string before = machine.temp.read("NVbackuptool.ini");
    subReconcileBackupList(kFolder, ini);
    EXPECT_EQ(machine.temp.read("NVbackuptool.ini"), before);
}

TEST_F(ReconcileTest, AFirstStartWritesTheNineRows) {
    subReconcileBackupList(kFolder, ini);
    std::string expected = "[Basic settings]\nAantalFiles=9\n[Backupfiles]\n";
    int n = 1;
    for (int row : {0, 1, 2, 3, 4, 5, 6, 7, 10})
        expected += "BackUpfile" + std::to_string(n++) + "=" + kFolder + fKnownFileName(row) + "\n";
    EXPECT_EQ(machine.temp.read("NVbackuptool.ini"), crlf(expected));
}

TEST_F(ReconcileTest, OddRowsAreMatchedByNameAloneAndEmptyRowsStay) {
    // Known names in other folders and other letters, a folder row with a trailing backslash,
    // an empty row, and both old-style files with the second one last.
    machine.temp.write("NVbackuptool.ini", crlf("[Basic settings]\nAantalFiles=7\n[Backupfiles]\n"
                                                "BackUpfile1=E:\\elders\\nv_ledger01.MDB\n"
                                                "BackUpfile2=C:\\Oud\\stockB.NVD\n"
                                                "BackUpfile3=\n"
                                                "BackUpfile4=C:\\Data\\Map\\\n"
                                                "BackUpfile5=" +
                                                kFolder +
                                                "NV_LISTS97.MDB\n"
                                                "BackUpfile6=C:\\Oud\\stockA.NVD\n"
                                                "BackUpfile7=C:\\Oud\\stockB.NVD\n"));
    subReconcileBackupList(kFolder, ini);
    // stockA goes first; then stockB is searched in the shorter list and its first row goes;
    // the row with the trailing backslash is written without it when it moves.
    std::vector<std::string> expected = {kFolder + "NV_Ledger01.mdb",
                                         "",
                                         "C:\\Data\\Map",
                                         kFolder + "NV_LISTS97.MDB",
                                         "C:\\Oud\\stockB.NVD",
                                         kFolder + "panels.ini",
                                         kFolder + "NV_Entity.NVD",
                                         kFolder + "NVbackuptool.ini",
                                         kFolder + "Nota.ini",
                                         kFolder + "NV.ini",
                                         kFolder + "Refresh.ini",
                                         kFolder + "NV_stock.NVD"};
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(fReadIni(ini, "Backupfiles", "BackUpfile13", "<missing>"), "");
}

TEST_F(ReconcileTest, ADamagedCountCountsAsAnEmptyList) {
    for (const char* count : {"abc", "-5", "99999999999"}) {
        machine.temp.write("NVbackuptool.ini",
                           crlf(std::string("[Basic settings]\nAantalFiles=") + count + "\n"));
        subReconcileBackupList(kFolder, ini);
        EXPECT_EQ(rows().size(), 9u) << count;
    }
}

} // namespace
