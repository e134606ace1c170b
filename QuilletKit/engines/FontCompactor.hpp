// Makes the embedded fonts of a document smaller without changing what any page shows.
//
// - Type 1 programs (/FontFile) become bare CFF (/FontFile3 /Type1C) through our own converter,
//   proven glyph by glyph with FreeType; a program the proof refuses stays Type 1.
// - TrueType, OpenType and CFF programs lose the tables PDF rendering does not read.
// - When the glyphs the document shows are known (`usage`), every program is cut to them, with
//   glyph indices kept; the subset gets a fresh six-letter tag in /BaseFont and /FontName.
//   Fonts of the form's default resources (/AcroForm /DR) stay whole: a user may still type
//   into the form with them. So do the fonts of annotation appearances: a hidden or print-only
//   annotation is not drawn when the pages are run, so its glyphs are not known.
// A program that cannot be read, or whose rewrite fails its proof, stays as it is.
#pragma once

#include <qpdf/QPDF.hh>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillet {

struct FontCompaction {
    int converted = 0; // Type 1 to CFF
    int subset = 0;
    int trimmed = 0; // tables dropped, every glyph kept
    std::int64_t bytesBefore = 0;
    std::int64_t bytesAfter = 0;
};

class FontCompactor {
  public:
    using Cancelled = std::function<bool()>;
    /// Glyph indices shown, by the content digest of each program's decoded bytes.
    using GlyphUsage = std::map<std::string, std::set<int>>;

    /// `fonts`: the font dictionaries to look at (those the written document reaches). Throws
    /// only CancellationError.
    static FontCompaction compact(QPDF& qpdf, const std::vector<QPDFObjectHandle>& fonts,
                                  const std::optional<GlyphUsage>& usage,
                                  const Cancelled& cancelled);
};

} // namespace quillet
