#include "platform/PNGEncoder.hpp"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace quillet::PNGEncoder {
namespace {

// Level 6: measured on rendered text pages, as fast as levels 3 and 4 and a little smaller.
constexpr int compressionLevel = 6;

struct CompressorDeleter {
    void operator()(libdeflate_compressor* compressor) const noexcept {
        libdeflate_free_compressor(compressor);
    }
};

void appendBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value) {
    out.push_back(static_cast<std::uint8_t>(value >> 24));
    out.push_back(static_cast<std::uint8_t>(value >> 16));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

/// Appends a chunk: its length, type, data and the CRC of type and data.
void appendChunk(std::vector<std::uint8_t>& out, std::string_view type,
                 const std::vector<std::uint8_t>& data) {
    appendBigEndian(out, static_cast<std::uint32_t>(data.size()));
    const auto typeStart = out.size();
    out.insert(out.end(), type.begin(), type.end());
    out.insert(out.end(), data.begin(), data.end());
    appendBigEndian(out, libdeflate_crc32(0, out.data() + typeStart, out.size() - typeStart));
}

bool isGray(const Bitmap& bitmap) {
    const std::uint8_t* p = bitmap.data();
    const std::uint8_t* end = p + bitmap.pixels().size();
    for (; p != end; p += 3) {
        if (p[0] != p[1] || p[1] != p[2]) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::vector<std::uint8_t>> encode(const Bitmap& bitmap) {
    if (!bitmap.isIntact()) {
        return std::nullopt;
    }
    const bool gray = bitmap.format() == PixelFormat::gray || isGray(bitmap);
    const int bands = gray ? 1 : 3;
    const auto width = static_cast<std::size_t>(bitmap.width());
    const auto height = static_cast<std::size_t>(bitmap.height());
    const std::size_t rowBytes = width * static_cast<std::size_t>(bands);

    // Each row starts with its filter type, 0 (none).
    std::vector<std::uint8_t> rows((rowBytes + 1) * height);
    std::uint8_t* to = rows.data();
    for (std::size_t y = 0; y < height; ++y) {
        *to++ = 0;
        const std::uint8_t* from = bitmap.data() + y * bitmap.rowBytes();
        if (bands == bitmap.bands()) {
            to = std::copy(from, from + rowBytes, to);
        } else {
            for (std::size_t x = 0; x < width; ++x) {
                *to++ = from[x * 3];
            }
        }
    }

    std::unique_ptr<libdeflate_compressor, CompressorDeleter> compressor(
        libdeflate_alloc_compressor(compressionLevel));
    if (!compressor) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> idat(libdeflate_zlib_compress_bound(compressor.get(), rows.size()));
    const auto compressed = libdeflate_zlib_compress(compressor.get(), rows.data(), rows.size(),
                                                     idat.data(), idat.size());
    if (compressed == 0) {
        return std::nullopt;
    }
    idat.resize(compressed);
    rows = {};

    std::vector<std::uint8_t> header;
    appendBigEndian(header, static_cast<std::uint32_t>(width));
    appendBigEndian(header, static_cast<std::uint32_t>(height));
    header.push_back(8);                    // bits per sample
    header.push_back(gray ? 0 : 2);         // colour type: gray or truecolour
    header.insert(header.end(), {0, 0, 0}); // deflate, adaptive filtering, no interlace

    std::vector<std::uint8_t> png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    png.reserve(png.size() + idat.size() + 64);
    appendChunk(png, "IHDR", header);
    appendChunk(png, "IDAT", idat);
    appendChunk(png, "IEND", {});
    return png;
}

} // namespace quillet::PNGEncoder
