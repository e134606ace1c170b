#include "platform/JPEGScaler.hpp"

#include "platform/ImageIO.hpp"

#include <vips/vips8>

#include <memory>

namespace quillet {
namespace {

using vips::VImage;

struct BlobRelease {
    void operator()(VipsBlob* blob) const noexcept { vips_area_unref(VIPS_AREA(blob)); }
};

// The JPEG decoded at the smallest size the DCT offers that is still at least the target, then
// scaled to exactly the target. Lazy: pixels are computed as the caller pulls them.
std::optional<VImage> scaledPipeline(std::span<const std::uint8_t> jpeg, int width, int height,
                                     PixelFormat format) {
    if (width < 1 || height < 1 || jpeg.size() < 4 || !ImageIO::initialise()) {
        return std::nullopt;
    }
    // The blob does not copy: `jpeg` outlives every pipeline built here.
    std::unique_ptr<VipsBlob, BlobRelease> blob(vips_blob_new(nullptr, jpeg.data(), jpeg.size()));
    const auto strict = [] { return VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR); };
    const VImage header = VImage::jpegload_buffer(blob.get(), strict());
    int shrink = 1;
    while (shrink < 8 && header.width() / (shrink * 2) >= width &&
           header.height() / (shrink * 2) >= height) {
        shrink *= 2;
    }
    VImage image = VImage::jpegload_buffer(
        blob.get(), strict()->set("shrink", shrink)->set("access", VIPS_ACCESS_SEQUENTIAL));
    // A linear filter is what a page render uses when it scales an image down this little.
    image = image.resize(static_cast<double>(width) / image.width(),
                         VImage::option()
                             ->set("vscale", static_cast<double>(height) / image.height())
                             ->set("kernel", VIPS_KERNEL_LINEAR));
    const bool gray = format == PixelFormat::gray;
    image = image.colourspace(gray ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB);
    image = image.extract_band(0, VImage::option()->set("n", gray ? 1 : 3)).cast(VIPS_FORMAT_UCHAR);
    if (image.width() != width || image.height() != height) {
        return std::nullopt;
    }
    return image;
}

} // namespace

std::optional<Bitmap> JPEGScaler::decodeScaled(std::span<const std::uint8_t> jpeg, int width,
                                               int height, PixelFormat format) noexcept {
    try {
        const auto image = scaledPipeline(jpeg, width, height, format);
        if (!image) {
            return std::nullopt;
        }
        size_t length = 0;
        std::unique_ptr<void, decltype(&g_free)> memory(image->write_to_memory(&length), g_free);
        const auto* bytes = static_cast<const std::uint8_t*>(memory.get());
        return Bitmap(width, height, format, std::vector<std::uint8_t>(bytes, bytes + length));
    } catch (const std::exception&) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<std::vector<std::uint8_t>> JPEGScaler::reencoded(std::span<const std::uint8_t> jpeg,
                                                                int width, int height,
                                                                PixelFormat format,
                                                                double quality) noexcept {
    try {
        const auto image = scaledPipeline(jpeg, width, height, format);
        if (!image) {
            return std::nullopt;
        }
        // The same settings as every other JPEG we write, so both paths give comparable files.
        VipsBlob* encoded = image->jpegsave_buffer(VImage::option()
                                                       ->set("Q", ImageIO::qualityFactor(quality))
                                                       ->set("optimize_coding", true)
                                                       ->set("strip", true));
        std::unique_ptr<VipsBlob, BlobRelease> owner(encoded);
        size_t length = 0;
        const auto* bytes = static_cast<const std::uint8_t*>(vips_blob_get(encoded, &length));
        if (length == 0) {
            return std::nullopt;
        }
        return std::vector<std::uint8_t>(bytes, bytes + length);
    } catch (const std::exception&) {
        vips_error_clear();
        return std::nullopt;
    }
}

} // namespace quillet
