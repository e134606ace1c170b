// A plain 8-bit pixel buffer: the value that passes between the renderer, the image decoder and the
// encoders.
//
// Rows run top to bottom, pixels left to right, `bands` bytes per pixel (1 = gray, 3 = RGB), with
// no padding between rows and no alpha: every producer composites onto white first. A bitmap is a
// value: copying copies the pixels, and nothing else holds a reference to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

enum class PixelFormat { gray = 1, rgb = 3 };

class Bitmap {
  public:
    /// A bitmap with every byte set to `fill` (255, white, by default). Throws
    /// std::invalid_argument when a side is below 1 and std::length_error when the byte count
    /// cannot be held in memory; both are decided before anything is allocated.
    Bitmap(int width, int height, PixelFormat format, std::uint8_t fill = 255);

    /// Adopts `pixels`; throws std::invalid_argument when their count is not exactly
    /// width x height x bands (or the sizes are refused as above).
    Bitmap(int width, int height, PixelFormat format, std::vector<std::uint8_t> pixels);

    /// width x height x bands, computed without overflow; absent when a side is below 1 or the
    /// product exceeds what a std::vector can hold.
    static std::optional<std::size_t> byteCount(std::int64_t width, std::int64_t height,
                                                PixelFormat format);

    int width() const noexcept { return width_; }
    int height() const noexcept { return height_; }
    PixelFormat format() const noexcept { return format_; }
    int bands() const noexcept { return static_cast<int>(format_); }
    std::size_t rowBytes() const noexcept {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(bands());
    }
    std::int64_t pixelCount() const noexcept { return static_cast<std::int64_t>(width_) * height_; }

    const std::vector<std::uint8_t>& pixels() const noexcept { return pixels_; }
    std::uint8_t* data() noexcept { return pixels_.data(); }
    const std::uint8_t* data() const noexcept { return pixels_.data(); }

    /// True when the buffer holds exactly the bytes its size promises; false only for a bitmap
    /// whose pixels were moved away.
    bool isIntact() const noexcept;

    bool operator==(const Bitmap&) const = default;

  private:
    int width_;
    int height_;
    PixelFormat format_;
    std::vector<std::uint8_t> pixels_;
};

} // namespace quillet
