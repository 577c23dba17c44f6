#include "mainwindow/StatusTexts.h"
#include "platform/DateText.h"

#include <gtest/gtest.h>

using namespace nv;

// Plain days without a singular, across a year's end too; no date known claims no backup, least
// of all one of today.
TEST(StatusTexts, TheLastBackupLine) {
    const Date today = dateFromCivil({2026, 11, 17});
    const std::string line = "Laatste backup gemaakt op: ";
    EXPECT_EQ(fLastBackupText(today, dateFromCivil({2026, 3, 5})),
              line + "05-mrt-2026 (257 dagen geleden)");
    EXPECT_EQ(fLastBackupText(dateFromCivil({2027, 1, 2}), dateFromCivil({2026, 12, 31})),
              line + "31-dec-2026 (2 dagen geleden)");
    EXPECT_EQ(fLastBackupText(today, std::nullopt), line + "onbekend");
}
