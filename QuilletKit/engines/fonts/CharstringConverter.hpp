// Turns the Type 1 charstrings of one font into Type 2 charstrings that draw the same outline.
//
// The Type 1 program is run, not translated: subroutines are inlined, flex (othersubrs 0-2)
// becomes the two curves it stands for, `div` is computed in 16.16 fixed point the way
// interpreters do, closepath disappears (Type 2 closes at every moveto), and the sidebearing
// goes into the first moveto. Stems are kept; where hint replacement (othersubr 3) or stems
// declared mid-path occur they become hstemhm/vstemhm with hintmask, and past Type 2's 96 stems
// the hints are dropped (the outline never depends on them).
//
// seac becomes the Type 2 `endchar` accent form; its two components must then stay in the font
// (see `components`). A seac after drawn path is decomposed into one outline instead.
//
// Hostile programs fail with FontProgramError instead of running away: operand stack past 24,
// subroutines nested past 10, more than 65,536 operations in a glyph (loops through callsubr),
// a Type 2 result past 65,535 bytes, seac inside a component.
//
// Holds a reference to the font, which must outlive the converter; const, so one converter may
// be used from several threads.
#pragma once

#include "engines/fonts/Type1Reader.hpp"
#include "engines/fonts/Type2Encoder.hpp"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillet::fonts {

struct Type2Glyph {
    /// The advance width, 16.16 fixed.
    Fixed width = 0;
    /// The charstring without the width (see encodeType2).
    std::string body;
    /// The base and accent names of an accented composite: the font must keep both.
    std::vector<std::string> components;
};

class CharstringConverter {
  public:
    explicit CharstringConverter(const Type1Font& font);

    bool contains(std::string_view glyphName) const { return byName_.count(glyphName) != 0; }
    /// Throws FontProgramError for an unknown name or a malformed or hostile charstring.
    Type2Glyph convert(std::string_view glyphName) const;

  private:
    const Type1Font& font_;
    std::map<std::string, const std::string*, std::less<>> byName_;
};

} // namespace quillet::fonts
