#include "mainwindow/StatusTexts.h"
#include "platform/DateText.h"

#include <gtest/gtest.h>

using namespace nv;

// Plain days without a singular, across a year's end too, and the sign of a date in the future
// kept; no date known claims no backup, least of all one of today.
TEST(StatusTexts, TheLastBackupLineAndTheDutchMonthsAndMinutes) {
    const Date today = dateFromCivil({2026, 11, 17});
    const std::string line = "Laatste backup gemaakt op: ";
    EXPECT_EQ(fLastBackupText(today, dateFromCivil({2026, 3, 5})),
              line + "05-mrt-2026 (257 dagen geleden)");
    EXPECT_EQ(fLastBackupText(today, today + 2), line + "19-nov-2026 (-2 dagen geleden)");
    EXPECT_EQ(fLastBackupText(dateFromCivil({2027, 1, 2}), dateFromCivil({2026, 12, 31})),
              line + "31-dec-2026 (2 dagen geleden)");
    EXPECT_EQ(fLastBackupText(today, std::nullopt), line + "onbekend");

    std::string names;
    for (int month = 1; month <= 12; ++month)
        names += mediumDateText(dateFromCivil({2026, month, 1})).substr(3, 3) + " ";
    EXPECT_EQ(names, "jan feb mrt apr mei jun jul aug sep okt nov dec ");
    EXPECT_EQ(shortTimeText(today * kMsPerDay + 9 * 3'600'000 + 5 * 60'000 + 59'999), "09:05");
}
