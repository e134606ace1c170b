#include "platform/Bitmap.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>

namespace quillet {
namespace {

TEST(Bitmap, ByteCountIsCheckedInSixtyFourBits) {
    using Case = std::tuple<std::int64_t, std::int64_t, PixelFormat, std::optional<std::size_t>>;
    for (const auto& [width, height, format, bytes] : {
             Case{3, 2, PixelFormat::rgb, 18}, Case{3, 2, PixelFormat::gray, 6},
             Case{0, 5, PixelFormat::gray, std::nullopt},
             Case{5, -1, PixelFormat::gray, std::nullopt},
             Case{100'000, 100'000, PixelFormat::rgb, 30'000'000'000},
             Case{INT_MAX, INT_MAX, PixelFormat::rgb, std::nullopt}, // 1.4e19 overflows
         }) {
        EXPECT_EQ(Bitmap::byteCount(width, height, format), bytes) << width << " x " << height;
    }
}

TEST(Bitmap, RefusesSizesBeforeAllocating) {
    EXPECT_THROW(Bitmap(0, 10, PixelFormat::rgb), std::invalid_argument);
    EXPECT_THROW(Bitmap(2, 2, PixelFormat::rgb, std::vector<std::uint8_t>(11)),
                 std::invalid_argument);
    Bitmap white(2, 3, PixelFormat::rgb);
    EXPECT_EQ(white.rowBytes(), 6u);
    EXPECT_EQ(white.pixels(), std::vector<std::uint8_t>(18, 255));
}

} // namespace
} // namespace quillet
