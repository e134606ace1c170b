#include "engines/PDFCoreError.hpp"
#include "platform/ImageIO.hpp"
#include "platform/PDFDocument.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRunner.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using P = OperationParameters;
using test::PDFBuilder;
using test::TempDir;

/// A PDF whose page k (zero-based) is 300 + k points wide, so pages can be told apart.
fs::path numberedPDF(const fs::path& path, int pages) {
    return test::numberedPDF(path, pages, 300, 1, 400);
}

using test::pageWidths;

TaskSpec spec(PDFOperationKind operation, std::vector<fs::path> inputs, P parameters,
              OutputRule rule = {}) {
    std::vector<std::string> paths;
    for (const auto& input : inputs) {
        paths.push_back(input.string());
    }
    return TaskSpec::make(operation, paths, rule, std::move(parameters));
}

struct Recorded {
    std::vector<double> reports;
    TaskRunner::Progress callback() {
        return [this](double p) { reports.push_back(p); };
    }
    bool saw(double value) const {
        return std::find(reports.begin(), reports.end(), value) != reports.end();
    }
};

TEST(TaskRunner, NoExistingInputFailsBeforeAnyWork) {
    TempDir dir;
    const auto gone = dir / "gone.pdf";
    const auto error = test::caughtCoreError([&] {
        TaskRunner::run(spec(PDFOperationKind::merge, {gone, dir / "also-gone.pdf"}, P::Merge{}),
                        {}, {});
    });
    EXPECT_STREQ(error.what(), "No input files.");
    EXPECT_TRUE(test::fileNames(dir.path()).empty());
}

TEST(TaskRunner, ParametersOfAnotherKindAreRefusedWithTheOperationsMessage) {
    const std::pair<PDFOperationKind, const char*> cases[] = {
        {PDFOperationKind::split, "Missing split parameters."},
        {PDFOperationKind::pdfToImages, "Missing conversion parameters."},
        {PDFOperationKind::protect, "Missing password."},
        {PDFOperationKind::unprotect, "Missing password."},
        {PDFOperationKind::clean, "Missing clean preset."},
        {PDFOperationKind::organize, "Missing organize parameters."}};
    TempDir dir;
    const auto input = numberedPDF(dir / "in.pdf", 1);
    for (const auto& [operation, message] : cases) {
        const auto error = test::caughtCoreError(
            [&] { TaskRunner::run(spec(operation, {input}, P::Merge{}), {}, {}); });
        EXPECT_EQ(error.errorCase(), PDFCoreError::Case::invalidInput) << message;
        EXPECT_STREQ(error.what(), message);
    }
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"in.pdf"});
}

TEST(TaskRunner, ThreeInputsShareTheProgressInThirds) {
    TempDir dir;
    std::vector<fs::path> inputs;
    for (const char* name : {"a.pdf", "b.pdf", "c.pdf"}) {
        inputs.push_back(numberedPDF(dir / name, 2));
    }
    Recorded progress;
    const auto result = TaskRunner::run(
        spec(PDFOperationKind::compress, inputs, P::Compress{CompressionQualityTier::lossless}),
        progress.callback(), {});
    EXPECT_TRUE(progress.saw(1.0 / 3.0));
    EXPECT_TRUE(progress.saw(1.0 / 3.0 + 1.0 / 3.0));
    EXPECT_EQ(progress.reports.back(), 1.0);
    EXPECT_TRUE(std::is_sorted(progress.reports.begin(), progress.reports.end()));
    ASSERT_EQ(result.outputs.size(), 3u);
    EXPECT_EQ(result.outputs[0], dir / "a-compressed.pdf");
    EXPECT_EQ(result.originalBytes,
              TaskRunner::inputSize(inputs[0]) + TaskRunner::inputSize(inputs[1]) +
                  TaskRunner::inputSize(inputs[2]));
}

// The output is named after the target and replaces an earlier one; a file already under the
// target gets the engine's note.
TEST(TaskRunner, TargetSizeNamesTheFileAfterTheTargetAndReplacesIt) {
    TempDir dir;
    // A grainy scan of about 3 MB, well above the 1,000,000-byte target.
    PDFBuilder builder;
    builder.addPage().image({.width = 1000, .height = 1000, .grain = 40}, 0, 0, 612, 792);
    const auto input = builder.write(dir / "report.pdf");
    ASSERT_GT(TaskRunner::inputSize(input), 2'000'000);
    dir.write("report-976.6KB.pdf", "old");
    const auto target = [&](const fs::path& file, std::int64_t bytes) {
        return TaskRunner::run(spec(PDFOperationKind::targetSize, {file}, P::TargetSize{bytes}), {},
                               {});
    };
    const auto result = target(input, 1'000'000);
    EXPECT_EQ(result.outputs, std::vector<fs::path>{dir / "report-976.6KB.pdf"});
    EXPECT_LT(result.resultBytes, TaskRunner::inputSize(input) / 2);
    EXPECT_EQ(TaskRunner::targetSizeFileName("x/report.pdf", 20'000'000), "report-19MB.pdf");

    const auto small = target(numberedPDF(dir / "small.pdf", 1), 2'500'000);
    EXPECT_EQ(small.outputs, std::vector<fs::path>{dir / "small-2.4MB.pdf"});
    EXPECT_EQ(small.note, "Already under target — optimized losslessly.");
}

TEST(TaskRunner, ReplaceOriginalWritesOverTheInput) {
    TempDir dir;
    const auto input = numberedPDF(dir / "in.pdf", 3);
    OutputRule rule;
    rule.replaceOriginal = true;
    const auto result = TaskRunner::run(
        spec(PDFOperationKind::clean, {input}, P::Clean{CleanPreset::privacy}, rule), {}, {});
    EXPECT_EQ(result.outputs, std::vector<fs::path>{input});
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"in.pdf"});
    EXPECT_EQ(pageWidths(input), (std::vector<int>{300, 301, 302}));
}

struct PageShape {
    int width = 0;
    int height = 0;
    int rotation = 0;
    bool blank = false;

    bool operator==(const PageShape&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const PageShape& page) {
        return out << page.width << "x" << page.height << "@" << page.rotation
                   << (page.blank ? " blank" : "");
    }
};

/// Each page's media box, rotation and whether its content draws nothing, read through qpdf.
std::vector<PageShape> pageShapes(const fs::path& path) {
    QPDF qpdf;
    qpdf.processFile(path.c_str());
    std::vector<PageShape> shapes;
    for (auto& page : QPDFPageDocumentHelper(qpdf).getAllPages()) {
        const auto box = page.getMediaBox().getArrayAsRectangle();
        auto rotate = page.getAttribute("/Rotate", false);
        const auto content = test::pageContents(page.getObjectHandle());
        shapes.push_back({static_cast<int>(box.urx - box.llx), static_cast<int>(box.ury - box.lly),
                          rotate.isInteger() ? rotate.getIntValueAsInt() : 0,
                          content.find_first_not_of(" \t\r\n") == std::string::npos});
    }
    return shapes;
}

TEST(TaskRunner, MergeBlankPagesSeparateTheInputsShapedLikeThePageBefore) {
    TempDir dir;
    PDFBuilder first;
    first.addPage(300, 400).text("a1");
    first.addPage(500, 400).rotate(90).text("a2");
    PDFBuilder last;
    last.addPage(420, 595).text("b1");
    const auto png = ImageIO::encode(Bitmap(200, 100, PixelFormat::gray, 0), FileKind::png, 1);
    ASSERT_TRUE(png);
    const std::vector<fs::path> inputs{first.write(dir / "a.pdf"),
                                       dir.write("photo.png", {png->begin(), png->end()}),
                                       last.write(dir / "b.pdf")};
    const PageShape a1{300, 400, 0, false}, a2{500, 400, 90, false}, photo{200, 100, 0, false},
        b1{420, 595, 0, false};
    const struct {
        bool insertBlank;
        const char* note;
        std::vector<PageShape> pages;
    } cases[] = {
        {false, "4 pages combined", {a1, a2, photo, b1}},
        {true, "6 pages combined", {a1, a2, {500, 400, 90, true}, photo, {200, 100, 0, true}, b1}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.note);
        Recorded progress;
        const auto result =
            TaskRunner::run(spec(PDFOperationKind::merge, inputs, P::Merge{c.insertBlank}),
                            progress.callback(), {});
        ASSERT_EQ(result.outputs.size(), 1u);
        EXPECT_EQ(result.note, c.note);
        EXPECT_EQ(pageShapes(result.outputs[0]), c.pages);
        EXPECT_EQ(result.resultBytes, TaskRunner::inputSize(result.outputs[0]));
        EXPECT_TRUE(test::qpdfChecks(result.outputs[0]));
        EXPECT_EQ(progress.reports.back(), 1.0);
        EXPECT_TRUE(std::is_sorted(progress.reports.begin(), progress.reports.end()));
        fs::remove(result.outputs[0]);
        EXPECT_EQ(test::fileNames(dir.path()).size(), inputs.size());
    }
}

TEST(TaskRunner, SplitAndPageExportNameTheirCounts) {
    TempDir dir;
    const auto input = numberedPDF(dir / "doc.pdf", 3);
    const auto split = TaskRunner::run(
        spec(PDFOperationKind::split, {input}, P::Split{SplitMode::everyPage}), {}, {});
    EXPECT_EQ(split.note, "3 files");
    ASSERT_EQ(split.outputs.size(), 3u);
    EXPECT_EQ(pageWidths(split.outputs[2]), std::vector<int>{302});

    const auto images = TaskRunner::run(
        spec(PDFOperationKind::pdfToImages, {input}, P::PDFToImages{"jpeg", 36, "2-3", 0.8}), {},
        {});
    EXPECT_EQ(images.note, "2 images");
    EXPECT_EQ(test::fileNames(dir / "doc-images"),
              (std::vector<std::string>{"doc-page-02.jpeg", "doc-page-03.jpeg"}));
}

TEST(TaskRunner, OrganizeKeepsTheNewOrderWithoutTheDeletedPages) {
    TempDir dir;
    const auto input = numberedPDF(dir / "doc.pdf", 3);
    P::Organize organize;
    organize.newOrder = std::vector<std::int64_t>{2, 0, 1};
    organize.deletePages = {0};
    organize.rotatePages = {1};
    organize.rotations = {90};
    const auto result = TaskRunner::run(spec(PDFOperationKind::organize, {input}, organize), {}, {});
    ASSERT_EQ(result.outputs.size(), 1u);
    EXPECT_EQ(pageWidths(result.outputs[0]), (std::vector<int>{302, 301}));
    EXPECT_EQ(PDFDocument::open(result.outputs[0]).page(1).rotation(), 90);
    EXPECT_EQ(pageWidths(input), (std::vector<int>{300, 301, 302}));
}

TEST(TaskRunner, CancellationBeforeAnInputStopsTheRun) {
    TempDir dir;
    const auto input = numberedPDF(dir / "a.pdf", 1);
    EXPECT_THROW(TaskRunner::run(spec(PDFOperationKind::compress, {input}, P::Compress{}), {},
                                 [] { return true; }),
                 CancellationError);
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"a.pdf"});
}

TEST(TaskRunner, AnOutputFolderThatCannotBeMadeIsAWriteFailure) {
    TempDir dir;
    const auto input = numberedPDF(dir / "a.pdf", 1);
    dir.write("blocker", "a file where a folder should be");
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "blocker" / "out").string();
    const auto error = test::caughtCoreError([&] {
        TaskRunner::run(spec(PDFOperationKind::compress, {input}, P::Compress{}, rule), {}, {});
    });
    EXPECT_EQ(error.errorCase(), PDFCoreError::Case::writeFailed);
    EXPECT_NE(std::string(error.what()).find("blocker"), std::string::npos) << error.what();
}

} // namespace
} // namespace quillet
