#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using Pairs = std::vector<std::pair<fs::path, fs::path>>;

Pairs collect(const std::vector<fs::path>& inputs, std::optional<std::string> out, bool replace,
              const std::string& suffix) {
    Pairs pairs;
    withOutputs(inputs, out, replace, suffix, [&](const fs::path& input, const fs::path& output) {
        pairs.emplace_back(input, output);
    });
    return pairs;
}

TEST(WithOutputs, ChoosesOutputsByTheDocumentedPrecedence) {
    test::TempDir dir;
    const auto a = dir.write("a.pdf", "x");
    const auto b = dir.write("sub/b.pdf", "x");

    EXPECT_EQ(collect({a}, "out.pdf", false, "compressed"), (Pairs{{a, "out.pdf"}}));
    EXPECT_EQ(collect({a}, "out.pdf", true, "compressed"), (Pairs{{a, "out.pdf"}}));
    EXPECT_EQ(collect({a, b}, "out.pdf", false, "compressed"),
              (Pairs{{a, dir / "a-compressed.pdf"}, {b, dir / "sub/b-compressed.pdf"}}));
    EXPECT_EQ(collect({a, b}, std::nullopt, true, "compressed"), (Pairs{{a, a}, {b, b}}));
    // Every word but "compressed" names outputs as the clean operation does.
    EXPECT_EQ(collect({a}, std::nullopt, false, "clean"), (Pairs{{a, dir / "a-clean.pdf"}}));
    EXPECT_EQ(collect({a}, std::nullopt, false, "protected"), (Pairs{{a, dir / "a-clean.pdf"}}));
    EXPECT_TRUE(collect({}, "out.pdf", false, "compressed").empty());
}

TEST(WithOutputs, NeverOverwritesAnEarlierResult) {
    test::TempDir dir;
    const auto a = dir.write("a.pdf", "x");
    dir.write("a-compressed.pdf", "first run");
    dir.write("a-compressed-2.pdf", "second run");
    EXPECT_EQ(collect({a}, std::nullopt, false, "compressed"),
              (Pairs{{a, dir / "a-compressed-3.pdf"}}));
}

TEST(WithOutputs, StopsAtTheFirstError) {
    test::TempDir dir;
    const auto a = dir.write("a.pdf", "x");
    const auto b = dir.write("b.pdf", "x");
    int calls = 0;
    EXPECT_THROW(withOutputs({a, b}, std::nullopt, false, "compressed",
                             [&](const fs::path&, const fs::path&) {
                                 ++calls;
                                 throw std::runtime_error("engine failed");
                             }),
                 std::runtime_error);
    EXPECT_EQ(calls, 1);
}

TEST(ResolveSingleOutput, UsesTheGivenPathFolderOrFallback) {
    test::TempDir dir;
    const auto a = dir.write("in/a.pdf", "x");
    const auto taken = dir.write("taken.pdf", "x");
    const auto args = [](std::vector<std::string> words) { return CLIArgs::parse(words); };

    EXPECT_EQ(resolveSingleOutput(args({}), {a}, "merged-x.pdf"), dir / "in/merged-x.pdf");
    EXPECT_EQ(resolveSingleOutput(args({"-o", (dir / "new.pdf").string()}), {a}, "m.pdf"),
              dir / "new.pdf");
    EXPECT_EQ(resolveSingleOutput(args({"-o", dir.path().string()}), {a}, "m.pdf"), dir / "m.pdf");
    try {
        resolveSingleOutput(args({"-o", taken.string()}), {a}, "m.pdf");
        ADD_FAILURE() << "an existing file was accepted as output";
    } catch (const CLIError& error) {
        EXPECT_EQ(error.message, "output exists: " + taken.string() + " (remove it or pass a new name)");
    }
    try {
        resolveSingleOutput(args({}), {}, "m.pdf");
        ADD_FAILURE();
    } catch (const CLIError& error) {
        EXPECT_EQ(error.message, "no inputs");
    }
}

std::string repeat(const std::string& cell, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += cell;
    }
    return text;
}

TEST(PrintProgress, DrawsTwentyFourCellsAndTruncates) {
    const struct {
        double fraction;
        std::string expected;
    } cases[] = {
        {0.0, "\r  [" + repeat("·", 24) + "] 0%"},
        {0.5, "\r  [" + repeat("█", 12) + repeat("·", 12) + "] 50%"},
        {0.999, "\r  [" + repeat("█", 23) + "·] 99%"},
        {1.0, "\r  [" + repeat("█", 24) + "] 100%\n"},
        {1.1, "\r  [" + repeat("█", 24) + "] 100%\n"},
    };
    for (const auto& c : cases) {
        std::ostringstream err;
        printProgress(err, c.fraction);
        EXPECT_EQ(err.str(), c.expected) << c.fraction;
    }
}

} // namespace
} // namespace quillet
