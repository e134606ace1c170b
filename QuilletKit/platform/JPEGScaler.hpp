// Scales a JPEG straight to a requested size, decoding at a reduced size where the codec can
// (the DCT can produce 1/2, 1/4 and 1/8 of the image without computing the full one), which is
// many times faster than decoding everything and scaling down afterwards.
#pragma once

#include "platform/Bitmap.hpp"

#include <cstdint>
#include <optional>
#include <span>

namespace quillet {

class JPEGScaler {
  public:
    /// The JPEG resized to exactly `width` × `height` in `format` (gray or RGB; other colour
    /// spaces converted). The EXIF orientation is ignored: a PDF draws the stored pixels. Absent
    /// when the data is not a readable JPEG. Never throws.
    static std::optional<Bitmap> decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                              int height, PixelFormat format) noexcept;
};

} // namespace quillet
