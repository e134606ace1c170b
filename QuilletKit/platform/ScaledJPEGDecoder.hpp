// Decodes a JPEG at a reduced size in the DCT domain.
//
// The codec can produce 1/8, 1/4 or 1/2 of the image for much less work than the full image:
// the inverse DCT, upsampling and colour conversion all run at the smaller size. This picks the
// smallest of those (or the full size) that is still at least the requested size, so a caller
// scaling to that size afterwards loses nothing against a full decode.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <memory>

namespace quillet {

struct DecodedJPEG {
    struct Free {
        void operator()(std::uint8_t* pixels) const noexcept;
    };
    int width = 0;
    int height = 0;
    int bands = 0; // 1 gray, 3 RGB
    /// width × height × bands bytes, rows top to bottom without padding.
    std::unique_ptr<std::uint8_t[], Free> pixels;
};

class ScaledJPEGDecoder {
  public:
    /// The image decoded at the smallest of 1/8, 1/4, 1/2 and 1 with both sides at least `minWidth` and
    /// `minHeight`, as 8-bit gray (`gray`) or RGB. Only gray, YCbCr and RGB JPEGs are handled;
    /// CMYK, corrupt or truncated data (any warning of the codec) answers absent. Never throws.
    static std::optional<DecodedJPEG> decode(std::span<const std::uint8_t> jpeg, int minWidth,
                                             int minHeight, bool gray) noexcept;
};

} // namespace quillet
