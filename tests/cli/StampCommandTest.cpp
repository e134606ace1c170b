// `quillet stamp`, end to end through the real program.
#include "cli/RunQuillet.hpp"
#include "support/IndependentChecks.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;

TEST(StampCommand, NumbersRunOnAcrossFilesAndBadMarksAreRefused) {
    test::TempDir dir;
    const auto four = dir / "four.pdf";
    const auto one = dir / "one.pdf";
    fs::copy_file(test::corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"), four);
    fs::copy_file(test::corpus("001-trivial/minimal-document.pdf"), one);

    // A one-digit negative rotation is a number, and --under at the end is a switch.
    const auto done = test::quillet({"stamp", four.string(), one.string(), "--bates", "EX-",
                                     "--digits", "3", "--start", "9", "--rotation", "-5",
                                     "--page-numbers", "{n}/{total}", "--under"});
    ASSERT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.out, "four.pdf: 4 pages stamped, Bates EX-009–EX-012 → " +
                            (dir / "four-stamped.pdf").string() +
                            "\none.pdf: 1 page stamped, Bates EX-013–EX-013 → " +
                            (dir / "one-stamped.pdf").string() + "\n");
    // Both marks share the bottom centre, one above the other: read in drawing order.
    const auto text = test::runTool("pdftotext", {"-raw", "-f", "4", "-l", "4", (dir / "four-stamped.pdf").string(), "-"}).out;
    EXPECT_NE(text.find("EX-012"), std::string::npos) << text;
    EXPECT_NE(text.find("12/12"), std::string::npos) << text;
    EXPECT_TRUE(test::qpdfChecks(dir / "four-stamped.pdf"));

    const struct {
        std::vector<std::string> arguments;
        const char* said;
    } refusals[] = {
        {{}, "nothing to stamp"},
        {{"--text", "x", "--color", "#12"}, "the colour \"#12\" is not #RRGGBB"},
        {{"--image", (dir / "nope.png").string()}, "nope.png cannot be read"},
        {{"--page-numbers", ""}, "format is empty"},
        {{"--text", "x", "--opacity", "half"}, "invalid --opacity \"half\""},
    };
    for (const auto& refusal : refusals) {
        auto arguments = refusal.arguments;
        arguments.insert(arguments.begin(), {"stamp", one.string(), "-o", (dir / "no.pdf").string()});
        const auto run = test::quillet(arguments);
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_NE(run.err.find(refusal.said), std::string::npos) << run.err;
        EXPECT_FALSE(fs::exists(dir / "no.pdf"));
    }
    EXPECT_NE(test::quillet({"stamp", "--help"}).out.find("--page-numbers FORMAT"), std::string::npos);
}

} // namespace
} // namespace quillet
