// The organize job on real files. Source page k is 100 + 10k points wide, so the written order
// reads back from the media boxes; outputs are read with qpdf directly and `qpdf --check`.
#include "engines/PDFOrganizeEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <limits>
#include <set>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;
using Organize = OperationParameters::Organize;
constexpr std::int64_t int64Max = std::numeric_limits<std::int64_t>::max();

// Four pages, the third already turned 90.
fs::path fourPages(const TempDir& dir) {
    PDFBuilder builder;
    for (int k = 0; k < 4; ++k) {
        builder.addPage(100 + 10 * k, 200).text("Page " + std::to_string(k + 1), 10, 100);
    }
    builder.page(2).rotate(90);
    builder.info("Title", "Quarterly");
    return builder.write(dir / "four.pdf");
}

using Written = std::vector<std::pair<int, int>>; // width and /Rotate of each page

Written pagesOf(const fs::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    Written pages;
    for (auto page : qpdf.getAllPages()) {
        auto rotate = page.getKey("/Rotate");
        auto width = page.getKey("/MediaBox").getArrayItem(2).getNumericValue();
        pages.emplace_back(static_cast<int>(width), rotate.isInteger() ? rotate.getIntValue() : 0);
    }
    return pages;
}

struct WriteCase {
    const char* name;
    Organize parameters;
    Written expected;
};

void PrintTo(const WriteCase& c, std::ostream* out) {
    *out << c.name;
}

class OrganizeWrites : public testing::TestWithParam<WriteCase> {};

TEST_P(OrganizeWrites, WritesTheKeptPagesInOrder) {
    TempDir dir;
    const auto input = fourPages(dir);
    const auto before = test::readFile(input);
    PDFOrganizeEngine::organize(input, dir / "out.pdf", GetParam().parameters, {});
    EXPECT_EQ(pagesOf(dir / "out.pdf"), GetParam().expected);
    EXPECT_EQ(test::runTool("qpdf", {"--check", (dir / "out.pdf").string()}).status, 0);
    EXPECT_EQ(test::readFile(input), before) << "the input was modified";
}

INSTANTIATE_TEST_SUITE_P(
    Jobs, OrganizeWrites,
    testing::Values(
        WriteCase{"ThirdThenSecond",
                  {.deletePages = {0}, .newOrder = {{2, 0, 1}}},
                  {{120, 90}, {110, 0}}},
        WriteCase{"OutsideIndicesSkipped",
                  {.newOrder = {{-1, 3, 4, int64Max, std::numeric_limits<std::int64_t>::min(), 0}}},
                  {{130, 0}, {100, 0}}},
        WriteCase{"TurnAddsToTheOwnRotation",
                  {.rotatePages = {2}, .rotations = {270}},
                  {{100, 0}, {110, 0}, {120, 0}, {130, 0}}},
        WriteCase{"PairsUpToTheShorterList",
                  {.rotatePages = {0, 1, 3}, .rotations = {180}},
                  {{100, 180}, {110, 0}, {120, 90}, {130, 0}}},
        WriteCase{"EveryCopyTurnsOnce",
                  {.rotatePages = {3}, .rotations = {90}, .newOrder = {{3, 0, 3}}},
                  {{130, 90}, {100, 0}, {130, 90}}},
        WriteCase{"HugeTurnsDoNotOverflow",
                  {.rotatePages = {0, 0, -1}, .rotations = {int64Max - 277, int64Max - 277, 90}},
                  {{100, 180}, {110, 0}, {120, 90}, {130, 0}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PDFOrganizeEngine, ProgressCancellationAndTitle) {
    TempDir dir;
    const auto input = fourPages(dir);
    std::vector<double> reports;
    PDFOrganizeEngine::organize(input, dir / "out.pdf", {.newOrder = {{0, 99, 1, 2}}},
                                [&](double p) { reports.push_back(p); });
    EXPECT_EQ(reports, (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
    QPDF written;
    written.processFile((dir / "out.pdf").c_str());
    EXPECT_EQ(written.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(), "Quarterly");

    int asked = 0;
    EXPECT_THROW(PDFOrganizeEngine::organize(input, dir / "cancelled.pdf", {}, {},
                                             [&] { return ++asked == 3; }),
                 CancellationError);
    EXPECT_FALSE(fs::exists(dir / "cancelled.pdf"));
}

TEST(PDFOrganizeEngine, FormFieldsFollowTheirPagesOnly) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().textField("kept", "yes");
    builder.addPage().textField("deleted", "secret");
    const auto input = builder.write(dir / "form.pdf");
    PDFOrganizeEngine::organize(input, dir / "out.pdf",
                                {.deletePages = {1}, .newOrder = {{0, 0, 1}}}, {});

    QPDF qpdf;
    qpdf.processFile((dir / "out.pdf").c_str());
    auto fields = qpdf.getRoot().getKey("/AcroForm").getKey("/Fields");
    EXPECT_EQ(fields.getArrayNItems(), 2) << "each copy of the page needs a field of its own";
    auto pages = qpdf.getAllPages();
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_NE(pages[0].getKey("/Annots").getArrayItem(0).getObjGen(),
              pages[1].getKey("/Annots").getArrayItem(0).getObjGen());
    for (auto& object : qpdf.getAllObjects()) {
        EXPECT_FALSE(object.isDictionary() && object.getKey("/T").isString() &&
                     object.getKey("/T").getUTF8Value() == "deleted")
            << "a field of a deleted page was written";
    }
    EXPECT_EQ(test::runTool("qpdf", {"--check", (dir / "out.pdf").string()}).status, 0);
}

TEST(PDFOrganizeEngine, FailuresWriteNothing) {
    TempDir dir;
    const auto input = fourPages(dir);
    const auto existing = dir.write("existing.pdf", "previous");
    for (const Organize& p :
         {Organize{.deletePages = {0, 1, 2, 3}}, Organize{.newOrder = {{4, -1}}}}) {
        EXPECT_EQ(test::caughtCoreError([&] { PDFOrganizeEngine::organize(input, existing, p, {}); }).errorCase(),
                  PDFCoreError::Case::emptyDocument);
    }
    const auto turn = test::caughtCoreError([&] {
        PDFOrganizeEngine::organize(dir / "missing.pdf", existing,
                                    {.rotatePages = {0}, .rotations = {45}}, {});
    });
    EXPECT_EQ(turn.text(), "Rotation by 45 degrees is not a multiple of 90.")
        << "a bad turn is refused before the input is read";
    for (const auto& output : {dir / "missing-folder" / "out.pdf", existing / "out.pdf"}) {
        const auto error = test::caughtCoreError([&] { PDFOrganizeEngine::organize(input, output, {}, {}); });
        EXPECT_EQ(error.errorCase(), PDFCoreError::Case::writeFailed);
        EXPECT_EQ(error.text(), "out.pdf");
    }
    EXPECT_EQ(test::readFile(existing), "previous");
    EXPECT_EQ(test::fileNames(dir.path()), (std::vector<std::string>{"existing.pdf", "four.pdf"}));
}

} // namespace
} // namespace quillet
