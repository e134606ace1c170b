// Writing, attributes and damaged input of PDFDocument.
#include "platform/PDFDocument.hpp"

#include "support/PDFBuilder.hpp"
#include "support/Process.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using test::Damage;
using test::PDFBuilder;
using test::TempDir;

// The real qpdf program, as an independent judge of what was written.
test::ProcessResult qpdf(std::vector<std::string> arguments) {
    return test::runProcess("/usr/bin/qpdf", arguments);
}

TEST(PDFDocumentWriterTest, AttributesAreDecodedFromPDFDocEncodingAndUTF16) {
    PDFBuilder builder;
    builder.addPage();
    builder.info("Title", "Quarterly")
        .info("Author", "Zoë 東京")
        .infoBytes("Subject", "\x80 and \xe9")
        .infoBytes("Keywords", std::string("\xfe\xff\x00\x41\x00\xe9", 6))
        .info("Producer", "")
        .infoBytes("CreationDate", "D:20240131120000+05'30'");
    builder.qpdf().getTrailer().getKey("/Info").replaceKey("/Creator",
                                                           QPDFObjectHandle::newInteger(7));
    const auto attributes = PDFDocument::open(builder.bytes(), "info").attributes();
    EXPECT_EQ(attributes.title, "Quarterly");
    EXPECT_EQ(attributes.author, "Zoë 東京");
    EXPECT_EQ(attributes.subject, "• and é");
    EXPECT_EQ(attributes.keywords, "Aé");
    EXPECT_EQ(attributes.producer, "") << "an empty text is kept at this level";
    EXPECT_EQ(attributes.creator, std::nullopt) << "not a string";
    EXPECT_EQ(attributes.creationDate, "D:20240131120000+05'30'");
    EXPECT_EQ(attributes.modificationDate, std::nullopt);
}

TEST(PDFDocumentWriterTest, SetAttributesReplacesTheInfoDictionary) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    builder.info("Title", "Old").info("Custom", "dropped");
    auto document = PDFDocument::open(builder.bytes(), "info");
    PDFDocumentAttributes attributes;
    attributes.title = "Nouveau – 新";
    attributes.modificationDate = "D:20200101000000Z";
    document.setAttributes(attributes);
    document.write(dir / "out.pdf");
    auto reopened = PDFDocument::open(dir / "out.pdf");
    EXPECT_EQ(reopened.attributes(), attributes);
    auto info = reopened.qpdf().getTrailer().getKey("/Info");
    EXPECT_FALSE(info.hasKey("/Custom"));

    reopened.setAttributes({});
    EXPECT_FALSE(reopened.qpdf().getTrailer().hasKey("/Info"));
}

// Over an earlier file and over the document's own source: the result is complete and nothing
// else is left in the folder.
TEST(PDFDocumentWriterTest, WriteIsAtomicAndCanReplaceTheSourceFile) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage(100, 100).image({.width = 64, .height = 64}, 0, 0, 100, 100);
    builder.addPage(200, 100);
    const auto path = dir.write("out.pdf", "old content");
    PDFDocument::open(builder.bytes(), "new").write(path);
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"out.pdf"});
    EXPECT_NE(test::readFile(path).find("/ObjStm"), std::string::npos)
        << "object streams are generated";

    auto document = PDFDocument::open(path);
    document.removePage(1);
    document.write(path);
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"out.pdf"});
    auto check = qpdf({"--check", path});
    EXPECT_EQ(check.status, 0) << check.out;
    EXPECT_NE(check.out.find("No syntax or stream encoding errors"), std::string::npos);
    EXPECT_EQ(PDFDocument::open(path).pageCount(), 1);
}

TEST(PDFDocumentWriterTest, WriteIntoAMissingFolderFailsNamingTheDestination) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    auto document = PDFDocument::open(builder.bytes(), "doc");
    const auto destination = dir / "missing" / "out.pdf";
    try {
        document.write(destination);
        FAIL() << "no error";
    } catch (const PDFDocumentError& error) {
        EXPECT_EQ(error.kind(), PDFDocumentError::Kind::writeFailed);
        EXPECT_NE(std::string(error.what()).find(destination.string()), std::string::npos);
    }
    EXPECT_TRUE(test::fileNames(dir.path()).empty());
}

TEST(PDFDocumentWriterTest, EncryptedWriteNeedsThePasswordToOpen) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("secret");
    builder.info("Title", "Hidden");
    const auto destination = dir / "protected.pdf";
    PDFDocument::open(builder.bytes(), "doc")
        .write(destination, {.user = "ü-user", .owner = "own"});
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"protected.pdf"});

    auto document = PDFDocument::open(destination);
    EXPECT_TRUE(document.isLocked());
    EXPECT_FALSE(document.unlock("own-wrong"));
    EXPECT_TRUE(document.unlock("ü-user"));
    EXPECT_EQ(document.attributes().title, "Hidden");
    auto byOwner = PDFDocument::open(destination);
    EXPECT_TRUE(byOwner.unlock("own"));

    // The method (AES-256) and which password is whose: PDFSecurityEngineTest, through qpdf.
    EXPECT_EQ(qpdf({"--requires-password", destination}).status, 0);
    EXPECT_EQ(qpdf({"--check", "--password=ü-user", destination}).status, 0);
}

TEST(PDFDocumentWriterTest, PlainWriteOfAnUnlockedFileRemovesTheEncryption) {
    TempDir dir;
    auto document = PDFDocument::open(
        test::corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf"));
    ASSERT_TRUE(document.unlock("openpassword"));
    document.write(dir / "open.pdf");
    auto reopened = PDFDocument::open(dir / "open.pdf");
    EXPECT_FALSE(reopened.isEncrypted());
    EXPECT_EQ(reopened.pageCount(), 1);
    EXPECT_EQ(qpdf({"--requires-password", dir / "open.pdf"}).status, 2);
}

TEST(PDFDocumentWriterTest, DamagedInputOpensWithRepairOrFailsNamingTheFile) {
    const std::pair<Damage, bool> damageAndRepairable[] = {
        {Damage::truncated, false},       {Damage::missingXrefTable, true},
        {Damage::wrongXrefOffsets, true}, {Damage::junkBeforeHeader, true},
        {Damage::zeroBytes, false},       {Damage::danglingPageTree, true}};
    for (const auto& [damage, repairable] : damageAndRepairable) {
        SCOPED_TRACE(static_cast<int>(damage));
        TempDir dir;
        PDFBuilder builder;
        for (int i = 0; i < 3; ++i) {
            builder.addPage(100 + i, 200).text("page");
        }
        const auto path = builder.write(dir / "broken.pdf", damage);
        if (repairable) {
            auto document = PDFDocument::open(path);
            EXPECT_EQ(document.pageCount(), 3);
            EXPECT_EQ(document.page(2).mediaBox().width, 102);
            document.write(dir / "repaired.pdf");
            EXPECT_EQ(qpdf({"--check", dir / "repaired.pdf"}).status, 0);
            continue;
        }
        try {
            PDFDocument::open(path);
            ADD_FAILURE() << "opened a file beyond repair";
        } catch (const PDFDocumentError& error) {
            EXPECT_EQ(error.kind(), PDFDocumentError::Kind::cannotOpen);
            EXPECT_NE(std::string(error.what()).find("broken.pdf"), std::string::npos)
                << error.what();
        }
    }
    TempDir dir;
    EXPECT_THROW(PDFDocument::open(dir / "absent.pdf"), PDFDocumentError);
    EXPECT_THROW(PDFDocument::open(std::string("not a pdf at all"), "memory"), PDFDocumentError);
}

} // namespace
} // namespace quillet
