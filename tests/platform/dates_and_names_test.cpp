#include "platform/CaseFold.h"
#include "platform/DateText.h"
#include "platform/Wildcard.h"

#include <gtest/gtest.h>

using namespace nv;

TEST(DateText, TheSettingsDateSurvivesTheRoundTripAndOtherFormsAreRead) {
    Date d = dateFromCivil({2026, 11, 17});
    EXPECT_EQ(shortDateText(d), "17-11-2026");
    EXPECT_EQ(isoDateText(d), "2026-11-17");
    EXPECT_EQ(parseShortDate("17-11-2026"), d);
    EXPECT_EQ(parseShortDate("17/11/2026"), d);
    EXPECT_EQ(parseShortDate("2026-11-17"), d);
    EXPECT_EQ(parseShortDate("1-2-2027"), dateFromCivil({2027, 2, 1}));
    EXPECT_EQ(parseShortDate("29-02-2028"), dateFromCivil({2028, 2, 29}));
    for (const char* bad : {"", "gisteren", "31-02-2026", "17-13-2026", "17-11-26", "17-11-2026x",
                            " 17-11-2026", "17-11/2026", "2026/11/17"})
        EXPECT_FALSE(parseShortDate(bad).has_value()) << bad;
}

// The plain wildcards are tried through the file systems (files_test.cpp); here the letters
// beyond ASCII, which a name from an old stick or in Dutch may hold.
TEST(Wildcards, FoldCaseBeyondAscii) {
    EXPECT_TRUE(wildcardMatch("kopiëren.TXT", "KOPIËREN.txt"));
    EXPECT_EQ(upperCase("Backupé"), "BACKUPÉ");
    // A byte that is no UTF-8 stands for its Latin-1 letter, as a name from an old stick does.
    EXPECT_EQ(upperCase("ÿ-x\xE9"), "Ÿ-X\xC3\x89");
}
