// Reads a scanned page and splits it into mixed raster content: the text and line art as a
// bilevel mask at the scan's own resolution, painted in its ink, over a background picture at a
// fraction of that resolution. Sharp text costs a JBIG2 mask of tens of kilobytes; the paper,
// its tint and its noise cost a small blurred JPEG.
//
// How the page is read (a few passes over the pixels, by blocks and tiles):
// - the paper's brightness in each block is the 90th percentile of its luminance, widened to the
//   brightest of the block and its neighbours, so tinted or unevenly lit paper is still paper;
// - a pixel is ink when, on the scan softened by a blur of about a tenth of a millimetre (smooth
//   outlines, no grain, whole hairlines), it is darker than 60% of its paper plus half the level of
//   the page's ink (the median of the pixels under 60%): soft print, never black, keeps its
//   strokes' weight; isolated ink pixels are noise;
// - the background leaves out the ink's soft edge (two pixels) and, a little further out, the
//   pixels darker than the paper (the ringing a JPEG scan puts around every letter), which would
//   otherwise lay a grey box behind each line;
// - a tile of 16 x 16 pixels where more than a third of the pixels are mid-tones (neither paper
//   nor ink) and less than 30% bare paper, in a region of at least 64 such tiles that fills at
//   least 30% of its bounding box (a smaller or sparser one is thick or blurred lettering), is
//   part of a photo or halftone; so is the rest of the box (its shadows look like ink). Those
//   pixels (and the neighbouring tiles') never go in the mask: each such box becomes a picture
//   of its own at a photo's resolution, laid over a background that needs only the paper's;
// - a background whose cells all lie within 8 levels of their mean is even paper: one colour
//   under the mask, no picture;
// - the ink's colour has the mean lightness of the pixels under the mask and the hue most of
//   the ink has, each cell of 25 DPI seen through the darker half of its ink pixels (soft edges
//   carry the paper's tint); when a few words' worth of cells have another hue (a blue heading,
//   a red stamp, a line of coloured links), the colours go in a small foreground picture
//   painted through the mask, so every letter stays sharp in its own colour;
// - a page whose pixels are nearly all black or white (at most 0.3% mid-tones, fewer coloured
//   pixels than a coloured word has) is bilevel: its mask is the whole page;
// - a page that is a mask already (compressed before) keeps its letters bit for bit where it
//   still shows them, and gains only ink found more than two pixels from them.
#pragma once

#include "engines/PageRasterizer.hpp"
#include "platform/BilevelImage.hpp"
#include "platform/Bitmap.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

struct ScanReading {
    enum class Kind { bilevel, text, photo };
    Kind kind = Kind::text;
    /// The ink (1) found at the scan's size.
    BilevelImage ink{1, 1};
    /// Its colour, sRGB (gray pages: three equal values): as light as the mean of the scan's
    /// pixels under the mask, so painted in it the text keeps its darkness, in the hue of most
    /// of the ink.
    std::array<std::uint8_t, 3> inkColour{0, 0, 0};
    /// Whether the ink is all of that hue, bar fewer cells than a short word has; otherwise the
    /// ink's colours are kept in a foreground picture.
    bool oneInk = true;
    /// Whether some blocks are photo or halftone, and the boxes of scan pixels that hold them
    /// (the neighbouring tiles included), top to bottom.
    bool hasPhotos = false;
    std::vector<PixelBox> photos;
    /// The paper's luminance in each block of 32 x 32 pixels, row by row (text pages only).
    std::vector<int> paper;
    int paperColumns = 0;
    /// The luminance of every pixel of the scan, for `split`.
    std::vector<std::uint8_t> luminance;
};

class MixedRaster {
  public:
    /// What `scan` (the page at the scan's resolution, `scanDpi`) is made of. With `ink` (of the
    /// scan's size), the page's text is a mask already: its letters are kept bit for bit where
    /// the scan still shows them, and joined by ink found away from them; thresholding the
    /// sharp letters a mask draws would thicken them on every pass. Throws
    /// std::invalid_argument when `ink` is not of the scan's size.
    static ScanReading read(const Bitmap& scan, int scanDpi, const BilevelImage* ink = nullptr);

    /// A picture's resolution and JPEG quality.
    struct Setting {
        int dpi = 0;
        double quality = 0;
    };
    struct Settings {
        Setting background; // paper
        Setting photos;     // the background of a page whose photos fill a tenth of it or more
        Setting figures;    // the pictures of smaller photos and figures, each of its own
    };

    /// The page as mixed raster content: the mask of `reading` coded as JBIG2 at the scan's
    /// `scanDpi`; `scan` without the ink as a JPEG background (or one colour, on even paper); the
    /// photos in it or in pictures of their own; and with more than one ink, their colours at
    /// 25 DPI. Absent when encoding fails.
    static std::optional<RasterizedPage> split(const Bitmap& scan, const ScanReading& reading,
                                               int scanDpi, const Settings& settings);
};

} // namespace quillet
