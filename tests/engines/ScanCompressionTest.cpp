// What compress makes of scanned pages, judged with independent tools: the words a rasterized
// page showed are still found where they were (pdftotext), bilevel scans come back bit for bit
// from JBIG2 (Poppler's renders), and text scans at the smallest tier split into a sharp mask
// over a small background that looks like the scan.
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCompressionEngine.hpp"
#include "platform/PDFRenderer.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <map>
#include <sstream>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::PDFBuilder;

fs::path compressed(const fs::path& input, CompressionQualityTier tier) {
    const auto output = fs::path(input).replace_extension(".out.pdf");
    CompressionOptions options;
    options.tier = tier;
    const auto outcome = PDFCompressionEngine::compress(input, output, options);
    EXPECT_EQ(outcome.rasterizedPages, 1) << input;
    EXPECT_TRUE(test::qpdfChecks(output));
    return output;
}

// Each word pdftotext finds on page 1, with the left edge of its box.
std::map<std::string, double> wordsWithPlaces(const fs::path& file) {
    const auto result = test::runTool("pdftotext", {"-bbox", "-f", "1", "-l", "1", file.string(), "-"});
    std::map<std::string, double> words;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
        const auto at = line.find("xMin=\"");
        const auto open = line.find('>');
        const auto close = line.find("</word>");
        if (at != std::string::npos && open != std::string::npos && close != std::string::npos) {
            words[line.substr(open + 1, close - open - 1)] = std::stod(line.substr(at + 6));
        }
    }
    return words;
}

// The image filters each page of `file` draws, in resource order.
std::vector<std::string> pageImageFilters(const fs::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    std::vector<std::string> filters;
    auto page = QPDFPageDocumentHelper(qpdf).getAllPages().at(0).getObjectHandle();
    auto xobjects = page.getKey("/Resources").getKey("/XObject");
    for (const auto& key : xobjects.getKeys()) {
        auto dictionary = xobjects.getKey(key).getDict();
        if (dictionary.getKey("/Subtype").isNameAndEquals("/Image")) {
            filters.push_back(dictionary.getKey("/Filter").getName());
        }
    }
    return filters;
}

// Every page's text mask (a stencil mask drawn, or the mask of a picture), decoded: 1 for ink.
std::vector<BilevelImage> pageMasks(const fs::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    PDFRenderer renderer;
    auto document = renderer.open(file);
    std::vector<BilevelImage> masks;
    for (auto& page : QPDFPageDocumentHelper(qpdf).getAllPages()) {
        auto xobjects = page.getObjectHandle().getKey("/Resources").getKey("/XObject");
        for (const auto& key : xobjects.getKeys()) {
            auto image = xobjects.getKey(key);
            auto flag = image.getDict().getKey("/ImageMask");
            auto mask = flag.isBool() && flag.getBoolValue() ? image : image.getDict().getKey("/Mask");
            if (mask.isStream()) {
                auto bits = document.bilevelImage(
                    mask.getObjectID(), static_cast<int>(mask.getDict().getKey("/Width").getIntValue()),
                    static_cast<int>(mask.getDict().getKey("/Height").getIntValue()), true);
                EXPECT_TRUE(bits) << key;
                if (bits) {
                    masks.push_back(std::move(*bits));
                }
            }
        }
    }
    return masks;
}

// A page that a scanner and an OCR program made: a picture over the whole page, and words both
// shown directly and, invisibly, inside a form (as a text layer is usually added).
TEST(ScanCompression, RasterizedPagesKeepTheirWordsWhereTheyWere) {
    test::TempDir dir;
    for (const auto tier : {CompressionQualityTier::balanced, CompressionQualityTier::smallest}) {
        PDFBuilder builder;
        auto& page = builder.addPage(612, 792);
        page.image({.width = 1275, .height = 1650, .grain = 24}, 0, 0, 612, 792);
        page.text("Quillet keeps words", 72, 700, 14);
        auto& qpdf = builder.qpdf();
        auto form = QPDFObjectHandle::newStream(
            &qpdf, "BT /F1 10 Tf 3 Tr 1 0 0 1 200 300 Tm (hidden layer text) Tj ET");
        form.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
        form.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
        form.getDict().replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 612 792]"));
        form.getDict().replaceKey("/Resources", QPDFObjectHandle::parse(
            "<< /Font << /F1 << /Type /Font /Subtype /Type1 /BaseFont /Courier >> >> >>"));
        auto resources = page.object().getKey("/Resources");
        resources.getKey("/XObject").replaceKey("/Layer", form);
        page.content("q /Layer Do Q");
        const auto input = builder.write(dir / ("ocred-" + std::to_string(static_cast<int>(tier)) + ".pdf"));

        const auto before = wordsWithPlaces(input);
        ASSERT_EQ(before.size(), 6u);
        const auto after = wordsWithPlaces(compressed(input, tier));
        for (const auto& [word, left] : before) {
            SCOPED_TRACE(word);
            ASSERT_EQ(after.count(word), 1u);
            EXPECT_NEAR(after.at(word), left, 0.5);
        }
    }
}

// A fax-like page of 1-bit pixels, at 150 DPI and at 600 (above the ceiling that drawn scans are
// held to). Every lossy tier stores the same bits as JBIG2, at the image's own size.
TEST(ScanCompression, BilevelScansComeBackBitForBit) {
    test::TempDir dir;
    struct Case {
        CompressionQualityTier tier;
        bool decodeInverted; // samples the other way round, with a decode array to turn them
        int dpi;
    };
    for (const auto& c : {Case{CompressionQualityTier::highQuality, false, 150},
                          Case{CompressionQualityTier::smallest, true, 600}}) {
        SCOPED_TRACE(c.dpi);
        const int width = 612 * c.dpi / 72;
        const int height = 792 * c.dpi / 72;
        const auto stride = static_cast<std::size_t>((width + 7) / 8);
        std::string bits(stride * height, '\0');
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                // Strokes like lines of print, with a diagonal rule across them and specks of
                // dust, which keep the bits from compressing to nothing.
                const auto speck = (static_cast<std::uint32_t>(x) * 2654435761u) ^
                                   (static_cast<std::uint32_t>(y) * 40503u);
                const bool ink = (y % 40 < 12 && x % 23 < 15 && x > 100 && x < width - 125) ||
                                 std::abs(x - y) < 2 || speck % 613 == 0;
                // DeviceGray 1-bit: 1 is white, or black through the inverting decode array.
                if (ink == c.decodeInverted) {
                    bits[static_cast<std::size_t>(y) * stride + x / 8] |=
                        static_cast<char>(0x80 >> (x % 8));
                }
            }
        }
        PDFBuilder builder;
        auto& page = builder.addPage(612, 792);
        auto image = QPDFObjectHandle::newStream(&builder.qpdf(), bits);
        if (c.decodeInverted) {
            image.getDict().replaceKey("/Decode", QPDFObjectHandle::parse("[1 0]"));
        }
        image.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
        image.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
        image.getDict().replaceKey("/Width", QPDFObjectHandle::newInteger(width));
        image.getDict().replaceKey("/Height", QPDFObjectHandle::newInteger(height));
        image.getDict().replaceKey("/ColorSpace", QPDFObjectHandle::newName("/DeviceGray"));
        image.getDict().replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(1));
        page.object().replaceKey("/Resources", QPDFObjectHandle::parse("<< /XObject << >> >>"));
        page.object().getKey("/Resources").getKey("/XObject").replaceKey("/Fax", image);
        page.content("q 612 0 0 792 0 0 cm /Fax Do Q");
        const auto input = builder.write(dir / ("fax-" + std::to_string(c.dpi) + ".pdf"));

        const auto output = compressed(input, c.tier);
        EXPECT_EQ(pageImageFilters(output), std::vector<std::string>{"/JBIG2Decode"});
        const auto original = test::renderGray(input, 1, c.dpi);
        const auto copy = test::renderGray(output, 1, c.dpi);
        ASSERT_EQ(copy.pixels.size(), original.pixels.size());
        std::size_t different = 0;
        for (std::size_t i = 0; i < copy.pixels.size(); ++i) {
            different += (copy.pixels[i] < 128) != (original.pixels[i] < 128);
        }
        EXPECT_EQ(different, 0u);
    }
}

// A page another pass (or another program) made mixed raster content: a stencil mask of print
// over cream paper, then, drawn over the print since, a white box, a black bar and a stamp of
// thin lines across the letters, in a form. Compressed, the page shows what it showed: the print neither bolder nor
// back under the box, the bar whole, the stamp sharp. With the samples either way round (a
// decode array turning them).
TEST(ScanCompression, MixedPagesKeepWhatTheyShow) {
    test::TempDir dir;
    constexpr int width = 2550; // 300 DPI
    constexpr int height = 3300;
    constexpr std::size_t stride = (width + 7) / 8;
    for (const bool inverted : {false, true}) {
        SCOPED_TRACE(inverted);
        // A stencil mask paints where its samples are 0, or 1 through [1 0].
        std::string bits(stride * height, inverted ? '\0' : '\xff');
        for (int y = 300; y < 1700; ++y) {
            for (int x = 200; x < 2300; ++x) {
                if (y % 40 < 12 && x % 23 < 15) {
                    bits[static_cast<std::size_t>(y) * stride + x / 8] ^=
                        static_cast<char>(0x80 >> (x % 8));
                }
            }
        }
        PDFBuilder builder;
        auto& page = builder.addPage(612, 792);
        auto& qpdf = builder.qpdf();
        auto mask = QPDFObjectHandle::newStream(&qpdf, bits);
        mask.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
        mask.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
        mask.getDict().replaceKey("/Width", QPDFObjectHandle::newInteger(width));
        mask.getDict().replaceKey("/Height", QPDFObjectHandle::newInteger(height));
        mask.getDict().replaceKey("/ImageMask", QPDFObjectHandle::newBool(true));
        if (inverted) {
            mask.getDict().replaceKey("/Decode", QPDFObjectHandle::parse("[1 0]"));
        }
        auto stamp = QPDFObjectHandle::newStream(
            &qpdf, "0 0 0 RG 1 w 310 640 m 310 690 l S 340 640 m 340 690 l S 370 640 m 370 690 l S "
                   "400 640 m 400 690 l S 430 640 m 430 690 l S 460 640 m 460 690 l S "
                   "490 640 m 490 690 l S");
        stamp.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
        stamp.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
        stamp.getDict().replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 612 792]"));
        page.object().replaceKey("/Resources", QPDFObjectHandle::parse("<< /XObject << >> >>"));
        auto xobjects = page.object().getKey("/Resources").getKey("/XObject");
        xobjects.replaceKey("/Ink", mask);
        xobjects.replaceKey("/Stamp", stamp);
        page.content("q 0.93 0.9 0.8 rg 0 0 612 792 re f Q\n"
                     "q 0.3 0.3 0.35 rg 612 0 0 792 0 0 cm /Ink Do Q\n"
                     "q 1 1 1 rg 300 450 200 100 re f Q\n"
                     "q 0 0 0 rg 60 560 200 12 re f Q\n"
                     "q /Stamp Do Q\n");
        // Stored loose, so compressing it pays and an output is written.
        const auto built = builder.write(dir / "built.pdf");
        const auto input = dir / (inverted ? "inverted.pdf" : "mixed.pdf");
        test::runTool("qpdf", {"--stream-data=uncompress", built.string(), input.string()});

        const auto output = compressed(input, CompressionQualityTier::smallest);
        const auto before = test::renderGray(input, 1, 300);
        const auto after = test::renderGray(output, 1, 300);
        ASSERT_EQ(after.pixels.size(), before.pixels.size());
        // Dark pixels in a box of the 300-DPI renders (in pixels from the top left; right and
        // bottom open): before, after, dark before but not after, and changed either way.
        struct Count {
            std::size_t before = 0, after = 0, lost = 0, moved = 0;
        };
        const auto count = [&](int left, int top, int right, int bottom) {
            Count c;
            for (int y = top; y < bottom; ++y) {
                for (int x = left; x < right; ++x) {
                    const auto i = static_cast<std::size_t>(y) * width + x;
                    const bool was = before.pixels[i] < 128;
                    const bool is = after.pixels[i] < 128;
                    c.before += was;
                    c.after += is;
                    c.lost += was && !is;
                    c.moved += was != is;
                }
            }
            return c;
        };
        // Print that nothing covers: as it was, not a pixel bolder.
        const auto print = count(0, 660, width, 900);
        EXPECT_GT(print.before, 60'000u);
        EXPECT_LT(print.moved, print.before / 100);
        // Under the white box (300 to 500 points across, 242 to 342 down): paper still.
        EXPECT_LT(count(1254, 1012, 2080, 1422).after, 100u);
        // The black bar (60 to 260 points across, 220 to 232 down): dark all over, no letter
        // showing through.
        const auto bar = count(254, 921, 1080, 963);
        EXPECT_GT(bar.after, 826u * 42 * 99 / 100);
        // The stamp's lines across the print (300 to 500 points across, 102 to 152 down): all
        // there, where they cross letters too.
        const auto lines = count(1240, 410, 2095, 650);
        EXPECT_GT(lines.before, 30'000u);
        EXPECT_LT(lines.lost, lines.before / 200);
    }
}

// Coloured ink stays in its colour: the red word on a page that is otherwise black print on
// white (page 5), and a page's few red links among black text (page 14), each far less than a
// hundredth of the page.
TEST(ScanCompression, ColouredInkKeepsItsColour) {
    test::TempDir dir;
    const auto reddish = [](const test::GrayPage& page) {
        int count = 0;
        for (std::size_t i = 0; i + 2 < page.pixels.size(); i += 3) {
            count += page.pixels[i] - std::max(page.pixels[i + 1], page.pixels[i + 2]) > 60;
        }
        return count;
    };
    for (const int page : {5, 14}) {
        SCOPED_TRACE(page);
        const auto input = test::scannedThesis(dir / ("page" + std::to_string(page) + ".pdf"), page,
                                               page, 150, 90);
        const auto output = compressed(input, CompressionQualityTier::smallest);
        const int before = reddish(test::renderRGB(input, 1, 100));
        const int after = reddish(test::renderRGB(output, 1, 100));
        EXPECT_GT(before, 100);
        EXPECT_GT(after, before / 2);
        EXPECT_LT(after, before * 2);
        // Compressed again, the colours hold. (The copy has its streams uncompressed, so the
        // pass has something to gain and writes its output.)
        const auto loose = dir / ("loose" + std::to_string(page) + ".pdf");
        test::runTool("qpdf", {"--stream-data=uncompress", "--object-streams=disable",
                               output.string(), loose.string()});
        const int again =
            reddish(test::renderRGB(compressed(loose, CompressionQualityTier::smallest), 1, 100));
        EXPECT_GT(again, after * 96 / 100);
        EXPECT_LT(again, after * 104 / 100);
    }
}

// Two pages of a text scan at the smallest tier: the text as a mask at the scan's resolution
// over a background at a fraction of the tier's (or one colour), together far smaller than the
// JPEG page the tier would otherwise write, and looking like the scan. At 300 DPI and at 150,
// a coarse scan, whose mask is cut at twice its resolution.
class TextScans : public ::testing::TestWithParam<int> {};

TEST_P(TextScans, SplitIntoASharpMaskOverASmallBackground) {
    const int dpi = GetParam();
    test::TempDir dir;
    // Page 13 has red letters among the black: their colours ride in a foreground picture.
    const auto input = test::scannedThesis(dir / "scan.pdf", 12, 13, dpi, 90);
    CompressionOptions options;
    options.tier = CompressionQualityTier::smallest;
    const auto output = dir / "smallest.pdf";
    const auto outcome = PDFCompressionEngine::compress(input, output, options);
    ASSERT_EQ(outcome.rasterizedPages, 2);
    EXPECT_TRUE(test::qpdfChecks(output));
    const auto analysis = PDFAnalysisEngine::analyze(output);
    // The mask at the scan's DPI, twice that of a coarse scan (or, with red letters, the /Mask
    // of their colours), over a background at 25 DPI or, on even paper, its colour: every
    // picture but the mask a JPEG.
    const int maskDpi = dpi < 200 ? 2 * dpi : dpi;
    for (const auto& page : analysis.pages) {
        const double inches = page.widthPoints / 72;
        for (const auto& image : page.images) {
            if (std::abs(image.pixelWidth - maskDpi * inches) > 1) {
                EXPECT_TRUE(image.isJPEG);
                EXPECT_LE(image.pixelWidth, 25 * inches + 1);
            }
        }
    }
    EXPECT_LT(outcome.resultBytes, 200'000);

    for (const int page : {1, 2}) {
        SCOPED_TRACE(page);
        const auto scan = test::renderGray(input, page, 100);
        const auto result = test::renderGray(output, page, 100);
        ASSERT_EQ(result.pixels.size(), scan.pixels.size());
        // Close pixel by pixel, and the text as dark as it was: its ink (below a level any paper
        // is lighter than) summed over the page within 15%, so neither lighter nor bolder
        // letters pass.
        double difference = 0;
        double scanInk = 0;
        double resultInk = 0;
        for (std::size_t i = 0; i < scan.pixels.size(); ++i) {
            difference += std::abs(scan.pixels[i] - result.pixels[i]);
            scanInk += std::max(0, 230 - scan.pixels[i]);
            resultInk += std::max(0, 230 - result.pixels[i]);
        }
        EXPECT_LT(difference / static_cast<double>(scan.pixels.size()), 6.0);
        EXPECT_NEAR(resultInk, scanInk, 0.15 * scanInk);
    }

    // Compressed again, the pages keep their masks: thresholded from a render,
    // every pass would thicken the letters by a pixel, and a mask seen through a picture of the
    // inks was drawn again at 150 DPI. (The copy has its streams uncompressed, so the pass has
    // something to gain and writes its output.)
    const auto loose = dir / "loose.pdf";
    test::runTool("qpdf", {"--stream-data=uncompress", "--object-streams=disable",
                           output.string(), loose.string()});
    const auto again = dir / "again.pdf";
    ASSERT_EQ(PDFCompressionEngine::compress(loose, again, options).rasterizedPages, 2);
    const auto first = pageMasks(output);
    const auto second = pageMasks(again);
    ASSERT_EQ(first.size(), 2u);
    ASSERT_EQ(second.size(), 2u);
    for (std::size_t page = 0; page < 2; ++page) {
        SCOPED_TRACE(page);
        ASSERT_EQ(second[page].width(), first[page].width());
        ASSERT_EQ(second[page].height(), first[page].height());
        // Only ink painted nearly in the paper's colour, which showed as paper, may go.
        std::size_t ink = 0;
        std::size_t moved = 0;
        for (int y = 0; y < first[page].height(); ++y) {
            for (std::size_t b = 0; b < first[page].rowBytes(); ++b) {
                ink += std::popcount(first[page].row(y)[b]);
                moved += std::popcount(
                    static_cast<std::uint8_t>(first[page].row(y)[b] ^ second[page].row(y)[b]));
            }
        }
        EXPECT_GT(ink, 50'000u);
        EXPECT_LT(moved, ink / 100);
    }
}

INSTANTIATE_TEST_SUITE_P(Resolutions, TextScans, ::testing::Values(300, 150));

} // namespace
} // namespace quillet
