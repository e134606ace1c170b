// Loading and saving a state file that holds one JSON array of values.
#pragma once

#include "tasks/StateFile.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <vector>

namespace quillet::PersistedList {

/// The file's elements decoded with `T::fromJSON`. A missing or unreadable file gives an empty
/// list; a file that is not a JSON array of decodable elements (one bad element spoils it) gives
/// an empty list too and is set aside as NAME.bad, so the next save does not destroy it.
template <typename T> std::vector<T> load(const std::filesystem::path& file) {
    const auto bytes = StateFile::read(file);
    if (!bytes) {
        return {};
    }
    try {
        const auto json = nlohmann::ordered_json::parse(*bytes);
        if (!json.is_array()) {
            throw std::runtime_error("not an array");
        }
        std::vector<T> values;
        values.reserve(json.size());
        for (const auto& element : json) {
            values.push_back(T::fromJSON(element));
        }
        return values;
    } catch (const std::exception&) {
        StateFile::setAside(file);
        return {};
    }
}

/// Writes every value (with `toJSON`) as one array, atomically. Failures are swallowed: the
/// caller's list in memory stays the truth until the next save.
template <typename T>
void save(const std::filesystem::path& file, const std::vector<T>& values,
          std::filesystem::perms permissions = std::filesystem::perms::owner_read |
                                               std::filesystem::perms::owner_write) noexcept {
    try {
        auto array = nlohmann::ordered_json::array();
        for (const auto& value : values) {
            array.push_back(toJSON(value));
        }
        StateFile::write(file, array.dump(), permissions);
    } catch (const std::exception&) {
    }
}

} // namespace quillet::PersistedList
