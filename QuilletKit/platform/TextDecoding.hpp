// Bytes that came out of a PDF made into valid UTF-8 for every door (reports, JSON, the app).
//
// Names and strings carry whatever bytes their producer chose: UTF-8, or legacy encodings such as
// the GBK that Chinese producers use for font names (黑体 as BA DA CC E5). Text that is already
// UTF-8 is kept; bytes that read cleanly as GB18030 (GBK's superset) are decoded from it;
// anything else keeps its ASCII and shows each byte that does not fit as U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace quillet {

bool isValidUTF8(std::string_view bytes);

/// Never throws for the content of `bytes`.
std::string validUTF8(std::string_view bytes);

} // namespace quillet
