// Writes a bitmap as a PNG file in memory: 8 bits per sample, no interlacing, no filtering (on
// rendered pages, flat colour with sharp edges, filters cost time and win nothing), one IDAT chunk
// compressed with libdeflate, which deflated a rendered colour page in 23 ms where zlib's level 4
// took 40 ms, and a little smaller. An RGB bitmap whose every pixel is gray is written as a gray
// PNG: the same pixels in a third of the data, which is what text pages are.
#pragma once

#include "platform/Bitmap.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillet::PNGEncoder {

/// The PNG bytes of `bitmap`; absent when it is not intact or the compressor cannot be had.
std::optional<std::vector<std::uint8_t>> encode(const Bitmap& bitmap);

} // namespace quillet::PNGEncoder
