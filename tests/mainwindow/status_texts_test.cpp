#include "mainwindow/StatusTexts.h"
#include "platform/DateText.h"

#include <gtest/gtest.h>

using namespace nv;

TEST(StatusTexts, LastBackupLineCountsDaysWithoutASingularAndKeepsTheSignOfTheFuture) {
    const Date today = dateFromCivil({2026, 11, 17});
    EXPECT_EQ(fLastBackupText(today, dateFromCivil({2026, 3, 5})),
              "Laatste backup gemaakt op: 05-mrt-2026 (257 dagen geleden)");
    EXPECT_EQ(fLastBackupText(today, today + 2),
              "Laatste backup gemaakt op: 19-nov-2026 (-2 dagen geleden)");
    // Across a year's end the count stays plain days.
    EXPECT_EQ(fLastBackupText(dateFromCivil({2027, 1, 2}), dateFromCivil({2026, 12, 31})),
              "Laatste backup gemaakt op: 31-dec-2026 (2 dagen geleden)");
    // No date known claims no backup, least of all one of today.
    EXPECT_EQ(fLastBackupText(today, std::nullopt), "Laatste backup gemaakt op: onbekend");
}

TEST(StatusTexts, MonthsHaveTheirDutchShortNamesAndTimesTheirMinutes) {
    std::string names;
    for (int month = 1; month <= 12; ++month)
        names += mediumDateText(dateFromCivil({2026, month, 1})).substr(3, 3) + " ";
    EXPECT_EQ(names, "jan feb mrt apr mei jun jul aug sep okt nov dec ");
    EXPECT_EQ(shortTimeText(dateFromCivil({2026, 11, 17}) * kMsPerDay + 9 * 3'600'000 + 5 * 60'000 +
                            59'999),
              "09:05");
}
