// Where an image lands on its page: the page size, the rectangle the upright picture fills, the
// clip of the fill mode, and the matrix that turns a stored picture upright while drawing it.
//
// Pure arithmetic in PDF points, shared by the images-to-PDF pages and their tests.
#pragma once

#include "model/ImageToPDFOptions.hpp"
#include "platform/PDFPage.hpp"

#include <array>
#include <optional>

namespace quillet {

struct ImagePlacement {
    /// The media box, origin at (0, 0).
    PDFRect page;
    /// Where the upright picture is drawn. With `fill` it overflows the content rectangle.
    PDFRect drawn;
    /// `fill` on a fixed page size only: the content rectangle (the page inset by the margin),
    /// outside which nothing of the picture shows.
    std::optional<PDFRect> clip;
    /// Whether `backgroundColor` applies (fixed page sizes only).
    bool paintsBackground = false;

    /// The placement of a picture of `width` x `height` upright pixels.
    /// - `original`: the page is the picture's own size, one pixel to one point, and the picture
    ///   fills it; margin, fit and background are not applied.
    /// - a fixed size: the content rectangle is the page inset by `marginPoints` on every side
    ///   (never narrower than nothing); the picture is scaled by the smaller (fit) or larger
    ///   (fill) of the two ratios content/picture and centred on the content rectangle.
    static ImagePlacement compute(int width, int height, const ImageToPDFOptions& options);
};

/// Width and height in points of a fixed page size, portrait: A4 595.28 x 841.89, Letter 612 x
/// 792, Legal 612 x 1008. Absent for `original`.
std::optional<std::array<double, 2>> fixedPageSize(ImageToPDFOptions::PageSize size);

/// The `cm` matrix [a b c d e f] that draws an image XObject (the unit square, stored top row at
/// the top) so that the picture, turned and mirrored as EXIF `orientation` (1...8, anything else
/// counts as 1) asks, fills `drawn` upright.
std::array<double, 6> orientedImageMatrix(const PDFRect& drawn, int orientation);

} // namespace quillet
