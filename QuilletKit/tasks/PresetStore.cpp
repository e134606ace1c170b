#include "tasks/PresetStore.hpp"

#include "engines/Formatters.hpp"
#include "platform/UUID.hpp"
#include "tasks/PersistedList.hpp"

namespace quillet {

using nlohmann::ordered_json;

std::string_view tierLabel(CompressionQualityTier tier) {
    switch (tier) {
    case CompressionQualityTier::highQuality:
        return "High Quality";
    case CompressionQualityTier::balanced:
        return "Balanced";
    case CompressionQualityTier::smallest:
        return "Smallest";
    case CompressionQualityTier::lossless:
        return "Lossless Optimize";
    }
    return "Balanced";
}

std::string PresetStore::UserPreset::summary() const {
    if (targetBytes) {
        constexpr std::int64_t tenMiB = 10 * 1024 * 1024;
        return "Max " + formattedBytes(*targetBytes, *targetBytes < tenMiB ? 1 : 0);
    }
    return std::string(tierLabel(tier));
}

PresetStore::UserPreset PresetStore::UserPreset::fromJSON(const ordered_json& json) {
    const JSONObjectReader reader(json);
    UserPreset preset;
    preset.id = persisted::requireUUID(reader, "id");
    preset.name = reader.require<std::string>("name");
    preset.tier = reader.require<CompressionQualityTier>("tier");
    preset.targetBytes = reader.ifPresent<std::int64_t>("targetBytes");
    preset.createdAt = persisted::requireTime(reader, "createdAt");
    return preset;
}

ordered_json toJSON(const PresetStore::UserPreset& preset) {
    ordered_json json{{"id", preset.id},
                      {"name", preset.name},
                      {"tier", std::string(rawValue(preset.tier))}};
    if (preset.targetBytes) {
        json["targetBytes"] = *preset.targetBytes;
    }
    json["createdAt"] = persisted::secondsSinceReferenceDate(preset.createdAt);
    return json;
}

PresetStore::PresetStore(std::filesystem::path file)
    : file_(std::move(file)), presets_(PersistedList::load<UserPreset>(file_)) {}

const PresetStore::UserPreset& PresetStore::add(std::string name, CompressionQualityTier tier,
                                                std::optional<std::int64_t> targetBytes) {
    presets_.push_back(
        UserPreset{newUUIDString(), std::move(name), tier, targetBytes, TaskClock::now()});
    persist();
    return presets_.back();
}

void PresetStore::remove(const std::string& id) {
    std::erase_if(presets_, [&id](const UserPreset& preset) { return preset.id == id; });
    persist();
}

void PresetStore::persist() {
    PersistedList::save(file_, presets_);
    if (changed) {
        changed();
    }
}

} // namespace quillet
