// A glyph as the Type 1 interpreter leaves it (stems, a path of relative moves, lines and curves
// with hint-set changes between them, or an accented composite) and its Type 2 encoding.
//
// All values are 16.16 fixed point, so that results of `div` survive exactly; whole numbers are
// written in the short integer forms. The encoder chooses the compact operators (hlineto,
// hvcurveto, hhcurveto...) only where they produce the same points, so the outline is unchanged.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillet::fonts {

using Fixed = std::int64_t;
constexpr Fixed fixedOne = 65536;

struct Stem {
    bool horizontal = true;
    Fixed position = 0;
    Fixed width = 0;
    bool operator==(const Stem&) const = default;
};

/// Type 2 addresses at most 96 stems through hintmask.
constexpr std::size_t maxStems = 96;
using HintSet = std::bitset<maxStems>;

struct PathOp {
    enum class Kind { move, line, curve, mask };
    Kind kind = Kind::move;
    /// move and line use d[0], d[1]; curve uses all six.
    std::array<Fixed, 6> d{};
    /// For mask: the stems (indices into GlyphProgram::stems) active from here on.
    HintSet hints;
};

struct Seac {
    Fixed adx = 0, ady = 0;
    int baseCode = 0, accentCode = 0;
};

struct GlyphProgram {
    /// Every stem the glyph declares, in the order first seen, without repeats.
    std::vector<Stem> stems;
    std::vector<PathOp> ops;
    std::optional<Seac> seac;
};

/// The Type 2 charstring of `glyph` without the width (which the font writer puts in front,
/// relative to nominalWidthX), ending in endchar. Every operator leaves room for that width on
/// the stack. Throws FontProgramError when a value does not fit the Type 2 number range.
std::string encodeType2(const GlyphProgram& glyph);

/// Appends the Type 2 charstring form of a number.
void appendType2Number(std::string& out, Fixed value);

} // namespace quillet::fonts
