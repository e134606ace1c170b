// Recognises the commonest pages of a scanned document: one image drawn upright over the whole
// page and nothing else. Such a page can be rasterized by decoding the image itself instead of
// rendering the page, with the same picture as a result. Also recognises a compressed scan's
// page of mixed raster content by its text mask, which is kept as it is when the page is
// compressed again.
#pragma once

#include "platform/PDFPage.hpp"

#include <qpdf/QPDFObjectHandle.hh>

#include <optional>
#include <string>

namespace quillet {

class FullPageImage {
  public:
    /// A page's 1-bit image: its object number and its size in pixels, which is the scan's own.
    struct Bilevel {
        int object = 0;
        int width = 0;
        int height = 0;
    };

    /// The image when the page's content is only q/Q/cm and one Do of a 1-bit DeviceGray image
    /// (not a stencil mask, no soft mask or colour-key mask) placed as `jpeg` requires. Absent
    /// for every other page. Never throws.
    static std::optional<Bilevel> bilevel(const PDFPage& page);

    /// The mask of a page of mixed raster content: the stencil mask (`/ImageMask`, 1-bit) that
    /// the page draws as its last image, upright over its media box as `jpeg` requires, itself
    /// or as the `/Mask` of a picture of the inks (without a soft mask). What the page draws
    /// before it (a background, photos) or after it other than images (a text layer, a stamp)
    /// is not looked at. Absent for every other page. Never throws.
    static std::optional<Bilevel> textMask(const PDFPage& page);

    /// The JPEG bytes when the page's content is only q/Q/cm and one Do of a plain 8-bit gray or
    /// RGB DCT image (no mask, decode array or colour transform) whose placement covers the media
    /// box within half a point. Absent for every other page. Never throws.
    static std::optional<std::string> jpeg(const PDFPage& page);
};

} // namespace quillet
