// A packed 1-bit image: what the bilevel encoders take.
//
// Rows run top to bottom, each rowBytes() = (width + 7) / 8 bytes with no padding between rows, the
// leftmost pixel in the most significant bit, and 1 = black: the convention of JBIG2 and of PDF
// image masks, so a scanned page goes to the encoder without inverting anything. Bits past the
// width in a row's last byte mean nothing: the encoders ignore them and equality skips them, so a
// caller filling rows directly need not clear them. A value like Bitmap: copying copies the bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

class BilevelImage {
  public:
    /// An all-white image. Throws std::invalid_argument when a side is below 1 and
    /// std::length_error when the byte count cannot be held in memory; both are decided before
    /// anything is allocated.
    BilevelImage(int width, int height);

    /// Adopts packed `rows`; throws std::invalid_argument when their count is not exactly
    /// rowBytes() x height (or the sizes are refused as above).
    BilevelImage(int width, int height, std::vector<std::uint8_t> rows);

    /// rowBytes() x height, computed without overflow; absent when a side is below 1 or the
    /// product exceeds what a std::vector can hold.
    static std::optional<std::size_t> byteCount(std::int64_t width, std::int64_t height);

    int width() const noexcept { return width_; }
    int height() const noexcept { return height_; }
    std::size_t rowBytes() const noexcept { return (static_cast<std::size_t>(width_) + 7) / 8; }

    /// Row `y`, which must be in 0..height-1: not checked, these are for loops over whole rows.
    const std::uint8_t* row(int y) const noexcept { return bits_.data() + offset(y); }
    std::uint8_t* row(int y) noexcept { return bits_.data() + offset(y); }
    const std::vector<std::uint8_t>& bytes() const noexcept { return bits_; }

    /// True for black. Both throw std::out_of_range for a point outside the image.
    bool pixel(int x, int y) const;
    void setPixel(int x, int y, bool black);

    /// Same size and same pixels.
    bool operator==(const BilevelImage& other) const noexcept;

  private:
    std::size_t offset(int y) const noexcept { return static_cast<std::size_t>(y) * rowBytes(); }
    void checkPoint(int x, int y) const;

    int width_;
    int height_;
    std::vector<std::uint8_t> bits_;
};

} // namespace quillet
