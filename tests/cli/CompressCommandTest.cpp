// `quillet compress` run as a user runs it.
#include "cli/RunQuillet.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <regex>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::quillet;

fs::path scan(const test::TempDir& dir, const std::string& name) {
    test::PDFBuilder builder;
    builder.addPage(612, 792).image({.width = 1000, .height = 1294, .grain = 24}, 0, 0, 612, 792);
    return builder.write(dir / name);
}

TEST(CompressCommand, ResultLineAndProgressBar) {
    test::TempDir dir;
    const auto input = scan(dir, "a.pdf");
    const auto result = quillet({"compress", input.string(), "-t", "small"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::regex line(R"(a\.pdf: [0-9.]+ (KB|MB) → [0-9.]+ KB \(−[0-9]+\.[0-9]%\) → (.*)\n)");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(result.out, match, line)) << result.out;
    EXPECT_EQ(match[2].str(), (dir / "a-compressed.pdf").string());
    // Standard error is captured here, not a terminal: no progress bar, nothing at all.
    EXPECT_EQ(result.err, "");
    // A second run never overwrites the first result.
    const auto again = quillet({"compress", input.string(), "-t", "small"});
    ASSERT_EQ(again.status, 0);
    EXPECT_NE(again.out.find((dir / "a-compressed-2.pdf").string()), std::string::npos)
        << again.out;
    // On a terminal the bar is drawn.
    const auto onTerminal = test::runProcess(
        "/usr/bin/script",
        {"-qec", std::string(QUILLET_BINARY) + " compress -t small " + input.string(),
         "/dev/null"});
    EXPECT_EQ(onTerminal.status, 0) << onTerminal.out;
    EXPECT_NE(onTerminal.out.find("] 100%"), std::string::npos) << onTerminal.out;
}

TEST(CompressCommand, OutputChoice) {
    test::TempDir dir;
    const auto a = scan(dir, "a.pdf");
    const auto b = scan(dir, "b.pdf");
    // -o with two inputs is ignored: each gets its own name.
    auto result = quillet({"compress", a.string(), b.string(), "-o", (dir / "out.pdf").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_FALSE(fs::exists(dir / "out.pdf"));
    EXPECT_TRUE(fs::exists(dir / "a-compressed.pdf"));
    EXPECT_TRUE(fs::exists(dir / "b-compressed.pdf"));
    // -o wins over --replace with one input.
    const auto before = test::readFile(a);
    result = quillet({"compress", a.string(), "--replace", "-o", (dir / "explicit.pdf").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(fs::exists(dir / "explicit.pdf"));
    EXPECT_EQ(test::readFile(a), before);
    // --replace alone replaces the input.
    result = quillet({"compress", b.string(), "--replace"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_LT(fs::file_size(b), before.size());
    EXPECT_NE(result.out.find("→ " + b.string() + "\n"), std::string::npos) << result.out;
}

TEST(CompressCommand, AlreadyOptimizedAndNotes) {
    test::TempDir dir;
    test::PDFBuilder text;
    text.addPage().text("only text");
    const auto plain = text.write(dir / "plain.pdf");
    auto result = quillet({"compress", plain.string(), "-t", "lossless"});
    if (!fs::exists(dir / "plain-compressed.pdf")) {
        EXPECT_EQ(result.out, "plain.pdf: this PDF is already optimized — original kept\n");
    }
    result = quillet({"compress", scan(dir, "t.pdf").string(), "--under", "1KB"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("\n  note: Best effort: "), std::string::npos) << result.out;
}

TEST(CompressCommand, ErrorsAndStatuses) {
    test::TempDir dir;
    const auto input = scan(dir, "a.pdf");
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string err;
    } cases[] = {
        {{"compress", input.string(), "-t", "High"},
         2,
         "error: invalid --tier; use high|balanced|smallest|lossless\n"},
        // Only -t takes the tier: "--tier" is a flag and "high" becomes an input path.
        {{"compress", input.string(), "--tier", "high"}, 2, "error: file not found: high\n"},
        {{"compress", input.string(), "--under", "10XB"}, 2, ""},
    };
    for (const auto& c : cases) {
        const auto result = quillet(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.arguments[2];
        if (!c.err.empty()) {
            EXPECT_TRUE(result.err.ends_with(c.err)) << result.err;
        }
    }
}

} // namespace
} // namespace quillet
