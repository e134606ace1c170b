#include "engines/DocumentRewriter.hpp"
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCompressionEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PageRasterizer.hpp"
#include "platform/PDFDocument.hpp"
#include "platform/PDFRenderer.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/ScopedEnv.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::ImageSpec;
using test::PDFBuilder;

TEST(PageRasterizer, MonochromePagesStayLosslessAtGentleQualities) {
    Bitmap gray(40, 30, PixelFormat::gray);
    for (std::size_t i = 0; i < gray.pixels().size(); i += 3) {
        gray.data()[i] = 0;
    }
    const auto gentle = PageRasterizer::encode(gray, 0.85, true);
    ASSERT_TRUE(gentle);
    EXPECT_FALSE(gentle->isJPEG);
    EXPECT_EQ(gentle->pixels, gray.pixels());
    const auto strong = PageRasterizer::encode(gray, 0.55, true);
    ASSERT_TRUE(strong);
    EXPECT_TRUE(strong->isJPEG);
    EXPECT_EQ(strong->format, PixelFormat::gray);
    EXPECT_TRUE(PageRasterizer::encode(Bitmap(40, 30, PixelFormat::rgb), 0.85, false)->isJPEG);
}

struct Compressed {
    CompressionOutcome outcome;
    fs::path output;
};

class CompressionFixture : public testing::Test {
  protected:
    Compressed run(const fs::path& input, CompressionOptions options) {
        const auto output = dir_ / ("out-" + std::to_string(++count_) + ".pdf");
        const std::string before = test::readFile(input);
        auto outcome = PDFCompressionEngine::compress(input, output, options);
        EXPECT_EQ(test::readFile(input), before) << "the input changed";
        EXPECT_EQ(fs::exists(output), outcome.outputURL.has_value());
        if (outcome.outputURL) {
            EXPECT_TRUE(test::qpdfChecks(output));
            EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(output)), outcome.resultBytes);
        }
        return {outcome, output};
    }
    static CompressionOptions tier(CompressionQualityTier t) {
        CompressionOptions options;
        options.tier = t;
        return options;
    }
    fs::path scanned(const std::string& name, ImageSpec::Color color, int rotation = 0) {
        PDFBuilder builder;
        builder.addPage(612, 792).rotate(rotation).image({.width = 1275, .height = 1650, .color = color, .grain = 24}, 0, 0, 612, 792);
        builder.addPage(612, 792).text("A text page stays vector content.");
        return builder.write(dir_ / name);
    }
    test::TempDir dir_;
    int count_ = 0;
};

TEST_F(CompressionFixture, ScannedPagesAreRasterizedAtTheTierResolution) {
    const auto input = scanned("scan.pdf", ImageSpec::Color::rgb);
    const auto result = run(input, tier(CompressionQualityTier::balanced));
    ASSERT_EQ(result.outcome.status, CompressionOutcome::Status::compressed);
    EXPECT_EQ(result.outcome.rasterizedPages, 1);
    EXPECT_LT(result.outcome.resultBytes, result.outcome.originalBytes);
    const auto analysis = PDFAnalysisEngine::analyze(result.output);
    ASSERT_EQ(analysis.pageCount, 2);
    ASSERT_EQ(analysis.pages[0].images.size(), 1u);
    EXPECT_EQ(analysis.pages[0].images[0].pixelWidth, 1700); // 612 pt at 200 DPI
    EXPECT_TRUE(analysis.pages[0].images[0].isJPEG);
    EXPECT_EQ(analysis.pages[1].textOperatorCount, 1);
}

TEST_F(CompressionFixture, DocumentWithoutPagesFailsOnEveryTierAndWritesNothing) {
    const auto input = PDFBuilder().write(dir_ / "no-pages.pdf");
    for (auto t : {CompressionQualityTier::lossless, CompressionQualityTier::balanced}) {
        const auto output = dir_ / "no-pages-out.pdf";
        EXPECT_EQ(test::caughtCase([&] { PDFCompressionEngine::compress(input, output, tier(t)); }),
                  PDFCoreError::Case::emptyDocument);
        EXPECT_FALSE(fs::exists(output));
    }
}

TEST_F(CompressionFixture, TextOperatorThresholdDecidesMixedPages) {
    for (int operators : {399, 400}) {
        PDFBuilder builder;
        auto& page = builder.addPage(612, 792);
        // 1000 px drawn 544 pt wide: 61% of the page's area.
        page.image({.width = 1000, .height = 1000, .grain = 24}, 0, 0, 544, 544);
        std::string text = "BT /F9 1 Tf";
        for (int i = 0; i < operators; ++i) {
            text += " (x) Tj";
        }
        page.content(text + " ET");
        const auto input = builder.write(dir_ / ("mixed-" + std::to_string(operators) + ".pdf"));
        const auto result = run(input, tier(CompressionQualityTier::smallest));
        EXPECT_EQ(result.outcome.rasterizedPages, operators == 399 ? 1 : 0) << operators;
    }
}

TEST_F(CompressionFixture, DocumentStructureSurvivesRasterization) {
    PDFBuilder builder;
    builder.addPage(612, 792)
        .image({.width = 1275, .height = 1650, .grain = 24}, 0, 0, 612, 792)
        .link("https://example.org/")
        .textNote("kept");
    builder.attachment("data.csv", "a,b\n1,2\n").info("Title", "Survey");
    const auto input = builder.write(dir_ / "structured.pdf");
    const auto result = run(input, tier(CompressionQualityTier::smallest));
    ASSERT_EQ(result.outcome.rasterizedPages, 1);
    const auto analysis = PDFAnalysisEngine::analyze(result.output);
    EXPECT_EQ(analysis.annotationCount, 2);
    EXPECT_EQ(analysis.externalLinkCount, 1);
    EXPECT_EQ(analysis.attachmentCount, 1);
    EXPECT_EQ(analysis.metadata.title, "Survey");
}

TEST_F(CompressionFixture, RotatedScanLooksTheSameAfterwards) {
    const auto input = scanned("rotated.pdf", ImageSpec::Color::rgb, 90);
    const auto result = run(input, tier(CompressionQualityTier::highQuality));
    ASSERT_EQ(result.outcome.rasterizedPages, 1);
    const auto original = PDFDocument::open(input);
    const auto compressed = PDFDocument::open(result.output);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(compressed.page(i).mediaBox(), original.page(i).mediaBox());
        EXPECT_EQ(compressed.page(i).rotation(), original.page(i).rotation());
    }
    PDFRenderer renderer;
    auto before = renderer.open(input);
    auto after = renderer.open(result.output);
    const Bitmap a = before.render(0, {.scale = 0.25});
    const Bitmap b = after.render(0, {.scale = 0.25});
    ASSERT_EQ(a.width(), b.width());
    ASSERT_EQ(a.height(), b.height());
    double difference = 0;
    for (std::size_t i = 0; i < a.pixels().size(); ++i) {
        difference += std::abs(a.pixels()[i] - b.pixels()[i]);
    }
    EXPECT_LT(difference / static_cast<double>(a.pixels().size()), 4.0);
}

TEST_F(CompressionFixture, TargetSizeOutcomes) {
    const auto input = scanned("target.pdf", ImageSpec::Color::rgb);
    const auto size = static_cast<std::int64_t>(fs::file_size(input));

    CompressionOptions roomy;
    roomy.targetBytes = size * 2;
    const auto under = run(input, roomy);
    ASSERT_TRUE(under.outcome.note);
    EXPECT_TRUE(under.outcome.note->starts_with("Already under")) << *under.outcome.note;

    CompressionOptions impossible;
    impossible.targetBytes = 2000;
    const auto best = run(input, impossible);
    EXPECT_EQ(best.outcome.status, CompressionOutcome::Status::bestEffort);
    EXPECT_TRUE(best.outcome.note->starts_with("Best effort: ")) << *best.outcome.note;
    EXPECT_TRUE(best.outcome.note->ends_with(" — this PDF cannot reach 2.0 KB without destroying quality."));

    std::vector<double> seen;
    CompressionOptions reachable;
    reachable.targetBytes = best.outcome.resultBytes * 3;
    reachable.progress = [&](double fraction) { seen.push_back(fraction); };
    const auto reached = run(input, reachable);
    EXPECT_NE(reached.outcome.status, CompressionOutcome::Status::bestEffort);
    EXPECT_LE(reached.outcome.resultBytes, *reachable.targetBytes);
    ASSERT_FALSE(seen.empty());
    EXPECT_GT(seen.front(), 0.0);
    EXPECT_LE(seen.front(), 0.02);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
}

// Rungs 2 and 3 straddle a target at 90% of rung 2 with no rung between 85% and 100% of it; the
// result still lands there.
TEST_F(CompressionFixture, TargetBetweenTwoRungsIsReached) {
    // Three pages of the thesis scanned at 300 DPI, stored as JPEG as a scanner stores them.
    const auto input = test::scannedThesis(dir_ / "scan.pdf", 5, 7, 300, 95);

    const auto analysis = PDFAnalysisEngine::analyze(input);
    const auto rungBytes = [&](std::size_t rung) {
        const auto file = dir_ / ("rung-" + std::to_string(rung) + ".pdf");
        std::ofstream{file};
        const auto& setting = PDFCompressionEngine::ladder[rung];
        return DocumentRewriter::rewrite(input, file, analysis, setting,
                                         PDFCompressionEngine::rungImages(setting), {}, {})
            .bytes;
    };
    CompressionOptions options;
    options.targetBytes = rungBytes(2) * 9 / 10;
    const std::int64_t floor = *options.targetBytes * 85 / 100;
    ASSERT_LT(rungBytes(3), floor);

    const auto result = run(input, options);
    EXPECT_EQ(result.outcome.status, CompressionOutcome::Status::compressed);
    EXPECT_GE(result.outcome.resultBytes, floor);
    EXPECT_LE(result.outcome.resultBytes, *options.targetBytes);
}

TEST_F(CompressionFixture, CancellationLeavesNoFileBehind) {
    const auto input = scanned("cancel.pdf", ImageSpec::Color::rgb);
    test::TempDir temporary;
    test::ScopedEnv tmpdir("TMPDIR", temporary.path().string());
    for (bool target : {false, true}) {
        CompressionOptions options;
        if (target) {
            options.targetBytes = 1000;
        }
        int calls = 0;
        options.isCancelled = [&] { return ++calls > 1; };
        const auto output = dir_ / "cancelled.pdf";
        EXPECT_THROW(PDFCompressionEngine::compress(input, output, options), CancellationError);
        EXPECT_FALSE(fs::exists(output));
        EXPECT_TRUE(fs::is_empty(temporary.path())) << "a temporary file was left behind";
    }
}

TEST_F(CompressionFixture, ReplacingTheInputIsAtomicAndErrorsNameTheFile) {
    const auto input = scanned("replace.pdf", ImageSpec::Color::rgb);
    const auto before = fs::file_size(input);
    const auto outcome = PDFCompressionEngine::compress(input, input, tier(CompressionQualityTier::balanced));
    EXPECT_EQ(outcome.outputURL, input);
    EXPECT_LT(fs::file_size(input), before);
    EXPECT_TRUE(test::qpdfChecks(input));

    // A folder that cannot take the output fails before any work, naming the folder.
    const auto notAFolder = dir_.write("plain.txt", "x");
    const auto error = test::caughtCoreError(
        [&] { PDFCompressionEngine::compress(input, notAFolder / "out.pdf", {}); });
    EXPECT_EQ(error.errorCase(), PDFCoreError::Case::writeFailed);
    EXPECT_NE(std::string(error.what()).find(notAFolder.string()), std::string::npos);

    const auto garbage = dir_.write("garbage.pdf", "%PDF-1.4\nnot really\n");
    EXPECT_STREQ(test::caughtCoreError([&] {
                     PDFCompressionEngine::compress(garbage, dir_ / "never.pdf", {});
                 }).what(),
                 "Could not open garbage.pdf: unable to find trailer dictionary while recovering damaged file.");
    EXPECT_FALSE(fs::exists(dir_ / "never.pdf"));
}

} // namespace
} // namespace quillet
