#include "engines/FullPageImage.hpp"
#include "platform/JPEGScaler.hpp"
#include "platform/PDFDocument.hpp"
#include "platform/PDFRenderer.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using test::ImageSpec;
using test::PDFBuilder;

std::string jpegFile() { return test::readFile(test::corpus("003-pdflatex-image/image.jpg")); }

TEST(FullPageImage, RecognisesOnlyOneJPEGOverTheWholePage) {
    const std::string jpeg = jpegFile();
    ASSERT_FALSE(jpeg.empty());
    const ImageSpec spec{.width = 300, .height = 200, .color = ImageSpec::Color::rgb, .jpeg = jpeg};
    const struct {
        const char* name;
        std::function<void(PDFBuilder::Page&)> build;
        bool expected;
    } cases[] = {
        {"whole page", [&](auto& p) { p.image(spec, 0, 0, 300, 200); }, true},
        {"offset origin", [&](auto& p) { p.mediaBox(10, 20, 310, 220).image(spec, 10, 20, 300, 200); }, true},
        {"half the page", [&](auto& p) { p.image(spec, 0, 0, 150, 200); }, false},
        {"with text", [&](auto& p) { p.image(spec, 0, 0, 300, 200).text("x"); }, false},
        {"two images", [&](auto& p) { p.image(spec, 0, 0, 300, 200).image(spec, 0, 0, 300, 200); }, false},
        {"not a JPEG", [&](auto& p) { p.image({.width = 30, .height = 20}, 0, 0, 300, 200); }, false},
        {"nothing", [&](auto& p) { p.content("q Q"); }, false},
    };
    for (const auto& c : cases) {
        PDFBuilder builder;
        c.build(builder.addPage(300, 200));
        auto document = PDFDocument::open(builder.bytes(), c.name);
        const auto found = FullPageImage::jpeg(document.page(0));
        EXPECT_EQ(found.has_value(), c.expected) << c.name;
        if (found) {
            EXPECT_EQ(*found, jpeg) << c.name;
        }
    }
}

// The shortcut must give the picture a render gives.
TEST(FullPageImage, ScaledJPEGMatchesARenderOfThePage) {
    const std::string jpeg = jpegFile();
    PDFBuilder builder;
    builder.addPage(300, 200).image({.width = 300, .height = 200, .jpeg = jpeg}, 0, 0, 300, 200);
    test::TempDir dir;
    const auto path = builder.write(dir / "jpeg.pdf");
    PDFRenderer renderer;
    auto document = renderer.open(path);
    const Bitmap rendered = document.render(0, {.size = PDFRenderer::PixelSize{125, 83}});
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(jpeg.data());
    const auto scaled = JPEGScaler::decodeScaled({bytes, jpeg.size()}, 125, 83, PixelFormat::rgb);
    ASSERT_TRUE(scaled);
    ASSERT_EQ(scaled->pixels().size(), rendered.pixels().size());
    double difference = 0;
    for (std::size_t i = 0; i < rendered.pixels().size(); ++i) {
        difference += std::abs(rendered.pixels()[i] - scaled->pixels()[i]);
    }
    EXPECT_LT(difference / static_cast<double>(rendered.pixels().size()), 6.0);
    EXPECT_FALSE(JPEGScaler::decodeScaled({bytes, jpeg.size() / 2}, 125, 83, PixelFormat::rgb));
}

} // namespace
} // namespace quillet
