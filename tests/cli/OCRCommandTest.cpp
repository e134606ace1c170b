// `quillet ocr` and an ocr job, end to end through the real program.
#include "cli/RunQuillet.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRecords.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;

// Page 2 of the corpus's thesis scanned at 150 DPI: a page with no text of its own.
fs::path scan(const test::TempDir& dir) {
    const auto picture = dir / "picture";
    const auto pdf = dir / "scan.pdf";
    const std::string make =
        "pdftoppm -r 150 -jpeg -singlefile -f 2 -l 2 '" +
        test::corpus("009-pdflatex-geotopo/GeoTopo-komprimiert.pdf").string() + "' '" +
        picture.string() + "' && python3 '" +
        (fs::path(test::sourceFolder()) / "bench" / "make-scan.py").string() + "' '" +
        pdf.string() + "' --dpi 150 '" + picture.string() + ".jpg'";
    EXPECT_EQ(std::system(make.c_str()), 0);
    return pdf;
}

TEST(OCRCommand, WritesTheSearchableCopyBesideTheInput) {
    test::TempDir dir;
    const auto input = scan(dir);
    const auto result = test::quillet({"ocr", input.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto output = dir / "scan-ocr.pdf";
    EXPECT_TRUE(result.out.starts_with("scan.pdf: 1 of 1 pages made searchable, ")) << result.out;
    EXPECT_TRUE(result.out.ends_with(" → " + output.string() + "\n")) << result.out;
    EXPECT_TRUE(result.err.empty()) << result.err; // no terminal: no progress bar
    const auto words = test::runProcess("/usr/bin/pdftotext", {output.string(), "-"}).out;
    EXPECT_NE(words.find("Vorwort"), std::string::npos) << words;
}

TEST(OCRCommand, AMissingLanguageFailsBeforeAnythingIsWritten) {
    test::TempDir dir;
    const auto input = scan(dir);
    const auto result = test::quillet({"ocr", input.string(), "--lang", "eng+xyz"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "error: The language \"xyz\" is not installed (it comes with the "
                          "package tesseract-ocr-xyz).\n");
    EXPECT_EQ(test::fileNames(dir.path()), (std::vector<std::string>{"picture.jpg", "scan.pdf"}));
}

TEST(OCRCommand, RunsAsAJob) {
    test::TempDir dir;
    const auto input = scan(dir);
    const auto spec = TaskSpec::make(PDFOperationKind::ocr, {input.string()}, OutputRule{},
                                     OperationParameters::OCR{"eng"});
    const auto specs = dir.write("job.json", toJSON(std::vector<TaskSpec>{spec}).dump());
    const auto result = test::quillet({"job", specs.string(), "--progress-json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto last = result.out.substr(result.out.rfind('\n', result.out.size() - 2) + 1);
    const auto done = nlohmann::ordered_json::parse(last);
    EXPECT_EQ(done["note"], "1 of 1 pages made searchable");
    ASSERT_EQ(done["outputs"].size(), 1u);
    EXPECT_TRUE(fs::exists(done["outputs"][0].get<std::string>()));
}

} // namespace
} // namespace quillet
