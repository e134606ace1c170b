// One page as one encoded image: the raster that replaces an image-dominated page.
#pragma once

#include "platform/Bitmap.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

/// A box of pixels: columns left..right-1, rows top..bottom-1, from the top-left corner.
struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

struct RasterizedPage {
    /// The encoded file (JPEG, or PNG for lossless monochrome pages): its length is what the
    /// size predictions learn from.
    std::vector<std::uint8_t> data;
    bool isJPEG = false;
    int width = 0;
    int height = 0;
    PixelFormat format = PixelFormat::rgb;
    /// For PNG pages, the gray pixels themselves: a PDF stores them Flate-compressed, not as PNG.
    std::vector<std::uint8_t> pixels;
    /// Mixed raster content: the text and line art as a JBIG2 stream of `maskWidth` x
    /// `maskHeight` bits (1 = ink), painted in `ink` over the picture above. With no picture
    /// (`data` empty), the mask is the whole page, black on white: a bilevel page.
    std::vector<std::uint8_t> mask;
    /// A mixed page on even paper has no picture (`data` empty) but this colour under the mask.
    std::optional<std::array<std::uint8_t, 3>> paper;
    int maskWidth = 0;
    int maskHeight = 0;
    std::array<std::uint8_t, 3> ink{0, 0, 0};
    /// With more than one ink: their colours as a JPEG of `foregroundWidth` x
    /// `foregroundHeight` in the picture's format, painted through the mask instead of `ink`.
    std::vector<std::uint8_t> foreground;
    int foregroundWidth = 0;
    int foregroundHeight = 0;

    /// Photos of a mixed page, each a JPEG of `width` x `height` in the picture's format laid
    /// over `box` of the mask's pixels, between the picture and the mask.
    struct Patch {
        std::vector<std::uint8_t> jpeg;
        int width = 0;
        int height = 0;
        PixelBox box;
    };
    std::vector<Patch> patches;

    /// What the page's pictures weigh together.
    std::size_t bytes() const {
        std::size_t total = data.size() + mask.size() + foreground.size();
        for (const auto& patch : patches) {
            total += patch.jpeg.size();
        }
        return total;
    }
};

class PageRasterizer {
  public:
    struct Size {
        int width = 1;
        int height = 1;
    };

    /// Pixels for a box of `width` × `height` points at `dpi`: each side the integer part of
    /// dpi / 72 × points, at least 1, then scaled down (keeping the aspect) to at most
    /// 36 megapixels.
    static Size rasterSize(double width, double height, int dpi);

    /// Encodes a rendered page: colour pages as JPEG at `quality`; monochrome (gray) pages as PNG
    /// when `quality` is 0.6 or more (gentle tiers keep black-and-white pages lossless), else as
    /// gray JPEG. Absent when encoding fails.
    static std::optional<RasterizedPage> encode(Bitmap bitmap, double quality, bool monochrome);

    /// Whether `encode` writes JPEG for these settings (everything but gentle monochrome pages).
    static bool encodesAsJPEG(double quality, bool monochrome) {
        return !(monochrome && quality >= 0.6);
    }

    /// `bitmap` turned back by `degrees` (a multiple of 90): a page rendered as shown (rotated)
    /// becomes the unrotated image that its /Rotate turns again on display.
    static Bitmap unrotated(Bitmap bitmap, int degrees);
};

} // namespace quillet
