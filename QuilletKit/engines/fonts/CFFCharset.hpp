// Small readings and one rewrite of a bare CFF font program (Adobe Technical Note 5176).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillet::fonts {

/// The last operand before operator `op` (0...21, not the escaped ones) in the Top DICT of the
/// first font, or absent when the program cannot be read that far or has no such operator.
std::optional<long> cffTopDictOperand(std::string_view cff, int op);

/// The CharStrings count: the INDEX that Top DICT operator 17 points at. Zero when unreadable.
unsigned cffGlyphCount(std::string_view cff);

/// Rewrites the charset of a CID-keyed program in place so that every glyph's CID is its index:
/// a PDF that shows glyph N with code N then draws the same in every reader, whether it maps
/// codes through the charset or takes them as glyph indices. The new charset is never longer
/// than the old one, so nothing moves. False (and `cff` unchanged) when the program is not
/// CID-keyed or its charset cannot be read.
bool makeCIDsGlyphIndices(std::string& cff);

} // namespace quillet::fonts
