#include "engines/ImageCompactor.hpp"
#include "engines/PDFCompressionEngine.hpp"
#include "engines/PDFMergeEngine.hpp"
#include "engines/fonts/SFNTSubsetter.hpp"
#include "platform/ImageIO.hpp"
#include "platform/JPEGOptimizer.hpp"
#include "platform/PDFDocument.hpp"
#include "platform/PNGPredictor.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace quillet {
namespace {
namespace fs = std::filesystem;

fs::path corpusFile(const std::string& name) {
    for (const auto& entry : fs::directory_iterator(fs::path(test::corpusFolder()) / name)) {
        if (entry.path().extension() == ".pdf") {
            return entry.path();
        }
    }
    return {};
}

std::map<std::string, int> wordsOf(const fs::path& file) {
    const auto text = test::runTool("pdftotext", {"-q", "-enc", "UTF-8", file.string(), "-"});
    std::map<std::string, int> words;
    std::istringstream in(text.out);
    for (std::string word; in >> word;) {
        ++words[word];
    }
    return words;
}

double meanDifference(const fs::path& a, const fs::path& b, int page) {
    const auto before = test::renderGray(a, page, 72);
    const auto after = test::renderGray(b, page, 72);
    if (before.width != after.width || before.height != after.height || before.pixels.empty()) {
        return 255;
    }
    double sum = 0;
    for (std::size_t i = 0; i < before.pixels.size(); ++i) {
        sum += std::abs(static_cast<int>(before.pixels[i]) - static_cast<int>(after.pixels[i]));
    }
    return sum / static_cast<double>(before.pixels.size());
}

// Real documents from other producers, compressed in every tier: structurally sound for qpdf,
// every word still found by pdftotext, pages that look the same, and smaller where the document
// carries what compaction removes.
TEST(DocumentCompaction, RealDocumentsKeepTextAndLookAndShrink) {
    const struct {
        const char* document;
        CompressionQualityTier tier;
        double maximumRatio; // of the input's size
        double maximumDifference;
    } cases[] = {
        {"003-pdflatex-image", CompressionQualityTier::lossless, 0.95, 0.5},
        {"003-pdflatex-image", CompressionQualityTier::balanced, 0.80, 3.0},
        {"018-base64-image", CompressionQualityTier::balanced, 0.10, 3.0},
        {"002-trivial-libre-office-writer", CompressionQualityTier::lossless, 0.90, 0.5},
        {"026-latex-multicolumn", CompressionQualityTier::lossless, 0.95, 0.5},
        {"015-arabic", CompressionQualityTier::balanced, 1.0, 0.5},
        {"024-annotations", CompressionQualityTier::smallest, 1.0, 3.0},
    };
    test::TempDir dir;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.document);
        const auto input = corpusFile(c.document);
        ASSERT_FALSE(input.empty());
        const auto output = dir / (std::string(c.document) + ".pdf");
        CompressionOptions options;
        options.tier = c.tier;
        const auto outcome = PDFCompressionEngine::compress(input, output, options);
        const auto written = outcome.outputURL ? *outcome.outputURL : input;
        EXPECT_LE(static_cast<double>(fs::file_size(written)),
                  c.maximumRatio * static_cast<double>(fs::file_size(input)));
        EXPECT_EQ(test::runTool("qpdf", {"--check", written.string()}).status, 0);
        EXPECT_EQ(wordsOf(written), wordsOf(input));
        EXPECT_LE(meanDifference(input, written, 1), c.maximumDifference);
    }
}

// A form merged twice keeps one appearance stream per field: a viewer filling one field redraws
// its own appearance, which must not be the other copy's.
TEST(DocumentCompaction, MergeKeepsEachFieldItsOwnAppearance) {
    test::TempDir dir;
    const auto input = corpusFile("010-pdflatex-forms");
    const auto output = dir / "twice.pdf";
    PDFMergeEngine::merge({input, input}, output, {}, {}, {});
    const auto appearances = [](const fs::path& file) {
        QPDF qpdf;
        qpdf.processFile(file.c_str());
        std::set<QPDFObjGen> streams;
        for (auto page : qpdf.getAllPages()) {
            for (auto annotation : page.getKey("/Annots").getArrayAsVector()) {
                if (auto normal = annotation.getKey("/AP").getKey("/N"); normal.isStream()) {
                    streams.insert(normal.getObjGen());
                }
            }
        }
        return streams.size();
    };
    ASSERT_GT(appearances(input), 0u);
    EXPECT_EQ(appearances(output), 2 * appearances(input));
}

// A JPEG whose own header claims another size than its dictionary is left alone: libjpeg would
// allocate for the header's size.
TEST(DocumentCompaction, JPEGThatDisagreesWithItsDictionaryIsLeftAlone) {
    std::ifstream in(fs::path(test::corpusFolder()) / "003-pdflatex-image" / "image.jpg",
                     std::ios::binary);
    const std::string jpeg((std::istreambuf_iterator<char>(in)), {});
    auto qpdf = QPDF::create();
    qpdf->emptyPDF();
    auto image = QPDFObjectHandle::newStream(qpdf.get(), jpeg);
    image.replaceDict(QPDFObjectHandle::parse(
        "<< /Type /XObject /Subtype /Image /Width 10 /Height 10 /ColorSpace /DeviceRGB "
        "/BitsPerComponent 8 /Filter /DCTDecode >>"));
    const auto result = ImageCompactor::compact(*qpdf, {image}, {{image.getObjGen(), {600, 600}}},
                                                ImageSetting{150, 0.6}, {});
    EXPECT_EQ(result.optimizedJPEGs + result.resampled + result.storedAsJPEG, 0);
    EXPECT_EQ(image.getRawStreamData()->getSize(), jpeg.size());
}

// Lossless image steps, read back by qpdf's and libjpeg's own decoders: the same samples.
TEST(DocumentCompaction, LosslessImageStepsKeepEverySample) {
    std::ifstream in(fs::path(test::corpusFolder()) / "003-pdflatex-image" / "image.jpg",
                     std::ios::binary);
    const std::vector<std::uint8_t> jpeg((std::istreambuf_iterator<char>(in)), {});
    ASSERT_FALSE(jpeg.empty());
    const auto optimized = JPEGOptimizer::optimized(jpeg);
    ASSERT_TRUE(optimized);
    EXPECT_LT(optimized->size(), jpeg.size());
    EXPECT_EQ(ImageIO::decode(*optimized)->pixels(), ImageIO::decode(jpeg)->pixels());
    EXPECT_FALSE(JPEGOptimizer::optimized(std::vector<std::uint8_t>(200, 0xFF)));

    Bitmap photo(97, 61, PixelFormat::rgb);
    for (int i = 0; i < 97 * 61 * 3; ++i) {
        photo.data()[i] = static_cast<std::uint8_t>((i * 7919) % 251 + (i / 291) % 5);
    }
    const std::string samples(reinterpret_cast<const char*>(photo.data()), photo.pixels().size());
    auto qpdf = QPDF::create();
    qpdf->emptyPDF();
    auto stream = QPDFObjectHandle::newStream(qpdf.get());
    stream.replaceStreamData(
        PNGPredictor::predictedAndDeflated(samples, photo.rowBytes(), 3),
        QPDFObjectHandle::newName("/FlateDecode"),
        QPDFObjectHandle::parse("<< /Predictor 15 /Colors 3 /BitsPerComponent 8 "
                                "/Columns 97 >>"));
    const auto decoded = stream.getStreamData(qpdf_dl_generalized);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(decoded->getBuffer()), decoded->getSize()),
              samples);
}

// Font programs that are not fonts, or are cut short, give no subset, never a crash.
TEST(DocumentCompaction, BrokenFontProgramsAreLeftAlone) {
    const std::string programs[] = {"", "OTTO", std::string(64, '\0'),
                                    std::string("\x00\x01\x00\x00\x00\x09", 6) +
                                        std::string(200, 'A'),
                                    std::string("\x01\x00\x04\x02", 4) + std::string(40, '\xff')};
    for (const auto& program : programs) {
        for (const auto format :
             {fonts::SFNTSubsetter::Format::trueType, fonts::SFNTSubsetter::Format::bareCFF}) {
            fonts::SFNTSubsetter::Request request;
            request.format = format;
            request.glyphs = std::set<int>{1, 2, 3};
            EXPECT_FALSE(fonts::SFNTSubsetter::subset(program, request));
        }
    }
}

} // namespace
} // namespace quillet
