// The document information fields that the analysis shows and the cleaner removes.
//
// JSON form: one object with the keys "title", "author", "creator", "producer", "subject",
// "keywords", "creationDate", "modificationDate" in that order; absent fields are left out. Texts
// are JSON strings; dates are numbers of seconds since 2001-01-01 00:00:00 UTC (fractions
// allowed), the persistence convention of every record. Decoding treats a missing key and null
// alike as absent and fails with JSONDecodingError (typeMismatch, naming the key) on a value of
// another JSON type; unknown keys are ignored.
#pragma once

#include <nlohmann/json.hpp>

#include <chrono>
#include <optional>
#include <string>

namespace quillet {

struct PDFMetadataInfo {
    std::optional<std::string> title;
    std::optional<std::string> author;
    std::optional<std::string> creator;
    std::optional<std::string> producer;
    std::optional<std::string> subject;
    std::optional<std::string> keywords;
    std::optional<std::chrono::system_clock::time_point> creationDate;
    std::optional<std::chrono::system_clock::time_point> modificationDate;

    bool operator==(const PDFMetadataInfo&) const = default;

    static PDFMetadataInfo fromJSON(const nlohmann::ordered_json& json);
};

nlohmann::ordered_json toJSON(const PDFMetadataInfo& info);

// Hooks so `ordered_json j = info;` and `j.get<PDFMetadataInfo>()` work.
void to_json(nlohmann::ordered_json& json, const PDFMetadataInfo& info);
void from_json(const nlohmann::ordered_json& json, PDFMetadataInfo& info);

} // namespace quillet
