// String raw values for the operation model's enumerations.
//
// Every enumeration of the model is string-valued: its raw value is the case name, which is what
// JSON holds and what `fromRawValue` accepts. An enumeration opts in by specialising
// `RawValueNames` with its case names in declaration order; `allCases` lists the cases in that
// order. Lookups are exact and case-sensitive; an unknown string yields no value.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillet {

template <typename Enum> struct RawValueNames; // specialise with `static constexpr std::array names`

template <typename Enum> constexpr std::string_view rawValue(Enum value) {
    return RawValueNames<Enum>::names[static_cast<std::size_t>(value)];
}

template <typename Enum> constexpr std::optional<Enum> fromRawValue(std::string_view text) {
    const auto& names = RawValueNames<Enum>::names;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == text) {
            return static_cast<Enum>(i);
        }
    }
    return std::nullopt;
}

template <typename Enum> constexpr auto allCases() {
    constexpr auto count = RawValueNames<Enum>::names.size();
    std::array<Enum, count> cases{};
    for (std::size_t i = 0; i < count; ++i) {
        cases[i] = static_cast<Enum>(i);
    }
    return cases;
}

} // namespace quillet
