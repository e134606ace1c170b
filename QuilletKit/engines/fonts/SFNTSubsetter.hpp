// Cuts TrueType, OpenType and bare CFF font programs to the glyphs a document shows, with the
// glyph indices kept (so no content stream and no /W or /CIDToGIDMap changes), and drops the
// tables that PDF rendering does not read, through HarfBuzz's subsetter.
//
// What stays: the outlines and metrics of the kept glyphs, their hinting, and for a simple font
// (codes reach glyphs through the program's own cmap or glyph names) its whole cmap and its glyph
// names; a CID-keyed font (glyphs reached through /CIDToGIDMap or a CFF charset) keeps neither
// cmap nor names in TrueType, and keeps its CID mapping in CFF. Every result is proven with
// FreeType before it is offered: each kept glyph must have the same points, contours, flags and
// advance as in the original, and for a simple font the same name and the same codes in every
// charmap; otherwise there is no result and the caller keeps the original.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace quillet::fonts {

class SFNTSubsetter {
  public:
    enum class Format {
        trueType, // /FontFile2, or /FontFile3 /OpenType
        bareCFF,  // /FontFile3 /Type1C or /CIDFontType0C
    };

    struct Request {
        Format format = Format::trueType;
        /// Codes reach glyphs through the program's cmap or glyph names (a simple font).
        bool simple = true;
        /// The glyph indices to keep (glyph 0 always is); absent keeps every glyph and only
        /// drops tables.
        std::optional<std::set<int>> glyphs;
    };

    /// The smaller program, or absent when subsetting fails, is not smaller, or the proof fails.
    /// Never throws for the program's content; a hostile program fails here and nowhere else.
    static std::optional<std::string> subset(std::string_view program, const Request& request);
};

} // namespace quillet::fonts
