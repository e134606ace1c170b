#include "engines/PDFMetadataInfo.hpp"

#include "model/JSONDecodingError.hpp"

#include <array>
#include <cmath>
#include <utility>

namespace quillet {

namespace {

using Clock = std::chrono::system_clock;
using TextField = std::optional<std::string> PDFMetadataInfo::*;
using DateField = std::optional<Clock::time_point> PDFMetadataInfo::*;

constexpr std::array<std::pair<const char*, TextField>, 6> textFields{{
    {"title", &PDFMetadataInfo::title},
    {"author", &PDFMetadataInfo::author},
    {"creator", &PDFMetadataInfo::creator},
    {"producer", &PDFMetadataInfo::producer},
    {"subject", &PDFMetadataInfo::subject},
    {"keywords", &PDFMetadataInfo::keywords},
}};

constexpr std::array<std::pair<const char*, DateField>, 2> dateFields{{
    {"creationDate", &PDFMetadataInfo::creationDate},
    {"modificationDate", &PDFMetadataInfo::modificationDate},
}};

// 2001-01-01 00:00:00 UTC in seconds since the Unix epoch.
constexpr std::chrono::seconds referenceEpoch{978307200};

double referenceSeconds(Clock::time_point date) {
    return std::chrono::duration<double>(date.time_since_epoch() - referenceEpoch).count();
}

Clock::time_point fromReferenceSeconds(double seconds) {
    const auto sinceReference =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    return Clock::time_point(referenceEpoch + sinceReference);
}

[[noreturn]] void throwMismatch(const char* key, const char* expected) {
    throw JSONDecodingError(JSONDecodingError::Kind::typeMismatch, key,
                            std::string("Expected ") + expected + " for key \"" + key + "\"");
}

} // namespace

nlohmann::ordered_json toJSON(const PDFMetadataInfo& info) {
    auto json = nlohmann::ordered_json::object();
    for (const auto& [key, field] : textFields) {
        if (const auto& text = info.*field) {
            json[key] = *text;
        }
    }
    for (const auto& [key, field] : dateFields) {
        if (const auto& date = info.*field) {
            json[key] = referenceSeconds(*date);
        }
    }
    return json;
}

PDFMetadataInfo PDFMetadataInfo::fromJSON(const nlohmann::ordered_json& json) {
    if (!json.is_object()) {
        throw JSONDecodingError(JSONDecodingError::Kind::typeMismatch, "",
                                "Expected an object for the document information");
    }
    PDFMetadataInfo info;
    for (const auto& [key, field] : textFields) {
        auto found = json.find(key);
        if (found == json.end() || found->is_null()) {
            continue;
        }
        if (!found->is_string()) {
            throwMismatch(key, "a string");
        }
        info.*field = found->get<std::string>();
    }
    for (const auto& [key, field] : dateFields) {
        auto found = json.find(key);
        if (found == json.end() || found->is_null()) {
            continue;
        }
        // Nanosecond time points span about ±292 years; beyond ±200 years a date is data
        // corruption, and converting it would overflow.
        constexpr double limit = 200.0 * 366 * 86400;
        if (!found->is_number() || !(std::abs(found->get<double>()) < limit)) {
            throwMismatch(key, "a number of seconds within 200 years of 2001");
        }
        info.*field = fromReferenceSeconds(found->get<double>());
    }
    return info;
}

void to_json(nlohmann::ordered_json& json, const PDFMetadataInfo& info) {
    json = toJSON(info);
}

void from_json(const nlohmann::ordered_json& json, PDFMetadataInfo& info) {
    info = PDFMetadataInfo::fromJSON(json);
}

} // namespace quillet
