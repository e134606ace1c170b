#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/PDFDocument.hpp"
#include "support/CaughtError.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

namespace quillet {
namespace {

using test::ImageSpec;
using test::PDFBuilder;

PDFAnalysis analyzeBuilt(PDFBuilder& builder) {
    test::TempDir dir;
    return PDFAnalysisEngine::analyze(builder.write(dir / "fixture.pdf"));
}

// A form XObject /Fx on the page, drawing `content` with no resources of its own.
void formWithoutResources(PDFBuilder::Page& page, const std::string& content) {
    auto form = QPDFObjectHandle::newStream(page.object().getOwningQPDF(), content);
    form.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    form.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    form.getDict().replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 100 100]"));
    page.object().getKey("/Resources").replaceKey("/XObject", QPDFObjectHandle::parse("<< >>"));
    page.object().getKey("/Resources").getKey("/XObject").replaceKey("/Fx", form);
    page.content("/Fx Do");
}

TEST(AnalyzePage, CountsTextImagesAndFonts) {
    const ImageSpec square{.width = 200, .height = 200};
    const struct {
        const char* name;
        std::function<void(PDFBuilder::Page&)> build;
        int textOperators;
        std::vector<double> imageDPIs;
        std::vector<std::string> fonts;
    } cases[] = {
        // clang-format off
        {"AllFourTextOperators",
         [](auto& p) { p.content("BT (a) Tj [(b) 5 (c)] TJ (d) ' 1 2 (e) \" ET"); }, 4, {}, {}},
        {"ImageByCmUsesScaleOfAAndC",
         [](auto& p) { p.image({.width = 1000, .height = 10}, 0, 0, 200, 100); }, 0, {360}, {}},
        // a and c of the CTM, not a and b: a rotated placement [0 200 -200 0] reads as 0.01.
        {"RotatedPlacementUsesAAndCDeliberately",
         [](auto& p) {
             p.content("q 0 100 -100 0 300 300 cm");
             p.image({.width = 100, .height = 100}, 0, 0, 1, 1).content("Q");
         }, 0, {72}, {}},
        {"NestedCmAndSavedStates",
         [](auto& p) {
             p.content("q 2 0 0 2 0 0 cm");
             p.image({.width = 300, .height = 300}, 0, 0, 150, 150).content("Q"); // 72 DPI
             p.image({.width = 300, .height = 300}, 0, 0, 150, 150);              // 144 DPI
         }, 0, {72, 144}, {}},
        {"InlineImagesAreNotCounted",
         [](auto& p) {
             p.inlineImage(16, 16, ImageSpec::Color::rgb, 0, 0, 16, 16).content("BT (x) Tj ET");
         }, 1, {}, {}},
        {"SubsetPrefixRemovedAndSorted",
         [](auto& p) {
             p.text("a", 72, 700, 12, "ABCDEF+Times-Roman");
             p.text("b", 72, 680, 12, "Helvetica");
             p.text("c", 72, 660, 12, "ABCDEf+Odd");
         }, 3, {}, {"ABCDEf+Odd", "Helvetica", "Times-Roman"}},
        {"ImageInsideNestedForms",
         [&](auto& p) { p.formChain(5, square, 0, 0, 100, 100); }, 0, {144}, {}},
        {"FormsDeeperThanTheBoundAreNotFollowed",
         [&](auto& p) { p.formChain(40, square, 0, 0, 100, 100); }, 0, {}, {}},
        {"FormThatDrawsItselfEnds",
         [](auto& p) { p.cyclicForms(1).content("BT (x) Tj ET"); }, 1, {}, {}},
        {"FormWithoutOwnResourcesContributesNothing",
         [](auto& p) { formWithoutResources(p.text("visible"), "BT (hidden) Tj ET"); },
         1, {}, {"Helvetica"}},
        {"UnknownXObjectAndBrokenOperandsAreSkipped",
         [](auto& p) { p.content("/Missing Do 1 2 cm (x) Tf Do BT (y) Tj ET"); }, 1, {}, {}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PDFBuilder builder;
        c.build(builder.addPage(612, 792));
        const auto analysis = analyzeBuilt(builder);
        ASSERT_EQ(analysis.pages.size(), 1u);
        const auto& page = analysis.pages[0];
        EXPECT_EQ(page.textOperatorCount, c.textOperators);
        EXPECT_EQ(page.hasText, c.textOperators > 0);
        ASSERT_EQ(page.images.size(), c.imageDPIs.size());
        for (std::size_t i = 0; i < c.imageDPIs.size(); ++i) {
            EXPECT_NEAR(page.images[i].effectiveDPI, c.imageDPIs[i], 1e-6) << i;
        }
        EXPECT_EQ(page.fontNames, c.fonts);
        EXPECT_DOUBLE_EQ(page.widthPoints, 612);
        EXPECT_DOUBLE_EQ(page.heightPoints, 792);
    }
}

TEST(Analyze, DocumentLevelCounts) {
    PDFBuilder builder;
    builder.addPage()
        .link("https://example.org/")
        .launch("other.pdf")
        .textNote("a note")
        .textField("name", "Ada")
        .signatureField("sig");
    builder.addPage(842, 595).text("second");
    builder.attachment("a.txt", "one").attachment("b.txt", "two").javascript("js", "app.alert(1)");
    builder.info("Author", "Ada").info("Title", "T");
    const auto analysis = analyzeBuilt(builder);
    EXPECT_EQ(analysis.pageCount, 2);
    EXPECT_EQ(analysis.annotationCount, 5);
    EXPECT_EQ(analysis.externalLinkCount, 2); // the URI and the launched file
    EXPECT_EQ(analysis.signatureCount, 1);
    EXPECT_EQ(analysis.formFieldCount, 2);
    EXPECT_EQ(analysis.attachmentCount, 2);
    EXPECT_TRUE(analysis.javascriptDetected);
    EXPECT_FALSE(analysis.isEncrypted);
    EXPECT_EQ(analysis.metadata.author, "Ada");
    EXPECT_TRUE(analysis.pdfVersion.has_value());
}

TEST(Analyze, FailuresNameTheProblem) {
    test::TempDir dir;
    const auto text = dir.write("notes.pdf", "just some text, not a PDF\n");
    EXPECT_STREQ(test::caughtCoreError([&] { PDFAnalysisEngine::analyze(text); }).what(),
                 "Could not open notes.pdf: unable to find trailer dictionary while recovering damaged file.");
    EXPECT_EQ(test::caughtCase([&] { PDFAnalysisEngine::analyze(test::lockedPDF(dir / "l.pdf")); }),
              PDFCoreError::Case::wrongPassword);
    const auto analysis = PDFAnalysisEngine::analyze(test::lockedPDF(dir / "owner.pdf", ""));
    EXPECT_TRUE(analysis.isEncrypted);
    EXPECT_EQ(PDFAnalysisEngine::recommendations(analysis).at(0).id, "unprotect");
}

PDFImageInfo imageAt(double dpi, std::int64_t bytes, int pixels = 1000) {
    PDFImageInfo image;
    image.effectiveDPI = dpi;
    image.estimatedBytes = bytes;
    image.pixelWidth = image.pixelHeight = pixels;
    return image;
}

PDFAnalysis withPages(std::int64_t fileSize, std::vector<PDFPageAnalysis> pages) {
    PDFAnalysis analysis;
    analysis.fileSize = fileSize;
    analysis.pageCount = static_cast<int>(pages.size());
    analysis.pages = std::move(pages);
    return analysis;
}

PDFPageAnalysis scannedPage(double dpi, std::int64_t bytes) {
    PDFPageAnalysis page;
    page.widthPoints = 612;
    page.heightPoints = 792;
    page.images = {imageAt(dpi, bytes)};
    return page;
}

TEST(Recommendations, RulesInOrderWithTheirThresholds) {
    const auto ids = [](const PDFAnalysis& analysis) {
        std::vector<std::string> out;
        for (const auto& action : PDFAnalysisEngine::recommendations(analysis)) {
            out.push_back(action.id);
        }
        return out;
    };
    auto big = withPages(1'000'001, {scannedPage(181, 500'000)});
    EXPECT_EQ(ids(big), (std::vector<std::string>{"compress", "ocr"}));
    big.fileSize = 1'000'000;
    EXPECT_EQ(ids(big), (std::vector<std::string>{"ocr"}));
    auto low = withPages(5'000'000, {scannedPage(180, 500'000)});
    EXPECT_EQ(ids(low), (std::vector<std::string>{"ocr"}));

    auto all = withPages(2'000'000, {scannedPage(300, 1'000'000)});
    all.isEncrypted = true;
    all.metadata.producer = "x";
    all.javascriptDetected = true;
    const auto actions = PDFAnalysisEngine::recommendations(all);
    ASSERT_EQ(actions.size(), 5u);
    EXPECT_EQ(actions[0].id, "unprotect");
    EXPECT_EQ(actions[1].detail, "1.91 MB → ~1.30 MB · avg image 300 DPI");
    EXPECT_FALSE(actions[2].isComingSoon);
    EXPECT_EQ(actions[2].operation, PDFOperationKind::ocr);
    EXPECT_EQ(actions[2].detail, "Make searchable (OCR)");
    EXPECT_EQ(actions[3].operation, PDFOperationKind::clean);
    EXPECT_EQ(actions[4].detail, "0 attachment(s), JavaScript");

    PDFAnalysis dated;
    dated.metadata.title = "T";
    dated.metadata.creationDate = std::chrono::system_clock::now();
    dated.metadata.author = "";
    EXPECT_TRUE(ids(dated).empty());
}

} // namespace
} // namespace quillet
