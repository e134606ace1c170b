// Makes the images of a document smaller where they are kept in place (pages that are not
// replaced by a raster).
//
// Without loss, always: JPEG images get Huffman tables built for them (the same coefficients),
// and Flate images of 8-bit samples are stored with PNG row predictors when that is smaller than
// the writer's own recompression. With a setting (the lossy tiers and target rungs): an image
// whose largest placement in the document still has more than 1.5 times the setting's
// resolution is resampled to that resolution, and a continuous-tone image is stored as JPEG at
// the setting's quality when that is smaller than what it takes now. Only images whose samples keep
// their meaning through that are touched: 8-bit gray or RGB (device or ICC-based), no /Decode
// array, no colour key mask, not an image mask; CMYK, Lab, indexed, 1-bit, JPEG 2000, JBIG2 and
// CCITT images stay as they are apart from the lossless steps. A soft mask larger than its
// resampled image is resampled with it (and stays lossless).
#pragma once

#include <qpdf/QPDF.hh>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace quillet {

struct ImageSetting {
    int dpi = 150;
    double quality = 0.6;
};

/// The resolution at which a document shows an image at its largest (the lowest of its
/// placements), along its width and its height (they differ for a stretched picture).
struct PlacedResolution {
    double across = 0;
    double down = 0;
};

struct ImageCompaction {
    int optimizedJPEGs = 0;
    int predictedFlate = 0;
    int resampled = 0;
    int storedAsJPEG = 0;
    /// Stored bytes before and after, over the images changed.
    std::int64_t bytesBefore = 0;
    std::int64_t bytesAfter = 0;
};

class ImageCompactor {
  public:
    using Cancelled = std::function<bool()>;

    /// `placedDPI`: for each image XObject, the resolution of its largest placement on a kept
    /// page; images not listed are never resampled or turned into JPEG. Each side is resampled on
    /// its own: a stretched picture is brought to the setting's resolution both ways. Images that
    /// cannot be read are left as they are; throws only CancellationError. `images`: the image
    /// XObjects to look at (those the written document reaches).
    static ImageCompaction compact(QPDF& qpdf, const std::vector<QPDFObjectHandle>& images,
                                   const std::map<QPDFObjGen, PlacedResolution>& placedDPI,
                                   const std::optional<ImageSetting>& setting,
                                   const Cancelled& cancelled);
};

} // namespace quillet
