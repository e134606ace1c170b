// The settings of one operation: a tagged value with exactly one case per `PDFOperationKind`,
// in the same order, so `kind()` always names the case held.
//
// Page size, fit, image format and page selections are kept as plain text: the task runner and
// the engines parse them ("auto" is a valid page size here, though no `PageSize` case).
//
// JSON form (persisted inside queued and finished jobs): one flat object whose "type" is the
// kind's raw value, followed by the held case's fields in declaration order; `insertBlankBetween`
// is written as "insertBlank" and an absent `newOrder` as null. Decoding fills the defaults below
// for optional keys that are missing (or null), ignores keys of other cases, and fails with
// `JSONDecodingError` on a missing required key, a wrong JSON type or an unknown enum string; an
// unknown "type" fails as dataCorrupted with "Unknown parameters type " + the string.
#pragma once

#include "model/OperationKinds.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace quillet {

// The cases live outside `OperationParameters` so their default member initialisers are usable
// while the variant is declared; use them through the aliases inside it.
namespace parameter_cases {

struct Compress {
    CompressionQualityTier tier = CompressionQualityTier::balanced; // required in JSON
    bool operator==(const Compress&) const = default;
};
struct TargetSize {
    std::int64_t bytes = 0; // required in JSON
    bool operator==(const TargetSize&) const = default;
};
struct Merge {
    bool insertBlankBetween = false;
    bool operator==(const Merge&) const = default;
};
struct Split {
    SplitMode mode = SplitMode::everyPage; // required in JSON
    std::string ranges;                    // pageRanges and extract: "1-5,6-10"
    std::int64_t everyN = 1;               // everyNPages
    std::int64_t maxBytes = 0;             // byFileSize
    bool operator==(const Split&) const = default;
};
struct Organize {
    std::vector<std::int64_t> rotatePages;
    std::vector<std::int64_t> rotations; // one per entry of rotatePages, same position
    std::vector<std::int64_t> deletePages;
    std::optional<std::vector<std::int64_t>> newOrder; // absent: page order kept
    bool operator==(const Organize&) const = default;
};
struct PDFToImages {
    std::string format = "png"; // an ImageOutputFormat raw value
    std::int64_t dpi = 150;
    std::string pages; // page selection text; empty for every page
    double jpegQuality = 0.85;
    std::int64_t renderTimeout = 30; // seconds one page may take to draw; 0: no limit
    bool operator==(const PDFToImages&) const = default;
};
struct ImagesToPDF {
    std::string pageSize = "auto"; // a PageSize raw value or "auto"
    std::string fit = "fit";       // a Fit raw value
    double marginPT = 0;
    bool operator==(const ImagesToPDF&) const = default;
};
struct Clean {
    CleanPreset preset = CleanPreset::safe; // required in JSON
    bool operator==(const Clean&) const = default;
};
struct Protect {
    std::string userPassword; // required in JSON
    std::string ownerPassword;
    bool operator==(const Protect&) const = default;
};
struct Unprotect {
    std::string password;
    bool operator==(const Unprotect&) const = default;
};
struct OCR {
    std::string languages = "eng"; // Tesseract's codes joined by "+": "eng+chi_sim"
    bool operator==(const OCR&) const = default;
};

struct RedactArea {
    std::int64_t page = 1;            // one-based
    std::vector<double> rect;         // x, y, width, height in points, from the top-left corner
    bool operator==(const RedactArea&) const = default;
};
struct RedactPattern {
    std::string text;
    bool regex = false;
    bool matchCase = false;
    bool operator==(const RedactPattern&) const = default;
};
struct Redact {
    std::vector<RedactArea> areas;
    std::vector<RedactPattern> patterns;
    std::vector<std::string> presets; // "email", "phone", "iban", "card", "date"
    std::string fill = "black";       // "black", "white", "none" or "#RRGGBB"
    std::string password;             // of an encrypted input; never kept in history
    bool operator==(const Redact&) const = default;
};

/// One mark of a stamp job. `kind` says which of the fields below it reads:
///   "pageNumber": `format` with the tokens {n} and {total} (and {date}, {name} as in text);
///                 the marked pages are numbered from `start`, and {total} is the last number;
///   "bates": `prefix`, the number from `start` zero-padded to `digits`, `suffix`, running on
///            across the files of one job;
///   "text": `text` with the tokens {n}, {total}, {date} and {name};
///   "picture": the PNG or JPEG file `image`, `width` points wide.
/// Every mark is placed on the pages of `pages` (split's range grammar; empty: every page), the
/// first of them skipped with `skipFirst`, at `position` ("top-left" ... "bottom-right" or
/// "center"), `margin` points from the visible edges, turned by `rotation` degrees, with
/// `opacity` 0...1, above (`layer` "over") or below ("under") the page's own content.
struct StampMark {
    std::string kind = "pageNumber";
    std::string format = "{n}";
    std::int64_t start = 1;
    std::int64_t digits = 6;
    std::string prefix;
    std::string suffix;
    std::string text;
    std::string image;
    double width = 144;
    std::string pages;
    bool skipFirst = false;
    std::string position = "bottom-center";
    double margin = 24;
    double fontSize = 10;
    std::string color = "#000000";
    double opacity = 1;
    double rotation = 0;
    std::string layer = "over";
    bool operator==(const StampMark&) const = default;
};
struct Stamp {
    std::vector<StampMark> marks;
    bool operator==(const Stamp&) const = default;
};

/// Alternatives in `PDFOperationKind` order: the index is the kind.
using Any = std::variant<Compress, TargetSize, Merge, Split, Organize, PDFToImages, ImagesToPDF,
                         Clean, Protect, Unprotect, OCR, Redact, Stamp>;

template <typename C, typename Variant> inline constexpr bool isAlternativeOf = false;
template <typename C, typename... Alternatives>
inline constexpr bool
    isAlternativeOf<C, std::variant<Alternatives...>> = (std::is_same_v<C, Alternatives> || ...);

template <typename C>
concept Case = isAlternativeOf<C, Any>;

} // namespace parameter_cases

struct OperationParameters {
    using Compress = parameter_cases::Compress;
    using TargetSize = parameter_cases::TargetSize;
    using Merge = parameter_cases::Merge;
    using Split = parameter_cases::Split;
    using Organize = parameter_cases::Organize;
    using PDFToImages = parameter_cases::PDFToImages;
    using ImagesToPDF = parameter_cases::ImagesToPDF;
    using Clean = parameter_cases::Clean;
    using Protect = parameter_cases::Protect;
    using Unprotect = parameter_cases::Unprotect;
    using OCR = parameter_cases::OCR;
    using Redact = parameter_cases::Redact;
    using StampMark = parameter_cases::StampMark;
    using Stamp = parameter_cases::Stamp;

    using Case = parameter_cases::Any;

    Case value;

    OperationParameters() = default;
    template <parameter_cases::Case C>
    OperationParameters(C alternative) : value(std::move(alternative)) {}

    PDFOperationKind kind() const { return static_cast<PDFOperationKind>(value.index()); }

    /// The held case, or nullptr when another case is held.
    template <typename C> const C* as() const { return std::get_if<C>(&value); }

    /// Throws JSONDecodingError; see the contract above.
    static OperationParameters fromJSON(const nlohmann::ordered_json& json);

    bool operator==(const OperationParameters&) const = default;
};

static_assert(std::variant_size_v<OperationParameters::Case> ==
              RawValueNames<PDFOperationKind>::names.size());

nlohmann::ordered_json toJSON(const OperationParameters& parameters);

// Hooks so `ordered_json j = parameters;` and `j.get<OperationParameters>()` work.
void to_json(nlohmann::ordered_json& json, const OperationParameters& parameters);
void from_json(const nlohmann::ordered_json& json, OperationParameters& parameters);

} // namespace quillet
