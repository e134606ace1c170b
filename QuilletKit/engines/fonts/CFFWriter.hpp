// Writes one bare CFF font (no CID, no OpenType wrapper) from a read Type 1 font and its
// converted glyphs: what PDF embeds as /FontFile3 /Subtype /Type1C.
//
// Glyph names are kept in the charset, since text extraction from fonts without /ToUnicode
// depends on them. The glyph order is the writer's choice: .notdef, then the encoded glyphs by
// code, then the rest, so that charset and encoding fall into ranges. A StandardEncoding font
// uses the predefined encoding; a custom one keeps every code, including several codes for one
// glyph (supplements). Widths are written against the defaultWidthX and nominalWidthX that make
// them shortest. Runs of path operators that several glyphs share become local subroutines.
//
// Pure function of its inputs; throws FontProgramError when .notdef is missing or the font is
// too large for CFF (more than 65,535 glyphs or strings).
#pragma once

#include "engines/fonts/CharstringConverter.hpp"
#include "engines/fonts/Type1Reader.hpp"

#include <string>
#include <utility>
#include <vector>

namespace quillet::fonts {

class CFFWriter {
  public:
    static std::string write(const Type1Font& font,
                             const std::vector<std::pair<std::string, Type2Glyph>>& glyphs);
};

} // namespace quillet::fonts
