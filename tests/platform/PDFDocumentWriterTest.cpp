// Writing and damaged input of PDFDocument.
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
