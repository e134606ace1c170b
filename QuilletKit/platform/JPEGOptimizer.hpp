// Makes a JPEG smaller without touching a pixel: the same DCT coefficients, quantization tables
// and sampling, written again with Huffman tables built for this image (libjpeg's coefficient
// transcoding, as `jpegtran -optimize` does; the image is never decoded to pixels).
//
// Only gray and three-component baseline or progressive JPEGs are rewritten, and the APPn
// markers (JFIF, Adobe's colour transform flag, EXIF, ICC) are copied, so a viewer reads the
// colours exactly as before. Four-component (CMYK, YCCK) files are left alone: whether a PDF
// viewer inverts them depends on markers that a rewrite could change.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillet {

class JPEGOptimizer {
  public:
    /// The optimized file, or absent when `jpeg` cannot be read, is not one of the kinds above,
    /// or the result is not smaller. Never throws.
    static std::optional<std::vector<std::uint8_t>> optimized(std::span<const std::uint8_t> jpeg);
};

} // namespace quillet
