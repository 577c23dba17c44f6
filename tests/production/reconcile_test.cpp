#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;
using nvtest::crlf;

namespace {

const std::string kFolder = "C:\\Users\\user1\\AppData\\Roaming\\Norvale\\";

// Bare names stand for files in the production folder.
std::vector<std::string> inFolder(std::vector<std::string> rows) {
    for (std::string& row : rows)
        if (!row.empty() && row.find('\\') == std::string::npos)
            row = kFolder + row;
    return rows;
}

class ReconcileTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (int row = 0; row <= 10; ++row)
            AppSettings.strKnownFiles[static_cast<std::size_t>(row)] = fKnownFileName(row);
        ini = machine.temp.drive("NVbackuptool.ini");
    }
    void writeList(const std::vector<std::string>& rows) {
        std::string text =
            "[Basic settings]\nAantalFiles=" + std::to_string(rows.size()) + "\n[Backupfiles]\n";
        for (std::size_t n = 0; n < rows.size(); ++n)
            text += rowKey(static_cast<int>(n + 1)) + "=" + rows[n] + "\n";
        machine.temp.write("NVbackuptool.ini", crlf(text));
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
    writeList({"C:\\Program Files\\Norvale\\NV_Ledger01.mdb",
               "C:\\Program Files\\Norvale\\stockA.NVD", "D:\\Letters\\offer.doc",
               "C:\\Program Files\\Norvale\\NV.ini"});
    subReconcileBackupList(kFolder, ini);
    EXPECT_EQ(rows(), inFolder({"NV_Ledger01.mdb", "D:\\Letters\\offer.doc", "NV.ini",
                                "NV_Lists97.mdb", "panels.ini", "NV_Entity.NVD", "NVbackuptool.ini",
                                "Nota.ini", "Refresh.ini", "NV_stock.NVD"}));
}

TEST_F(ReconcileTest, OddRowsAreMatchedByNameAloneAndEmptyRowsStay) {
    // Known names in other folders and other letters, a folder row with a trailing backslash,
    // an empty row, and both old-style files with the second one last.
    writeList({"E:\\elders\\nv_ledger01.MDB", "C:\\Oud\\stockB.NVD", "", "C:\\Data\\Map\\",
               kFolder + "NV_LISTS97.MDB", "C:\\Oud\\stockA.NVD", "C:\\Oud\\stockB.NVD"});
    subReconcileBackupList(kFolder, ini);
    // stockA goes first; then stockB is searched in the shorter list and its first row goes;
    // the row with the trailing backslash is written without it when it moves.
    EXPECT_EQ(rows(),
              inFolder({"NV_Ledger01.mdb", "", "C:\\Data\\Map", "NV_LISTS97.MDB",
                        "C:\\Oud\\stockB.NVD", "panels.ini", "NV_Entity.NVD", "NVbackuptool.ini",
                        "Nota.ini", "NV.ini", "Refresh.ini", "NV_stock.NVD"}));
    EXPECT_EQ(fReadIni(ini, "Backupfiles", "BackUpfile13", "<missing>"), "");
}

} // namespace
