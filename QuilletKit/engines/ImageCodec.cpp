#include "engines/ImageCodec.hpp"

#include "platform/ImageIO.hpp"

namespace quillet {

FileKind ImageCodec::utType(ImageOutputFormat format) noexcept {
    switch (format) {
    case ImageOutputFormat::png: return FileKind::png;
    case ImageOutputFormat::jpeg: return FileKind::jpeg;
    case ImageOutputFormat::tiff: return FileKind::tiff;
    case ImageOutputFormat::heic:
        return ImageIO::canEncode(FileKind::heic) ? FileKind::heic : FileKind::jpeg;
    }
    return FileKind::jpeg;
}

std::optional<std::vector<std::uint8_t>> ImageCodec::data(const Bitmap& image,
                                                          ImageOutputFormat format, double quality,
                                                          bool fullChroma) noexcept {
    // Lossless formats must not vary with the quality argument, whatever the encoder does with it.
    const double used = supportsQuality(format) ? quality : 1.0;
    auto bytes = ImageIO::encode(image, utType(format), used, fullChroma);
    if (!bytes || bytes->empty()) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace quillet
