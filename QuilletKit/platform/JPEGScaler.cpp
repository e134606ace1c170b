#include "platform/JPEGScaler.hpp"

#include "platform/ImageIO.hpp"

#include <vips/vips8>

namespace quillet {

std::optional<Bitmap> JPEGScaler::decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                               int height, PixelFormat format) noexcept {
    if (width < 1 || height < 1 || jpeg.size() < 4 || !ImageIO::initialise()) {
        return std::nullopt;
    }
    try {
        using vips::VImage;
        VipsBlob* blob = vips_blob_new(nullptr, jpeg.data(), jpeg.size());
        const auto release = [](VipsBlob* b) { vips_area_unref(VIPS_AREA(b)); };
        std::unique_ptr<VipsBlob, decltype(release)> owner(blob, release);
        VImage header = VImage::new_from_buffer(jpeg.data(), jpeg.size(), "",
                                                VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR));
        // Decode at the smallest size the DCT offers that is still at least the target.
        int shrink = 1;
        while (shrink < 8 && header.width() / (shrink * 2) >= width &&
               header.height() / (shrink * 2) >= height) {
            shrink *= 2;
        }
        VImage image = VImage::jpegload_buffer(blob, VImage::option()
                                                         ->set("shrink", shrink)
                                                         ->set("fail_on", VIPS_FAIL_ON_ERROR));
        // A linear filter is what a page render uses when it scales an image down this little.
        image = image.resize(static_cast<double>(width) / image.width(),
                             VImage::option()
                                 ->set("vscale", static_cast<double>(height) / image.height())
                                 ->set("kernel", VIPS_KERNEL_LINEAR));
        const bool gray = format == PixelFormat::gray;
        image = image.colourspace(gray ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB);
        if (image.has_alpha()) {
            image = image.flatten(VImage::option()->set("background", std::vector<double>{255.0}));
        }
        image = image.extract_band(0, VImage::option()->set("n", gray ? 1 : 3)).cast(VIPS_FORMAT_UCHAR);
        if (image.width() != width || image.height() != height) {
            return std::nullopt;
        }
        size_t length = 0;
        void* memory = image.write_to_memory(&length);
        std::unique_ptr<void, decltype(&g_free)> pixels(memory, g_free);
        const auto* bytes = static_cast<const std::uint8_t*>(memory);
        return Bitmap(width, height, format, std::vector<std::uint8_t>(bytes, bytes + length));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillet
