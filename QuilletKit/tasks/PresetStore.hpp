// The user's named compression presets, oldest first, saved at once on every change (see
// PersistedList for how a bad file is treated). Touch a store from one thread only.
#pragma once

#include "model/OperationKinds.hpp"
#include "tasks/PersistedValues.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

class PresetStore {
  public:
    /// JSON: "id", "name", "tier", "createdAt" required; "targetBytes" optional, left out when
    /// absent.
    struct UserPreset {
        std::string id;
        std::string name;
        CompressionQualityTier tier = CompressionQualityTier::balanced;
        std::optional<std::int64_t> targetBytes; ///< absent for a tier-only preset
        TaskTime createdAt;

        /// "Max 4.8 MB" for a target (one decimal below 10 MiB, none from there), otherwise the
        /// tier's label ("High Quality", "Balanced", "Smallest", "Lossless Optimize").
        std::string summary() const;

        static UserPreset fromJSON(const nlohmann::ordered_json& json);
        bool operator==(const UserPreset&) const = default;
    };

    /// Loads `file` ("presets.json" in the support folder for the application).
    explicit PresetStore(std::filesystem::path file);

    const std::vector<UserPreset>& presets() const { return presets_; }
    const std::filesystem::path& file() const { return file_; }

    /// Appends a preset with a fresh id made now; saves; answers it.
    const UserPreset& add(std::string name, CompressionQualityTier tier,
                          std::optional<std::int64_t> targetBytes);
    /// Removes the presets with this id; saves.
    void remove(const std::string& id);

    std::function<void()> changed;

  private:
    void persist();

    std::filesystem::path file_;
    std::vector<UserPreset> presets_;
};

nlohmann::ordered_json toJSON(const PresetStore::UserPreset& preset);

/// The label of a tier as the screens show it.
std::string_view tierLabel(CompressionQualityTier tier);

} // namespace quillet
