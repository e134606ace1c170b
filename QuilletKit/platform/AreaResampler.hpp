// Shrinks 8-bit pixels by averaging the area each output pixel covers (a box filter with
// fractional edges), which is how a page renderer scales a large image down.
//
// Separable and in fixed point: a horizontal pass over each input row, then a vertical pass
// whose inner loop runs over contiguous bytes, so the compiler can vectorise it. Several times
// faster than a general-purpose resampling kernel for the factors a page raster needs.
#pragma once

#include "platform/Bitmap.hpp"

#include <cstdint>

namespace quillet {

class AreaResampler {
  public:
    /// `pixels` (width × height × bands bytes, rows without padding) scaled to exactly
    /// `outWidth` × `outHeight`. Shrinking averages; enlarging repeats the nearest pixel.
    /// Throws std::invalid_argument for empty sizes and std::length_error when the result
    /// cannot be held.
    static Bitmap resample(const std::uint8_t* pixels, int width, int height, PixelFormat format,
                           int outWidth, int outHeight);
};

} // namespace quillet
