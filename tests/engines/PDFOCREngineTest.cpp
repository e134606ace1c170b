// Searchable scans: real pages rendered to pictures, read back by Tesseract, and checked with
// independent tools (pdftotext for the words and where they stand, qpdf for the file).
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFOCREngine.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <qpdf/QPDFPageObjectHelper.hh>

#include <algorithm>
#include <map>
#include <regex>
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

// Where pdftotext sees each word that occurs once on the page: x and y of its box.
std::map<std::string, std::pair<double, double>> wordPlaces(const fs::path& pdf) {
    const auto out = test::runProcess("/usr/bin/pdftotext", {"-bbox", pdf.string(), "-"}).out;
    static const std::regex word(R"re(xMin="([0-9.]+)" yMin="([0-9.]+)"[^>]*>([^<]+)<)re");
    std::map<std::string, std::pair<double, double>> places;
    std::set<std::string> repeated;
    for (auto it = std::sregex_iterator(out.begin(), out.end(), word); it != std::sregex_iterator();
         ++it) {
        const auto name = (*it)[3].str();
        if (!places.emplace(name, std::pair{std::stod((*it)[1]), std::stod((*it)[2])}).second) {
            repeated.insert(name);
        }
    }
    for (const auto& name : repeated) {
        places.erase(name);
    }
    return places;
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

TEST(PDFOCREngine, TurnedAndShiftedPagesHaveTheirWordsWhereTheyAreSeen) {
    test::TempDir dir;
    const auto plain = scannedPage(dir, 2, 150, "plain");
    // Stored on its side and turned upright by /Rotate, as a scanner stores a landscape sheet.
    const auto turned = dir / "turned.pdf";
    run("qpdf " + shellQuoted(plain) + " --rotate=-90 " + shellQuoted(dir / "a.pdf") + " && qpdf " +
        shellQuoted(dir / "a.pdf") + " --flatten-rotation " + shellQuoted(dir / "b.pdf") + " && qpdf " +
        shellQuoted(dir / "b.pdf") + " --rotate=+90 " + shellQuoted(turned));
    // The same page with its media box, and what it draws, moved away from the origin.
    const auto shifted = dir / "shifted.pdf";
    {
        auto document = PDFDocumentEngine::openCG(plain);
        auto page = document.page(0).object();
        auto box = page.getKey("/MediaBox").getArrayAsVector();
        const double x = 100;
        const double y = 250;
        page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(std::vector<QPDFObjectHandle>{
                                         QPDFObjectHandle::newReal(x, 2),
                                         QPDFObjectHandle::newReal(y, 2),
                                         QPDFObjectHandle::newReal(box[2].getNumericValue() + x, 2),
                                         QPDFObjectHandle::newReal(box[3].getNumericValue() + y, 2)}));
        QPDFPageObjectHelper(page).addPageContents(
            QPDFObjectHandle::newStream(&document.qpdf(), "1 0 0 1 100 250 cm\n"), true);
        document.write(shifted);
    }

    std::map<std::string, std::map<std::string, std::pair<double, double>>> places;
    for (const auto& [name, input] :
         std::map<std::string, fs::path>{{"plain", plain}, {"turned", turned}, {"shifted", shifted}}) {
        const auto output = dir / (name + "-ocr.pdf");
        EXPECT_EQ(PDFOCREngine::makeSearchable(input, output, {}).pagesRead, 1) << name;
        places[name] = wordPlaces(output);
    }
    ASSERT_GE(places["plain"].size(), 20u);
    for (const auto& name : {"turned", "shifted"}) {
        int compared = 0;
        for (const auto& [word, place] : places["plain"]) {
            const auto other = places[name].find(word);
            if (other != places[name].end()) {
                ++compared;
                EXPECT_NEAR(other->second.first, place.first, 3.0) << name << " " << word;
                EXPECT_NEAR(other->second.second, place.second, 3.0) << name << " " << word;
            }
        }
        EXPECT_GE(compared, 20) << name;
    }
}

TEST(PDFOCREngine, ChineseIsReadWithItsLanguage) {
    test::TempDir dir;
    const std::string line1 = "可移植文档格式是一种文件格式";
    const std::string line2 = "用于以独立于应用程序的方式呈现文档";
    const auto picture = dir / "chinese.png";
    run("pango-view --no-display --font='Noto Sans CJK SC 14' --dpi=300 --margin=200 --text='" +
        line1 + "\n" + line2 + "' -o " + shellQuoted(picture));
    const auto input = dir / "chinese.pdf";
    run(std::string(QUILLET_BINARY) + " images " + shellQuoted(picture) + " -o " + shellQuoted(input) +
        " >/dev/null");
    const auto output = dir / "chinese-ocr.pdf";
    OCROptions options;
    options.languages = "chi_sim";
    ASSERT_EQ(PDFOCREngine::makeSearchable(input, output, options).pagesRead, 1);

    auto seen = text(output, 1);
    seen.erase(std::remove_if(seen.begin(), seen.end(), [](char c) { return c == ' ' || c == '\n'; }),
               seen.end());
    // Characters of three bytes each: count those found in order-free fashion.
    const auto expected = line1 + line2;
    int hits = 0;
    for (std::size_t i = 0; i + 3 <= expected.size(); i += 3) {
        hits += seen.find(expected.substr(i, 3)) != std::string::npos ? 1 : 0;
    }
    EXPECT_GE(hits, static_cast<int>(expected.size() / 3 * 8 / 10)) << seen;
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
