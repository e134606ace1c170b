// Redaction: takes out, for good, what lies under areas that the user draws or that the patterns
// find, and proves it.
//
// Under every area the glyphs go (visible or not, in forms too) and the pixels of images turn
// black (MuPDF's redaction), then the paths wholly inside are removed, the rest of the drawing is
// clipped out, annotations and form fields over the areas go, and the areas are painted in the
// fill colour (RedactedDrawing, RedactedExtras). The patterns' matches also leave the metadata,
// outline, annotations' texts, form values and attachment names. Everything else of the file is
// kept: its text stays text, its images and drawings vector.
//
// The written file is read again before it replaces anything: no glyph may remain under an area
// and no pattern may match in its text or its other places; otherwise the job fails and nothing
// is written. The output is never encrypted.
#pragma once

#include "engines/RedactionFinder.hpp"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quillet {

/// A rectangle on a page (one-based) as the reader sees it: points from the top-left corner of
/// the visible page, y downwards.
struct RedactionArea {
    int page = 1;
    double x = 0, y = 0, width = 0, height = 0;
};

struct RedactionRequest {
    std::vector<RedactionArea> areas;
    std::vector<RedactionPattern> patterns;
    std::vector<std::string> presets;
    /// "black", "white", "none" (nothing painted) or "#RRGGBB".
    std::string fill = "black";
    std::string password;
};

/// One match of a pattern, for listing (`--dry-run`).
struct RedactionHit {
    int page = 1; // one-based
    RedactionMatch match;
};

struct RedactionOutcome {
    int areas = 0; // the areas given and the matches on pages
    int pages = 0; // pages with at least one area
    std::map<std::string, int> matchesByPattern; // on pages and elsewhere, by pattern or preset
    int matchesElsewhere = 0;                    // in metadata, outline, annotations, forms...
};

class PDFRedactionEngine {
  public:
    using Progress = std::function<void(double)>;
    using Cancelled = std::function<bool()>;

    /// Checks the request on its own. Throws PDFCoreError (invalidInput) naming what is wrong: nothing to look for, an area without width or height or before page 1, an empty
    /// pattern, an invalid expression, an unknown preset or fill.
    static void validate(const RedactionRequest& request);

    /// Every match of the request's patterns, page by page, changing nothing.
    static std::vector<RedactionHit> find(const std::filesystem::path& input,
                                          const RedactionRequest& request,
                                          const Progress& progress = {},
                                          const Cancelled& cancelled = {});

    /// Writes `input` redacted to `output` as described above. Throws PDFCoreError:
    /// invalidInput for the request (see `validate`), an area on a page the file does not have,
    /// and "NAME: nothing to redact" when no area is given and nothing matches; validationFailed
    /// when the proof fails; fileNotFound, cannotOpen and wrongPassword for the input;
    /// writeFailed. Throws CancellationError when `cancelled` answers true.
    static RedactionOutcome redact(const std::filesystem::path& input,
                                   const std::filesystem::path& output,
                                   const RedactionRequest& request, const Progress& progress = {},
                                   const Cancelled& cancelled = {});
};

} // namespace quillet
