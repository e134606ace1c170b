// The JSON decoders of the persisted task values: the first byte picks TaskSpec list, TaskSpec,
// TaskRecord, HistoryEntry or UserPreset, the rest is the JSON. Any JSON either decodes or fails
// with JSONDecodingError, and a decoded value survives its own encoding (dates to a millisecond:
// they pass through a double of seconds).
#include "model/JSONDecodingError.hpp"
#include "tasks/PresetStore.hpp"
#include "tasks/TaskRecords.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using nlohmann::ordered_json;

bool sameWithin(const ordered_json& a, const ordered_json& b) {
    if (a.is_number_float() && b.is_number_float()) {
        return std::fabs(a.get<double>() - b.get<double>()) < 1e-3;
    }
    if (a.type() != b.type() || a.size() != b.size()) {
        return false;
    }
    if (a.is_object()) {
        for (auto it = a.begin(); it != a.end(); ++it) {
            if (!b.contains(it.key()) || !sameWithin(it.value(), b.at(it.key()))) {
                return false;
            }
        }
        return true;
    }
    if (a.is_array()) {
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (!sameWithin(a[i], b[i])) {
                return false;
            }
        }
        return true;
    }
    return a == b;
}

template <typename Decode, typename Encode>
void roundTrip(const ordered_json& json, Decode decode, Encode encode) {
    try {
        const auto first = encode(decode(json));
        const auto second = encode(decode(first));
        if (!sameWithin(first, second)) {
            std::abort();
        }
    } catch (const quillet::JSONDecodingError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillet;
    if (size < 1) {
        return 0;
    }
    const auto json = ordered_json::parse(data + 1, data + size, nullptr, false);
    if (json.is_discarded()) {
        return 0;
    }
    const auto encode = [](const auto& value) { return toJSON(value); };
    switch (data[0] % 5) {
    case 0:
        roundTrip(json, TaskSpec::listFromJSON, encode);
        break;
    case 1:
        roundTrip(json, TaskSpec::fromJSON, encode);
        break;
    case 2:
        roundTrip(json, TaskRecord::fromJSON, encode);
        break;
    case 3:
        roundTrip(json, HistoryEntry::fromJSON, encode);
        break;
    default:
        roundTrip(json, PresetStore::UserPreset::fromJSON, encode);
        break;
    }
    return 0;
}
