// Cleaning, judged by programs other than ours: exiftool, pdfinfo, qpdf and pdftoppm look at the
// written files, and the object graph is walked straight through qpdf.
#include "engines/PDFMetadataEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "model/RawValue.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;

const std::vector<std::string> leakedKeys{"/Metadata", "/PieceInfo", "/Thumb",        "/AA",
                                          "/JS",       "/EF",        "/EmbeddedFiles"};

QPDFObjectHandle parse(const std::string& text) {
    return QPDFObjectHandle::parse(text);
}

void addAnnotation(PDFBuilder::Page& page, const std::string& annotation) {
    page.object().getKey("/Annots").appendItem(parse(annotation));
}

// A document that carries every kind of trace a cleaner must remove, on top of what it shows:
// body text, a filled field, a field hidden from view, and a second, rotated page.
fs::path tracedDocument(const TempDir& dir) {
    PDFBuilder b;
    auto& page = b.addPage(612, 792);
    page.text("Body", 72, 500, 24).image({.width = 8, .height = 8}, 300, 300, 100, 100);
    page.link("https://example.org/").textField("name", "Alice Example");
    page.textField("secret", "Hidden Value");
    page.object().getKey("/Annots").getArrayItem(2).replaceKey("/F", parse("2"));
    addAnnotation(page, "<< /Type /Annot /Subtype /Link /Rect [300 700 400 720] "
                        "/A << /S /JavaScript /JS (app.alert(1)) >> >>");
    addAnnotation(page, "<< /Type /Annot /Subtype /FileAttachment /Rect [300 650 320 670] /FS "
                        "<< /Type /Filespec /F (a.txt) /EF << >> >> >>");
    auto& qpdf = b.qpdf();
    auto embedded = qpdf.newStream("attached bytes");
    embedded.getDict().replaceKey("/Type", parse("/EmbeddedFile"));
    page.object().getKey("/Annots").getArrayItem(4).getKey("/FS").getKey("/EF").replaceKey(
        "/F", embedded);
    auto packet = qpdf.newStream("<x:xmpmeta>page packet</x:xmpmeta>");
    page.object().replaceKey("/Metadata", packet);
    page.object().replaceKey("/PieceInfo", parse("<< /Maker << /Private (draft 7) >> >>"));
    page.object().replaceKey("/Thumb", qpdf.newStream("thumbnail"));
    page.object().replaceKey("/AA", parse("<< /O << /S /JavaScript /JS (track()) >> >>"));
    auto image = page.object().getKey("/Resources").getKey("/XObject").getKey("/Im1");
    image.getDict().replaceKey("/Metadata", qpdf.newStream("<x:xmpmeta>camera</x:xmpmeta>"));
    b.addPage(842, 595).rotate(90).text("Second");
    b.info("Title", "Quarterly").info("Author", "Jane Roe").info("Creator", "Writer 3");
    b.info("Producer", "Maker 1.0").infoBytes("CreationDate", "D:20240131120000Z");
    b.xmp("<x:xmpmeta><dc:creator>Jane Roe</dc:creator></x:xmpmeta>");
    b.attachment("data.csv", "a,b").javascript("hello", "app.alert(2)");
    b.openActionJavaScript("app.alert(3)");
    return b.write(dir / "traced.pdf");
}

std::vector<double> progressOf(const fs::path& input, const fs::path& output, CleanPreset preset,
                               const PDFMetadataEngine::CancellationTest& cancel = {}) {
    std::vector<double> seen;
    PDFMetadataEngine::clean(
        input, output, preset, [&](double f) { seen.push_back(f); }, cancel);
    return seen;
}

void expectNoTraces(const fs::path& file, const std::string& context) {
    SCOPED_TRACE(context);
    const auto graph = test::inspectObjectGraph(file);
    for (const auto& key : leakedKeys) {
        EXPECT_FALSE(graph.keys.contains(key)) << key;
    }
    EXPECT_FALSE(graph.kinds.contains("/JavaScript"));
    EXPECT_FALSE(graph.kinds.contains("/FileAttachment"));
    EXPECT_FALSE(graph.streamTypes.contains("/EmbeddedFile"));
    EXPECT_FALSE(graph.trailerHasInfo);
    const auto exif = test::runTool("exiftool", {"-a", "-G1", file.string()});
    ASSERT_EQ(exif.status, 0) << exif.err;
    for (const char* field :
         {"Author", "Creator", "Producer", "Title", "Create Date", "Modify Date", "XMP"}) {
        EXPECT_EQ(exif.out.find(field), std::string::npos) << exif.out;
    }
    const auto info = test::runTool("pdfinfo", {"-meta", file.string()});
    ASSERT_EQ(info.status, 0) << info.err;
    for (const char* field :
         {"Title:", "Author:", "Creator:", "Producer:", "CreationDate:", "ModDate:", "xmpmeta"}) {
        EXPECT_EQ(info.out.find(field), std::string::npos) << info.out;
    }
    EXPECT_TRUE(test::qpdfChecks(file));
}

class CleanPresetTest : public testing::TestWithParam<CleanPreset> {};

TEST_P(CleanPresetTest, LeavesNoTraceForIndependentToolsAndANewDocumentID) {
    TempDir dir;
    const auto input = tracedDocument(dir);
    const std::string before = test::readFile(input);
    const auto output = dir / "out.pdf";
    const auto traced = test::inspectObjectGraph(input);
    for (const auto& key : leakedKeys) {
        ASSERT_TRUE(traced.keys.contains(key)) << "the fixture lacks " << key;
    }

    const PDFMetadataInfo removed = PDFMetadataEngine::clean(input, output, GetParam());

    EXPECT_EQ(removed.title, "Quarterly");
    EXPECT_EQ(removed.author, "Jane Roe");
    EXPECT_EQ(removed.producer, "Maker 1.0");
    EXPECT_TRUE(removed.creationDate);
    EXPECT_EQ(test::readFile(input), before);
    expectNoTraces(output, "traced document");
    EXPECT_EQ(test::pageWidths(output), (std::vector<int>{612, 842}));

    // Cleaned again, in place: a checked result replaces the input, with an ID of its own.
    PDFMetadataEngine::clean(input, input, GetParam());
    expectNoTraces(input, "replaced input");
    EXPECT_EQ(test::fileNames(dir.path()), (std::vector<std::string>{"out.pdf", "traced.pdf"}));
    const auto first = test::inspectObjectGraph(output).documentID;
    ASSERT_EQ(first.size(), 2u);
    EXPECT_NE(first[0], traced.documentID.at(0));
    EXPECT_NE(first[1], traced.documentID.at(1));
    EXPECT_NE(test::inspectObjectGraph(input).documentID, first);
}

TEST_P(CleanPresetTest, PassesTheChecksOnRealWorldFiles) {
    TempDir dir;
    for (const char* file :
         {"020-xmp/output_with_metadata_pymupdf.pdf", "025-attachment/with-attachment.pdf",
          "024-annotations/annotated_pdf.pdf", "010-pdflatex-forms/pdflatex-forms.pdf",
          "012-libreoffice-form/libreoffice-form.pdf", "021-pdfa/crazyones-pdfa.pdf"}) {
        const auto output = dir / "out.pdf";
        PDFMetadataEngine::clean(test::corpus(file), output, GetParam());
        expectNoTraces(output, file);
        EXPECT_EQ(test::pageWidths(output).size(), test::pageWidths(test::corpus(file)).size())
            << file;
    }
}

INSTANTIATE_TEST_SUITE_P(Presets, CleanPresetTest,
                         testing::Values(CleanPreset::safe, CleanPreset::privacy,
                                         CleanPreset::flattenAndClean),
                         [](const auto& info) { return std::string(rawValue(info.param)); });

TEST(PDFMetadataEngineTest, SafeKeepsThePagesAnnotationsButNotTheForm) {
    TempDir dir;
    PDFMetadataEngine::clean(tracedDocument(dir), dir / "out.pdf", CleanPreset::safe);
    const auto graph = test::inspectObjectGraph(dir / "out.pdf");
    EXPECT_TRUE(graph.kinds.contains("/Link"));
    EXPECT_TRUE(graph.kinds.contains("/Widget"));
    EXPECT_FALSE(graph.keys.contains("/AcroForm"));
    EXPECT_FALSE(graph.keys.contains("/OpenAction"));
}

// The field region of the n-th annotation the builder stacks down the left side, in points from
// the top of a 792-point page: where its 12-point value text is drawn.
struct FieldRegion {
    double top;
    double bottom;
};
FieldRegion fieldText(int stackIndex) {
    const double lowerEdge = 730 - 40.0 * stackIndex;
    return {792 - (lowerEdge + 24), 792 - (lowerEdge + 6)};
}

int darkIn(const test::GrayPage& page, FieldRegion region) {
    return page.darkPixels(36, region.top, 236, region.bottom, 72);
}

TEST(PDFMetadataEngineTest, FlattenBurnsWhatWasVisibleAndDropsEverythingInteractive) {
    TempDir dir;
    const auto input = tracedDocument(dir);
    PDFMetadataEngine::clean(input, dir / "flat.pdf", CleanPreset::flattenAndClean);
    const auto graph = test::inspectObjectGraph(dir / "flat.pdf");
    EXPECT_FALSE(graph.keys.contains("/Annots"));
    EXPECT_FALSE(graph.keys.contains("/AcroForm"));
    EXPECT_FALSE(graph.kinds.contains("/Widget"));

    const auto before = test::renderGray(input);
    const auto after = test::renderGray(dir / "flat.pdf");
    ASSERT_GT(darkIn(before, fieldText(1)), 30) << "the fixture's field shows no value";
    EXPECT_GT(darkIn(after, fieldText(1)), darkIn(before, fieldText(1)) * 9 / 10);
    EXPECT_EQ(darkIn(after, fieldText(2)), 0) << "a hidden field was burnt in";
    EXPECT_EQ(after.darkPixels(72, 270, 200, 300, 72), before.darkPixels(72, 270, 200, 300, 72));
}

TEST(PDFMetadataEngineTest, ReportsProgressAndStopsWhenCancelled) {
    TempDir dir;
    const auto input = test::numberedPDF(dir / "three.pdf", 3);
    EXPECT_EQ(progressOf(input, dir / "s.pdf", CleanPreset::safe), (std::vector<double>{0.5, 1}));
    EXPECT_EQ(progressOf(input, dir / "f.pdf", CleanPreset::flattenAndClean),
              (std::vector<double>{1.0 / 3, 2.0 / 3, 1}));
    int asked = 0;
    EXPECT_THROW(
        progressOf(input, dir / "c.pdf", CleanPreset::flattenAndClean, [&] { return ++asked > 1; }),
        CancellationError);
    EXPECT_FALSE(fs::exists(dir / "c.pdf"));
}

fs::path copyOfEncrypted(const TempDir& dir) {
    return dir.write("locked.pdf", test::readFile(test::corpus("005-libreoffice-writer-password/"
                                                               "libreoffice-writer-password.pdf")));
}

using Case = PDFCoreError::Case;

TEST(PDFMetadataEngineTest, BadInputFailsClearlyAndWritesNothing) {
    const auto missing = [](const TempDir& d) { return d / "gone.pdf"; };
    const auto junk = [](const TempDir& d) { return d.write("junk.pdf", "junk"); };
    const struct {
        std::function<fs::path(const TempDir&)> make;
        CleanPreset preset;
        Case failure;
        std::string message;
    } cases[] = {
        {missing, CleanPreset::safe, Case::fileNotFound, "File not found: gone.pdf"},
        {missing, CleanPreset::flattenAndClean, Case::cannotOpen, "Could not open gone.pdf: No such file or directory."},
        {junk, CleanPreset::privacy, Case::cannotOpen, "Could not open junk.pdf: unable to find trailer dictionary while recovering damaged file."},
        {copyOfEncrypted, CleanPreset::safe, Case::wrongPassword, "Incorrect password."},
        {copyOfEncrypted, CleanPreset::flattenAndClean, Case::wrongPassword, "Incorrect password."},
    };
    for (const auto& c : cases) {
        TempDir dir;
        const auto input = c.make(dir);
        SCOPED_TRACE(input.filename().string() + " " + std::string(rawValue(c.preset)));
        const auto output = dir / "out/cleaned.pdf";
        fs::create_directories(output.parent_path());
        const auto error =
            test::caughtCoreError([&] { PDFMetadataEngine::clean(input, output, c.preset); });
        EXPECT_EQ(error.errorCase(), c.failure);
        EXPECT_EQ(error.what(), c.message);
        EXPECT_TRUE(fs::is_empty(output.parent_path()));
    }
}

} // namespace
} // namespace quillet
