// Makes a JPEG smaller without touching a pixel: the same DCT coefficients, quantization tables
// and sampling, written again with Huffman tables built for this image, in sequential or
// progressive scans, whichever is smaller (libjpeg's coefficient transcoding; the image is never
// decoded to pixels).
//
// Only gray and three-component JPEGs are rewritten. The markers that can change how a reader
// takes the samples (JFIF, ICC profile, Adobe's colour transform flag) are copied, so a viewer
// reads the colours exactly as before; EXIF, XMP, Photoshop data and comments are dropped.
// Four-component (CMYK, YCCK) files are left alone: whether a PDF viewer inverts them depends on
// markers that a rewrite could change.
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
