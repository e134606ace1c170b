// `quillet split`, run as the real program: what it writes, prints and exits with.
#include "engines/Formatters.hpp"
#include "support/PDFBuilder.hpp"
#include "support/Process.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <algorithm>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::PDFBuilder;
using test::TempDir;

test::ProcessResult quillet(const std::vector<std::string>& arguments) {
    return test::runProcess(QUILLET_BINARY, arguments);
}

fs::path pagesFile(const TempDir& dir, int count, const std::string& name = "doc.pdf") {
    PDFBuilder builder;
    for (int i = 0; i < count; ++i) {
        builder.addPage().text(fmt::format("page {}", i + 1));
    }
    return builder.write(dir / name);
}

std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

int pdfinfoPages(const fs::path& path) {
    const auto info = test::runProcess("/usr/bin/pdfinfo", {path.string()});
    const auto at = info.out.find("Pages:");
    return at == std::string::npos ? -1 : std::stoi(info.out.substr(at + 6));
}

// The lines the command should print for these parts, sizes read from the files it wrote.
std::string expectedOutput(const fs::path& folder,
                           const std::vector<std::pair<std::string, std::string>>& parts) {
    std::string out;
    for (const auto& [name, pages] : parts) {
        const auto size = static_cast<std::int64_t>(fs::file_size(folder / name));
        out += name + ": pages " + pages + " (" + formattedBytes(size, 2) + ")\n";
    }
    return out + fmt::format("split into {} files\n", parts.size());
}

struct ModeCase {
    const char* name;
    int pageCount;
    std::vector<std::string> options;
    std::vector<std::pair<std::string, std::string>> parts;
};

class SplitCommandModes : public testing::TestWithParam<ModeCase> {};

TEST_P(SplitCommandModes, WritesAndListsTheParts) {
    const auto& c = GetParam();
    TempDir dir;
    const auto input = pagesFile(dir, c.pageCount);
    const auto before = test::readFile(input);
    auto arguments = std::vector<std::string>{"split", input.string()};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());

    const auto result = quillet(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, expectedOutput(dir.path(), c.parts));
    EXPECT_TRUE(result.err.ends_with("] 100%\n")) << result.err;

    std::vector<std::string> expectedFiles{"doc.pdf"};
    for (const auto& part : c.parts) {
        expectedFiles.push_back(part.first);
        const auto pages = std::count(part.second.begin(), part.second.end(), ',') + 1;
        EXPECT_EQ(pdfinfoPages(dir / part.first), pages) << part.first;
    }
    std::sort(expectedFiles.begin(), expectedFiles.end());
    EXPECT_EQ(filesIn(dir.path()), expectedFiles);
    EXPECT_EQ(test::readFile(input), before);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, SplitCommandModes,
    testing::Values(
        ModeCase{"EveryPageByDefault",
                 3,
                 {},
                 {{"doc-part1.pdf", "1"}, {"doc-part2.pdf", "2"}, {"doc-part3.pdf", "3"}}},
        ModeCase{"EveryN",
                 5,
                 {"--every", "2"},
                 {{"doc-part1.pdf", "1,2"}, {"doc-part2.pdf", "3,4"}, {"doc-part3.pdf", "5"}}},
        ModeCase{"Ranges",
                 6,
                 {"--ranges", "5-6, 1"},
                 {{"doc-part1.pdf", "5,6"}, {"doc-part2.pdf", "1"}}},
        ModeCase{"Extract", 5, {"--extract", "3,1,3"}, {{"doc-part1.pdf", "1,3"}}},
        ModeCase{"BySizeFarAboveTheFile", 3, {"--by-size", "10MB"}, {{"doc-part1.pdf", "1,2,3"}}},
        ModeCase{"EveryWinsOverRanges",
                 4,
                 {"--ranges", "1", "--every", "3"},
                 {{"doc-part1.pdf", "1,2,3"}, {"doc-part2.pdf", "4"}}},
        ModeCase{"RangesWinOverExtract",
                 4,
                 {"--extract", "2", "--ranges", "3-4"},
                 {{"doc-part1.pdf", "3,4"}}},
        ModeCase{"ExtractWinsOverSize",
                 4,
                 {"--by-size", "1", "--extract", "4"},
                 {{"doc-part1.pdf", "4"}}},
        ModeCase{"TenPartsPadToTwoDigits",
                 10,
                 {},
                 {{"doc-part01.pdf", "1"},
                  {"doc-part02.pdf", "2"},
                  {"doc-part03.pdf", "3"},
                  {"doc-part04.pdf", "4"},
                  {"doc-part05.pdf", "5"},
                  {"doc-part06.pdf", "6"},
                  {"doc-part07.pdf", "7"},
                  {"doc-part08.pdf", "8"},
                  {"doc-part09.pdf", "9"},
                  {"doc-part10.pdf", "10"}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SplitCommand, AHundredPartsPadToThreeDigits) {
    TempDir dir;
    const auto input = pagesFile(dir, 100);
    const auto result = quillet({"split", input.string(), "-o", (dir / "parts").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto names = filesIn(dir / "parts");
    ASSERT_EQ(names.size(), 100u);
    EXPECT_EQ(names.front(), "doc-part001.pdf");
    EXPECT_EQ(names[9], "doc-part010.pdf");
    EXPECT_EQ(names.back(), "doc-part100.pdf");
    EXPECT_TRUE(result.out.starts_with("doc-part001.pdf: pages 1 ("));
    EXPECT_TRUE(result.out.ends_with("\nsplit into 100 files\n"));
}

TEST(SplitCommand, WritesIntoTheGivenFolderCreatingIt) {
    TempDir dir;
    const auto input = pagesFile(dir, 2, "report.v2.pdf");
    const auto folder = dir / "out/nested";
    const auto result = quillet({"split", "-o", folder.string(), input.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(filesIn(folder),
              (std::vector<std::string>{"report.v2-part1.pdf", "report.v2-part2.pdf"}));
    EXPECT_EQ(result.out,
              expectedOutput(folder, {{"report.v2-part1.pdf", "1"}, {"report.v2-part2.pdf", "2"}}));
    for (const auto& name : filesIn(folder)) {
        const auto check = test::runProcess("/usr/bin/qpdf", {"--check", (folder / name).string()});
        EXPECT_EQ(check.status, 0) << name << check.out;
    }
}

struct FailureCase {
    const char* name;
    std::vector<std::string> arguments; // "IN" stands for a 3-page PDF, "IN2" for a second one
    int status;
    std::string err;
};

class SplitCommandFailures : public testing::TestWithParam<FailureCase> {};

TEST_P(SplitCommandFailures, ReportsAndWritesNothing) {
    const auto& c = GetParam();
    TempDir dir;
    const auto input = pagesFile(dir, 3);
    const auto second = pagesFile(dir, 1, "other.pdf");
    dir.write("fake.pdf", "this is not a PDF");
    std::vector<std::string> arguments{"split"};
    for (const auto& argument : c.arguments) {
        arguments.push_back(argument == "IN"     ? input.string()
                            : argument == "IN2"  ? second.string()
                            : argument == "FAKE" ? (dir / "fake.pdf").string()
                                                 : argument);
    }
    const auto result = quillet(arguments);
    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, c.err);
    EXPECT_EQ(filesIn(dir.path()), (std::vector<std::string>{"doc.pdf", "fake.pdf", "other.pdf"}));
}

INSTANTIATE_TEST_SUITE_P(
    Errors, SplitCommandFailures,
    testing::Values(
        FailureCase{"NoInputs", {"--every", "2"}, 2, "error: no input files\n"},
        FailureCase{"MissingInput",
                    {"/nonexistent/x.pdf"},
                    2,
                    "error: file not found: /nonexistent/x.pdf\n"},
        FailureCase{"TwoInputs", {"IN", "IN2"}, 2, "error: split takes exactly one input PDF\n"},
        FailureCase{"EveryNotANumber",
                    {"IN", "--every", "two"},
                    2,
                    "error: invalid --every; use a whole number of pages\n"},
        FailureCase{"RangesSelectNothing",
                    {"IN", "--ranges", "abc"},
                    1,
                    "error: Enter at least one page range, e.g. 1-5, 8, 11-30.\n"},
        FailureCase{"ExtractSelectsNothing",
                    {"IN", "--extract", "5-"},
                    1,
                    "error: Enter the pages to extract, e.g. 1, 3, 5, 7-20.\n"},
        FailureCase{
            "SizeNotReadable",
            {"IN", "--by-size", "lots"},
            2,
            "error: invalid size \"lots\" (use a number and KB, MB or GB, for example 10MB)\n"},
        FailureCase{"ZeroSize",
                    {"IN", "--by-size", "0"},
                    1,
                    "error: Set a maximum size per output file.\n"},
        FailureCase{"NotAPDF", {"FAKE"}, 1, "error: Could not open fake.pdf.\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SplitCommand, ALockedFileNeedsItsPassword) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("secret");
    builder.encrypt({.user = "u", .owner = "o", .method = test::EncryptionSpec::Method::aes256});
    const auto input = builder.write(dir / "locked.pdf");
    const auto result = quillet({"split", input.string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "error: Incorrect password.\n");
    EXPECT_EQ(filesIn(dir.path()), (std::vector<std::string>{"locked.pdf"}));
}

} // namespace
} // namespace quillet
