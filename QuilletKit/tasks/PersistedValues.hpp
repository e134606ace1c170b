// The value encodings shared by every persisted task file (queue, history, presets).
//
// - Identities are UUIDs in canonical text, 8-4-4-4-12 hexadecimal digits. They are written in
//   upper case; lower- or mixed-case text is accepted and normalised on reading.
// - Dates are seconds (with fraction) since 2001-01-01 00:00:00 UTC, written as a JSON number.
//   Not Unix time: files written by earlier versions must keep reading.
// - Byte buffers are standard Base64 with padding and no line breaks.
//
// Every decoding failure is a JSONDecodingError naming the key.
#pragma once

#include "model/JSONObjectReader.hpp"

#include <chrono>
#include <optional>
#include <vector>
#include <string>
#include <string_view>

namespace quillet {

using TaskClock = std::chrono::system_clock;
using TaskTime = TaskClock::time_point;

namespace persisted {

/// Seconds between 1970-01-01 and 2001-01-01, both UTC.
inline constexpr double referenceDateOffset = 978307200.0;

double secondsSinceReferenceDate(TaskTime time);
/// Throws JSONDecodingError(dataCorrupted) naming `key` for a value outside the clock's range
/// (or not finite).
TaskTime timeFromReferenceSeconds(double seconds, std::string_view key);

/// The canonical upper-case form of `text`, or nothing when it is not a UUID.
std::optional<std::string> canonicalUUID(std::string_view text);

std::string base64Encoded(std::string_view bytes);
/// Nothing for text that is not padded standard Base64.
std::optional<std::string> base64Decoded(std::string_view text);

/// The value at `key` of `object`, whatever its type; keyNotFound when there is none.
const nlohmann::ordered_json& requireMember(const nlohmann::ordered_json& object,
                                           std::string_view key);

/// Typed readers for the three encodings above, in the manner of JSONObjectReader.
std::string requireUUID(const JSONObjectReader& reader, std::string_view key);
TaskTime requireTime(const JSONObjectReader& reader, std::string_view key);
std::optional<std::string> optionalBytes(const nlohmann::ordered_json& object, std::string_view key);
std::vector<std::string> requireStrings(const nlohmann::ordered_json& object, std::string_view key);

nlohmann::ordered_json stringsJSON(const std::vector<std::string>& strings);

} // namespace persisted
} // namespace quillet
