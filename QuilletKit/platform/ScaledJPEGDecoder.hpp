// Decodes a JPEG at a reduced size in the DCT domain, row by row.
//
// The codec can produce 1/8, 1/4 or 1/2 of the image for much less work than the full image:
// the inverse DCT, upsampling and colour conversion all run at the smaller size. This picks the
// smallest of those (or the full size) that is still at least the requested size, so a caller
// scaling to that size afterwards loses nothing against a full decode. Rows come out one at a
// time, so a caller that consumes them as they come never holds the decoded image.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

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
    /// Starts decoding `jpeg` at the smallest of 1/8, 1/4, 1/2 and 1 with both sides at least
    /// `minWidth` and `minHeight`, as 8-bit gray (`gray`) or RGB. Only gray, YCbCr and RGB JPEGs
    /// are handled: anything else, or a header the codec cannot read, answers null. `jpeg` must
    /// outlive the decoder. Never throws.
    static std::unique_ptr<ScaledJPEGDecoder> open(std::span<const std::uint8_t> jpeg,
                                                   int minWidth, int minHeight, bool gray) noexcept;

    ~ScaledJPEGDecoder();
    ScaledJPEGDecoder(const ScaledJPEGDecoder&) = delete;
    ScaledJPEGDecoder& operator=(const ScaledJPEGDecoder&) = delete;

    int width() const;
    int height() const;
    int bands() const;

    /// Decodes the next row, top to bottom, into `row` (width × bands bytes). False after the
    /// last row and on corrupt or truncated data (any warning of the codec); after a failure
    /// every later call is false too. Never throws.
    bool readRow(std::uint8_t* row) noexcept;

    /// The whole image at once, decoded as `open` describes; absent on any failure.
    static std::optional<DecodedJPEG> decode(std::span<const std::uint8_t> jpeg, int minWidth,
                                             int minHeight, bool gray) noexcept;

  private:
    struct Codec;
    explicit ScaledJPEGDecoder(std::unique_ptr<Codec> codec);
    std::unique_ptr<Codec> codec_;
};

} // namespace quillet
