// `quillet convert`, run as the real program: what it writes, prints and exits with.
#include "cli/RunQuillet.hpp"
#include "platform/ImageIO.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <fmt/format.h>

namespace quillet {
namespace {
namespace fs = std::filesystem;

using test::TempDir;

using test::quillet;

fs::path letterPages(const TempDir& dir, int count, const std::string& name = "doc.pdf") {
    return test::numberedPDF(dir / name, count);
}

struct OptionCase {
    const char* name;
    std::vector<std::string> options;
    std::string shownFormat;
    std::string shownDPI;
    std::vector<std::string> files;
    int width; // of the first image, for a US Letter page
};

// The case's name, not its bytes, in test names.
void PrintTo(const OptionCase& c, std::ostream* os) {
    *os << c.name;
}

class ConvertCommandOptions : public testing::TestWithParam<OptionCase> {};

TEST_P(ConvertCommandOptions, WritesAndReportsTheImages) {
    const auto& c = GetParam();
    TempDir dir;
    const auto input = letterPages(dir, 3);
    auto arguments = std::vector<std::string>{"convert", input.string()};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());

    const auto result = quillet(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    const auto folder = dir / "doc-images";
    EXPECT_EQ(result.out, fmt::format("doc.pdf: {} × {} @ {} DPI → {}\n", c.files.size(),
                                      c.shownFormat, c.shownDPI, folder.string()));
    EXPECT_EQ(result.err, "") << "no progress bar on a captured standard error";
    EXPECT_EQ(test::fileNames(folder), c.files);
    const auto image = ImageIO::decode(folder / c.files.front());
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(image->width(), c.width);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, ConvertCommandOptions, testing::Values(
    OptionCase{"defaults", {}, "PNG", "150",
               {"doc-page-01.png", "doc-page-02.png", "doc-page-03.png"}, 1275},
    OptionCase{"gifFallsBackToPNG", {"--format", "gif", "--pages", "2"}, "PNG", "150",
               {"doc-page-02.png"}, 1275},
    OptionCase{"jpeg", {"--format", "jpeg", "--pages", "3"}, "JPEG", "150",
               {"doc-page-03.jpeg"}, 1275},
    OptionCase{"heicAt72", {"--format", "heic", "--dpi", "72", "--pages", "1"}, "HEIC", "72",
               {"doc-page-01.heic"}, 612},
    OptionCase{"tiffSelection", {"--format", "tiff", "--pages", "3,1", "--dpi", "36"}, "TIFF",
               "36", {"doc-page-01.tiff", "doc-page-03.tiff"}, 306},
    OptionCase{"fractionalDPIGives150", {"--dpi", "72.5", "--pages", "1"}, "PNG", "150",
               {"doc-page-01.png"}, 1275}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

TEST(ConvertCommand, EveryInputIntoTheGivenFolder) {
    TempDir dir;
    const auto first = letterPages(dir, 2, "first.pdf");
    const auto second = letterPages(dir, 1, "second.pdf");
    const auto folder = dir / "made" / "here";
    const auto result =
        quillet({"convert", first.string(), second.string(), "-o", folder.string(), "--dpi", "20"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, fmt::format("first.pdf: 2 × PNG @ 20 DPI → {0}\n"
                                      "second.pdf: 1 × PNG @ 20 DPI → {0}\n",
                                      folder.string()));
    EXPECT_EQ(test::fileNames(folder), (std::vector<std::string>{"first-page-01.png", "first-page-02.png",
                                                         "second-page-01.png"}));
}

// What the engine refuses is told apart by its own tests; here, that a refusal ends the command
// with status 1, its message and nothing written.
struct FailureCase {
    const char* name;
    std::vector<std::string> arguments; // "IN" stands for a good 2-page input, "DIR" its folder
    int status;
    std::string message;
};

void PrintTo(const FailureCase& c, std::ostream* os) {
    *os << c.name;
}

class ConvertCommandFailures : public testing::TestWithParam<FailureCase> {};

TEST_P(ConvertCommandFailures, ExitStatusAndMessageAndNothingWritten) {
    const auto& c = GetParam();
    TempDir dir;
    const auto input = letterPages(dir, 2);
    dir.write("blocker", "a file where a folder should be");
    test::lockedPDF(dir / "locked.pdf");
    const auto before = test::fileNames(dir.path());
    std::vector<std::string> arguments;
    for (auto argument : c.arguments) {
        if (argument.starts_with("IN")) {
            argument = input.string() + argument.substr(2);
        } else if (argument.starts_with("DIR")) {
            argument = dir.path().string() + argument.substr(3);
        }
        arguments.push_back(argument);
    }
    const auto result = quillet(arguments);
    EXPECT_EQ(result.status, c.status) << result.err;
    EXPECT_EQ(result.out, "");
    std::string expected = c.message;
    if (const auto at = expected.find("DIR"); at != std::string::npos) {
        expected.replace(at, 3, dir.path().string());
    }
    EXPECT_NE(result.err.find("error: " + expected), std::string::npos) << result.err;
    EXPECT_EQ(test::fileNames(dir.path()), before);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, ConvertCommandFailures, testing::Values(
    FailureCase{"locked", {"convert", "DIR/locked.pdf"}, 1, "Incorrect password.\n"},
    FailureCase{"unwritableFolder", {"convert", "IN", "-o", "DIR/blocker/out"}, 1,
                "filesystem error: cannot create directories: Not a directory "
                "[DIR/blocker/out]"}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

} // namespace
} // namespace quillet
