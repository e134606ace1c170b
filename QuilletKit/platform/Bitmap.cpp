#include "platform/Bitmap.hpp"

#include <fmt/format.h>

#include <limits>
#include <stdexcept>

namespace quillet {

namespace {

std::size_t checkedByteCount(std::int64_t width, std::int64_t height, PixelFormat format) {
    if (width < 1 || height < 1) {
        throw std::invalid_argument(
            fmt::format("a bitmap of {} x {} pixels is empty", width, height));
    }
    auto bytes = Bitmap::byteCount(width, height, format);
    if (!bytes) {
        throw std::length_error(
            fmt::format("a bitmap of {} x {} pixels does not fit in memory", width, height));
    }
    return *bytes;
}

} // namespace

std::optional<std::size_t> Bitmap::byteCount(std::int64_t width, std::int64_t height,
                                             PixelFormat format) {
    if (width < 1 || height < 1) {
        return std::nullopt;
    }
    // Sides come from untrusted files; the product of two int sides and 3 bands can overflow
    // 64 bits, so each step is checked rather than the result.
    std::int64_t pixels = 0;
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(width, height, &pixels) ||
        __builtin_mul_overflow(pixels, static_cast<std::int64_t>(format), &bytes)) {
        return std::nullopt;
    }
    const auto limit = std::vector<std::uint8_t>().max_size();
    if (static_cast<std::uint64_t>(bytes) > limit) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(bytes);
}

Bitmap::Bitmap(int width, int height, PixelFormat format, std::uint8_t fill)
    : width_(width), height_(height), format_(format),
      pixels_(checkedByteCount(width, height, format), fill) {
}

Bitmap::Bitmap(int width, int height, PixelFormat format, std::vector<std::uint8_t> pixels)
    : width_(width), height_(height), format_(format), pixels_(std::move(pixels)) {
    if (pixels_.size() != checkedByteCount(width, height, format)) {
        throw std::invalid_argument(fmt::format("{} bytes do not make a {} x {} bitmap of {} bands",
                                                pixels_.size(), width, height, bands()));
    }
}

bool Bitmap::isIntact() const noexcept {
    auto bytes = byteCount(width_, height_, format_);
    return bytes && *bytes == pixels_.size();
}

} // namespace quillet
