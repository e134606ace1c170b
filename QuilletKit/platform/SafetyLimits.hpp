// The ceilings that keep a hostile or broken file from exhausting memory, time or the stack.
//
// Every limit that protects the program from its input lives here, so that raising or lowering
// one is a single reviewed change and the places that enforce them cannot drift apart.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillet::limits {

/// Decoded bytes of one stream we read ourselves (a page's content, a form's content). Far above
/// any real content stream; a Flate bomb reaches it in well under a second and is then dropped.
inline constexpr std::size_t decodedStreamBytes = std::size_t{256} << 20;

/// Decoded bytes of all streams whose filters are stacked (Flate of Flate, Flate of LZW, ...),
/// measured when a document is opened. Stacking is how a few kilobytes expand to gigabytes (one
/// Flate layer expands at most about 1000 times); qpdf's writer and the renderer would decode
/// such streams in full, so a document past this budget is refused at the door. One budget for
/// the whole document keeps many such streams from adding up to minutes.
inline constexpr std::size_t stackedFilterBytes = std::size_t{256} << 20;

/// Pixels of one rendered page, checked before the bitmap is allocated (400 MP is an A0 poster
/// at about 330 dpi, and 1.6 GB of RGBA).
inline constexpr std::int64_t renderPixels = 400'000'000;

/// Pixels of one decoded image file (PNG, JPEG, TIFF...), checked from its header in 64-bit
/// arithmetic before the pixels are read.
inline constexpr std::int64_t imageDecodePixels = 400'000'000;

/// Nesting of form XObjects followed when scanning content. Cycles are cut on the current path
/// anyway; the depth bounds chains that are long without repeating.
inline constexpr int formDepth = 32;

} // namespace quillet::limits
