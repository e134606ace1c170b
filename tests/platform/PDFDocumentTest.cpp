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

std::vector<double> pageWidths(const PDFDocument& document) {
    std::vector<double> widths;
    for (int i = 0; i < document.pageCount(); ++i) {
        widths.push_back(document.page(i).mediaBox().width);
    }
    return widths;
}

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

// No password to give: an unencrypted file ignores one, a file with only an owner password opens.
TEST(PDFDocumentTest, UnencryptedAndOwnerOnlyFilesOpenUnlocked) {
    TempDir dir;
    auto plain = PDFDocument::open(numberedPages(dir, "plain.pdf", 2));
    EXPECT_FALSE(plain.isEncrypted());
    EXPECT_TRUE(plain.unlock("anything"));
    EXPECT_EQ(plain.password(), "");
    EXPECT_EQ(plain.pageCount(), 2);

    auto owned = PDFDocument::open(test::lockedPDF(dir / "owner-only.pdf", "", "secret"));
    EXPECT_FALSE(owned.isLocked());
    EXPECT_TRUE(owned.isEncrypted());
    EXPECT_EQ(owned.pageCount(), 1);
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

TEST(PDFDocumentTest, RotationInTheFileIsNormalisedAndInherited) {
    const std::pair<int, int> writtenAndRead[] = {{0, 0},     {90, 90},  {270, 270}, {-90, 270},
                                                  {540, 180}, {-720, 0}, {45, 0},    {100, 0}};
    PDFBuilder builder;
    for (const auto& [written, read] : writtenAndRead) {
        builder.addPage().rotate(written);
    }
    auto document = PDFDocument::open(builder.bytes(), "rotated");
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(document.page(i).rotation(), writtenAndRead[i].second) << writtenAndRead[i].first;
    }

    PDFBuilder inheriting;
    inheriting.addPage();
    inheriting.addPage().rotate(180);
    inheriting.inheritedRotation(90);
    auto inherited = PDFDocument::open(inheriting.bytes(), "inherited");
    EXPECT_EQ(inherited.page(0).rotation(), 90);
    EXPECT_EQ(inherited.page(1).rotation(), 180);
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

TEST(PDFDocumentTest, PagesCopiedFromAnotherDocumentLandAtTheirIndex) {
    TempDir dir;
    auto target = PDFDocument::open(numberedPages(dir, "target.pdf", 1));
    {
        auto source = PDFDocument::open(numberedPages(dir, "source.pdf", 3));
        target.insertPageCopy(source, 1, 0);
        target.insertPageCopy(source, 2, target.pageCount());
        target.insertPageCopy(source, 0, 1);
        EXPECT_EQ(source.pageCount(), 3);
    }
    EXPECT_EQ(pageWidths(target), (std::vector<double>{200, 100, 100, 300}));
    // The source is gone; its data must still be there for writing.
    target.write(dir / "merged.pdf");
    auto merged = PDFDocument::open(dir / "merged.pdf");
    EXPECT_EQ(pageWidths(merged), (std::vector<double>{200, 100, 100, 300}));
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

TEST(PDFDocumentTest, PageOfTheSameDocumentIsDuplicated) {
    TempDir dir;
    auto document = PDFDocument::open(numberedPages(dir, "in.pdf", 2));
    document.insertPageCopy(document, 0, 2);
    document.page(2).setRotation(90);
    EXPECT_EQ(pageWidths(document), (std::vector<double>{100, 200, 100}));
    EXPECT_EQ(document.page(0).rotation(), 0) << "the duplicate must be a page of its own";
    document.write(dir / "out.pdf");
    EXPECT_EQ(PDFDocument::open(dir / "out.pdf").pageCount(), 3);
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

TEST(PDFDocumentTest, RemovePageKeepsTheOthersInOrder) {
    TempDir dir;
    auto document = PDFDocument::open(numberedPages(dir, "in.pdf", 4));
    document.removePage(1);
    document.removePage(2);
    EXPECT_EQ(pageWidths(document), (std::vector<double>{100, 300}));
}

TEST(PDFDocumentTest, AnnotationsReportTypeAndWhereTheyLead) {
    PDFBuilder builder;
    builder.addPage()
        .textNote("remember")
        .link("https://example.org/x?a=1")
        .launch("run.sh")
        .textField("name", "Ada")
        .signatureField("approval");
    builder.addPage();
    auto document = PDFDocument::open(builder.bytes(), "annotated");
    const auto annotations = document.page(0).annotations();
    ASSERT_EQ(annotations.size(), 5u);
    const std::vector<std::pair<std::string, std::optional<std::string>>> expected = {
        {"Text", std::nullopt},   {"Link", "https://example.org/x?a=1"}, {"Link", "file:run.sh"},
        {"Widget", std::nullopt}, {"Signature", std::nullopt},
    };
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(annotations[i].type, expected[i].first) << i;
        EXPECT_EQ(annotations[i].url, expected[i].second) << i;
    }
    EXPECT_TRUE(document.page(1).annotations().empty());
}

} // namespace
} // namespace quillet
