// `quillet split`, run as the real program: what it writes, prints and exits with.
#include "cli/RunQuillet.hpp"
#include "engines/Formatters.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <map>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::TempDir;

using test::quillet;

fs::path pagesFile(const TempDir& dir, int count, const std::string& name = "doc.pdf") {
    return test::numberedPDF(dir / name, count);
}

// The lines the command should print for parts doc-part1.pdf, doc-part2.pdf, ... holding these
// pages, with the sizes of the files it wrote.
std::string expectedOutput(const fs::path& folder, const std::vector<std::string>& pages) {
    std::string out;
    for (std::size_t k = 0; k < pages.size(); ++k) {
        const auto name = fmt::format("doc-part{}.pdf", k + 1);
        const auto size = static_cast<std::int64_t>(fs::file_size(folder / name));
        out += name + ": pages " + pages[k] + " (" + formattedBytes(size, 2) + ")\n";
    }
    return out + fmt::format("split into {} files\n", pages.size());
}

struct ModeCase {
    const char* name;
    int pageCount;
    std::vector<std::string> options;
    std::vector<std::string> pages; // of each part, as listed
};

// The case's name, not its bytes, in test names.
void PrintTo(const ModeCase& c, std::ostream* os) {
    *os << c.name;
}

class SplitCommandModes : public testing::TestWithParam<ModeCase> {};

TEST_P(SplitCommandModes, WritesAndListsTheParts) {
    const auto& c = GetParam();
    TempDir dir;
    const auto input = pagesFile(dir, c.pageCount);
    auto arguments = std::vector<std::string>{"split", input.string()};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());

    const auto result = quillet(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, expectedOutput(dir.path(), c.pages));
    EXPECT_EQ(result.err, "") << "no progress bar on a captured standard error";
    EXPECT_EQ(test::fileNames(dir.path()).size(), c.pages.size() + 1);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, SplitCommandModes,
    testing::Values(
        ModeCase{"EveryPageByDefault", 3, {}, {"1", "2", "3"}},
        ModeCase{"EveryN", 5, {"--every", "2"}, {"1,2", "3,4", "5"}},
        ModeCase{"Ranges", 6, {"--ranges", "5-6, 1"}, {"5,6", "1"}},
        ModeCase{"Extract", 5, {"--extract", "3,1,3"}, {"1,3"}},
        ModeCase{"BySize", 3, {"--by-size", "10MB"}, {"1,2,3"}},
        ModeCase{"EveryWinsOverRanges", 4, {"--ranges", "1", "--every", "3"}, {"1,2,3", "4"}},
        ModeCase{"RangesWinOverExtract", 4, {"--extract", "2", "--ranges", "3-4"}, {"3,4"}},
        ModeCase{"ExtractWinsOverSize", 4, {"--by-size", "1", "--extract", "4"}, {"4"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SplitCommand, PartNumbersArePaddedToTheWidthOfTheCount) {
    struct Row {
        int pages;
        std::string first, tenth, last;
    };
    for (const auto& row :
         std::vector<Row>{{9, "doc-part1.pdf", "", "doc-part9.pdf"},
                          {10, "doc-part01.pdf", "doc-part10.pdf", "doc-part10.pdf"},
                          {100, "doc-part001.pdf", "doc-part010.pdf", "doc-part100.pdf"}}) {
        TempDir dir;
        const auto result =
            quillet({"split", pagesFile(dir, row.pages).string(), "-o", (dir / "parts").string()});
        ASSERT_EQ(result.status, 0) << result.err;
        const auto names = test::fileNames(dir / "parts");
        ASSERT_EQ(names.size(), static_cast<std::size_t>(row.pages));
        EXPECT_EQ(names.front(), row.first);
        EXPECT_EQ(names.back(), row.last);
        if (!row.tenth.empty()) {
            EXPECT_EQ(names[9], row.tenth);
        }
        EXPECT_TRUE(result.out.starts_with(row.first + ": pages 1 (")) << result.out;
        EXPECT_TRUE(result.out.ends_with(fmt::format("\nsplit into {} files\n", row.pages)));
    }
}

TEST(SplitCommand, WritesIntoTheGivenFolderCreatingIt) {
    TempDir dir;
    const auto input = pagesFile(dir, 2, "report.v2.pdf");
    const auto folder = dir / "out/nested";
    const auto result = quillet({"split", "-o", folder.string(), input.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(test::fileNames(folder),
              (std::vector<std::string>{"report.v2-part1.pdf", "report.v2-part2.pdf"}));
    EXPECT_TRUE(result.out.starts_with("report.v2-part1.pdf: pages 1 (")) << result.out;
}

struct FailureCase {
    const char* name;
    // "IN" stands for a 3-page PDF, "IN2" for a second one, "LOCKED" for a PDF that needs a
    // password. (What the engine refuses is told apart by the engine's tests; here, that its
    // refusal ends the command with status 1 and its message.)
    std::vector<std::string> arguments;
    int status;
    std::string err;
};

void PrintTo(const FailureCase& c, std::ostream* os) {
    *os << c.name;
}

class SplitCommandFailures : public testing::TestWithParam<FailureCase> {};

TEST_P(SplitCommandFailures, ReportsAndWritesNothing) {
    const auto& c = GetParam();
    TempDir dir;
    const std::map<std::string, fs::path> files{{"IN", pagesFile(dir, 3)},
                                                {"IN2", pagesFile(dir, 1, "other.pdf")},
                                                {"LOCKED", test::lockedPDF(dir / "locked.pdf")}};
    const auto before = test::fileNames(dir.path());
    std::vector<std::string> arguments{"split"};
    for (const auto& argument : c.arguments) {
        const auto file = files.find(argument);
        arguments.push_back(file == files.end() ? argument : file->second.string());
    }
    const auto result = quillet(arguments);
    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, c.err);
    EXPECT_EQ(test::fileNames(dir.path()), before);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Errors, SplitCommandFailures, testing::Values(
    FailureCase{"TwoInputs", {"IN", "IN2"}, 2, "error: split takes exactly one input PDF\n"},
    FailureCase{"EveryNotANumber", {"IN", "--every", "two"}, 2,
                "error: invalid --every; use a whole number of pages\n"},
    FailureCase{"ExtractSelectsNothing", {"IN", "--extract", "5-"}, 1,
                "error: Enter the pages to extract, e.g. 1, 3, 5, 7-20.\n"},
    FailureCase{"SizeNotReadable", {"IN", "--by-size", "lots"}, 2,
                "error: invalid size \"lots\" (use a number and KB, MB or GB, for example 10MB)\n"},
    FailureCase{"Locked", {"LOCKED"}, 1, "error: Incorrect password.\n"}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

} // namespace
} // namespace quillet
