#include "engines/PDFSplitEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <qpdf/QPDFAcroFormDocumentHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <set>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::PDFBuilder;
using test::TempDir;

// --- the selection grammar ---------------------------------------------------------------------

struct RangesCase {
    const char* name;
    std::string text;
    int pageCount;
    std::vector<PageRange> expected;
};

class SplitParseRanges : public testing::TestWithParam<RangesCase> {};

TEST_P(SplitParseRanges, ReadsTheSelection) {
    const auto& c = GetParam();
    EXPECT_EQ(PDFSplitEngine::parseRanges(c.text, c.pageCount), c.expected) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Grammar, SplitParseRanges,
    testing::Values(RangesCase{"MixedSeparators", "1-3;5 7", 10, {{1, 3}, {5, 5}, {7, 7}}},
                    RangesCase{"ReversedRange", "10-8", 10, {{8, 10}}},
                    RangesCase{"ZeroClampsToFirst", "0-2", 10, {{1, 2}}},
                    RangesCase{"WholeRangeBeyondEnd", "20-30", 10, {{10, 10}}},
                    RangesCase{"JunkPieceDropped", "abc, 2", 10, {{2, 2}}},
                    RangesCase{"NegativeIsMalformed", "-3", 10, {}},
                    RangesCase{"OpenEndedIsMalformed", "5-", 10, {}},
                    RangesCase{"PlusSignAccepted", "+3, +2-+4", 10, {{3, 3}, {2, 4}}},
                    RangesCase{"TabsTrimmedNotSeparators", "\t5\t,1\t2", 10, {{5, 5}}},
                    RangesCase{"KeepsOrderAndRepeats", "3,1,3", 10, {{3, 3}, {1, 1}, {3, 3}}},
                    RangesCase{
                        "BeyondSixtyFourBitsDropped", "99999999999999999999, 4", 10, {{4, 4}}},
                    RangesCase{"NoPagesMeansOnePage", "5, 2-9", 0, {{1, 1}, {1, 1}}}),
    [](const auto& info) { return std::string(info.param.name); });

// --- plans -------------------------------------------------------------------------------------

struct PlanCase {
    const char* name;
    SplitMode mode;
    int pageCount;
    std::string text;
    int everyN;
    SplitPlan expected;
};

class SplitChunkPages : public testing::TestWithParam<PlanCase> {};

TEST_P(SplitChunkPages, PlansTheChunks) {
    const auto& c = GetParam();
    EXPECT_EQ(PDFSplitEngine::chunkPages(c.mode, c.pageCount, c.text, c.everyN, 0, {}), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, SplitChunkPages,
    testing::Values(
        PlanCase{"EveryPage", SplitMode::everyPage, 3, "ignored", 7, {{0}, {1}, {2}}},
        PlanCase{"RangesInTextOrder", SplitMode::pageRanges, 10, "8-9, 1-2", 1, {{7, 8}, {0, 1}}},
        PlanCase{
            "EveryFour", SplitMode::everyNPages, 10, "", 4, {{0, 1, 2, 3}, {4, 5, 6, 7}, {8, 9}}},
        PlanCase{"EveryNegativeIsEveryOne", SplitMode::everyNPages, 2, "", -5, {{0}, {1}}},
        PlanCase{
            "ExtractSortsAndDeduplicates", SplitMode::extract, 10, "5, 1-3, 2", 1, {{0, 1, 2, 4}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SplitChunkPagesErrors, EveryFailureHasItsCaseAndText) {
    using Case = PDFCoreError::Case;
    struct Row {
        SplitMode mode;
        int pageCount;
        std::string text;
        std::int64_t maxBytes;
        Case errorCase;
        std::string description;
    };
    const std::vector<Row> rows{
        {SplitMode::everyPage, 0, "", 0, Case::emptyDocument, "The document has no pages."},
        {SplitMode::pageRanges, 5, "abc; -2", 0, Case::invalidInput,
         "Enter at least one page range, e.g. 1-5, 8, 11-30."},
        {SplitMode::extract, 5, " , ", 0, Case::invalidInput,
         "Enter the pages to extract, e.g. 1, 3, 5, 7-20."},
        {SplitMode::byFileSize, 5, "", -1, Case::invalidInput,
         "Set a maximum size per output file."},
        {SplitMode::byFileSize, 5, "", 1000, Case::cannotOpen, "Could not open missing.pdf: No such file or directory."},
    };
    for (const auto& row : rows) {
        const auto error = test::caughtCoreError([&] {
            PDFSplitEngine::chunkPages(row.mode, row.pageCount, row.text, 1, row.maxBytes,
                                       "/nonexistent/missing.pdf");
        });
        EXPECT_EQ(error.errorCase(), row.errorCase) << row.text;
        EXPECT_EQ(error.errorDescription(), row.description) << row.text;
    }
}

// --- by size -----------------------------------------------------------------------------------

// Pads a file written with a classic cross-reference table to exactly `size` bytes with white
// space before "startxref": no offset moves, so the file stays valid.
void padTo(const fs::path& path, std::size_t size) {
    std::string bytes = test::readFile(path);
    const auto at = bytes.rfind("startxref");
    ASSERT_NE(at, std::string::npos);
    ASSERT_LE(bytes.size(), size);
    bytes.insert(at, size - bytes.size(), ' ');
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

SplitPlan bySize(const fs::path& path, std::int64_t maxBytes) {
    const int pages = PDFDocumentEngine::openCG(path).pageCount();
    return PDFSplitEngine::chunkPages(SplitMode::byFileSize, pages, "", 1, maxBytes, path);
}

TEST(SplitBySize, TenTextPagesOfAMillionBytesGoTwoByTwo) {
    TempDir dir;
    PDFBuilder builder;
    for (int i = 0; i < 10; ++i) {
        builder.addPage().text(fmt::format("Page {}", i + 1));
    }
    const auto path = builder.write(dir / "text.pdf");
    padTo(path, 1'000'000);
    ASSERT_EQ(fs::file_size(path), 1'000'000u);
    // Budget 270,000 at 100,000 bytes a page: two pages fit, three do not.
    EXPECT_EQ(bySize(path, 300'000), (SplitPlan{{0, 1}, {2, 3}, {4, 5}, {6, 7}, {8, 9}}));
    // 299,999 bytes give a budget of 269,999: still two; 200,000 give 180,000: one each.
    EXPECT_EQ(bySize(path, 299'999).size(), 5u);
    EXPECT_EQ(bySize(path, 200'000).size(), 10u);
    EXPECT_EQ(bySize(path, 2'000'000), (SplitPlan{{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}}));
}

TEST(SplitBySize, ImageMegapixelsWeighAsPages) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("cover");
    test::ImageSpec twoMegapixels;
    twoMegapixels.width = 2000;
    twoMegapixels.height = 1000;
    builder.addPage().image(twoMegapixels, 0, 0, 612, 306); // weight 3
    builder.addPage().text("three");
    builder.addPage().text("four");
    const auto path = builder.write(dir / "scan.pdf");
    const auto size = static_cast<double>(fs::file_size(path));
    // Weights 1, 3, 1, 1: a budget of 3.5 units takes the image page alone and the last two
    // together.
    const auto limit = static_cast<std::int64_t>(size / 6 * 3.5 / 0.9);
    EXPECT_EQ(bySize(path, limit), (SplitPlan{{0}, {1}, {2, 3}}));
    // A page far above the limit is still written, alone.
    EXPECT_EQ(bySize(path, 1), (SplitPlan{{0}, {1}, {2}, {3}}));
}

// --- writing parts -----------------------------------------------------------------------------

// Bytes that look like noise to a compressor, so that each page's image carries its own weight
// in the file. They are stored as JPEG data and never decoded here.
std::string noise(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    std::string bytes(size, '\0');
    for (auto& byte : bytes) {
        byte = static_cast<char>(generator() & 0xFF);
    }
    return bytes;
}

QPDFObjectHandle opaqueImage(QPDF& qpdf, unsigned seed) {
    auto image = qpdf.newStream();
    image.replaceStreamData(noise(60'000, seed), QPDFObjectHandle::newName("/DCTDecode"),
                            QPDFObjectHandle::newNull());
    auto dict = image.getDict();
    dict.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dict.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dict.replaceKey("/Width", QPDFObjectHandle::newInteger(200));
    dict.replaceKey("/Height", QPDFObjectHandle::newInteger(100));
    dict.replaceKey("/ColorSpace", QPDFObjectHandle::newName("/DeviceRGB"));
    dict.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    return image;
}

// Ten pages, each drawing its own image. With `shared`, all ten images sit in one resource
// dictionary that every page refers to, as some producers write them.
fs::path tenImagePages(const TempDir& dir, bool shared) {
    PDFBuilder builder;
    auto images = QPDFObjectHandle::newDictionary();
    for (int i = 1; i <= 10; ++i) {
        images.replaceKey(fmt::format("/Im{}", i), opaqueImage(builder.qpdf(), i));
    }
    auto common = builder.qpdf().makeIndirectObject(
        QPDFObjectHandle::parse("<< /Font << /F1 << /Type /Font /Subtype /Type1 /BaseFont "
                                "/Helvetica >> >> >>"));
    common.replaceKey("/XObject", images);
    for (int i = 1; i <= 10; ++i) {
        auto& page = builder.addPage();
        page.content(fmt::format("q 200 0 0 100 0 0 cm /Im{} Do Q", i));
        auto own = QPDFObjectHandle::newDictionary();
        own.replaceKey("/XObject", QPDFObjectHandle::parse("<< >>"));
        own.getKey("/XObject")
            .replaceKey(fmt::format("/Im{}", i), images.getKey(fmt::format("/Im{}", i)));
        page.object().replaceKey("/Resources", shared ? common : own);
    }
    return builder.write(dir / (shared ? "shared.pdf" : "own.pdf"));
}

int imageCount(const fs::path& path) {
    auto document = PDFDocumentEngine::openCG(path);
    int count = 0;
    for (auto& object : document.qpdf().getAllObjects()) {
        if (object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
            ++count;
        }
    }
    return count;
}

std::string decodedContents(const PDFPage& page) {
    return test::pageContents(page.object());
}

class SplitWriteChunk : public testing::TestWithParam<bool> {};

TEST_P(SplitWriteChunk, APartCarriesOnlyWhatItsPageDraws) {
    TempDir dir;
    const auto source = tenImagePages(dir, GetParam());
    const auto before = test::readFile(source);
    auto document = PDFDocumentEngine::openUnlock(source, "");
    PDFSplitEngine::writeChunk(document, {2}, dir / "part.pdf");

    EXPECT_EQ(imageCount(dir / "part.pdf"), 1);
    EXPECT_LT(fs::file_size(dir / "part.pdf"), fs::file_size(source) / 5);
    auto part = PDFDocumentEngine::openCG(dir / "part.pdf");
    ASSERT_EQ(part.pageCount(), 1);
    EXPECT_EQ(decodedContents(part.page(0)), decodedContents(document.page(2)));
    auto drawn = part.page(0).object().getKey("/Resources").getKey("/XObject");
    EXPECT_TRUE(drawn.getKey("/Im3").isStream());
    EXPECT_EQ(test::readFile(source), before);
}

INSTANTIATE_TEST_SUITE_P(Resources, SplitWriteChunk, testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Shared" : "PerPage"; });

// Page k is 300 + k points wide.
fs::path numberedPages(const TempDir& dir, int count) {
    return test::numberedPDF(dir / "in.pdf", count, 300, 1, 400);
}

TEST(SplitWriteChunkPages, KeepsTheGivenOrderRepeatsAndSkipsWhatIsNotThere) {
    TempDir dir;
    auto document = PDFDocumentEngine::openUnlock(numberedPages(dir, 4), "");
    PDFSplitEngine::writeChunk(document, {3, -1, 0, 99, 3}, dir / "part.pdf");
    auto part = PDFDocumentEngine::openCG(dir / "part.pdf");
    ASSERT_EQ(part.pageCount(), 3);
    const std::vector<int> expected{3, 0, 3};
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(decodedContents(part.page(k)), decodedContents(document.page(expected[k])));
        EXPECT_EQ(part.page(k).mediaBox().width, 300 + expected[k]);
    }
    EXPECT_TRUE(test::qpdfChecks(dir / "part.pdf"));
}

TEST(SplitWriteChunkPages, FormFieldsGoWithTheirPages) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().textField("first", "one");
    builder.addPage().textField("second", "two").textField("third", "three");
    auto document = PDFDocumentEngine::openUnlock(builder.write(dir / "form.pdf"), "");
    for (const auto& [page, names] : std::vector<std::pair<int, std::set<std::string>>>{
             {0, {"first"}}, {1, {"second", "third"}}}) {
        PDFSplitEngine::writeChunk(document, {page}, dir / "part.pdf");
        auto part = PDFDocumentEngine::openCG(dir / "part.pdf");
        std::set<std::string> found;
        for (auto& field : QPDFAcroFormDocumentHelper(part.qpdf()).getFormFields()) {
            found.insert(field.getFullyQualifiedName());
        }
        EXPECT_EQ(found, names) << page;
    }
}

TEST(SplitWriteChunkPages, FailuresLeaveNoFileAndKeepWhatWasThere) {
    TempDir dir;
    auto document = PDFDocumentEngine::openUnlock(numberedPages(dir, 2), "");
    const auto existing = dir.write("existing.pdf", "earlier result");

    EXPECT_EQ(test::caughtCase([&] {
                  PDFSplitEngine::writeChunk(document, {5, -2}, existing);
              }),
              PDFCoreError::Case::emptyDocument);
    EXPECT_EQ(test::readFile(existing), "earlier result");

    const auto error = test::caughtCoreError(
        [&] { PDFSplitEngine::writeChunk(document, {0}, dir / "no/such/part.pdf"); });
    EXPECT_EQ(error.errorCase(), PDFCoreError::Case::writeFailed);
    EXPECT_EQ(error.text(), "part.pdf");

    EXPECT_EQ(test::fileNames(dir.path()), (std::vector<std::string>{"existing.pdf", "in.pdf"}));
}

} // namespace
} // namespace quillet
