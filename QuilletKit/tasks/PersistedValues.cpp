#include "tasks/PersistedValues.hpp"

#include <array>
#include <cctype>
#include <cmath>
#include <limits>

namespace quillet::persisted {
namespace {

constexpr std::string_view base64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

[[noreturn]] void corrupted(std::string_view key, const std::string& what) {
    throw JSONDecodingError(JSONDecodingError::Kind::dataCorrupted, std::string(key),
                            "\"" + std::string(key) + "\": " + what);
}

} // namespace

const nlohmann::ordered_json& requireMember(const nlohmann::ordered_json& object,
                                           std::string_view key) {
    const JSONObjectReader reader(object); // checks that `object` is an object
    const auto found = object.find(key);
    if (found == object.end()) {
        throw JSONDecodingError(JSONDecodingError::Kind::keyNotFound, std::string(key),
                                "Missing key \"" + std::string(key) + "\"");
    }
    return *found;
}

double secondsSinceReferenceDate(TaskTime time) {
    const auto sinceEpoch = std::chrono::duration<double>(time.time_since_epoch()).count();
    return sinceEpoch - referenceDateOffset;
}

TaskTime timeFromReferenceSeconds(double seconds, std::string_view key) {
    // The clock counts in a 64-bit number of its ticks; keep well inside it.
    using Ticks = TaskClock::duration;
    const double limit = std::chrono::duration<double>(Ticks::max()).count() / 2;
    const double sinceEpoch = seconds + referenceDateOffset;
    if (!std::isfinite(sinceEpoch) || std::fabs(sinceEpoch) > limit) {
        corrupted(key, "date out of range");
    }
    return TaskTime(std::chrono::duration_cast<Ticks>(std::chrono::duration<double>(sinceEpoch)));
}

std::optional<std::string> canonicalUUID(std::string_view text) {
    if (text.size() != 36) {
        return std::nullopt;
    }
    std::string canonical(text);
    for (std::size_t i = 0; i < canonical.size(); ++i) {
        const bool hyphenPosition = i == 8 || i == 13 || i == 18 || i == 23;
        const char c = canonical[i];
        if (hyphenPosition != (c == '-')) {
            return std::nullopt;
        }
        if (!hyphenPosition) {
            if (!std::isxdigit(static_cast<unsigned char>(c))) {
                return std::nullopt;
            }
            canonical[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    return canonical;
}

std::string base64Encoded(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = (group << 8) | (j < n ? static_cast<unsigned char>(bytes[i + j]) : 0u);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text.push_back(j <= n ? base64Alphabet[(group >> (18 - 6 * j)) & 0x3F] : '=');
        }
    }
    return text;
}

std::optional<std::string> base64Decoded(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        std::uint32_t group = 0;
        int padding = 0;
        for (std::size_t j = 0; j < 4; ++j) {
            const char c = text[i + j];
            std::uint32_t value = 0;
            if (c == '=') {
                // Padding only at the very end, at most two, never in the first two places.
                if (i + 4 != text.size() || j < 2) {
                    return std::nullopt;
                }
                ++padding;
            } else {
                if (padding > 0) {
                    return std::nullopt;
                }
                const auto position = base64Alphabet.find(c);
                if (position == std::string_view::npos) {
                    return std::nullopt;
                }
                value = static_cast<std::uint32_t>(position);
            }
            group = (group << 6) | value;
        }
        for (int j = 0; j < 3 - padding; ++j) {
            bytes.push_back(static_cast<char>((group >> (16 - 8 * j)) & 0xFF));
        }
    }
    return bytes;
}

std::string requireUUID(const JSONObjectReader& reader, std::string_view key) {
    const auto text = reader.require<std::string>(key);
    auto canonical = canonicalUUID(text);
    if (!canonical) {
        corrupted(key, "not a UUID: " + text);
    }
    return *canonical;
}

TaskTime requireTime(const JSONObjectReader& reader, std::string_view key) {
    return timeFromReferenceSeconds(reader.require<double>(key), key);
}

std::optional<std::string> optionalBytes(const nlohmann::ordered_json& object,
                                         std::string_view key) {
    const JSONObjectReader reader(object);
    const auto text = reader.ifPresent<std::string>(key);
    if (!text) {
        return std::nullopt;
    }
    auto bytes = base64Decoded(*text);
    if (!bytes) {
        corrupted(key, "not Base64");
    }
    return bytes;
}

std::vector<std::string> requireStrings(const nlohmann::ordered_json& object,
                                        std::string_view key) {
    const auto* found = &requireMember(object, key);
    if (!found->is_array()) {
        json_detail::throwMismatch(key, "an array of strings", *found);
    }
    std::vector<std::string> strings;
    strings.reserve(found->size());
    for (const auto& element : *found) {
        if (!element.is_string()) {
            json_detail::throwMismatch(key, "an array of strings", element);
        }
        strings.push_back(element.get<std::string>());
    }
    return strings;
}

nlohmann::ordered_json stringsJSON(const std::vector<std::string>& strings) {
    auto array = nlohmann::ordered_json::array();
    for (const auto& s : strings) {
        array.push_back(s);
    }
    return array;
}

} // namespace quillet::persisted
