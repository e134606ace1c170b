#include "engines/PageRasterizer.hpp"

#include "engines/ImageCodec.hpp"

#include <algorithm>
#include <cmath>

namespace quillet {

PageRasterizer::Size PageRasterizer::rasterSize(double width, double height, int dpi) {
    constexpr double cap = 36'000'000.0;
    const double scale = dpi / 72.0;
    const auto side = [](double value) {
        return std::max(1.0, std::isfinite(value) ? std::min(std::trunc(value), 1e9) : 1.0);
    };
    double w = side(scale * width);
    double h = side(scale * height);
    if (w * h > cap) {
        const double shrink = std::sqrt(cap / (w * h));
        w = side(w * shrink);
        h = side(h * shrink);
    }
    return {static_cast<int>(w), static_cast<int>(h)};
}

std::optional<RasterizedPage> PageRasterizer::encode(Bitmap bitmap, double quality,
                                                     bool monochrome) {
    const bool png = !encodesAsJPEG(quality, monochrome);
    const auto data = ImageCodec::data(bitmap, png ? ImageOutputFormat::png : ImageOutputFormat::jpeg,
                                       quality);
    if (!data) {
        return std::nullopt;
    }
    RasterizedPage page;
    page.data = std::move(*data);
    page.isJPEG = !png;
    page.width = bitmap.width();
    page.height = bitmap.height();
    page.format = bitmap.format();
    if (png) {
        page.pixels = bitmap.pixels();
    }
    return page;
}

Bitmap PageRasterizer::unrotated(Bitmap bitmap, int degrees) {
    const int turns = ((degrees / 90) % 4 + 4) % 4; // clockwise turns applied on display
    if (turns == 0) {
        return bitmap;
    }
    const int w = bitmap.width();
    const int h = bitmap.height();
    const int bands = bitmap.bands();
    const bool swap = turns % 2 == 1;
    Bitmap out(swap ? h : w, swap ? w : h, bitmap.format());
    const std::uint8_t* src = bitmap.data();
    std::uint8_t* dst = out.data();
    const std::size_t outRow = out.rowBytes();
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            // Where the shown pixel (x, y) sits in the unrotated image.
            int ux = x, uy = y;
            if (turns == 1) { // shown = stored turned clockwise once
                ux = y;
                uy = w - 1 - x;
            } else if (turns == 2) {
                ux = w - 1 - x;
                uy = h - 1 - y;
            } else {
                ux = h - 1 - y;
                uy = x;
            }
            std::copy_n(src + (static_cast<std::size_t>(y) * w + x) * bands, bands,
                        dst + static_cast<std::size_t>(uy) * outRow +
                            static_cast<std::size_t>(ux) * bands);
        }
    }
    return out;
}

} // namespace quillet
