// `quillet merge` and `quillet images`, run as the real program: exit statuses, result lines,
// output choice and refusals.
#include "cli/RunQuillet.hpp"
#include "engines/Formatters.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <regex>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::TempDir;

using test::quillet;

fs::path pages(const TempDir& dir, const std::string& name, int count) {
    return test::numberedPDF(dir / name, count);
}

std::string sizeOf(const fs::path& file) {
    return formattedBytes(static_cast<std::int64_t>(fs::file_size(file)), 2);
}

std::vector<double> firstMediaBox(const fs::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    auto page = qpdf.getAllPages().at(0);
    const auto box = page.getKey("/MediaBox").getArrayAsRectangle();
    return {box.llx, box.lly, box.urx, box.ury};
}

TEST(MergeCommand, MergesInOrderAndPrintsTheResultLine) {
    TempDir dir;
    const auto a = pages(dir, "a.pdf", 2);
    const auto b = pages(dir, "b.pdf", 3);
    const auto smile = test::corpus("007-imagemagick-images/smile.jpg").string();
    const auto out = dir / "joined.pdf";
    const auto result = quillet({"merge", a.string(), smile, b.string(), "-o", out.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              "merged 3 files → 6 pages → " + out.string() + " (" + sizeOf(out) + ")\n");
    EXPECT_EQ(result.err, "") << "no progress bar on a captured standard error";
}

TEST(MergeCommand, RefusesOneInputAndAnExistingOutput) {
    TempDir dir;
    const auto a = pages(dir, "a.pdf", 1);
    auto result = quillet({"merge", a.string(), "-o", (dir / "x.pdf").string()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "error: merge needs at least two input files\n");
    EXPECT_FALSE(fs::exists(dir / "x.pdf"));

    const auto taken = dir.write("taken.pdf", "mine");
    result = quillet({"merge", a.string(), a.string(), "-o", taken.string()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err,
              "error: output exists: " + taken.string() + " (remove it or pass a new name)\n");
    EXPECT_EQ(test::readFile(taken), "mine");
}

TEST(MergeCommand, NamesTheOutputByTheTimeInsideAFolderOrBesideTheFirstInput) {
    TempDir dir;
    const auto a = pages(dir, "a.pdf", 1);
    fs::create_directory(dir / "into");
    auto result = quillet({"merge", a.string(), a.string(), "-o", (dir / "into").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::regex merged(".* → 2 pages → " + (dir / "into").string() +
                            "/merged-\\d{8}-\\d{4}\\.pdf \\(.*\\)\n");
    EXPECT_TRUE(std::regex_match(result.out, merged)) << result.out;

    result = quillet({"images", test::corpus("007-imagemagick-images/smile.png").string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto folder = test::corpus("007-imagemagick-images").string();
    std::smatch match;
    ASSERT_TRUE(std::regex_match(
        result.out, match,
        std::regex("created (" + folder + "/images-\\d{8}-\\d{4}\\.pdf) \\(1 pages, .*\\)\n")))
        << result.out;
    fs::remove(match[1].str());
}

struct ImagesCase {
    const char* name;
    std::vector<std::string> options;
    std::vector<double> mediaBox;
};

// The case's name, not its bytes, in test names.
void PrintTo(const ImagesCase& c, std::ostream* os) {
    *os << c.name;
}

class ImagesCommand : public testing::TestWithParam<ImagesCase> {};

TEST_P(ImagesCommand, ReadsPageSizeFitAndMarginLeniently) {
    TempDir dir;
    const auto out = dir / "out.pdf";
    std::vector<std::string> arguments{
        "images", test::corpus("007-imagemagick-images/smile.jpg").string(),
        test::corpus("007-imagemagick-images/smile.tiff").string(), "-o", out.string()};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    const auto result = quillet(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "created " + out.string() + " (2 pages, " + sizeOf(out) + ")\n");
    EXPECT_EQ(firstMediaBox(out), GetParam().mediaBox);
}

INSTANTIATE_TEST_SUITE_P(
    Merge, ImagesCommand,
    testing::Values(ImagesCase{"Defaults", {}, {0, 0, 16, 16}},
                    ImagesCase{"UnknownSizeIsOriginal", {"--page-size", "A4"}, {0, 0, 16, 16}},
                    ImagesCase{"Letter", {"--page-size", "letter"}, {0, 0, 612, 792}},
                    ImagesCase{"UpperCaseFillIsFit",
                               {"--page-size", "a4", "--fit", "FILL", "--margin", "wide"},
                               {0, 0, 595.28, 841.89}}),
    [](const auto& info) { return info.param.name; });

} // namespace
} // namespace quillet
