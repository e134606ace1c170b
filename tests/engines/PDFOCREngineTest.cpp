// Searchable scans: real pages rendered to pictures, read back by Tesseract, and checked with
// independent tools (pdftotext for the words, qpdf for the file).
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFOCREngine.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace quillet {
namespace {

namespace fs = std::filesystem;

const fs::path thesis = test::corpus("009-pdflatex-geotopo/GeoTopo-komprimiert.pdf");

void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }

std::string shellQuoted(const fs::path& path) { return "'" + path.string() + "'"; }

// Page `page` of the thesis as a scanner stores it: a JPEG at `dpi` filling the page.
fs::path scannedPage(const test::TempDir& dir, int page, int dpi, const std::string& name) {
    return test::scannedThesis(dir / (name + ".pdf"), page, page, dpi);
}

std::string text(const fs::path& pdf, int page) {
    return test::runProcess("/usr/bin/pdftotext", {"-f", std::to_string(page), "-l", std::to_string(page),
                                          pdf.string(), "-"})
        .out;
}

std::set<std::string> words(const std::string& text) {
    std::set<std::string> found;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        if (word.size() > 3) {
            found.insert(word);
        }
    }
    return found;
}

double recall(const std::set<std::string>& expected, const std::set<std::string>& seen) {
    const auto hits = std::count_if(expected.begin(), expected.end(),
                                    [&](const std::string& word) { return seen.contains(word); });
    return expected.empty() ? 0.0 : static_cast<double>(hits) / static_cast<double>(expected.size());
}

std::string rawImage(const fs::path& pdf) {
    auto document = PDFDocumentEngine::openCG(pdf);
    auto xobjects = document.page(0).object().getKey("/Resources").getKey("/XObject");
    for (const auto& key : xobjects.getKeys()) {
        auto object = xobjects.getKey(key);
        if (object.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
            return object.getRawStreamData()->getBuffer() == nullptr
                       ? std::string()
                       : std::string(reinterpret_cast<const char*>(
                                         object.getRawStreamData()->getBuffer()),
                                     object.getRawStreamData()->getSize());
        }
    }
    return {};
}

TEST(PDFOCREngine, ScannedPagesBecomeSearchableAndNothingElseChanges) {
    test::TempDir dir;
    const auto scan = scannedPage(dir, 2, 300, "scan");
    const auto input = dir / "mixed.pdf";
    run("qpdf --empty --pages " + shellQuoted(scan) + " " + shellQuoted(thesis) + " 3 -- " + shellQuoted(input));
    const auto before = test::readFile(input);

    std::vector<double> progress;
    OCROptions options;
    options.progress = [&](double fraction) { progress.push_back(fraction); };
    const auto output = dir / "mixed-ocr.pdf";
    const auto outcome = PDFOCREngine::makeSearchable(input, output, options);

    EXPECT_EQ(outcome.pagesRead, 1);
    EXPECT_EQ(outcome.pagesWithText, 1);
    EXPECT_EQ(progress, (std::vector<double>{0.5, 1.0}));
    EXPECT_EQ(test::readFile(input), before);
    EXPECT_TRUE(test::qpdfChecks(output));
    // The words of the born-digital page are found on its scan, where a reader selects them.
    EXPECT_GE(recall(words(text(thesis, 2)), words(text(output, 1))), 0.7);
    // The picture is kept byte for byte, and the page that had text is as it was.
    EXPECT_EQ(rawImage(output), rawImage(scan));
    EXPECT_EQ(text(output, 2), text(thesis, 3));
}

TEST(PDFOCREngine, RefusedInputsLeaveNoOutput) {
    using Case = PDFCoreError::Case;
    test::TempDir dir;
    const auto scan = scannedPage(dir, 2, 100, "scan");
    const auto locked =
        test::corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf");
    const auto notPDF = dir.write("notes.pdf", "just words");
    struct Row {
        fs::path input;
        std::string languages;
        Case failure;
        std::string says;
    };
    const std::vector<Row> rows{
        {scan, "eng+klingon", Case::invalidInput, "tesseract-ocr-klingon"},
        {scan, "eng+../eng", Case::invalidInput, "\"../eng\" is not installed"},
        {locked, "eng", Case::wrongPassword, ""},
        {notPDF, "eng", Case::cannotOpen, "notes.pdf"},
    };
    for (const auto& row : rows) {
        const auto output = dir / "out.pdf";
        const auto before = test::readFile(row.input);
        OCROptions options;
        options.languages = row.languages;
        const auto error = test::caughtCoreError(
            [&] { PDFOCREngine::makeSearchable(row.input, output, options); });
        EXPECT_EQ(error.errorCase(), row.failure) << error.what();
        EXPECT_NE(std::string(error.what()).find(row.says), std::string::npos) << error.what();
        EXPECT_FALSE(fs::exists(output));
        EXPECT_EQ(test::readFile(row.input), before);
    }
}

} // namespace
} // namespace quillet
