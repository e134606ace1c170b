// `quillet redact` and a redact job, end to end through the real program.
#include "cli/RunQuillet.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRecords.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;

TEST(RedactCommand, ListsRedactsRefusesAndRunsAsAJob) {
    test::TempDir dir;
    const auto input = dir / "pages.pdf";
    fs::copy_file(test::corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"), input);

    const auto listed = test::quillet({"redact", input.string(), "--text", "Huardest gefburn", "--dry-run"});
    ASSERT_EQ(listed.status, 0) << listed.err;
    EXPECT_TRUE(listed.out.starts_with("pages.pdf: page 1: \"Huardest gefburn\" (Huardest gefburn) at "))
        << listed.out;
    EXPECT_FALSE(fs::exists(dir / "pages-redacted.pdf"));

    const auto done = test::quillet({"redact", input.string(), "--text", "Huardest gefburn",
                                     "--area", "2:72,72,100,40", "--json"});
    ASSERT_EQ(done.status, 0) << done.err;
    const auto result = nlohmann::ordered_json::parse(done.out);
    EXPECT_EQ(result["output"], (dir / "pages-redacted.pdf").string());
    EXPECT_EQ(result["pages"], 4);
    EXPECT_GT(result["matches"]["Huardest gefburn"].get<int>(), 4);
    const auto words = test::runTool("pdftotext", {(dir / "pages-redacted.pdf").string(), "-"}).out;
    EXPECT_EQ(words.find("Huardest"), std::string::npos);

    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* said;
    } refusals[] = {
        {{"--text", "Jane Roe"}, 1, "nothing to redact"},
        {{"--regex", "(open"}, 2, "(open"},
        {{"--area", "1:72,72"}, 2, "invalid area"},
        {{}, 2, "Nothing to redact"},
    };
    for (const auto& refusal : refusals) {
        auto arguments = refusal.arguments;
        arguments.insert(arguments.begin(), {"redact", input.string(), "-o", (dir / "no.pdf").string()});
        const auto run = test::quillet(arguments);
        EXPECT_EQ(run.status, refusal.status) << run.err;
        EXPECT_NE(run.err.find(refusal.said), std::string::npos) << run.err;
        EXPECT_FALSE(fs::exists(dir / "no.pdf"));
    }

    OperationParameters::Redact parameters;
    parameters.presets = {"email"};
    parameters.areas = {{1, {72, 72, 100, 40}}};
    const auto spec = TaskSpec::make(PDFOperationKind::redact, {input.string()}, OutputRule{},
                                     parameters);
    const auto specs = dir.write("job.json", toJSON(std::vector<TaskSpec>{spec}).dump());
    const auto job = test::quillet({"job", specs.string(), "--progress-json"});
    ASSERT_EQ(job.status, 0) << job.err;
    const auto last = nlohmann::ordered_json::parse(job.out.substr(job.out.rfind('\n', job.out.size() - 2) + 1));
    EXPECT_EQ(last["note"], "1 areas on 1 pages redacted");
}

} // namespace
} // namespace quillet
