// Converts an embedded Type 1 font program (/FontFile) into a bare CFF font (/FontFile3
// /Subtype /Type1C), optionally keeping only some glyphs, and proves the result with FreeType
// before handing it out: a conversion is returned only when every kept glyph loads with the same
// outline and advance width from both programs and every code reaches the same glyph name.
//
// Static and stateless; inputs are only read; safe to call from several threads at once.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>

namespace quillet::fonts {

struct ConvertedFont {
    std::string cff;
    std::string fontName;
};

class Type1ToCFF {
  public:
    /// `program` is the decoded /FontFile stream (PFB segments also accepted); `length1` and
    /// `length2` its /Length1 and /Length2, which may be absent or wrong.
    /// keepGlyphs: names to keep (.notdef always kept; glyphs that kept seac glyphs need are
    /// kept too; names the font lacks are ignored); nullopt keeps every glyph.
    /// Returns nullopt when the result cannot be proven identical (the caller keeps the
    /// original). Throws FontProgramError for a program that cannot be read, or whose
    /// charstrings are malformed or hostile.
    static std::optional<ConvertedFont>
    convert(std::span<const std::uint8_t> program, std::optional<std::int64_t> length1,
            std::optional<std::int64_t> length2,
            const std::optional<std::set<std::string>>& keepGlyphs);

    /// The names of glyphs by their indices as FreeType numbers them when it loads `program`
    /// (so .notdef at 0): what a caller that knows the glyph indices a page shows passes on
    /// as keepGlyphs.
    static std::set<std::string> glyphNamesForIndices(std::span<const std::uint8_t> program,
                                                      const std::set<unsigned>& freetypeIndices);
};

} // namespace quillet::fonts
