#include "platform/JPEGScaler.hpp"

#include "platform/AreaResampler.hpp"
#include "platform/ImageIO.hpp"
#include "platform/ScaledJPEGDecoder.hpp"

namespace quillet {

std::optional<Bitmap> JPEGScaler::decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                               int height, PixelFormat format) noexcept {
    try {
        const auto decoded =
            ScaledJPEGDecoder::decode(jpeg, width, height, format == PixelFormat::gray);
        if (!decoded) {
            return std::nullopt;
        }
        return AreaResampler::resample(decoded->pixels.get(), decoded->width, decoded->height,
                                       format, width, height);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<std::vector<std::uint8_t>> JPEGScaler::reencoded(std::span<const std::uint8_t> jpeg,
                                                                int width, int height,
                                                                PixelFormat format,
                                                                double quality) noexcept {
    const auto bitmap = decodeScaled(jpeg, width, height, format);
    if (!bitmap) {
        return std::nullopt;
    }
    return ImageIO::encode(*bitmap, FileKind::jpeg, quality);
}

} // namespace quillet
