#include "platform/PDFDocument.hpp"

#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/Buffer.hh>

namespace quillet {
namespace {

using test::PDFBuilder;
using test::TempDir;

const std::string encryptedCorpus =
    "005-libreoffice-writer-password/libreoffice-writer-password.pdf";

// Pages told apart by their widths: 100, 200, ...
std::filesystem::path numberedPages(const TempDir& dir, const std::string& name, int count) {
    return test::numberedPDF(dir / name, count, 100, 100, 500);
}

TEST(PDFDocumentTest, EncryptedFileOpensLockedUntilAWrongPasswordIsReplacedByTheRightOne) {
    TempDir dir;
    auto document = PDFDocument::open(test::corpus(encryptedCorpus));
    EXPECT_TRUE(document.isLocked());
    EXPECT_TRUE(document.isEncrypted());
    EXPECT_EQ(document.pageCount(), 0);
    EXPECT_THROW(document.page(0), std::out_of_range);
    EXPECT_EQ(document.attributes(), PDFDocumentAttributes{});
    EXPECT_THROW(document.qpdf(), PDFDocumentError);
    try {
        document.write(dir / "out.pdf");
        ADD_FAILURE() << "a locked document was written";
    } catch (const PDFDocumentError& error) {
        EXPECT_EQ(error.kind(), PDFDocumentError::Kind::locked);
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "out.pdf"));

    EXPECT_FALSE(document.unlock("permission"));
    EXPECT_TRUE(document.isLocked());
    EXPECT_TRUE(document.unlock("openpassword"));
    EXPECT_FALSE(document.isLocked());
    EXPECT_TRUE(document.isEncrypted());
    EXPECT_EQ(document.pageCount(), 1);
    EXPECT_EQ(document.password(), "openpassword");

    auto byOwner = PDFDocument::open(test::corpus(encryptedCorpus));
    ASSERT_TRUE(byOwner.unlock("permissionpassword"));
    EXPECT_EQ(byOwner.pageCount(), 1);
    EXPECT_EQ(byOwner.password(), "permissionpassword");
}

TEST(PDFDocumentTest, MediaBoxIsInheritedAndNormalised) {
    PDFBuilder builder;
    builder.addPage().mediaBox(612, 792, 0, 0);
    builder.addPage().mediaBox(10, 20, 110, 220);
    builder.addPage().object().removeKey("/MediaBox");
    builder.addPage().mediaBox(0, 0, 0, 792);
    builder.inheritedMediaBox(300, 400);
    auto document = PDFDocument::open(builder.bytes(), "boxes");
    EXPECT_EQ(document.page(0).mediaBox(), (PDFRect{0, 0, 612, 792}));
    EXPECT_EQ(document.page(1).mediaBox(), (PDFRect{10, 20, 100, 200}));
    EXPECT_EQ(document.page(2).mediaBox(), (PDFRect{0, 0, 300, 400}));
    // A box without area is read as viewers show it: US Letter.
    EXPECT_EQ(document.page(3).mediaBox(), (PDFRect{0, 0, 612, 792}));
}

TEST(PDFDocumentTest, SetRotationTakesDegreesModulo360AndSurvivesWriting) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    builder.addPage().rotate(90);
    auto document = PDFDocument::open(builder.write(dir / "in.pdf"));
    auto page = document.page(0);
    for (const auto& [set, read] : std::vector<std::pair<int, int>>{
             {0, 0}, {90, 90}, {180, 180}, {270, 270}, {360, 0}, {450, 90}, {-450, 270}}) {
        page.setRotation(set);
        EXPECT_EQ(page.rotation(), read) << "set " << set;
    }
    EXPECT_THROW(page.setRotation(45), std::invalid_argument);
    EXPECT_EQ(page.rotation(), 270);
    document.page(1).setRotation(-180);
    document.write(dir / "out.pdf");
    auto reopened = PDFDocument::open(dir / "out.pdf");
    EXPECT_EQ(reopened.page(0).rotation(), 270);
    EXPECT_EQ(reopened.page(1).rotation(), 180);
}

TEST(PDFDocumentTest, CopiedPageKeepsInheritedRotationAnnotationsAndContent) {
    PDFBuilder builder;
    builder.addPage().text("copied text").link("https://example.org/a");
    builder.inheritedRotation(90);
    auto source = PDFDocument::open(builder.bytes(), "source");
    auto target = PDFDocument::empty();
    target.insertPageCopy(source, 0, 0);
    auto copy = target.page(0);
    EXPECT_EQ(copy.rotation(), 90);
    ASSERT_EQ(copy.annotations().size(), 1u);
    EXPECT_EQ(copy.annotations()[0].url, "https://example.org/a");
    // Written to memory twice: the second writing is as complete as the first.
    target.dataRepresentation();
    auto reopened = PDFDocument::open(target.dataRepresentation(), "copy");
    EXPECT_EQ(reopened.path(), std::filesystem::path());
    auto content = reopened.page(0).object().getKey("/Contents").getStreamData();
    EXPECT_NE(std::string(reinterpret_cast<const char*>(content->getBuffer()), content->getSize())
                  .find("(copied text) Tj"),
              std::string::npos);
    EXPECT_EQ(reopened.page(0).rotation(), 90);
}

TEST(PDFDocumentTest, BadIndicesAreRefused) {
    TempDir dir;
    auto document = PDFDocument::open(numberedPages(dir, "in.pdf", 2));
    auto source = PDFDocument::open(numberedPages(dir, "source.pdf", 1));
    EXPECT_THROW(document.page(2), std::out_of_range);
    EXPECT_THROW(document.page(-1), std::out_of_range);
    EXPECT_THROW(document.insertPageCopy(source, 1, 0), std::out_of_range);
    EXPECT_THROW(document.insertPageCopy(source, 0, 3), std::out_of_range);
    EXPECT_THROW(document.removePage(2), std::out_of_range);
    EXPECT_EQ(document.pageCount(), 2);
}

} // namespace
} // namespace quillet
