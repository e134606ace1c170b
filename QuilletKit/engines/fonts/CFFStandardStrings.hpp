// The 391 strings every CFF reader knows by number (SIDs 0-390), and StandardEncoding expressed
// through them. A name found here costs the font two bytes instead of its spelling.
#pragma once

#include <optional>
#include <string_view>

namespace quillet::fonts {

constexpr int standardStringCount = 391;

/// The standard string of `sid`, 0 <= sid < 391.
std::string_view standardString(int sid);
/// The SID of a standard string, or absent for any other name.
std::optional<int> standardStringID(std::string_view name);
/// The glyph name StandardEncoding gives `code`, or absent where it leaves the code unused.
std::optional<std::string_view> standardEncodingName(int code);

} // namespace quillet::fonts
