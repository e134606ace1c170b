#include "engines/PDFDateParser.hpp"

#include <algorithm>
#include <ctime>
#include <string>

namespace quillet {

namespace {

using Clock = std::chrono::system_clock;

bool allDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int number(std::string_view digits) {
    int value = 0;
    for (char c : digits) {
        value = value * 10 + (c - '0');
    }
    return value;
}

bool isLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month) {
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

// "yyyyMMddHHmmss" in the process's local time zone; absent for anything that is not a real
// calendar date and time of day.
std::optional<Clock::time_point> localTime(std::string_view digits) {
    if (digits.size() != 14 || !allDigits(digits)) {
        return std::nullopt;
    }
    std::tm fields{};
    const int year = number(digits.substr(0, 4));
    const int month = number(digits.substr(4, 2));
    const int day = number(digits.substr(6, 2));
    fields.tm_hour = number(digits.substr(8, 2));
    fields.tm_min = number(digits.substr(10, 2));
    fields.tm_sec = number(digits.substr(12, 2));
    if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) ||
        fields.tm_hour > 23 || fields.tm_min > 59 || fields.tm_sec > 59) {
        return std::nullopt;
    }
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_isdst = -1; // let the zone's rules decide whether summer time applies
    fields.tm_wday = -1;  // mktime sets it on success; -1 is also a valid time, one second early
    const std::time_t seconds = std::mktime(&fields);
    if (seconds == static_cast<std::time_t>(-1) && fields.tm_wday == -1) {
        return std::nullopt;
    }
    // A time point spans about ±292 years around 1970 (years 1678 to 2262); the four digits of a
    // PDF year go further. Such a date is not a date anyone wrote: absent, not an overflow. The
    // margin leaves room for the time-zone offset added later.
    constexpr std::time_t margin = 1'000'000;
    const auto limit = std::chrono::duration_cast<std::chrono::seconds>(Clock::duration::max()).count();
    if (seconds > limit - margin || seconds < -(limit - margin)) {
        return std::nullopt;
    }
    return Clock::from_time_t(seconds);
}

// Seconds to add for an offset such as "+05'30'": note the inverted sign.
std::chrono::seconds offsetCorrection(std::string_view offset) {
    const int factor = offset.front() == '+' ? -1 : 1;
    std::string digits;
    std::copy_if(offset.begin() + 1, offset.end(), std::back_inserter(digits),
                 [](char c) { return c >= '0' && c <= '9'; });
    if (digits.size() < 4) {
        return std::chrono::seconds(0);
    }
    const int hours = number(std::string_view(digits).substr(0, 2));
    const int minutes = number(std::string_view(digits).substr(digits.size() - 2));
    return std::chrono::seconds(factor * (hours * 3600 + minutes * 60));
}

} // namespace

std::optional<Clock::time_point> PDFDateParser::parse(std::string_view text) {
    if (text.starts_with("D:")) {
        text.remove_prefix(2);
    }
    auto date = localTime(text.substr(0, 14));
    if (!date || text.size() < 15) {
        return date;
    }
    const auto rest = text.substr(14);
    if (rest.front() == '+' || rest.front() == '-') {
        return *date + offsetCorrection(rest);
    }
    return date;
}

} // namespace quillet
