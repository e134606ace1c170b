#include "platform/AreaResampler.hpp"
#include "platform/ImageIO.hpp"
#include "platform/ScaledJPEGDecoder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

TEST(AreaResampler, AveragesTheCoveredArea) {
    // 4 × 2 gray: halving both sides averages each 2 × 2 block.
    const std::vector<std::uint8_t> pixels{0, 100, 200, 40, 20, 60, 0, 80};
    const Bitmap half = AreaResampler::resample(pixels.data(), 4, 2, PixelFormat::gray, 2, 1);
    EXPECT_EQ(half.pixels(), (std::vector<std::uint8_t>{45, 80}));
    // Same size is the identity; a flat image stays flat at any size.
    EXPECT_EQ(AreaResampler::resample(pixels.data(), 4, 2, PixelFormat::gray, 4, 2).pixels(), pixels);
    const std::vector<std::uint8_t> flat(7 * 5 * 3, 77);
    for (const auto& [w, h] : std::vector<std::pair<int, int>>{{3, 2}, {5, 4}, {1, 1}, {14, 10}}) {
        const Bitmap out = AreaResampler::resample(flat.data(), 7, 5, PixelFormat::rgb, w, h);
        EXPECT_EQ(out.pixels(), std::vector<std::uint8_t>(static_cast<std::size_t>(w) * h * 3, 77))
            << w << "x" << h;
    }
    // A fractional factor keeps the overall brightness.
    std::vector<std::uint8_t> ramp(300);
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        ramp[i] = static_cast<std::uint8_t>(i % 256);
    }
    const Bitmap third = AreaResampler::resample(ramp.data(), 300, 1, PixelFormat::gray, 200, 1);
    double before = 0, after = 0;
    for (auto v : ramp) before += v;
    for (auto v : third.pixels()) after += v;
    EXPECT_NEAR(after / 200, before / 300, 0.6);
    EXPECT_THROW(AreaResampler::resample(ramp.data(), 300, 1, PixelFormat::gray, 0, 1),
                 std::invalid_argument);
}

TEST(ScaledJPEGDecoder, DecodesAtTheSmallestSufficientSize) {
    const std::string file = test::readFile(test::corpus("003-pdflatex-image/image.jpg"));
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
    const auto full = ScaledJPEGDecoder::decode(bytes, 300, 200, false);
    ASSERT_TRUE(full);
    EXPECT_EQ(full->width, 300);
    EXPECT_EQ(full->bands, 3);
    const auto quarter = ScaledJPEGDecoder::decode(bytes, 70, 40, true);
    ASSERT_TRUE(quarter);
    EXPECT_EQ(quarter->width, 75); // 1/4 is the smallest at least 70 wide
    EXPECT_EQ(quarter->bands, 1);
    EXPECT_FALSE(ScaledJPEGDecoder::decode(bytes.first(bytes.size() / 2), 300, 200, false));
    EXPECT_FALSE(ScaledJPEGDecoder::decode(bytes.first(100), 300, 200, false));
    const std::string png = test::readFile(test::corpus("007-imagemagick-images/smile.png"));
    EXPECT_FALSE(ScaledJPEGDecoder::decode(
        {reinterpret_cast<const std::uint8_t*>(png.data()), png.size()}, 8, 8, false));
}

} // namespace
} // namespace quillet
