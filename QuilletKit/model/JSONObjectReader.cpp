#include "model/JSONObjectReader.hpp"

#include <fmt/format.h>

#include <cmath>
#include <limits>

namespace quillet {

using Kind = JSONDecodingError::Kind;

namespace json_detail {

void throwMismatch(std::string_view key, std::string_view expected,
                   const nlohmann::ordered_json& found) {
    throw JSONDecodingError(
        Kind::typeMismatch, std::string(key),
        fmt::format("Key \"{}\" should hold {}, found {}", key, expected, found.type_name()));
}

void throwUnknownRawValue(std::string_view key, std::string_view text) {
    throw JSONDecodingError(Kind::dataCorrupted, std::string(key),
                            fmt::format("Key \"{}\" holds an unknown value \"{}\"", key, text));
}

bool decodeBool(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_boolean()) {
        throwMismatch(key, "a boolean", value);
    }
    return value.get<bool>();
}

std::int64_t decodeInt(const nlohmann::ordered_json& value, std::string_view key) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (value.is_number_unsigned()) {
        auto number = value.get<std::uint64_t>();
        if (number <= static_cast<std::uint64_t>(Limits::max())) {
            return static_cast<std::int64_t>(number);
        }
    } else if (value.is_number_integer()) {
        return value.get<std::int64_t>();
    } else if (value.is_number_float()) {
        // Writers that keep every number as a double still mean an integer by 2.0.
        double number = value.get<double>();
        if (std::trunc(number) == number && number >= -0x1p63 && number < 0x1p63) {
            return static_cast<std::int64_t>(number);
        }
    }
    throwMismatch(key, "an integer", value);
}

double decodeDouble(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_number()) {
        throwMismatch(key, "a number", value);
    }
    return value.get<double>();
}

std::string decodeString(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_string()) {
        throwMismatch(key, "a string", value);
    }
    return value.get<std::string>();
}

std::vector<std::int64_t> decodeIntList(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_array()) {
        throwMismatch(key, "a list of integers", value);
    }
    std::vector<std::int64_t> list;
    list.reserve(value.size());
    for (const auto& element : value) {
        if (element.is_null()) {
            throwMismatch(key, "a list of integers", element);
        }
        list.push_back(decodeInt(element, key));
    }
    return list;
}

std::vector<double> decodeDoubleList(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_array()) {
        throwMismatch(key, "a list of numbers", value);
    }
    std::vector<double> list;
    for (const auto& element : value) {
        list.push_back(decodeDouble(element, key));
    }
    return list;
}

std::vector<std::string> decodeStringList(const nlohmann::ordered_json& value, std::string_view key) {
    if (!value.is_array()) {
        throwMismatch(key, "a list of strings", value);
    }
    std::vector<std::string> list;
    for (const auto& element : value) {
        list.push_back(decodeString(element, key));
    }
    return list;
}

} // namespace json_detail

JSONObjectReader::JSONObjectReader(const nlohmann::ordered_json& object) : object_(object) {
    if (!object.is_object()) {
        throw JSONDecodingError(
            Kind::typeMismatch, {},
            fmt::format("Expected a JSON object, found {}", object.type_name()));
    }
}

const nlohmann::ordered_json* JSONObjectReader::find(std::string_view key) const {
    auto it = object_.find(key);
    return it == object_.end() ? nullptr : &*it;
}

void JSONObjectReader::throwMissing(std::string_view key) {
    throw JSONDecodingError(Kind::keyNotFound, std::string(key),
                            fmt::format("Missing key \"{}\"", key));
}

void JSONObjectReader::throwNull(std::string_view key) {
    throw JSONDecodingError(Kind::valueNotFound, std::string(key),
                            fmt::format("Key \"{}\" holds null", key));
}

std::vector<JSONObjectReader> JSONObjectReader::objects(std::string_view key) const {
    const auto* found = find(key);
    if (found == nullptr || found->is_null()) {
        return {};
    }
    if (!found->is_array()) {
        json_detail::throwMismatch(key, "a list of objects", *found);
    }
    std::vector<JSONObjectReader> readers;
    for (const auto& element : *found) {
        if (!element.is_object()) {
            json_detail::throwMismatch(key, "a list of objects", element);
        }
        readers.emplace_back(element);
    }
    return readers;
}

} // namespace quillet
