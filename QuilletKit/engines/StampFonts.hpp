// The fonts of stamped text: found through fontconfig, shaped with HarfBuzz, embedded once per
// document as subsets holding only the glyphs that were shaped.
//
// Two faces serve every mark: DejaVu Sans (Latin, Greek, Cyrillic) and Noto Sans CJK SC
// (Chinese). A text is set in DejaVu Sans when it has every character, otherwise in Noto Sans CJK
// SC when that has every one (so "第 3 页" is one face), otherwise character by character in the
// first face that has it. A face is read only when a text needs it.
//
// Use: `shape` every text first, then `embed` once, then `show` the shaped texts: embedding
// renumbers the glyphs, and the codes that `show` writes are those of the subsets. Each face
// becomes one /Type0 font (Identity-H) with a CID font, its subset program, /W widths and a
// /ToUnicode map, so the text can be found and copied. Not thread-safe; one per document.
#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

/// One run of glyphs in one face. Advances are in thousandths of the font size, kerning included.
struct ShapedRun {
    int face = 0;
    struct Glyph {
        unsigned gid = 0;
        double advance = 0;
        std::string text; // the characters the glyph stands for; empty after the first of a cluster
    };
    std::vector<Glyph> glyphs;
};

/// A shaped text: its runs and its extent, in thousandths of the font size from the start of
/// its baseline. The advance box (width, ascent, descent) is where the text sits; the ink box
/// is what its glyphs cover, which may reach beyond it (the tail of a "j", an overhanging "f").
struct ShapedText {
    std::vector<ShapedRun> runs;
    double width = 0;
    double ascent = 0;   // above the baseline, positive
    double descent = 0;  // below the baseline, negative
    double inkLeft = 0, inkBottom = 0, inkRight = 0, inkTop = 0;
};

class StampFonts {
  public:
    StampFonts();
    ~StampFonts();
    StampFonts(const StampFonts&) = delete;
    StampFonts& operator=(const StampFonts&) = delete;

    /// Shapes UTF-8 `text` (invalid bytes are replaced). Throws PDFCoreError (invalidInput) when
    /// a face the text needs is not installed, naming it, or when no face has a character,
    /// naming the character.
    ShapedText shape(std::string_view text);

    /// Embeds every face that a shaped text used into `qpdf`. Call once, after the last `shape`.
    /// Throws PDFCoreError (invalidInput) when a face cannot be subset.
    void embed(QPDF& qpdf);

    /// The /Font resources for `text` (name → font) and the text-showing operators that draw it
    /// at the current text position with `size`: `Tf` and `TJ` per run. Only after `embed`.
    std::map<std::string, QPDFObjectHandle> resources(const ShapedText& text) const;
    std::string show(const ShapedText& text, double size) const;

  private:
    struct Face;
    Face& face(int index);

    std::vector<std::unique_ptr<Face>> faces_;
};

} // namespace quillet
