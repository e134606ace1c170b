#include "platform/JPEGScaler.hpp"

#include "platform/AreaResampler.hpp"
#include "platform/ImageIO.hpp"
#include "platform/ScaledJPEGDecoder.hpp"

#include <stdexcept>
#include <vector>

namespace quillet {

std::optional<Bitmap> JPEGScaler::decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                               int height, PixelFormat format) noexcept {
    try {
        const auto decoder =
            ScaledJPEGDecoder::open(jpeg, width, height, format == PixelFormat::gray);
        if (!decoder) {
            return std::nullopt;
        }
        // Rows go from the codec straight into the resampler: the decoded image is never held
        // whole (a 300-DPI page would be 25 MB per page in flight).
        std::vector<std::uint8_t> row(static_cast<std::size_t>(decoder->width()) *
                                      static_cast<std::size_t>(decoder->bands()));
        int decoded = 0;
        const auto next = [&](int y) -> const std::uint8_t* {
            for (; decoded <= y; ++decoded) {
                if (!decoder->readRow(row.data())) {
                    throw std::runtime_error("damaged JPEG data");
                }
            }
            return row.data();
        };
        return AreaResampler::resample(next, decoder->width(), decoder->height(), format, width,
                                       height);
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
