#pragma once

#include "platform/Clock.h"

#include <optional>
#include <string>

namespace nv {

struct CivilDate {
    int year;
    int month; // 1..12
    int day;   // 1..31
};

CivilDate civilFromDate(Date date);
Date dateFromCivil(const CivilDate& civil);

// The short date of the settings file: dd-mm-yyyy.
std::string shortDateText(Date date);
// Reads dd-mm-yyyy, d-m-yyyy, dd/mm/yyyy and yyyy-mm-dd, the display form dd-mmm-yyyy with a
// Dutch month name, each with or without a time of day behind it; nothing for text that is no
// date.
std::optional<Date> parseShortDate(const std::string& text);
// dd-mmm-yyyy with the Dutch short month name, as in 17-nov-2026.
std::string mediumDateText(Date date);
// HH:mm of a moment, as a clock on the screen shows it.
std::string shortTimeText(Moment moment);
// The date a moment falls on.
Date dateOf(Moment moment);
// yyyy-mm-dd, as in the names of backup folders.
std::string isoDateText(Date date);

} // namespace nv
