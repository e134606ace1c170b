#include "engines/ImagePlacement.hpp"

#include <algorithm>

namespace quillet {

std::optional<std::array<double, 2>> fixedPageSize(ImageToPDFOptions::PageSize size) {
    using PageSize = ImageToPDFOptions::PageSize;
    switch (size) {
    case PageSize::a4: return std::array{595.28, 841.89};
    case PageSize::letter: return std::array{612.0, 792.0};
    case PageSize::legal: return std::array{612.0, 1008.0};
    case PageSize::original: break;
    }
    return std::nullopt;
}

ImagePlacement ImagePlacement::compute(int width, int height, const ImageToPDFOptions& options) {
    const double w = std::max(width, 1);
    const double h = std::max(height, 1);
    const auto size = fixedPageSize(options.pageSize);
    if (!size) {
        const PDFRect whole{0, 0, w, h};
        return {whole, whole, std::nullopt, false};
    }
    const PDFRect page{0, 0, (*size)[0], (*size)[1]};
    const double margin = options.marginPoints;
    const PDFRect content{margin, margin, std::max(0.0, page.width - 2 * margin),
                          std::max(0.0, page.height - 2 * margin)};
    const double sx = content.width / w;
    const double sy = content.height / h;
    const bool fill = options.fit == ImageToPDFOptions::Fit::fill;
    const double scale = fill ? std::max(sx, sy) : std::min(sx, sy);
    const double drawnWidth = scale * w;
    const double drawnHeight = scale * h;
    const PDFRect drawn{content.x + (content.width - drawnWidth) / 2,
                        content.y + (content.height - drawnHeight) / 2, drawnWidth, drawnHeight};
    return {page, drawn, fill ? std::optional(content) : std::nullopt, true};
}

std::array<double, 6> orientedImageMatrix(const PDFRect& r, int orientation) {
    // Each row maps the unit square (u right, v up; the stored top row at v = 1) so that the
    // stored picture, turned as EXIF says, covers r. Rows 5...8 are the quarter turns, whose
    // stored width runs along r's height.
    const double x = r.x, y = r.y, w = r.width, h = r.height;
    switch (orientation) {
    case 2: // mirrored left to right
        return {-w, 0, 0, h, x + w, y};
    case 3: // half turn
        return {-w, 0, 0, -h, x + w, y + h};
    case 4: // mirrored top to bottom
        return {w, 0, 0, -h, x, y + h};
    case 5: // mirrored along the main diagonal
        return {0, -h, -w, 0, x + w, y + h};
    case 6: // quarter turn clockwise
        return {0, -h, w, 0, x, y + h};
    case 7: // mirrored along the other diagonal
        return {0, h, w, 0, x, y};
    case 8: // quarter turn anticlockwise
        return {0, h, -w, 0, x + w, y};
    default: return {w, 0, 0, h, x, y};
    }
}

} // namespace quillet
