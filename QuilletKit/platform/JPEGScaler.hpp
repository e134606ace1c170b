// Scales a JPEG straight to a requested size: decoded at a reduced size where the codec can (the
// DCT can produce 1/2, 1/4 and 1/8 of the image without computing the full one), then averaged
// down to the exact size. Far faster than rendering the page that shows it.
#pragma once

#include "platform/Bitmap.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillet {

class JPEGScaler {
  public:
    /// The JPEG resized to exactly `width` × `height` in `format` (gray or RGB; other colour
    /// spaces converted). The EXIF orientation is ignored: a PDF draws the stored pixels. Absent
    /// when the data is not a readable JPEG. Never throws.
    static std::optional<Bitmap> decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                              int height, PixelFormat format) noexcept;

    /// The same picture encoded as JPEG at `quality` (0 ... 1), with the settings of every other
    /// JPEG we write. Absent on any failure.
    static std::optional<std::vector<std::uint8_t>> reencoded(std::span<const std::uint8_t> jpeg,
                                                              int width, int height,
                                                              PixelFormat format,
                                                              double quality) noexcept;
};

} // namespace quillet
