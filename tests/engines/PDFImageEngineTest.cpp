// Image export on fixtures built in code: which pages, which names, which files, with form fields
// drawn; how a page is placed and drawn is PDFRendererTest's.
#include "engines/PDFImageEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/ImageIO.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::PDFBuilder;
using test::TempDir;

fs::path numberedPages(const TempDir& dir, int count) {
    return test::numberedPDF(dir / "doc.pdf", count);
}

PDFImageEngine::Result exportPages(const fs::path& input, const fs::path& folder,
                                   std::string_view pages = "", int dpi = 36,
                                   ImageOutputFormat format = ImageOutputFormat::png,
                                   unsigned threads = 0) {
    return PDFImageEngine::pdfToImages(input, folder, "doc", format, dpi, pages, 0.85, {}, {},
                                       threads);
}

// Pixels darker than mid-gray in [x0, x1) x [y0, y1) of an RGB or gray bitmap.
int darkPixels(const Bitmap& image, int x0, int y0, int x1, int y1) {
    int dark = 0;
    for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) {
            const auto* pixel = image.data() + y * image.rowBytes() + x * image.bands();
            dark += pixel[0] < 128 ? 1 : 0;
        }
    }
    return dark;
}

TEST(ImageEngineSelection, PagesOnceAscendingOrRefused) {
    const struct {
        std::string text;
        int pageCount;
        std::vector<int> pages;
    } cases[] = {
        // clang-format off
        {"", 3, {0, 1, 2}}, {" \t ", 2, {0, 1}}, {"3,1,3", 5, {0, 2}}, {"99", 5, {4}},
        {"0", 5, {0}}, {"10-8, 9", 10, {7, 8, 9}}, {"4-6;2 5", 10, {1, 3, 4, 5}},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(PDFImageEngine::selectedPages(c.text, c.pageCount), c.pages) << c.text;
    }
    for (const std::string text : {"abc", " abc ", "-3, 5-", ",;"}) {
        const auto error = test::caughtCoreError([&] { PDFImageEngine::selectedPages(text, 5); });
        EXPECT_EQ(error.errorCase(), PDFCoreError::Case::invalidInput);
        EXPECT_EQ(error.text(), "No pages matched \"" + text + "\".");
    }
}

// Files appear in page order even though several pages are in flight: whenever progress is
// reported, exactly the pages before it are visible under their final names.
TEST(ImageEngineExport, SelectionInPageOrderWithProgress) {
    TempDir dir;
    const auto input = numberedPages(dir, 8);
    const auto out = dir / "out";
    std::vector<double> progress;
    std::vector<std::vector<std::string>> visible;
    const auto result = PDFImageEngine::pdfToImages(
        input, out, "doc", ImageOutputFormat::png, 36, "8,3,1,3,5-6", 0.85,
        [&](double fraction) {
            progress.push_back(fraction);
            auto names = test::fileNames(out);
            std::erase_if(names, [](const std::string& name) { return name.starts_with("."); });
            visible.push_back(names);
        },
        {}, 4);
    const std::vector<std::string> expected{"doc-page-01.png", "doc-page-03.png", "doc-page-05.png",
                                            "doc-page-06.png", "doc-page-08.png"};
    ASSERT_EQ(result.files.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(result.files[i], out / expected[i]);
        EXPECT_EQ(visible.at(i),
                  std::vector<std::string>(expected.begin(), expected.begin() + i + 1));
    }
    EXPECT_EQ(progress, (std::vector<double>{0.2, 0.4, 0.6, 0.8, 1.0}));
    EXPECT_EQ(test::fileNames(out), expected);
}

TEST(ImageEngineExport, ThreeDigitsForAHundredPages) {
    TempDir dir;
    const auto result = exportPages(numberedPages(dir, 100), dir / "out", "7", 9);
    ASSERT_EQ(result.files.size(), 1u);
    EXPECT_EQ(result.files[0].filename(), "doc-page-007.png");
}

// Each format's own kind of file (its signature; a HEIC that is not a JPEG in disguise) under
// its extension, and an image that decodes.
TEST(ImageEngineExport, FilesOfTheFormat) {
    using F = ImageOutputFormat;
    const struct {
        F format;
        std::string extension, magic;
        std::size_t offset;
    } cases[] = {{F::png, "png", "\x89PNG\r\n\x1a\n", 0},
                 {F::jpeg, "jpeg", "\xff\xd8\xff", 0},
                 {F::tiff, "tiff", std::string("II*\0", 4), 0},
                 {F::heic, "heic", "ftypheic", 4}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.extension);
        TempDir dir;
        const auto result = exportPages(numberedPages(dir, 1), dir / "out", "", 36, c.format);
        ASSERT_EQ(result.files.size(), 1u);
        EXPECT_EQ(result.files[0].filename(), "doc-page-01." + c.extension);
        EXPECT_EQ(test::readFile(result.files[0]).substr(c.offset, c.magic.size()), c.magic);
        const auto image = ImageIO::decode(result.files[0]);
        ASSERT_TRUE(image.has_value());
        EXPECT_EQ(image->width(), 306);
    }
}

TEST(ImageEngineExport, FormFieldAppearancesAreDrawn) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().textField("name", "WWWWWWWWWWWWWWW");
    const auto result = exportPages(builder.write(dir / "doc.pdf"), dir / "out", "", 72);
    const auto image = ImageIO::decode(result.files.at(0));
    ASSERT_TRUE(image.has_value());
    // The builder stacks the widget at the top left: x 36...236, 30 points high.
    EXPECT_GT(darkPixels(*image, 36, 0, 236, 80), 100);
    EXPECT_EQ(darkPixels(*image, 236, 0, 612, 792), 0);
}

TEST(ImageEngineExport, ReplacesAnExistingImageAndLeavesNoTemporaryFiles) {
    TempDir dir;
    const auto input = numberedPages(dir, 2);
    fs::create_directories(dir / "out");
    std::ofstream(dir / "out" / "doc-page-02.png") << "stale";
    exportPages(input, dir / "out");
    EXPECT_EQ(test::fileNames(dir / "out"),
              (std::vector<std::string>{"doc-page-01.png", "doc-page-02.png"}));
    EXPECT_NE(test::readFile(dir / "out" / "doc-page-02.png"), "stale");
}

TEST(ImageEngineExport, CancelledAfterTheFirstPageKeepsItOnly) {
    TempDir dir;
    const auto input = numberedPages(dir, 6);
    int asked = 0;
    EXPECT_THROW(PDFImageEngine::pdfToImages(input, dir / "out", "doc", ImageOutputFormat::png, 36,
                                             "", 0.85, {}, [&] { return ++asked > 1; }),
                 CancellationError);
    EXPECT_EQ(test::fileNames(dir / "out"), std::vector<std::string>{"doc-page-01.png"});

    // Cancelled before any image: the folder this run made is gone again.
    EXPECT_THROW(PDFImageEngine::pdfToImages(input, dir / "fresh", "doc", ImageOutputFormat::png,
                                             36, "", 0.85, {}, [] { return true; }),
                 CancellationError);
    EXPECT_FALSE(std::filesystem::exists(dir / "fresh"));
}

// The oversized page comes last, so an export that checked late would already have written.
TEST(ImageEngineErrors, OversizedRenderRefusedWithAClearMessageAndNothingWritten) {
    const struct {
        double width, height;
        int dpi;
        std::string size;
    } cases[] = {{612, 792, 2100, "17850 x 23100"},
                 {14400, 14400, 150, "30000 x 30000"},
                 {14400, 1, 100000, "20000000 x 1388"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        TempDir dir;
        PDFBuilder builder;
        builder.addPage(1, 1);
        builder.addPage(c.width, c.height);
        const auto input = builder.write(dir / "big.pdf");
        const auto error =
            test::caughtCoreError([&] { exportPages(input, dir / "out", "", c.dpi); });
        EXPECT_EQ(error.errorCase(), PDFCoreError::Case::invalidInput);
        const std::string message = error.what();
        EXPECT_NE(message.find("big.pdf, page 2"), std::string::npos) << message;
        EXPECT_NE(message.find(c.size), std::string::npos) << message;
        EXPECT_NE(message.find("limit of 400 megapixels"), std::string::npos) << message;
        EXPECT_TRUE(test::fileNames(dir / "out").empty());
    }
}

TEST(ImageEngineErrors, UnwritableFolderNamesThePath) {
    TempDir dir;
    const auto input = numberedPages(dir, 1);
    const auto blocker = dir.write("blocker", "a file where a folder should be");
    try {
        exportPages(input, blocker / "out");
        ADD_FAILURE() << "wrote into a folder below a file";
    } catch (const fs::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find(blocker.string()), std::string::npos);
    }
}

} // namespace
} // namespace quillet
