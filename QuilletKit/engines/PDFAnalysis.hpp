// What the analysis learns about a PDF: per page, the text operators, fonts and placed images;
// per document, size, version, information fields and risky content. The derived figures
// (averages, counts, the predicted reduction) are computed on demand from the stored ones.
#pragma once

#include "engines/PDFMetadataInfo.hpp"
#include "model/OperationKinds.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

/// One placement of an image XObject on a page (the same image drawn twice is two entries).
struct PDFImageInfo {
    std::string id; // fresh UUID per placement
    int pageIndex = 0;
    int pixelWidth = 0;
    int pixelHeight = 0;
    /// Pixels per inch as placed: Width × 72 / max(0.01, √(a² + c²)) of the CTM [a b c d e f].
    double effectiveDPI = 0;
    bool isJPEG = false;
    /// 1 bit per component, a bilevel filter (CCITT, JBIG2), or DeviceGray.
    bool isMonochrome = false;
    /// A rough stored size from the pixel count and the filter.
    std::int64_t estimatedBytes = 0;
    /// Pixels per inch along the picture's own width and height, wherever it is turned: Width ×
    /// 72 / √(a² + b²) and Height × 72 / √(c² + d²). Not part of the JSON form.
    double acrossDPI = 0;
    double downDPI = 0;
    /// The image XObject's object and generation numbers in the file analysed (0 when not
    /// known, as for an analysis read back from JSON). Not part of the JSON form.
    int objectNumber = 0;
    int objectGeneration = 0;
};

struct PDFPageAnalysis {
    int index = 0; // zero-based
    bool hasText = false;
    int textOperatorCount = 0; // Tj, TJ, ' and "
    std::vector<PDFImageInfo> images; // content order
    double widthPoints = 0;           // media box
    double heightPoints = 0;
    std::vector<std::string> fontNames; // sorted, unique

    /// The placed area of the images over the page area (area not divided when it is at most 1).
    double imageCoverage() const;
    /// At least one image, and either no text or coverage above 0.6 with fewer than 400 text
    /// operators. The compression engine rasterizes by the same rule.
    bool isImageHeavy() const;
};

struct RecommendedAction {
    std::string id;
    std::string title;
    std::string detail;
    PDFOperationKind operation = PDFOperationKind::compress;
    bool isComingSoon = false;
};

struct PDFAnalysis {
    std::int64_t fileSize = 0;
    int pageCount = 0;
    bool isEncrypted = false;
    std::vector<PDFPageAnalysis> pages; // may be shorter than pageCount: unreadable pages skipped
    PDFMetadataInfo metadata;
    int attachmentCount = 0;
    int formFieldCount = 0;
    int annotationCount = 0;
    bool javascriptDetected = false;
    int externalLinkCount = 0;
    std::optional<std::string> pdfVersion;
    int signatureCount = 0;

    /// Every page's images, in page order.
    std::vector<PDFImageInfo> images() const;
    /// Mean effective DPI over all images; 0 without images.
    double averageImageDPI() const;
    /// Pages without text that show at least one image.
    int scannedPageCount() const;
    /// Share of analysed pages with text; 0 when no page was analysed.
    double textCoverage() const;
    int imageHeavyPageCount() const;
    /// The share of the file that compressing at `tier` is expected to save, from the image
    /// estimates. Without image data: 0.05 for lossless and 0 for the other tiers.
    double estimatedReductionFraction(CompressionQualityTier tier) const;

    /// The stored fields back from the object `toJSON` writes (derived figures and
    /// recommendations are recomputed, not read). Throws JSONDecodingError naming the key.
    static PDFAnalysis fromJSON(const nlohmann::ordered_json& json);
};

/// Any of author, creator, producer or keywords is a non-empty text (dates, title and subject
/// do not count).
bool hasPersonalMetadata(const PDFMetadataInfo& metadata);

/// Everything known: stored fields, derived figures and `recommendations` (for scripts).
nlohmann::ordered_json toJSON(const PDFAnalysis& analysis,
                              const std::vector<RecommendedAction>& recommendations);

} // namespace quillet
