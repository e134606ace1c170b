// `quillet job`, end to end through the real program.
#include "cli/RunQuillet.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRecords.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;
using P = OperationParameters;

fs::path writeSpecs(const test::TempDir& dir, const std::vector<TaskSpec>& specs) {
    return dir.write("job.json", toJSON(specs).dump());
}

std::vector<ordered_json> jsonLines(const std::string& out) {
    std::vector<ordered_json> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(ordered_json::parse(line));
    }
    return lines;
}

TEST(JobCommand, ReportsProgressAndAResultPerSpecAsJSONLines) {
    test::TempDir dir;
    const auto input = test::numberedPDF(dir / "doc.pdf", 2);
    const auto split = TaskSpec::make(PDFOperationKind::split, {input.string()}, OutputRule{},
                                      P::Split{SplitMode::everyPage});
    const auto wrong = TaskSpec::make(PDFOperationKind::split, {input.string()}, OutputRule{},
                                      P::Clean{CleanPreset::safe});
    const auto result = test::quillet({"job", writeSpecs(dir, {split, wrong}).string(),
                                       "--progress-json"});
    EXPECT_EQ(result.status, 1) << result.err;
    const auto lines = jsonLines(result.out);
    ASSERT_GE(lines.size(), 3u);
    double last = -1;
    std::size_t i = 0;
    for (; lines[i].contains("progress"); ++i) {
        EXPECT_EQ(lines[i]["id"], split.id);
        EXPECT_GE(lines[i]["progress"].get<double>(), last);
        last = lines[i]["progress"];
    }
    EXPECT_EQ(last, 1.0);
    const auto& done = lines.at(i);
    EXPECT_EQ(done["id"], split.id);
    EXPECT_EQ(done["note"], "2 files");
    ASSERT_EQ(done["outputs"].size(), 2u);
    EXPECT_TRUE(fs::exists(done["outputs"][1].get<std::string>()));
    EXPECT_EQ(done["originalBytes"], static_cast<std::int64_t>(fs::file_size(input)));
    EXPECT_EQ(lines.back(), (ordered_json{{"id", wrong.id}, {"error", "Missing split parameters."}}));
}

TEST(JobCommand, ABadOrMissingSpecFileIsAUsageErrorNamingIt) {
    test::TempDir dir;
    std::vector<fs::path> files{"/nonexistent/job.json"};
    for (const char* content : {"{", "{}",
                                R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F",)"
                                R"("operation":"compress","inputs":[],)"
                                R"("parameters":{"type":"compress","tier":"balanced"}}])"}) {
        files.push_back(dir.write("job-" + std::to_string(files.size()) + ".json", content));
    }
    for (const auto& file : files) {
        const auto result = test::quillet({"job", file.string()});
        EXPECT_EQ(result.status, 2) << file;
        EXPECT_NE(result.err.find(file.string()), std::string::npos) << result.err;
        EXPECT_EQ(result.out, "");
    }
}

} // namespace
} // namespace quillet
