// Shrinks 8-bit pixels by averaging the area each output pixel covers (a box filter with
// fractional edges), which is how a page renderer scales a large image down.
//
// Separable and in fixed point: a horizontal pass over each input row, then a vertical pass
// whose inner loop runs over contiguous bytes, so the compiler can vectorise it. Several times
// faster than a general-purpose resampling kernel for the factors a page raster needs.
#pragma once

#include "platform/Bitmap.hpp"

#include <cstdint>
#include <functional>

namespace quillet {

class AreaResampler {
  public:
    /// `pixels` (width × height × bands bytes, rows without padding) scaled to exactly
    /// `outWidth` × `outHeight`. Shrinking averages; enlarging repeats the nearest pixel.
    /// Throws std::invalid_argument for empty sizes and std::length_error when the result
    /// cannot be held.
    static Bitmap resample(const std::uint8_t* pixels, int width, int height, PixelFormat format,
                           int outWidth, int outHeight);

    /// Input row `y` (width × bands bytes), valid until the next call. Rows are asked for in
    /// ascending order, each at most once (enlarging may skip some), so a source can decode them
    /// as they are asked for and hold one at a time. A source may throw to abandon the work.
    using RowSource = std::function<const std::uint8_t*(int y)>;

    /// The same from rows produced on demand: memory holds a few rows of the output's width
    /// besides the output, never the whole input.
    static Bitmap resample(const RowSource& rows, int width, int height, PixelFormat format,
                           int outWidth, int outHeight);
};

} // namespace quillet
