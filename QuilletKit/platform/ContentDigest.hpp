// A short name for a run of bytes, to find equal contents (font programs, streams) without
// keeping them: the length and two independent 64-bit hashes, as 40 hexadecimal digits. Equal
// bytes always give equal digests; different bytes give different ones in all but the most
// contrived cases, so callers that must be certain compare the bytes themselves.
#pragma once

#include <string>
#include <string_view>

namespace quillet {

std::string contentDigest(std::string_view bytes);

} // namespace quillet
