// One picture on its way onto a PDF page, read by content (never by file name).
//
// A JPEG is kept as the file's own bytes: only its header is read, and the image XObject carries
// the file unchanged with /DCTDecode (gray, RGB or CMYK; Adobe CMYK gets the /Decode array that
// undoes its inversion). Its EXIF orientation is not baked into pixels but applied when the
// picture is drawn (see ImagePlacement). A JPEG that a PDF cannot carry as it is (12-bit, cut
// short, a height given only after the scan) is decoded like every other format instead.
//
// Every other format is decoded once through ImageIO and stored losslessly, 8 bits per sample,
// Flate-compressed with the PNG "up" predictor. Transparency is composited onto white, as
// ImageIO decodes it: a transparent area shows white, also over a background colour; 16-bit
// samples are reduced to 8 bits. The orientation tags of those formats are not read.
//
// Memory: a JPEG costs nothing until the document is written, when its bytes are read from the
// file again (they are checked to be the same length, so a file that changed in between fails
// the write instead of slipping into it); a decoded picture holds its pixels until embedded.
#pragma once

#include "engines/JPEGHeader.hpp"
#include "platform/Bitmap.hpp"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace quillet {

class PageImage {
  public:
    /// The picture in `path`, or absent when the file cannot be read or decoded. Never throws.
    static std::optional<PageImage> load(const std::filesystem::path& path);

    /// A picture from pixels already decoded, stored as they are.
    static PageImage fromBitmap(Bitmap bitmap, int orientation = 1);

    /// The stored size in pixels.
    int width() const;
    int height() const;
    /// EXIF orientation 1...8.
    int orientation() const { return orientation_; }
    /// The size as a viewer shows it: width and height swapped for the quarter turns.
    int uprightWidth() const { return orientation_ >= 5 ? height() : width(); }
    int uprightHeight() const { return orientation_ >= 5 ? width() : height(); }

    /// Whether the picture goes into the PDF as the file's JPEG bytes.
    bool keepsJPEGBytes() const { return jpeg_.has_value(); }

    /// A new image XObject in `qpdf` holding this picture. Throws qpdf's exceptions.
    QPDFObjectHandle embed(QPDF& qpdf) const;

  private:
    struct JPEGFile {
        std::filesystem::path path;
        std::uintmax_t size = 0;
        JPEGHeader header;
    };

    QPDFObjectHandle embedJPEG(QPDF& qpdf, const JPEGFile& file) const;
    QPDFObjectHandle embedPixels(QPDF& qpdf, const Bitmap& bitmap) const;

    std::optional<JPEGFile> jpeg_;
    std::shared_ptr<const Bitmap> bitmap_;
    int orientation_ = 1;
};

} // namespace quillet
