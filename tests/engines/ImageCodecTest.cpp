#include "engines/ImageCodec.hpp"

#include "platform/ImageIO.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillet {
namespace {

const Bitmap& photo() {
    static const Bitmap image = *ImageIO::decode(test::corpus("003-pdflatex-image/image.jpg"));
    return image;
}

std::string head(const std::vector<std::uint8_t>& bytes, std::size_t from, std::size_t count) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(from),
            bytes.begin() + static_cast<std::ptrdiff_t>(from + count)};
}

// png and tiff must ignore the quality; jpeg and heic must get smaller as it drops.
class QualityTest : public testing::TestWithParam<ImageOutputFormat> {};

TEST_P(QualityTest, OnlyLossyFormatsHonourQuality) {
    auto low = ImageCodec::data(photo(), GetParam(), 0.34);
    auto high = ImageCodec::data(photo(), GetParam(), 0.88);
    ASSERT_TRUE(low && high);
    if (supportsQuality(GetParam())) {
        EXPECT_LT(low->size(), high->size());
    } else {
        EXPECT_EQ(*low, *high);
        EXPECT_EQ(ImageCodec::data(photo(), GetParam(), 0.1),
                  ImageCodec::data(photo(), GetParam(), 0.9));
    }
}

INSTANTIATE_TEST_SUITE_P(ImageCodec, QualityTest, testing::ValuesIn(allCases<ImageOutputFormat>()));

struct Signature {
    ImageOutputFormat format;
    std::size_t offset;
    std::string magic;
};

class SignatureTest : public testing::TestWithParam<Signature> {};

TEST_P(SignatureTest, BytesAreAFileOfTheFormatAndDecodeBack) {
    const auto& c = GetParam();
    for (auto pixels : {PixelFormat::rgb, PixelFormat::gray}) {
        Bitmap image(64, 48, pixels, 200);
        auto bytes = ImageCodec::data(image, c.format, 0.8);
        ASSERT_TRUE(bytes.has_value());
        ASSERT_GT(bytes->size(), c.offset + c.magic.size());
        EXPECT_EQ(head(*bytes, c.offset, c.magic.size()), c.magic);
        auto decoded = ImageIO::decode(*bytes);
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ(decoded->width(), 64);
        EXPECT_EQ(decoded->height(), 48);
    }
}

// The heic row also says this system has a HEIC encoder: without one, the bytes would be JPEG.
INSTANTIATE_TEST_SUITE_P(ImageCodec, SignatureTest,
                         testing::Values(Signature{ImageOutputFormat::png, 0, "\x89PNG\r\n\x1a\n"},
                                         Signature{ImageOutputFormat::jpeg, 0, "\xff\xd8\xff"},
                                         Signature{ImageOutputFormat::tiff, 0,
                                                   std::string("II*\0", 4)},
                                         Signature{ImageOutputFormat::heic, 4, "ftypheic"}));

} // namespace
} // namespace quillet
