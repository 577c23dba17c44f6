// A source that another program holds, over a file layer that refuses it on cue.

#include "backup/BackupRunFixture.h"
#include "support/ExpectBox.h"

using namespace nv;
using namespace nvtest;

namespace {

class HeldSource : public FaultyMedium {
public:
    std::optional<StagedCopy> stageCopy(const std::string& from, const std::string& to) override {
        if (from == held)
            throw fileFailure(kFailSourceInUse);
        return FaultyMedium::stageCopy(from, to);
    }
    std::string held;
};

class FileInUseRun : public BackupRunFixture {};

TEST_F(FileInUseRun, AHeldSourceIsToldAndTheRunGoesOnFlawed) {
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
    EXPECT_EQ(AppSettings.LastBackup, machine.clock.date);
}

} // namespace
