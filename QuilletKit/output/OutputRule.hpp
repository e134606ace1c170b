// The user's choice of where results go and what they are called. Part of the persisted settings
// and of every queued job, so it is a plain value with a JSON form.
//
// JSON: {"location", "subfolderName", "customFolder", "nameTemplate", "replaceOriginal"}, written
// in that order. Decoding requires all five keys: the defaults below are for rules made in code,
// never a filler for a partial object. A missing key, a wrong JSON type or an unknown location
// name fails with `JSONDecodingError`.
#pragma once

#include "model/RawValue.hpp"

#include <nlohmann/json.hpp>

#include <string>

namespace quillet {

struct OutputRule {
    enum class Location { sameFolder, subfolder, custom };

    Location location = Location::sameFolder;
    /// The folder, inside the input's folder, used with `subfolder`.
    std::string subfolderName = "Processed";
    /// An absolute folder path used with `custom`. Not validated: empty resolves against the
    /// process's current folder.
    std::string customFolder;
    /// The output's base name; tokens are expanded by `OutputResolver::applyTemplate`.
    std::string nameTemplate = "{name}-{action}";
    /// Overwrite an existing file of the computed name instead of choosing a free one.
    bool replaceOriginal = false;

    static OutputRule fromJSON(const nlohmann::ordered_json& json);

    bool operator==(const OutputRule&) const = default;
};

template <> struct RawValueNames<OutputRule::Location> {
    static constexpr std::array<std::string_view, 3> names{"sameFolder", "subfolder", "custom"};
};

nlohmann::ordered_json toJSON(const OutputRule& rule);

void to_json(nlohmann::ordered_json& json, const OutputRule& rule);
void from_json(const nlohmann::ordered_json& json, OutputRule& rule);

} // namespace quillet
