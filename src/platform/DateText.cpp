#include "platform/DateText.h"

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
    static const char* const months[] = {"jan", "feb", "mrt", "apr", "mei", "jun",
                                         "jul", "aug", "sep", "okt", "nov", "dec"};
    CivilDate c = civilFromDate(date);
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "%02d-%s-%04d", c.day, months[c.month - 1], c.year);
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

std::string isoDateText(Date date) {
    CivilDate c = civilFromDate(date);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", c.year, c.month, c.day);
    return buffer;
}

std::optional<Date> parseShortDate(const std::string& text) {
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
    int year, month, day;
    if (firstLength == 4 && separator == '-') {
        year = a, month = b, day = c; // yyyy-mm-dd
    } else if (firstLength <= 2 && text.size() - (text.rfind(separator) + 1) == 4) {
        day = a, month = b, year = c; // dd-mm-yyyy, d-m-yyyy, dd/mm/yyyy
    } else {
        return std::nullopt;
    }
    if (!validCivil(year, month, day))
        return std::nullopt;
    return dateFromCivil({year, month, day});
}

} // namespace nv
