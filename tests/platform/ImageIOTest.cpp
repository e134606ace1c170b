#include "platform/ImageIO.hpp"

#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <vips/vips8>

#include <limits>
#include <string>

namespace quillet {
namespace {

using test::corpus;

std::vector<std::uint8_t> fileBytes(const std::filesystem::path& path) {
    auto text = test::readFile(path);
    return {text.begin(), text.end()};
}

// Structure in both directions, so that a lossless round trip means something.
Bitmap pattern(PixelFormat format) {
    Bitmap bitmap(23, 17, format);
    for (std::size_t i = 0; i < bitmap.pixels().size(); ++i) {
        bitmap.data()[i] = static_cast<std::uint8_t>((i * 37) % 251);
    }
    return bitmap;
}

TEST(ImageIO, QualityMapsOntoOneToHundred) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (auto [quality, expected] : {std::pair{0.0, 1},
                                     {0.001, 1},
                                     {0.34, 34},
                                     {0.855, 86},
                                     {1.0, 100},
                                     {1.5, 100},
                                     {-2.0, 1},
                                     {nan, 1}}) {
        EXPECT_EQ(ImageIO::qualityFactor(quality), expected) << quality;
    }
}

struct CorpusImage {
    const char* file;
    int width;
    int height;
    PixelFormat format;
};

class CorpusDecodeTest : public testing::TestWithParam<CorpusImage> {};

TEST_P(CorpusDecodeTest, DecodesFromFileAndFromMemoryAlike) {
    const auto& c = GetParam();
    auto fromFile = ImageIO::decode(corpus(c.file));
    ASSERT_TRUE(fromFile.has_value());
    EXPECT_EQ(fromFile->width(), c.width);
    EXPECT_EQ(fromFile->height(), c.height);
    EXPECT_EQ(fromFile->format(), c.format);
    EXPECT_EQ(ImageIO::decode(fileBytes(corpus(c.file))), fromFile);
}

INSTANTIATE_TEST_SUITE_P(
    ImageIO, CorpusDecodeTest,
    testing::Values(CorpusImage{"003-pdflatex-image/image.jpg", 300, 200, PixelFormat::rgb},
                    CorpusImage{"007-imagemagick-images/smile.png", 16, 16, PixelFormat::rgb},
                    CorpusImage{"007-imagemagick-images/smile-lzw.tiff", 16, 16, PixelFormat::rgb},
                    CorpusImage{"019-grayscale-image/page-0-X0.png", 324, 450, PixelFormat::gray}));

// Truncated, garbage, empty, an SVG and a PDF (both behind blocked loaders).
TEST(ImageIO, BrokenOrUntrustedInputAnswersAbsent) {
    test::TempDir dir;
    auto jpeg = test::readFile(corpus("003-pdflatex-image/image.jpg"));
    const std::vector<std::string> inputs{
        jpeg.substr(0, jpeg.size() / 2), std::string(4096, 'Z'), "",
        "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'/>",
        test::readFile(corpus("001-trivial/minimal-document.pdf"))};
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const std::vector<std::uint8_t> bytes(inputs[i].begin(), inputs[i].end());
        EXPECT_FALSE(ImageIO::decode(bytes)) << "input " << i;
        EXPECT_FALSE(ImageIO::decode(dir.write("in" + std::to_string(i) + ".jpg", inputs[i])));
    }
    EXPECT_FALSE(ImageIO::decode(dir / "missing.png"));
}

TEST(ImageIO, LosslessFormatsRoundTripExactly) {
    test::TempDir dir;
    for (auto kind : {FileKind::png, FileKind::tiff}) {
        for (auto format : {PixelFormat::gray, PixelFormat::rgb}) {
            auto bytes = ImageIO::encode(pattern(format), kind, 0.5);
            ASSERT_TRUE(bytes.has_value());
            EXPECT_EQ(ImageIO::decode(*bytes), pattern(format));
            // Brackets in a name are load options to libvips' own file opener.
            auto path = dir.write("scan[page=2]", std::string(bytes->begin(), bytes->end()));
            EXPECT_EQ(ImageIO::decode(path), pattern(format));
        }
    }
    // A colour page that is gray throughout is stored as a gray PNG with the same pixels.
    const Bitmap gray = pattern(PixelFormat::gray);
    Bitmap rgb(gray.width(), gray.height(), PixelFormat::rgb);
    for (std::size_t i = 0; i < rgb.pixels().size(); ++i) {
        rgb.data()[i] = gray.pixels()[i / 3];
    }
    EXPECT_EQ(ImageIO::decode(*ImageIO::encode(rgb, FileKind::png, 0.5)), gray);
}

TEST(ImageIO, TransparencyBecomesWhite) {
    ASSERT_TRUE(ImageIO::initialise());
    std::uint8_t grayAlpha[] = {0, 255, 0, 0}; // opaque black, transparent black
    auto image = vips::VImage::new_from_memory(grayAlpha, 4, 2, 1, 2, VIPS_FORMAT_UCHAR);
    void* png = nullptr;
    std::size_t size = 0;
    image.write_to_buffer(".png", &png, &size);
    auto decoded = ImageIO::decode(std::span(static_cast<const std::uint8_t*>(png), size));
    g_free(png);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(decoded->pixels(), (std::vector<std::uint8_t>{0, 255}));
}

TEST(ImageIO, EncodesOnlyTheExportFormatsAndOnlyIntactBitmaps) {
    for (auto kind : {FileKind::png, FileKind::jpeg, FileKind::tiff, FileKind::heic}) {
        EXPECT_TRUE(ImageIO::canEncode(kind));
    }
    for (auto kind : {FileKind::pdf, FileKind::gif}) {
        EXPECT_FALSE(ImageIO::canEncode(kind));
        EXPECT_FALSE(ImageIO::encode(pattern(PixelFormat::rgb), kind, 1));
    }
    auto bitmap = pattern(PixelFormat::rgb);
    Bitmap taken = std::move(bitmap);
    EXPECT_FALSE(ImageIO::encode(bitmap, FileKind::png, 1)); // NOLINT(bugprone-use-after-move)
}

} // namespace
} // namespace quillet
