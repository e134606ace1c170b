// `quillet ocr` and an ocr job, end to end through the real program.
#include "cli/RunQuillet.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRecords.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;

// Page 2 of the corpus's thesis scanned at 150 DPI: a page with no text of its own, read by the
// `ocr` command and by an ocr job.
TEST(OCRCommand, WritesTheSearchableCopyBesideTheInputAndRunsAsAJob) {
    test::TempDir dir;
    const auto input = test::scannedThesis(dir / "scan.pdf", 2, 2, 150);
    const auto result = test::quillet({"ocr", input.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto output = dir / "scan-ocr.pdf";
    EXPECT_TRUE(result.out.starts_with("scan.pdf: 1 of 1 pages made searchable, ")) << result.out;
    EXPECT_TRUE(result.out.ends_with(" → " + output.string() + "\n")) << result.out;
    EXPECT_TRUE(result.err.empty()) << result.err; // no terminal: no progress bar
    const auto words = test::runProcess("/usr/bin/pdftotext", {output.string(), "-"}).out;
    EXPECT_NE(words.find("Vorwort"), std::string::npos) << words;

    const auto spec = TaskSpec::make(PDFOperationKind::ocr, {input.string()}, OutputRule{},
                                     OperationParameters::OCR{"eng"});
    const auto specs = dir.write("job.json", toJSON(std::vector<TaskSpec>{spec}).dump());
    const auto job = test::quillet({"job", specs.string(), "--progress-json"});
    ASSERT_EQ(job.status, 0) << job.err;
    const auto last = job.out.substr(job.out.rfind('\n', job.out.size() - 2) + 1);
    const auto done = nlohmann::ordered_json::parse(last);
    EXPECT_EQ(done["note"], "1 of 1 pages made searchable");
    ASSERT_EQ(done["outputs"].size(), 1u);
    EXPECT_TRUE(fs::exists(done["outputs"][0].get<std::string>()));
}

} // namespace
} // namespace quillet
