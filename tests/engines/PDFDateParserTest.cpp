#include "engines/PDFDateParser.hpp"

#include "support/ScopedEnv.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace std::chrono;

struct DateCase {
    const char* zone;
    const char* text;
    std::optional<system_clock::time_point> expected; // in UTC
};

system_clock::time_point utc(year_month_day day, int hours, int minutes = 0) {
    return sys_days(day) + hours * 1h + minutes * 1min;
}

class PDFDateParsing : public testing::TestWithParam<DateCase> {};

TEST_P(PDFDateParsing, ReadsLocalTimeAndAppliesTheOffsetInverted) {
    test::ScopedEnv zone("TZ", GetParam().zone);
    EXPECT_EQ(PDFDateParser::parse(GetParam().text), GetParam().expected)
        << GetParam().text << " in " << GetParam().zone;
}

constexpr auto jan31 = 2024y / January / 31;
constexpr const char* newYork = "America/New_York";

INSTANTIATE_TEST_SUITE_P(
    PDFDateParserTest, PDFDateParsing,
    testing::Values(
        // The digits are local time: 12:00 in New York in winter is 17:00 UTC...
        DateCase{newYork, "D:20240131120000Z", utc(jan31, 17)},
        DateCase{newYork, "D:20240131120000", utc(jan31, 17)},
        // ...and in summer (daylight saving time chosen by the zone's rules) 16:00 UTC.
        DateCase{newYork, "D:20240701120000Z", utc(2024y / July / 1, 16)},
        DateCase{"UTC", "D:20240131120000Z", utc(jan31, 12)},
        DateCase{"Asia/Kolkata", "D:20240131120000", utc(jan31, 6, 30)},
        // "+hh'mm'" subtracts from the local reading, "-hhmm" adds to it.
        DateCase{newYork, "20240131120000-0800", utc(jan31, 17 + 8)},
        DateCase{newYork, "D:20240131120000-08'00'", utc(jan31, 25)},
        DateCase{"UTC", "D:20240131120000+05'30'", utc(jan31, 6, 30)},
        // Hours are the first two digits, minutes the last two.
        DateCase{"UTC", "D:20240131120000+05'30'45", utc(jan31, 6, 15)},
        // Fewer than four digits, or another character: the offset is ignored.
        DateCase{"UTC", "D:20240131120000+05", utc(jan31, 12)},
        DateCase{"UTC", "D:20240131120000+5'3'", utc(jan31, 12)},
        DateCase{"UTC", "D:20240131120000z+0100", utc(jan31, 12)},
        // Shortened and invalid forms are absent.
        DateCase{"UTC", "D:20240131", std::nullopt}, DateCase{"UTC", "D:2024", std::nullopt},
        DateCase{"UTC", "D:2024013112000Z", std::nullopt}, DateCase{"UTC", "", std::nullopt},
        DateCase{"UTC", "D:", std::nullopt}, DateCase{"UTC", "D:D:20240131120000", std::nullopt},
        DateCase{"UTC", "D:20230229120000", std::nullopt},
        DateCase{"UTC", "D:20240229120000", utc(2024y / February / 29, 12)},
        DateCase{"UTC", "D:20240131240000", std::nullopt},
        // A date before 1970 is a date like any other.
        DateCase{"UTC", "D:19691231235959", utc(1969y / December / 31, 23, 59) + 59s},
        // Years a time point cannot hold (found by fuzzing: the conversion overflowed).
        DateCase{"UTC", "D:11900101000000", std::nullopt},
        DateCase{"UTC", "D:99991231235959+23'59'", std::nullopt},
        DateCase{"UTC", "D:00000101000000", std::nullopt}));

} // namespace
} // namespace quillet
