#include "platform/ImageIO.hpp"

#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillet {
namespace {

using test::corpus;

// Structure in both directions, so that a lossless round trip means something.
Bitmap pattern(PixelFormat format) {
    Bitmap bitmap(23, 17, format);
    for (std::size_t i = 0; i < bitmap.pixels().size(); ++i) {
        bitmap.data()[i] = static_cast<std::uint8_t>((i * 37) % 251);
    }
    return bitmap;
}

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

} // namespace
} // namespace quillet
