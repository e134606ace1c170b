// Typed, key-checked reading of one JSON object, shared by every decoder that persists a model
// value (parameters, output rules, task records).
//
// Supported value types: bool, std::int64_t, double, std::string, lists of integers, numbers and
// strings, and every enumeration with a `RawValueNames` specialisation (read from its raw string). Every
// failure is a `JSONDecodingError` naming the key:
//   - `require` of a missing key: keyNotFound; of a null: valueNotFound;
//   - a value of the wrong JSON type: typeMismatch (an integer accepts an integral float such as
//     2.0, a double accepts any number; nothing else converts: no "1" for 1, no 0 for false);
//   - an enumeration string that is no raw value: dataCorrupted.
// `value` and `ifPresent` treat a missing key and a null alike as absent.
#pragma once

#include "model/JSONDecodingError.hpp"
#include "model/RawValue.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

template <typename T>
concept RawValueEnum = std::is_enum_v<T> && requires {
    RawValueNames<T>::names;
};

namespace json_detail {

[[noreturn]] void throwMismatch(std::string_view key, std::string_view expected,
                                const nlohmann::ordered_json& found);
[[noreturn]] void throwUnknownRawValue(std::string_view key, std::string_view text);

bool decodeBool(const nlohmann::ordered_json& value, std::string_view key);
std::int64_t decodeInt(const nlohmann::ordered_json& value, std::string_view key);
double decodeDouble(const nlohmann::ordered_json& value, std::string_view key);
std::string decodeString(const nlohmann::ordered_json& value, std::string_view key);
std::vector<std::int64_t> decodeIntList(const nlohmann::ordered_json& value, std::string_view key);
std::vector<double> decodeDoubleList(const nlohmann::ordered_json& value, std::string_view key);
std::vector<std::string> decodeStringList(const nlohmann::ordered_json& value, std::string_view key);

template <typename T> T decode(const nlohmann::ordered_json& value, std::string_view key) {
    if constexpr (std::is_same_v<T, bool>) {
        return decodeBool(value, key);
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        return decodeInt(value, key);
    } else if constexpr (std::is_same_v<T, double>) {
        return decodeDouble(value, key);
    } else if constexpr (std::is_same_v<T, std::string>) {
        return decodeString(value, key);
    } else if constexpr (std::is_same_v<T, std::vector<std::int64_t>>) {
        return decodeIntList(value, key);
    } else if constexpr (std::is_same_v<T, std::vector<double>>) {
        return decodeDoubleList(value, key);
    } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
        return decodeStringList(value, key);
    } else {
        static_assert(RawValueEnum<T>, "no JSON decoding for this type");
        auto text = decodeString(value, key);
        if (auto parsed = fromRawValue<T>(text)) {
            return *parsed;
        }
        throwUnknownRawValue(key, text);
    }
}

} // namespace json_detail

class JSONObjectReader {
  public:
    /// Fails with typeMismatch (empty key) when `object` is not a JSON object. The reader keeps a
    /// reference: `object` must outlive it.
    explicit JSONObjectReader(const nlohmann::ordered_json& object);

    template <typename T> T require(std::string_view key) const {
        const auto* found = find(key);
        if (found == nullptr) {
            throwMissing(key);
        }
        if (found->is_null()) {
            throwNull(key);
        }
        return json_detail::decode<T>(*found, key);
    }

    template <typename T> std::optional<T> ifPresent(std::string_view key) const {
        const auto* found = find(key);
        if (found == nullptr || found->is_null()) {
            return std::nullopt;
        }
        return json_detail::decode<T>(*found, key);
    }

    template <typename T> T value(std::string_view key, T fallback) const {
        auto present = ifPresent<T>(key);
        return present ? std::move(*present) : std::move(fallback);
    }

    /// The objects of the list at `key`, each with a reader of its own (none when the key is
    /// missing or null); typeMismatch when it is no list or holds anything but objects.
    std::vector<JSONObjectReader> objects(std::string_view key) const;

  private:
    const nlohmann::ordered_json* find(std::string_view key) const;
    [[noreturn]] static void throwMissing(std::string_view key);
    [[noreturn]] static void throwNull(std::string_view key);

    const nlohmann::ordered_json& object_;
};

} // namespace quillet
