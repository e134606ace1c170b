// Reading of PDF date strings such as "D:20240131120000+05'30'".
//
// The reading is deliberately narrow and keeps two quirks that other parts rely on:
//  - the fourteen digits "yyyyMMddHHmmss" are read as *local* time of the process's time zone
//    (TZ), not as UTC; the shortened forms the PDF standard allows (year only, year and month,
//    no seconds) are not accepted;
//  - an offset after them is then applied the other way round to that local reading: "+hh'mm"
//    subtracts hh:mm and "-hh'mm" adds it; "Z" or anything else leaves the local reading as is.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace quillet {

struct PDFDateParser {
    /// The point in time, or absent when the text does not start (after an optional "D:") with
    /// fourteen digits forming a valid calendar date and time of day. Of an offset only ASCII
    /// digits count: with four or more of them the first two are the hours and the last two the
    /// minutes; with fewer the offset is ignored.
    static std::optional<std::chrono::system_clock::time_point> parse(std::string_view text);
};

} // namespace quillet
