// One rebuild of a PDF: every page kept as it is, except the pages the analysis calls
// image-heavy, whose content is replaced by a picture when a raster setting is given: one
// image, or a text mask over a background (mixed raster content), with the text the page showed
// kept as an invisible layer over it (TextLayer).
//
// The rest of the document (outline, links, forms, annotations, attachments, metadata) is
// carried over; annotations of a rasterized page stay as objects on top of its image. What the
// kept pages carry is compacted (DocumentCompactor): fonts converted and cut to their glyphs,
// images optimized without loss and, with an image setting, resampled and re-encoded, identical
// streams written once. The result is written with object streams and recompressed Flate streams.
#pragma once

#include "engines/FontCompactor.hpp"
#include "engines/ImageCompactor.hpp"
#include "engines/PDFAnalysis.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace quillet {

struct RewriteDetail {
    std::int64_t bytes = 0;
    int rasterizedPages = 0;
    /// The encoded sizes of the page images, summed.
    std::int64_t rasterBytes = 0;
};

struct RasterSetting {
    int dpi = 150;
    double quality = 0.72;
    /// Scanned text pages become mixed raster content (a JBIG2 mask of the text at the scan's
    /// resolution, twice a coarse scan's, over a background at `dpi` / 4.8) when that is
    /// smaller than their JPEG.
    /// Bilevel pages become one JBIG2 image at their own resolution whatever this says.
    bool mixed = false;
};

class DocumentRewriter {
  public:
    using Progress = std::function<void(double pageFraction)>;
    using Cancelled = std::function<bool()>;

    /// Rebuilds `input` into the existing file `output` (overwritten). Pages are rendered and
    /// encoded on all cores. `progress` rises on the calling thread, first with the glyph run
    /// (unless `glyphs` is given), then with the pages in page order, and reaches 1 before the
    /// file is written. `analysis` is read only when `raster` or `images` is set: `images` is how
    /// far images on the kept pages may be reduced (absent: without loss only). `glyphs`: what
    /// DocumentCompactor::glyphUsage learnt of `input` already (a search that rebuilds the same
    /// file several times learns it once); null: learnt here first. Throws PDFCoreError
    /// (opening, a document without pages, writing) and CancellationError.
    static RewriteDetail rewrite(const std::filesystem::path& input,
                                 const std::filesystem::path& output, const PDFAnalysis& analysis,
                                 std::optional<RasterSetting> raster,
                                 std::optional<ImageSetting> images, const Progress& progress,
                                 const Cancelled& cancelled,
                                 const std::optional<FontCompactor::GlyphUsage>* glyphs = nullptr);

    /// Whether a page is replaced by its raster: it has images, and either no text or images
    /// over more than 60% of it with fewer than 400 text operators.
    static bool shouldRasterize(const PDFPageAnalysis& page) { return page.isImageHeavy(); }
};

} // namespace quillet
