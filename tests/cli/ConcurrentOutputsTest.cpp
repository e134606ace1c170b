// Many `quillet` processes started together on copies of one input, in one folder, all asking for
// the same output name: each must end with an output of its own, complete, and the names must be
// exactly the collision sequence one process after another would have produced.
#include "cli/RunQuillet.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <latch>
#include <set>
#include <string>
#include <vector>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

constexpr int processes = 12;

// The path after the last arrow of the result line.
fs::path reportedOutput(const std::string& out) {
    const std::string arrow = "→ ";
    const auto at = out.rfind(arrow);
    if (at == std::string::npos) {
        return {};
    }
    auto path = out.substr(at + arrow.size());
    return path.substr(0, path.find('\n'));
}

struct Racing {
    std::string command;
    std::string action;
};

class RacingWriters : public testing::TestWithParam<Racing> {};

TEST_P(RacingWriters, EachGetsItsOwnCompleteOutput) {
    TempDir folder;
    const auto input = folder / "in.pdf";
    fs::copy_file(test::corpus("003-pdflatex-image/pdflatex-image.pdf"), input);

    std::latch start(processes);
    std::vector<std::future<test::ProcessResult>> running;
    for (int i = 0; i < processes; ++i) {
        running.push_back(std::async(std::launch::async, [&] {
            start.arrive_and_wait();
            return test::runProcess(QUILLET_BINARY, {GetParam().command, input.string()}, {},
                                    std::chrono::seconds(30));
        }));
    }
    std::set<fs::path> reported;
    for (auto& process : running) {
        const auto result = process.get();
        ASSERT_EQ(result.status, 0) << result.err;
        // Standard error captured by a script: no progress bar frames, nothing at all.
        EXPECT_EQ(result.err, "");
        reported.insert(reportedOutput(result.out));
    }

    std::set<fs::path> expected{folder / ("in-" + GetParam().action + ".pdf")};
    for (int n = 2; n <= processes; ++n) {
        expected.insert(folder / ("in-" + GetParam().action + "-" + std::to_string(n) + ".pdf"));
    }
    EXPECT_EQ(reported, expected);
    const auto present = test::fileNames(folder.path());
    std::set<std::string> wanted{"in.pdf"};
    for (const auto& path : expected) {
        wanted.insert(path.filename().string());
    }
    // No output missing, none extra, no temporary file left behind.
    EXPECT_EQ(std::set<std::string>(present.begin(), present.end()), wanted);
    for (const auto& path : expected) {
        const auto check = test::runTool("qpdf", {"--check", path.string()});
        EXPECT_EQ(check.status, 0) << path << '\n' << check.out << check.err;
    }
}

INSTANTIATE_TEST_SUITE_P(SameFolder, RacingWriters,
                         testing::Values(Racing{"clean", "clean"},
                                         Racing{"compress", "compressed"}),
                         [](const auto& info) { return info.param.command; });

} // namespace
} // namespace quillet
