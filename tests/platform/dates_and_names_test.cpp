#include "platform/CaseFold.h"
#include "platform/DateText.h"
#include "platform/FileSystem.h"
#include "platform/Wildcard.h"

#include <gtest/gtest.h>

using namespace nv;

TEST(DateText, TheSettingsDateSurvivesTheRoundTripAndOtherFormsAreRead) {
    const Date d = dateFromCivil({2026, 11, 17});
    EXPECT_EQ(shortDateText(d), "17-11-2026");
    EXPECT_EQ(isoDateText(d), "2026-11-17");
    EXPECT_EQ(parseShortDate("29-2-2028"), dateFromCivil({2028, 2, 29}));
    EXPECT_EQ(parseShortDate("05-mrt-2026"), dateFromCivil({2026, 3, 5}));
    // What other tools and hands leave: the display form, and a moment with its time of day.
    for (const char* same :
         {"17-11-2026", "17/11/2026", "2026-11-17", "17-NOV-2026", "17 november 2026",
          "17-11-2026 14:30:59", "2026-11-17T08:05:00", " 17-11-2026 "})
        EXPECT_EQ(parseShortDate(same), d) << same;
    for (const char* bad : {"", "31-02-2026", "17-13-2026", "17-11-26", "17-11-2026x", "17-11/2026",
                            "17-mar-2026", "17-11-2026 25:00", "17-11-2026 14:30 uur"})
        EXPECT_FALSE(parseShortDate(bad).has_value()) << bad;
}

// The plain wildcards are tried through the file systems (files_test.cpp); here the letters
// beyond ASCII, which a name from an old stick or in Dutch may hold.
TEST(Wildcards, FoldCaseBeyondAscii) {
    EXPECT_TRUE(wildcardMatch("kopiëren.TXT", "KOPIËREN.txt"));
    // A byte that is no UTF-8 stands for its Latin-1 letter, as a name from an old stick does.
    EXPECT_EQ(upperCase("ÿ-x\xE9"), "Ÿ-X\xC3\x89");
}

TEST(CopyTemporaries, TellTheProcessThatWroteThem) {
    const std::pair<std::string, unsigned long> names[] = {
        {".NV.ini.nvtmp-4242-0", 4242}, {".Notulen 10.nvtmp-1.txt.nvtmp-17-123", 17},
        {"NV.ini.nvtmp-4242-0", 0},     {".NV.ini.nvtmp-4242", 0},
        {".NV.ini.nvtmp-42a-0", 0},     {".NV.ini.nvtmp-1234567890-0", 0},
    };
    for (const auto& [name, writer] : names)
        EXPECT_EQ(nv::copyTemporaryWriter(name), writer) << name;
}
