// The proof that a converted font draws what the original drew, made by FreeType rather than by
// our own reader: both programs are opened with FT_New_Memory_Face and every glyph of the
// converted font is loaded unscaled and unhinted, by name, from both. Contours, points, point
// tags and the advance width must match exactly, the glyph sets must be the ones expected, and
// every code 0-255 must reach the same glyph name through the font's own encoding (its Adobe
// charmap: standard or custom) wherever that glyph was kept.
//
// Each call makes its own FT_Library, so calls may run on several threads at once. The buffers
// are only read. Never throws for malformed fonts: a font FreeType cannot open is a difference.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>

namespace quillet::fonts {

class FontVerifier {
  public:
    /// The first difference found, in words, or absent when the fonts agree on every glyph in
    /// `kept` (which the converted font must hold, and nothing else).
    static std::optional<std::string> firstDifference(std::span<const std::uint8_t> original,
                                                      std::span<const std::uint8_t> converted,
                                                      const std::set<std::string>& kept);

    static bool sameGlyphs(std::span<const std::uint8_t> original,
                           std::span<const std::uint8_t> converted,
                           const std::set<std::string>& kept) {
        return !firstDifference(original, converted, kept);
    }

    /// The names FreeType gives the glyphs at `indices` of `program` (any format FreeType opens;
    /// for Type 1 it moves .notdef to index 0). Indices past the end are skipped; a program
    /// FreeType cannot open gives no names.
    static std::set<std::string> glyphNames(std::span<const std::uint8_t> program,
                                            const std::set<unsigned>& indices);
};

} // namespace quillet::fonts
