// Turns one bitmap into the bytes of an image file in one of the four export formats.
//
// Stateless and safe to call from any thread. It has no error type of its own: any failure is an
// absent result and each caller decides what to do then (image export tries other formats, the
// compression engine keeps the page as vector content).
#pragma once

#include "model/OperationKinds.hpp"
#include "platform/Bitmap.hpp"
#include "platform/FileTypes.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillet {

class ImageCodec {
  public:
    /// The encoded image, or absent when it could not be encoded or the encoder produced no
    /// bytes. `quality` (0 ... 1) is honoured by jpeg and heic only; png and tiff give the same
    /// bytes for any quality; `fullChroma` keeps a jpeg's colour at every pixel (see
    /// ImageIO::encode). Never throws.
    static std::optional<std::vector<std::uint8_t>> data(const Bitmap& image,
                                                         ImageOutputFormat format, double quality,
                                                         bool fullChroma = false) noexcept;

    /// The file type actually written for `format`. heic falls back to jpeg when this system has
    /// no HEIC encoder, so a HEIC request never fails for want of one; the bytes then are JPEG.
    static FileKind utType(ImageOutputFormat format) noexcept;
};

} // namespace quillet
