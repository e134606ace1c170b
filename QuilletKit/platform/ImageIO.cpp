#include "platform/ImageIO.hpp"

#include "platform/PNGEncoder.hpp"

#include <vips/vips8>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>

namespace quillet {

namespace {

using vips::VImage;

struct BlobUnref {
    void operator()(VipsBlob* blob) const noexcept { vips_area_unref(VIPS_AREA(blob)); }
};
using BlobPtr = std::unique_ptr<VipsBlob, BlobUnref>;

struct GFree {
    void operator()(void* memory) const noexcept { g_free(memory); }
};

void ignoreLog(const char*, GLogLevelFlags, const char*, void*) {
}

bool startVips() {
    if (VIPS_INIT("quillet") != 0) {
        return false;
    }
    // libvips warns on standard error about details of valid files (an ignored colour profile,
    // say); standard error belongs to the command line's own messages.
    g_log_set_handler("VIPS", G_LOG_LEVEL_WARNING, ignoreLog, nullptr);
    vips_block_untrusted_set(TRUE);
    vips_cache_set_max(0);
    // Our engines already spread pages over the cores; libvips threads inside each page would
    // only add contention and a buffer set per thread.
    vips_concurrency_set(1);
    return true;
}

std::optional<Bitmap> bandsAsBitmap(VImage image, PixelFormat format) {
    image = image.cast(VIPS_FORMAT_UCHAR);
    std::size_t size = 0;
    std::unique_ptr<void, GFree> memory(image.write_to_memory(&size));
    const auto* begin = static_cast<const std::uint8_t*>(memory.get());
    return Bitmap(image.width(), image.height(), format,
                  std::vector<std::uint8_t>(begin, begin + size));
}

// Gray stays gray (one band), everything else becomes sRGB; alpha is composited onto white.
std::optional<Bitmap> toBitmap(VImage image) {
    const auto format = image.bands() <= 2 ? PixelFormat::gray : PixelFormat::rgb;
    const std::int64_t pixels = static_cast<std::int64_t>(image.width()) * image.height();
    if (pixels > ImageIO::maxDecodePixels ||
        !Bitmap::byteCount(image.width(), image.height(), format)) {
        return std::nullopt;
    }
    image = image.colourspace(format == PixelFormat::gray ? VIPS_INTERPRETATION_B_W
                                                          : VIPS_INTERPRETATION_sRGB);
    if (image.has_alpha()) {
        image = image.flatten(VImage::option()->set("background", 255.0));
    }
    const int bands = static_cast<int>(format);
    if (image.bands() > bands) {
        image = image.extract_band(0, VImage::option()->set("n", bands));
    }
    return bandsAsBitmap(image, format);
}

vips::VOption* loadOptions() {
    return VImage::option()
        ->set("access", VIPS_ACCESS_SEQUENTIAL)
        ->set("fail_on", VIPS_FAIL_ON_TRUNCATED);
}

const char* saverName(FileKind kind) {
    switch (kind) {
    case FileKind::png: return "pngsave_buffer";
    case FileKind::jpeg: return "jpegsave_buffer";
    case FileKind::tiff: return "tiffsave_buffer";
    case FileKind::heic: return "heifsave_buffer";
    default: return nullptr;
    }
}

VipsBlob* save(const VImage& image, FileKind kind, int quality, bool fullChroma) {
    switch (kind) {
    case FileKind::png:
        return image.pngsave_buffer(VImage::option()->set("strip", true)->set("compression", 4));
    case FileKind::jpeg:
        return image.jpegsave_buffer(
            VImage::option()
                ->set("Q", quality)
                ->set("optimize_coding", true)
                ->set("strip", true)
                ->set("subsample_mode",
                      fullChroma ? VIPS_FOREIGN_SUBSAMPLE_OFF : VIPS_FOREIGN_SUBSAMPLE_AUTO));
    case FileKind::tiff:
        return image.tiffsave_buffer(VImage::option()
                                         ->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE)
                                         ->set("predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL)
                                         ->set("strip", true));
    case FileKind::heic:
        // The HEVC encoder wants three bands even for a gray page.
        return image.colourspace(VIPS_INTERPRETATION_sRGB)
            .heifsave_buffer(VImage::option()
                                 ->set("Q", quality)
                                 ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_HEVC)
                                 ->set("strip", true));
    default: return nullptr;
    }
}

} // namespace

bool ImageIO::initialise() noexcept {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] { started = startVips(); });
    return started;
}

std::optional<std::pair<int, int>> ImageIO::probe(const std::filesystem::path& path) noexcept {
    if (!initialise()) {
        return std::nullopt;
    }
    try {
        // Opening reads the header; the pixels are read only when asked for, and they are not.
        auto source = vips::VSource::new_from_file(path.c_str());
        const auto image = VImage::new_from_source(source, "", loadOptions());
        return std::make_pair(image.width(), image.height());
    } catch (...) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<ImageIO::WithAlpha>
ImageIO::decodeKeepingAlpha(const std::filesystem::path& path, int maxWidth) noexcept {
    if (!initialise()) {
        return std::nullopt;
    }
    try {
        auto source = vips::VSource::new_from_file(path.c_str());
        auto image = VImage::new_from_source(source, "", loadOptions());
        if (maxWidth > 0 && image.width() > maxWidth) {
            // Shrunk while read: a thumbnail of a fresh source streams the pixels through.
            image = VImage::thumbnail_source(vips::VSource::new_from_file(path.c_str()), maxWidth,
                                             VImage::option()->set("size", VIPS_SIZE_DOWN)
                                                 ->set("height", 10'000'000));
        }
        if (!image.has_alpha()) {
            auto colour = toBitmap(image);
            return colour ? std::optional<WithAlpha>(WithAlpha{std::move(*colour), std::nullopt})
                          : std::nullopt;
        }
        const auto format = image.bands() <= 2 ? PixelFormat::gray : PixelFormat::rgb;
        if (static_cast<std::int64_t>(image.width()) * image.height() > maxDecodePixels ||
            !Bitmap::byteCount(image.width(), image.height(), format)) {
            return std::nullopt;
        }
        const int alphaBand = image.bands() - 1;
        // Copied to memory once: the sequential loader cannot be read twice.
        image = image.copy_memory();
        auto alpha = image.extract_band(alphaBand);
        if (image.format() == VIPS_FORMAT_USHORT) {
            alpha = (alpha + 128) / 257; // rounded, not cut: 65535 stays opaque, 32768 is 128
        }
        auto colour = image.extract_band(0, VImage::option()->set("n", alphaBand))
                          .colourspace(format == PixelFormat::gray ? VIPS_INTERPRETATION_B_W
                                                                   : VIPS_INTERPRETATION_sRGB);
        auto colourBitmap = bandsAsBitmap(colour, format);
        auto alphaBitmap = bandsAsBitmap(alpha, PixelFormat::gray);
        if (!colourBitmap || !alphaBitmap) {
            return std::nullopt;
        }
        return WithAlpha{std::move(*colourBitmap), std::move(*alphaBitmap)};
    } catch (...) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<Bitmap> ImageIO::decode(const std::filesystem::path& path) noexcept {
    if (!initialise()) {
        return std::nullopt;
    }
    try {
        // A source, not new_from_file: that would read "[...]" in a file name as load options.
        auto source = vips::VSource::new_from_file(path.c_str());
        return toBitmap(VImage::new_from_source(source, "", loadOptions()));
    } catch (...) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<Bitmap> ImageIO::decode(std::span<const std::uint8_t> bytes) noexcept {
    if (bytes.empty() || !initialise()) {
        return std::nullopt;
    }
    try {
        return toBitmap(VImage::new_from_buffer(bytes.data(), bytes.size(), "", loadOptions()));
    } catch (...) {
        vips_error_clear();
        return std::nullopt;
    }
}

int ImageIO::qualityFactor(double quality) noexcept {
    if (!(quality > 0)) { // also NaN
        return 1;
    }
    return std::clamp(static_cast<int>(std::lround(std::min(quality, 1.0) * 100)), 1, 100);
}

bool ImageIO::canEncode(FileKind kind) noexcept {
    const char* saver = saverName(kind);
    return saver && initialise() && vips_type_find("VipsOperation", saver) != 0;
}

std::optional<std::vector<std::uint8_t>> ImageIO::encode(const Bitmap& bitmap, FileKind kind,
                                                         double quality, bool fullChroma) noexcept {
    if (!bitmap.isIntact() || !canEncode(kind)) {
        return std::nullopt;
    }
    if (kind == FileKind::png) {
        // Page export spends most of its time encoding; our writer does it in a fraction.
        return PNGEncoder::encode(bitmap);
    }
    try {
        // libvips only reads the pixels; the const_cast satisfies its C signature.
        auto image = VImage::new_from_memory(const_cast<std::uint8_t*>(bitmap.data()),
                                             bitmap.pixels().size(), bitmap.width(),
                                             bitmap.height(), bitmap.bands(), VIPS_FORMAT_UCHAR);
        BlobPtr blob(save(image, kind, qualityFactor(quality), fullChroma));
        if (!blob) {
            return std::nullopt;
        }
        const auto* data = static_cast<const std::uint8_t*>(VIPS_AREA(blob.get())->data);
        return std::vector<std::uint8_t>(data, data + VIPS_AREA(blob.get())->length);
    } catch (...) {
        vips_error_clear();
        return std::nullopt;
    }
}

} // namespace quillet
