// Compacts what a document carries before it is written: its fonts (FontCompactor), its images
// (ImageCompactor) and identical streams (StreamDeduplicator), in every compression tier.
//
// Only objects the written document reaches are looked at, so pictures of pages replaced by a
// raster cost nothing. Which glyphs the pages show is learnt beforehand (`glyphUsage`) by running
// every page of the input through MuPDF without drawing, on all cores; when a page fails there,
// or the document has optional content (a hidden layer shows nothing but may be shown later),
// fonts are converted and trimmed but not cut to their glyphs. With an image setting (the lossy
// tiers), applications' private editing data (/PieceInfo) is dropped too: nothing draws it.
#pragma once

#include "engines/FontCompactor.hpp"
#include "engines/ImageCompactor.hpp"
#include "engines/PDFAnalysis.hpp"

#include <qpdf/QPDF.hh>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace quillet {

struct DocumentCompaction {
    FontCompaction fonts;
    ImageCompaction images;
    int mergedStreams = 0;
};

class DocumentCompactor {
  public:
    using Cancelled = std::function<bool()>;

    struct Source {
        /// The file `qpdf` was read from, and the password that opened it.
        std::filesystem::path path;
        std::string password;
        /// The analysis of that file: where its images are placed (absent: lossless only).
        const PDFAnalysis* analysis = nullptr;
        /// Pages (zero-based) whose content was replaced by a raster.
        std::set<int> rasterizedPages;
        /// The images of those rasters: encoded for this document already, left as they are.
        std::set<QPDFObjGen> freshImages;
        /// What `glyphUsage` learnt of the file (absent: fonts are not cut to their glyphs).
        std::optional<FontCompactor::GlyphUsage> glyphs;
    };

    using Progress = std::function<void(double fraction)>;

    /// Throws CancellationError; everything else that fails leaves that object as it was.
    static DocumentCompaction compact(QPDF& qpdf, const Source& source,
                                      const std::optional<ImageSetting>& images,
                                      const Cancelled& cancelled);

    /// The glyphs every page of `path` shows, per font program (see FontCompactor); absent when
    /// they cannot all be known. `progress` sees the share of pages run. Throws
    /// CancellationError.
    static std::optional<FontCompactor::GlyphUsage> glyphUsage(const std::filesystem::path& path,
                                                               const std::string& password,
                                                               const Cancelled& cancelled,
                                                               const Progress& progress = {});
};

} // namespace quillet
