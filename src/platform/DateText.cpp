#include "platform/DateText.h"

#include "platform/CaseFold.h"

#include <chrono>
#include <cstdio>

namespace nv {

namespace {
namespace ch = std::chrono;

bool validCivil(int year, int month, int day) {
    ch::year_month_day ymd{ch::year{year}, ch::month{static_cast<unsigned>(month)},
                           ch::day{static_cast<unsigned>(day)}};
    return year >= 100 && year <= 9999 && ymd.ok();
}

const char* const kMonths[] = {"jan", "feb", "mrt", "apr", "mei", "jun",
                               "jul", "aug", "sep", "okt", "nov", "dec"};

// Reads an unsigned number of 1 to maxDigits digits at pos.
bool readNumber(const std::string& text, std::size_t& pos, std::size_t maxDigits, int& out) {
    std::size_t start = pos;
    out = 0;
    while (pos < text.size() && pos - start < maxDigits && text[pos] >= '0' && text[pos] <= '9')
        out = out * 10 + (text[pos++] - '0');
    return pos > start;
}
} // namespace

CivilDate civilFromDate(Date date) {
    ch::year_month_day ymd{ch::sys_days{ch::days{date}}};
    return {static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
            static_cast<int>(static_cast<unsigned>(ymd.day()))};
}

Date dateFromCivil(const CivilDate& civil) {
    ch::year_month_day ymd{ch::year{civil.year}, ch::month{static_cast<unsigned>(civil.month)},
                           ch::day{static_cast<unsigned>(civil.day)}};
    return static_cast<Date>(ch::sys_days{ymd}.time_since_epoch().count());
}

std::string shortDateText(Date date) {
    CivilDate c = civilFromDate(date);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02d-%02d-%04d", c.day, c.month, c.year);
    return buffer;
}

std::string mediumDateText(Date date) {
    CivilDate c = civilFromDate(date);
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "%02d-%s-%04d", c.day, kMonths[c.month - 1], c.year);
    return buffer;
}

std::string shortTimeText(Moment moment) {
    Moment ofDay = moment % kMsPerDay;
    if (ofDay < 0)
        ofDay += kMsPerDay;
    int minutes = static_cast<int>(ofDay / 60'000);
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02d:%02d", minutes / 60, minutes % 60);
    return buffer;
}

Date dateOf(Moment moment) {
    return static_cast<Date>(moment >= 0 ? moment / kMsPerDay
                                         : (moment - kMsPerDay + 1) / kMsPerDay);
}

std::string isoDateText(Date date) {
    CivilDate c = civilFromDate(date);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", c.year, c.month, c.day);
    return buffer;
}

namespace {

const char* const kMonthNames[] = {"januari",   "februari", "maart",    "april",
                                   "mei",       "juni",     "juli",     "augustus",
                                   "september", "oktober",  "november", "december"};

// Numbers only: dd-mm-yyyy, d-m-yyyy, dd/mm/yyyy, yyyy-mm-dd.
std::optional<CivilDate> numericDate(const std::string& text) {
    std::size_t pos = 0;
    int a = 0, b = 0, c = 0;
    if (!readNumber(text, pos, 4, a) || pos >= text.size())
        return std::nullopt;
    std::size_t firstLength = pos;
    char separator = text[pos++];
    if (separator != '-' && separator != '/')
        return std::nullopt;
    if (!readNumber(text, pos, 2, b) || pos >= text.size() || text[pos++] != separator)
        return std::nullopt;
    if (!readNumber(text, pos, 4, c) || pos != text.size())
        return std::nullopt;
    if (firstLength == 4 && separator == '-')
        return CivilDate{a, b, c}; // yyyy-mm-dd
    if (firstLength <= 2 && text.size() - (text.rfind(separator) + 1) == 4)
        return CivilDate{c, b, a};
    return std::nullopt;
}

// The display form: 17-nov-2026, with the Dutch month's short or full name in any case.
std::optional<CivilDate> namedMonthDate(const std::string& text) {
    std::size_t pos = 0;
    int day = 0, year = 0;
    if (!readNumber(text, pos, 2, day) || pos >= text.size())
        return std::nullopt;
    char separator = text[pos++];
    if (separator != '-' && separator != ' ')
        return std::nullopt;
    std::size_t end = text.find(separator, pos);
    if (end == std::string::npos)
        return std::nullopt;
    const std::string name = text.substr(pos, end - pos);
    int month = 0;
    for (int m = 0; m < 12 && month == 0; ++m)
        if (equalsIgnoringCase(name, kMonths[m]) || equalsIgnoringCase(name, kMonthNames[m]))
            month = m + 1;
    pos = end + 1;
    if (month == 0 || !readNumber(text, pos, 4, year) || pos != text.size() || end + 5 != pos)
        return std::nullopt;
    return CivilDate{year, month, day};
}

// Whether text is a time of day: h:mm or h:mm:ss.
bool isTimeOfDay(const std::string& text) {
    std::size_t pos = 0;
    int hours = 0, minutes = 0, seconds = 0;
    if (!readNumber(text, pos, 2, hours) || pos >= text.size() || text[pos++] != ':')
        return false;
    std::size_t start = pos;
    if (!readNumber(text, pos, 2, minutes) || pos - start != 2)
        return false;
    if (pos < text.size()) {
        if (text[pos++] != ':')
            return false;
        start = pos;
        if (!readNumber(text, pos, 2, seconds) || pos - start != 2 || pos != text.size())
            return false;
    }
    return hours < 24 && minutes < 60 && seconds < 60;
}

} // namespace

std::optional<Date> parseShortDate(const std::string& text) {
    std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos)
        return std::nullopt;
    std::string date = text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
    // A time of day behind the date, as a date-to-text conversion of a moment writes it.
    std::size_t cut = date.find_last_of(" T");
    if (cut != std::string::npos && isTimeOfDay(date.substr(cut + 1))) {
        date.resize(cut);
        date.resize(date.find_last_not_of(' ') + 1);
    }
    std::optional<CivilDate> civil = numericDate(date);
    if (!civil)
        civil = namedMonthDate(date);
    if (!civil || !validCivil(civil->year, civil->month, civil->day))
        return std::nullopt;
    return dateFromCivil(*civil);
}

} // namespace nv
