// The analysis of every real-world sample against what independent tools and the collection's
// own records say about it.
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace quillet {
namespace {

// "WxH" of every XObject image `pdfimages -list` reports, sorted.
std::vector<std::string> pdfimagesSizes(const std::filesystem::path& pdf) {
    std::istringstream lines(test::runTool("pdfimages", {"-list", pdf.string()}).out);
    std::vector<std::string> sizes;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line); // two header lines, then one line per image
        std::string page, number, type, width, height;
        fields >> page >> number >> type >> width >> height;
        if (type == "image") {
            sizes.push_back(width + "x" + height);
        }
    }
    std::sort(sizes.begin(), sizes.end());
    return sizes;
}

std::vector<std::string> ourSizes(const PDFAnalysis& analysis) {
    std::vector<std::string> sizes;
    for (const auto& image : analysis.images()) {
        sizes.push_back(std::to_string(image.pixelWidth) + "x" + std::to_string(image.pixelHeight));
    }
    std::sort(sizes.begin(), sizes.end());
    return sizes;
}

// Images that the peer lists and we deliberately do not: inline images (BI ... EI) are part of
// the content, not placed image objects.
const std::map<std::string, int> inlineImages{{"008-reportlab-inline-image/inline-image.pdf", 1}};

// Damaged beyond exact repair: the trailer has no /Root and the cross-reference data is broken.
// We rebuild the page list from the page objects that can still be read (three of its four
// pages, with an image); the peer reads no image from it. Such files must still analyse.
const std::set<std::string> damagedBeyondExactRepair{"017-unreadable-meta-data/unreadablemetadata.pdf"};

TEST(AnalysisCorpus, AgreesWithPdfimagesExceptInlineImagesAndDamagedFilesAndWithTheRecords) {
    if (test::runTool("pdfimages", {"-v"}).status == 127) {
        GTEST_SKIP() << "pdfimages is not installed";
    }
    std::ifstream records(test::corpus("files.json"));
    const auto files = nlohmann::json::parse(records)["data"];
    int checked = 0;
    for (const auto& record : files) {
        const std::string relative = record["path"];
        const auto path = test::corpus(relative);
        if (!std::filesystem::exists(path)) {
            continue;
        }
        SCOPED_TRACE(relative);
        if (record["encrypted"].get<bool>()) {
            EXPECT_EQ(test::caughtCase([&] { PDFAnalysisEngine::analyze(path); }),
                      PDFCoreError::Case::wrongPassword);
            continue;
        }
        const auto analysis = PDFAnalysisEngine::analyze(path);
        if (damagedBeyondExactRepair.contains(relative)) {
            EXPECT_GE(analysis.pageCount, 1);
            EXPECT_LE(analysis.pageCount, record["pages"].get<int>());
            continue;
        }
        EXPECT_EQ(analysis.pageCount, record["pages"].get<int>());
        EXPECT_EQ(analysis.pages.size(), static_cast<std::size_t>(analysis.pageCount));
        EXPECT_EQ(analysis.formFieldCount > 0, record["forms"].get<int>() > 0);
        int annotations = 0;
        for (const auto& [type, count] : record["annotations"].items()) {
            annotations += count.get<int>();
        }
        EXPECT_EQ(analysis.annotationCount, annotations);

        auto expected = pdfimagesSizes(path);
        const auto skipped = inlineImages.find(relative);
        EXPECT_EQ(ourSizes(analysis).size() +
                      (skipped == inlineImages.end() ? 0 : static_cast<std::size_t>(skipped->second)),
                  expected.size());
        if (skipped == inlineImages.end()) {
            EXPECT_EQ(ourSizes(analysis), expected);
        }
        ++checked;
    }
    EXPECT_GE(checked, 25);
}

TEST(AnalysisCorpus, AttachmentsLinksAndMetadata) {
    const auto attached = PDFAnalysisEngine::analyze(test::corpus("025-attachment/with-attachment.pdf"));
    EXPECT_EQ(attached.attachmentCount, 1);
    const auto linked = PDFAnalysisEngine::analyze(test::corpus("016-libre-office-link/libre-office-link.pdf"));
    EXPECT_EQ(linked.externalLinkCount, 1);
    const auto forms = PDFAnalysisEngine::analyze(test::corpus("010-pdflatex-forms/pdflatex-forms.pdf"));
    EXPECT_EQ(forms.annotationCount, 3);
    const auto latex = PDFAnalysisEngine::analyze(test::corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"));
    EXPECT_EQ(latex.metadata.producer, "pdfTeX-1.40.23");
    EXPECT_TRUE(latex.textCoverage() > 0.99);
}

} // namespace
} // namespace quillet
