#include "cli/InfoReport.hpp"
#include "support/PDFBuilder.hpp"
#include "support/Process.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillet {
namespace {

PDFImageInfo image(double dpi, int width, int height) {
    PDFImageInfo info;
    info.effectiveDPI = dpi;
    info.pixelWidth = width;
    info.pixelHeight = height;
    info.estimatedBytes = static_cast<std::int64_t>(width) * height * 3;
    return info;
}

PDFPageAnalysis page(double width, double height, std::vector<PDFImageInfo> images,
                     int textOperators, std::vector<std::string> fonts = {}) {
    PDFPageAnalysis analysis;
    analysis.widthPoints = width;
    analysis.heightPoints = height;
    analysis.images = std::move(images);
    analysis.textOperatorCount = textOperators;
    analysis.hasText = textOperators > 0;
    analysis.fontNames = std::move(fonts);
    return analysis;
}

TEST(InfoReport, FullReportLineByLine) {
    PDFAnalysis analysis;
    analysis.fileSize = 3'500'000;
    analysis.pdfVersion = "1.7";
    analysis.pageCount = 2;
    analysis.pages = {page(595.28, 841.89,
                           {image(300, 2480, 3508), image(150, 10, 10), image(600, 20, 20),
                            image(150, 30, 30), image(72, 40, 40)},
                           0, {"Helvetica"}),
                      page(595.28, 841.89, {}, 12, {"Courier", "Helvetica"})};
    analysis.metadata.creator = "Writer";
    analysis.attachmentCount = 1;
    analysis.formFieldCount = 2;
    analysis.annotationCount = 3;
    analysis.javascriptDetected = true;
    analysis.signatureCount = 1;
    EXPECT_EQ(infoReport("scan.pdf", analysis),
              "── scan.pdf ──\n"
              "  size:         3.34 MB\n"
              "  pdf version:  1.7\n"
              "  pages:        2  (A4)\n"
              "  images:       5 (avg 254 DPI)\n"
              "  top images:   600 DPI 20×20, 300 DPI 2480×3508, 150 DPI 10×10\n"
              "  fonts:        Courier, Helvetica\n"
              "  scanned:      1/2 pages · text coverage 50%\n"
              "  metadata:     author=- creator=Writer\n"
              "  security:     attachments=1 forms=2 annotations=3 js=yes signatures=1\n"
              // The image estimates exceed the file, so the 2% floor sets the prediction.
              "  recommend:    Compress Balanced — 3.34 MB → ~68.36 KB\n"
              "\n");
}

TEST(InfoCommand, ReportsEachFileAndStopsAtTheFirstFailure) {
    test::TempDir dir;
    const auto notPDF = dir.write("notes.pdf", "plain text\n");
    const std::string sample = test::corpus("003-pdflatex-image/pdflatex-image.pdf").string();
    auto result = test::runProcess(QUILLET_BINARY, {"info", sample, notPDF.string(), sample});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.starts_with("── pdflatex-image.pdf ──\n")) << result.out;
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 11); // one report only
    EXPECT_EQ(result.err, "error: Could not open notes.pdf: unable to find trailer dictionary while recovering damaged file.\n");

    result = test::runProcess(
        QUILLET_BINARY,
        {"info", test::corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf").string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "error: Incorrect password.\n");
}

TEST(InfoCommand, JsonHasOneObjectPerFile) {
    const std::string first = test::corpus("009-pdflatex-geotopo/GeoTopo-komprimiert.pdf").string();
    const std::string second = test::corpus("025-attachment/with-attachment.pdf").string();
    const auto result = test::runProcess(QUILLET_BINARY, {"info", "--json", first, second});
    ASSERT_EQ(result.status, 0) << result.err;
    std::istringstream lines(result.out);
    std::string line;
    std::vector<nlohmann::json> objects;
    while (std::getline(lines, line)) {
        objects.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects[0]["file"], first);
    EXPECT_EQ(objects[0]["pageCount"], 117);
    EXPECT_EQ(objects[0]["imageCount"], 10);
    EXPECT_EQ(objects[0]["pages"].size(), 117u);
    EXPECT_EQ(objects[1]["attachmentCount"], 1);
    EXPECT_EQ(objects[1]["recommendations"].back()["id"], "security");
}

// Font names in a legacy encoding (GBK, as Chinese producers write them) or in no encoding at all
// come out of info --json as valid text: decoded where the bytes say how, replaced otherwise.
TEST(InfoCommand, JsonDecodesOrReplacesNamesThatAreNotUTF8) {
    test::TempDir dir;
    test::PDFBuilder builder;
    builder.addPage()
        .text("a", 72, 720, 12, "\xBA\xDA\xCC\xE5")
        .text("b", 72, 700, 12, "Caf\xE9");
    const auto file = dir / "gbk.pdf";
    builder.write(file);
    const auto result = test::runProcess(QUILLET_BINARY, {"info", "--json", file.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto fonts = nlohmann::json::parse(result.out)["pages"][0]["fontNames"];
    EXPECT_EQ(fonts, nlohmann::json::array({"Caf\uFFFD", "黑体"}));
}

} // namespace
} // namespace quillet
