// Image files in and out, over libvips.
//
// libvips starts once per process, on first use, from whichever thread comes first; after that
// every function here may run on any number of threads at once (libvips operations never modify
// their inputs). Untrusted loaders (ImageMagick, SVG, PDF, JPEG 2000, ...) are blocked, and the
// operation cache is off: a cached decode would outlive a file that changed on disk.
//
// Nothing here throws: a file or buffer that cannot be decoded, or a bitmap that cannot be
// encoded, answers absent.
#pragma once

#include "platform/Bitmap.hpp"
#include "platform/FileTypes.hpp"
#include "platform/SafetyLimits.hpp"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace quillet {

class ImageIO {
  public:
    /// Decoded images above this many pixels are refused before their pixels are read.
    static constexpr std::int64_t maxDecodePixels = limits::imageDecodePixels;

    /// Starts libvips; answers false when it cannot start (every other call then answers
    /// absent or false). Safe to call from many threads and many times.
    static bool initialise() noexcept;

    /// The image in `path` (any format ImageIO loads, recognised by content, not by name) as an
    /// 8-bit gray or RGB bitmap: alpha composited onto white, CMYK and 16-bit images converted,
    /// the stored pixel order kept (an EXIF orientation is not applied). A truncated or damaged
    /// file answers absent rather than a partly gray picture.
    static std::optional<Bitmap> decode(const std::filesystem::path& path) noexcept;
    static std::optional<Bitmap> decode(std::span<const std::uint8_t> bytes) noexcept;

    /// As `decode`, with the alpha channel kept apart instead of composited: the colour
    /// unchanged under it, and the alpha as a gray bitmap (absent for an opaque image).
    struct WithAlpha {
        Bitmap colour;
        std::optional<Bitmap> alpha;
    };
    /// A picture wider than `maxWidth` pixels (when above 0) is shrunk to it while it is read,
    /// so a huge one never sits in memory whole.
    static std::optional<WithAlpha> decodeKeepingAlpha(const std::filesystem::path& path,
                                                       int maxWidth = 0) noexcept;

    /// The size in pixels the image in `path` declares, read from its header alone; absent when
    /// it is no image ImageIO loads.
    static std::optional<std::pair<int, int>> probe(const std::filesystem::path& path) noexcept;

    /// Quality 0 ... 1 as the encoders' Q 1 ... 100 (rounded; out-of-range values clamp, NaN
    /// counts as 0).
    static int qualityFactor(double quality) noexcept;

    /// Whether this libvips has an encoder for `kind`; only png, jpeg, tiff and heic are offered.
    static bool canEncode(FileKind kind) noexcept;

    /// The bytes of an image file of `kind`. `quality` is used by jpeg and heic only; png and tiff
    /// (deflate-compressed) are lossless and give the same bytes whatever the quality. Metadata
    /// is not written, so equal bitmaps give equal bytes. With `fullChroma`, a jpeg keeps its
    /// colour at every pixel instead of one per 2 x 2 below quality 90: for small pictures of
    /// colour where a pixel is a word's colour.
    static std::optional<std::vector<std::uint8_t>>
    encode(const Bitmap& bitmap, FileKind kind, double quality, bool fullChroma = false) noexcept;
};

} // namespace quillet
