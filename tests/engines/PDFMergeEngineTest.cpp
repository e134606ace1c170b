// The merge engine on real files: geometry of image pages, JPEG bytes kept, orientation, lossless
// pixels, and the failures that must write nothing. Outputs are read back through qpdf directly
// and through pdftoppm.
#include "engines/PDFMergeEngine.hpp"
#include "engines/JPEGHeader.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/ImageIO.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>
#include <vips/vips8>

#include <fmt/format.h>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;
using PageSize = ImageToPDFOptions::PageSize;
using Fit = ImageToPDFOptions::Fit;

// A picture whose left half is black and right half white, so any turn or mirror shows.
Bitmap halfBlack(int width, int height) {
    Bitmap bitmap(width, height, PixelFormat::gray);
    for (int y = 0; y < height; ++y) {
        std::fill_n(bitmap.data() + static_cast<std::size_t>(y) * width, width / 2, 0);
    }
    return bitmap;
}

std::string jpegOf(const Bitmap& bitmap) {
    const auto bytes = ImageIO::encode(bitmap, FileKind::jpeg, 0.9);
    return {bytes->begin(), bytes->end()};
}

// An APP1 segment holding only an EXIF orientation, inserted right after the start marker.
std::string withOrientation(const std::string& jpeg, int orientation) {
    std::string tiff("MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 26);
    tiff[19] = static_cast<char>(orientation);
    const std::string payload = std::string("Exif\0\0", 6) + tiff;
    const auto length = payload.size() + 2;
    return jpeg.substr(0, 2) + "\xFF\xE1" + char(length >> 8) + char(length & 0xFF) + payload +
           jpeg.substr(2);
}

struct Written {
    std::shared_ptr<QPDF> qpdf = QPDF::create();
    std::vector<QPDFObjectHandle> pages;
    explicit Written(const fs::path& path) {
        qpdf->processFile(path.c_str());
        pages = qpdf->getAllPages();
    }
    QPDFObjectHandle image(int page) {
        return pages.at(page).getKey("/Resources").getKey("/XObject").getKey("/Im0");
    }
    std::vector<double> mediaBox(int page) {
        std::vector<double> box;
        for (auto& item : pages.at(page).getKey("/MediaBox").getArrayAsVector()) {
            box.push_back(item.getNumericValue());
        }
        return box;
    }
};

TEST(MergeGeometry, PlacesTheUprightPicture) {
    const struct {
        const char* name;
        int width, height;
        ImageToPDFOptions options;
        PDFRect page, drawn;
        std::optional<PDFRect> clip;
    } cases[] = {
        // clang-format off
        {"A4Fit", 4000, 3000, {PageSize::a4, Fit::fit, 0, {}}, {0, 0, 595.28, 841.89},
         {0, 197.715, 595.28, 446.46}, std::nullopt},
        {"A4Fill", 4000, 3000, {PageSize::a4, Fit::fill, 0, {}}, {0, 0, 595.28, 841.89},
         {-263.62, 0, 1122.52, 841.89}, PDFRect{0, 0, 595.28, 841.89}},
        {"LetterFitMargin", 1000, 1000, {PageSize::letter, Fit::fit, 36, {}}, {0, 0, 612, 792},
         {36, 126, 540, 540}, std::nullopt},
        {"LegalFillMargin", 100, 200, {PageSize::legal, Fit::fill, 10, {}}, {0, 0, 612, 1008},
         {10, -88, 592, 1184}, PDFRect{10, 10, 592, 988}},
        {"MarginWiderThanPage", 10, 10, {PageSize::a4, Fit::fit, 400, {}},
         {0, 0, 595.28, 841.89}, {400, 420.945, 0, 0}, std::nullopt},
        {"OriginalIgnoresMarginAndFit", 300, 200,
         {PageSize::original, Fit::fill, 50, RGBColor{1, 0, 0}}, {0, 0, 300, 200},
         {0, 0, 300, 200}, std::nullopt},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto placement = ImagePlacement::compute(c.width, c.height, c.options);
        for (const auto& [got, want] :
             {std::pair{placement.page, c.page}, {placement.drawn, c.drawn}}) {
            EXPECT_NEAR(got.x, want.x, 0.01);
            EXPECT_NEAR(got.y, want.y, 0.01);
            EXPECT_NEAR(got.width, want.width, 0.01);
            EXPECT_NEAR(got.height, want.height, 0.01);
        }
        ASSERT_EQ(placement.clip.has_value(), c.clip.has_value());
        if (c.clip) {
            EXPECT_NEAR(placement.clip->width, c.clip->width, 0.01);
            EXPECT_NEAR(placement.clip->x, c.clip->x, 0.01);
        }
        EXPECT_EQ(placement.paintsBackground, c.options.pageSize != PageSize::original);
    }
}

TEST(MergeJPEG, EmbedsTheFileBytesUnchangedWithTheirColourSpace) {
    TempDir dir;
    const auto gray = dir.write("gray.jpg", jpegOf(halfBlack(32, 16)));
    // A JPEG named .png is still a JPEG: files are read by content.
    const auto misnamed =
        dir.write("photo.png", test::readFile(test::corpus("003-pdflatex-image/image.jpg")));
    // Zero ink everywhere, as libvips writes CMYK: with an Adobe marker and inverted samples.
    const std::vector<std::uint8_t> noInk(8 * 8 * 4, 0);
    vips::VImage::new_from_memory(const_cast<std::uint8_t*>(noInk.data()), noInk.size(), 8, 8, 4,
                                  VIPS_FORMAT_UCHAR)
        .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK))
        .write_to_file((dir / "cmyk.jpg").c_str());
    const std::vector<fs::path> inputs{test::corpus("007-imagemagick-images/smile.jpg"), gray,
                                       misnamed, dir / "cmyk.jpg"};
    EXPECT_EQ(PDFMergeEngine::merge(inputs, dir / "out.pdf", {}, {}), 4);

    Written out(dir / "out.pdf");
    const std::vector<std::string> spaces{"/DeviceRGB", "/DeviceGray", "/DeviceRGB", "/DeviceCMYK"};
    for (int k = 0; k < 4; ++k) {
        auto image = out.image(k);
        EXPECT_EQ(image.getDict().getKey("/Filter").getName(), "/DCTDecode");
        EXPECT_EQ(image.getDict().getKey("/ColorSpace").getName(), spaces[k]);
        const auto raw = image.getRawStreamData();
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize()),
                  test::readFile(inputs[k]))
            << inputs[k];
    }
    EXPECT_EQ(out.image(3).getDict().getKey("/Decode").unparse(), "[ 1 0 1 0 1 0 1 0 ]");
    // Zero ink everywhere: with the Adobe inversion undone the CMYK page renders white.
    EXPECT_EQ(test::renderGray(dir / "out.pdf", 4).darkPixels(0, 0, 8, 8, 72), 0);
    EXPECT_TRUE(test::qpdfChecks(dir / "out.pdf"));
}

TEST(MergeOrientation, TurnsThePictureUprightWithoutReencoding) {
    const struct {
        int orientation;
        int pageWidth, pageHeight;
        PDFRect dark; // from the page's top-left corner, in points
    } cases[] = {{1, 40, 20, {0, 0, 20, 20}},
                 {2, 40, 20, {20, 0, 20, 20}},
                 {3, 40, 20, {20, 0, 20, 20}},
                 {6, 20, 40, {0, 0, 20, 20}},
                 {8, 20, 40, {0, 20, 20, 20}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.orientation);
        TempDir dir;
        const auto jpeg = withOrientation(jpegOf(halfBlack(40, 20)), c.orientation);
        ASSERT_EQ(PDFMergeEngine::merge({dir.write("turned.jpg", jpeg)}, dir / "out.pdf", {}, {}),
                  1);

        Written out(dir / "out.pdf");
        EXPECT_EQ(out.mediaBox(0),
                  (std::vector<double>{0, 0, double(c.pageWidth), double(c.pageHeight)}));
        const auto raw = out.image(0).getRawStreamData();
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize()),
                  jpeg);
        const auto page = test::renderGray(dir / "out.pdf", 1, 72);
        const auto& d = c.dark;
        EXPECT_GT(page.darkPixels(d.x + 1, d.y + 1, d.x + d.width - 1, d.y + d.height - 1, 72),
                  0.8 * (d.width - 2) * (d.height - 2));
        EXPECT_LT(page.darkPixels(0, 0, c.pageWidth, c.pageHeight, 72), 1.2 * d.width * d.height);
    }
}

TEST(MergeImages, StoresOtherFormatsLosslesslyAndAlphaOnWhite) {
    TempDir dir;
    std::vector<std::uint8_t> rgba(64 * 32 * 4);
    for (std::size_t k = 0; k < rgba.size(); k += 4) {
        const auto pixel = k / 4;
        rgba[k] = static_cast<std::uint8_t>(pixel * 7);
        rgba[k + 1] = static_cast<std::uint8_t>(pixel * 13);
        rgba[k + 2] = static_cast<std::uint8_t>(pixel);
        rgba[k + 3] = pixel % 64 < 32 ? 0 : 255; // left half fully transparent
    }
    vips::VImage::new_from_memory(rgba.data(), rgba.size(), 64, 32, 4, VIPS_FORMAT_UCHAR)
        .write_to_file((dir / "alpha.png").c_str());
    const auto tiff = test::corpus("007-imagemagick-images/smile.tiff");
    ImageToPDFOptions options{PageSize::a4, Fit::fit, 20, RGBColor{0, 0, 0}};
    ASSERT_EQ(PDFMergeEngine::merge({dir / "alpha.png", tiff}, dir / "out.pdf", options, {}), 2);

    Written out(dir / "out.pdf");
    const std::vector<fs::path> inputs{dir / "alpha.png", tiff};
    for (int k = 0; k < 2; ++k) {
        const auto decoded = ImageIO::decode(inputs[k]);
        const auto data = out.image(k).getStreamData(qpdf_dl_generalized);
        EXPECT_EQ(std::vector<std::uint8_t>(data->getBuffer(), data->getBuffer() + data->getSize()),
                  decoded->pixels())
            << inputs[k];
    }
    // Black background around the picture; the transparent half shows white, the rest colour.
    const auto page = test::renderGray(dir / "out.pdf", 1, 72);
    EXPECT_EQ(page.darkPixels(0, 0, 595, 19, 72), 595 * 19);
    EXPECT_EQ(page.darkPixels(30, 421, 290, 421 + 5, 72, 250), 0);
}

fs::path good(const TempDir& dir) {
    return test::numberedPDF(dir / "good.pdf", 2);
}

TEST(MergeFailure, ReportsTheFileAndWritesNothing) {
    using Case = PDFCoreError::Case;
    using Inputs = std::vector<fs::path>;
    const auto truncated = [](const TempDir& d) {
        PDFBuilder b;
        b.addPage().text("x");
        return b.write(d / "cut.pdf", test::Damage::truncated);
    };
    const struct {
        const char* name;
        std::function<Inputs(const TempDir&)> inputs;
        Case errorCase;
        std::string message;
    } cases[] = {
        // clang-format off
        {"NoInputs", [](const TempDir&) { return Inputs{}; }, Case::invalidInput,
         "No input files."},
        {"PDFNamedJPEG",
         [](const TempDir& d) {
             return Inputs{good(d), d.write("scan.jpg", test::readFile(good(d)))};
         },
         Case::invalidInput, "Unsupported image: scan.jpg"},
        {"TruncatedJPEG",
         [](const TempDir& d) {
             const auto jpeg = jpegOf(halfBlack(64, 64));
             return Inputs{d.write("cut.jpeg", jpeg.substr(0, jpeg.size() / 2))};
         },
         Case::invalidInput, "Unsupported image: cut.jpeg"},
        {"Missing", [](const TempDir& d) { return Inputs{good(d), d / "gone.pdf"}; },
         Case::cannotOpen, "Could not open gone.pdf: No such file or directory."},
        {"Damaged", [&](const TempDir& d) { return Inputs{good(d), truncated(d)}; },
         Case::cannotOpen, "Could not open cut.pdf: unable to find trailer dictionary while recovering damaged file."},
        {"NeedsPassword",
         [](const TempDir& d) { return Inputs{good(d), test::lockedPDF(d / "locked.pdf")}; },
         Case::cannotOpen, "Could not open locked.pdf."},
        {"NoPages", [](const TempDir& d) { return Inputs{PDFBuilder().write(d / "empty.pdf")}; },
         Case::emptyDocument, "The document has no pages."},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        const auto inputs = c.inputs(dir);
        const auto output = dir.write("out.pdf", "earlier result");
        const auto error =
            test::caughtCoreError([&] { PDFMergeEngine::merge(inputs, output, {}, {}); });
        EXPECT_EQ(error.errorCase(), c.errorCase);
        EXPECT_EQ(error.what(), c.message);
        EXPECT_EQ(test::readFile(output), "earlier result");
        const auto present = std::count_if(inputs.begin(), inputs.end(),
                                           [](const fs::path& input) { return fs::exists(input); });
        EXPECT_EQ(test::fileNames(dir.path()).size(), static_cast<std::size_t>(present) + 1);
    }
}

TEST(MergePDFs, CancellationStopsBeforeTheNextInputAndWritesNothing) {
    TempDir dir;
    int asked = 0;
    EXPECT_THROW(PDFMergeEngine::merge({good(dir), good(dir)}, dir / "out.pdf", {}, {},
                                       [&] { return ++asked == 2; }),
                 CancellationError);
    EXPECT_FALSE(fs::exists(dir / "out.pdf"));
}

} // namespace
} // namespace quillet
