// Moves runs of path operators that several Type 2 charstrings share into local subroutines.
//
// Type 1 fonts that build glyphs from shared pieces (serifs, bowls, accented letters drawn with
// their base) carry those pieces as subroutines; inlining them to convert makes the CFF larger
// than the original. This gives the sharing back. Only whole path operators with their operands
// move (never the first operator, which may carry the width, never hints or endchar), so a call
// leaves the interpreter exactly where the inlined operators would have.
//
// Pure function; the charstrings must be well formed, as the Type 2 encoder writes them.
#pragma once

#include <string>
#include <vector>

namespace quillet::fonts {

struct Subroutinized {
    std::vector<std::string> charstrings;
    /// The local subroutines, each ending in return; empty when nothing is worth sharing.
    std::vector<std::string> subrs;
};

Subroutinized subroutinize(const std::vector<std::string>& charstrings);

/// The number a charstring pushes to call local subroutine `index` among `count`.
int subrBias(std::size_t count);

} // namespace quillet::fonts
