// Reads a Type 1 font program as PDF embeds it (/FontFile, decoded): the cleartext section, the
// eexec-encrypted section in binary or hexadecimal form, and the optional trailer of zeros. A
// program wrapped in PFB segments (0x80 0x01 ...) is unwrapped first, since some producers embed
// the file as it lay on disk.
//
// /Length1 and /Length2 are hints only: they are wrong in enough real files that the eexec
// boundary is found by looking for `eexec`, and the hint is taken only where it agrees.
// Charstrings and subroutines are returned decrypted, lenIV bytes removed, still in Type 1 form.
//
// Pure parsing of caller-owned bytes, no state: safe on any thread. Throws FontProgramError when
// the program has no CharStrings, a byte count runs past the data, or lenIV is out of range.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quillet::fonts {

/// The hinting values of the Private dictionary; absent means the font did not set it.
struct Type1Private {
    std::vector<double> blueValues, otherBlues, familyBlues, familyOtherBlues;
    std::vector<double> stemSnapH, stemSnapV;
    std::optional<double> blueScale, blueShift, blueFuzz, stdHW, stdVW, expansionFactor;
    bool forceBold = false;
    int languageGroup = 0;
    int lenIV = 4;
};

struct Type1Font {
    std::string fontName;
    std::optional<std::string> version, notice, fullName, familyName, weight;
    double italicAngle = 0;
    bool isFixedPitch = false;
    std::optional<double> underlinePosition, underlineThickness, strokeWidth;
    int paintType = 0;
    std::array<double, 6> fontMatrix{0.001, 0, 0, 0.001, 0, 0};
    std::array<double, 4> fontBBox{0, 0, 0, 0};
    /// True for `/Encoding StandardEncoding def`; otherwise `encoding` holds the custom array
    /// (codes mapped to .notdef left out; several codes may name the same glyph).
    bool standardEncoding = false;
    std::map<int, std::string> encoding;
    Type1Private privateDict;
    /// Decrypted subroutines by number; numbers the font never defined hold empty strings.
    std::vector<std::string> subrs;
    /// Decrypted charstrings in file order.
    std::vector<std::pair<std::string, std::string>> charStrings;
};

class Type1Reader {
  public:
    static Type1Font read(std::span<const std::uint8_t> program,
                          std::optional<std::int64_t> length1 = std::nullopt,
                          std::optional<std::int64_t> length2 = std::nullopt);
};

} // namespace quillet::fonts
