// The enumerations that name an operation and its options. All are plain values shared by every
// front end and by persistence; see RawValue.hpp for their string forms.
#pragma once

#include "model/RawValue.hpp"

#include <string_view>

namespace quillet {

enum class PDFOperationKind {
    compress,
    targetSize,
    merge,
    split,
    organize,
    pdfToImages,
    imagesToPDF,
    clean,
    protect,
    unprotect,
    ocr,
    redact,
    stamp,
};

/// The user-facing name of an operation ("PDF → Images", "Privacy Clean", ...).
std::string_view displayName(PDFOperationKind kind);

enum class CompressionQualityTier { highQuality, balanced, smallest, lossless };

enum class SplitMode { everyPage, pageRanges, everyNPages, extract, byFileSize };

enum class CleanPreset { safe, privacy, flattenAndClean };

enum class ImageOutputFormat { png, jpeg, tiff, heic };

/// Only JPEG and HEIC honour a quality factor.
constexpr bool supportsQuality(ImageOutputFormat format) {
    return format == ImageOutputFormat::jpeg || format == ImageOutputFormat::heic;
}

template <> struct RawValueNames<PDFOperationKind> {
    static constexpr std::array<std::string_view, 13> names{
        "compress",    "targetSize", "merge",   "split",     "organize", "pdfToImages", "imagesToPDF",
        "clean",       "protect",    "unprotect", "ocr",     "redact",   "stamp"};
};
template <> struct RawValueNames<CompressionQualityTier> {
    static constexpr std::array<std::string_view, 4> names{"highQuality", "balanced", "smallest",
                                                           "lossless"};
};
template <> struct RawValueNames<SplitMode> {
    static constexpr std::array<std::string_view, 5> names{"everyPage", "pageRanges", "everyNPages",
                                                           "extract", "byFileSize"};
};
template <> struct RawValueNames<CleanPreset> {
    static constexpr std::array<std::string_view, 3> names{"safe", "privacy", "flattenAndClean"};
};
template <> struct RawValueNames<ImageOutputFormat> {
    static constexpr std::array<std::string_view, 4> names{"png", "jpeg", "tiff", "heic"};
};

} // namespace quillet
