// The proof that a rewritten font program draws what the original drew: FreeType loads both
// (unscaled, unhinted) and compares glyph by glyph.
#pragma once

#include <set>
#include <string_view>

namespace quillet::fonts {

class GlyphProof {
  public:
    struct Checks {
        /// Glyph names must be the same (simple fonts reach glyphs by name).
        bool names = false;
        /// Every charmap of the original must map the same codes to each kept glyph.
        bool charmaps = false;
        /// CID-keyed CFF: each kept glyph must carry the same CID.
        bool cids = false;
    };

    /// Whether every glyph of `glyphs` (by index) has the same contours, points, point flags
    /// and advance width in both programs, with the `checks` asked for. False when either
    /// program cannot be loaded. Safe on any thread (a FreeType library per call).
    static bool sameGlyphs(std::string_view original, std::string_view rewritten,
                           const std::set<int>& glyphs, const Checks& checks);

    /// `glyphs` and every glyph that a code reaching one of them in any charmap of `program`
    /// reaches in another (a code c and its symbol-font form 0xF000 + c count as one): what a
    /// simple TrueType font must keep so that a viewer choosing another subtable than the one the
    /// glyphs were found through draws the same. `glyphs` alone when the program cannot be loaded.
    static std::set<int> closedOverCharmaps(std::string_view program, const std::set<int>& glyphs);
};

} // namespace quillet::fonts
