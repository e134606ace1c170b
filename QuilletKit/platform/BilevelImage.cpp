#include "platform/BilevelImage.hpp"

#include <fmt/format.h>

#include <cstring>
#include <stdexcept>

namespace quillet {

namespace {

std::size_t checkedByteCount(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) {
        throw std::invalid_argument(
            fmt::format("a bilevel image of {} x {} pixels is empty", width, height));
    }
    auto bytes = BilevelImage::byteCount(width, height);
    if (!bytes) {
        throw std::length_error(
            fmt::format("a bilevel image of {} x {} pixels does not fit in memory", width, height));
    }
    return *bytes;
}

} // namespace

std::optional<std::size_t> BilevelImage::byteCount(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) {
        return std::nullopt;
    }
    // Sides come from untrusted files: (2^63 - 1 + 7) already overflows, so the rounding is done
    // without adding first.
    const std::int64_t rowBytes = width / 8 + (width % 8 != 0 ? 1 : 0);
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(rowBytes, height, &bytes) ||
        static_cast<std::uint64_t>(bytes) > std::vector<std::uint8_t>().max_size()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(bytes);
}

BilevelImage::BilevelImage(int width, int height)
    : width_(width), height_(height), bits_(checkedByteCount(width, height), 0) {
}

BilevelImage::BilevelImage(int width, int height, std::vector<std::uint8_t> rows)
    : width_(width), height_(height), bits_(std::move(rows)) {
    if (bits_.size() != checkedByteCount(width, height)) {
        throw std::invalid_argument(fmt::format("{} bytes do not make a {} x {} bilevel image",
                                                bits_.size(), width, height));
    }
}

void BilevelImage::checkPoint(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        throw std::out_of_range(fmt::format("pixel ({}, {}) is outside a {} x {} bilevel image", x,
                                            y, width_, height_));
    }
}

bool BilevelImage::pixel(int x, int y) const {
    checkPoint(x, y);
    return (row(y)[x / 8] >> (7 - x % 8)) & 1;
}

void BilevelImage::setPixel(int x, int y, bool black) {
    checkPoint(x, y);
    const auto mask = static_cast<std::uint8_t>(0x80u >> (x % 8));
    std::uint8_t& byte = row(y)[x / 8];
    byte = static_cast<std::uint8_t>(black ? byte | mask : byte & ~mask);
}

bool BilevelImage::operator==(const BilevelImage& other) const noexcept {
    if (width_ != other.width_ || height_ != other.height_) {
        return false;
    }
    const std::size_t whole = static_cast<std::size_t>(width_) / 8;
    const auto lastMask = static_cast<std::uint8_t>(0xFF00u >> (width_ % 8));
    for (int y = 0; y < height_; ++y) {
        if (std::memcmp(row(y), other.row(y), whole) != 0 ||
            (lastMask != 0 && ((row(y)[whole] ^ other.row(y)[whole]) & lastMask) != 0)) {
            return false;
        }
    }
    return true;
}

} // namespace quillet
