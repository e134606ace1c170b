#include "engines/PDFDocumentEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/PDFBuilder.hpp"
#include "support/ScopedEnv.hpp"
#include "support/TempDir.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>

namespace quillet {
namespace {

using test::Damage;
using test::PDFBuilder;
using test::TempDir;

const std::string encryptedCorpus =
    "005-libreoffice-writer-password/libreoffice-writer-password.pdf";

// "N pages" when `open` gives a document, the words of the error when it throws.
std::string outcome(const std::function<PDFDocument()>& open) {
    try {
        return std::to_string(open().pageCount()) + " pages";
    } catch (const PDFCoreError& error) {
        return error.what();
    }
}

// `open` answers absent where `openUnlock` says why; `openCG` tells a missing file as one it
// cannot open. The password of an unencrypted file is not tested.
TEST(PDFDocumentEngineTest, OpenersOpenTheSameFilesAndSayWhyTheOthersFail) {
    TempDir dir;
    const auto locked = test::corpus(encryptedCorpus);
    const auto cut = PDFBuilder().write(dir / "cut.pdf", Damage::truncated);
    const struct {
        std::filesystem::path file;
        std::string password;
        std::string unlocked; // what openUnlock gives
        std::string cg;       // what openCG gives
    } cases[] = {
        {dir / "missing.pdf", "", "File not found: missing.pdf",
         "Could not open missing.pdf: No such file or directory."},
        {dir.write("junk.pdf", "no pdf here"), "",
         "Could not open junk.pdf: unable to find trailer dictionary while recovering damaged "
         "file.",
         "Could not open junk.pdf: unable to find trailer dictionary while recovering damaged "
         "file."},
        {cut, "",
         "Could not open cut.pdf: unable to find trailer dictionary while recovering damaged file.",
         "Could not open cut.pdf: unable to find trailer dictionary while recovering damaged "
         "file."},
        {locked, "", "Incorrect password.", "Incorrect password."},
        {locked, "openpassword", "1 pages", "1 pages"},
        {locked, "permissionpassword", "1 pages", "1 pages"},
        {test::numberedPDF(dir / "plain.pdf", 2), "wrong", "2 pages", "2 pages"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file.filename().string() + " with \"" + c.password + "\"");
        EXPECT_EQ(outcome([&] { return PDFDocumentEngine::openUnlock(c.file, c.password); }),
                  c.unlocked);
        EXPECT_EQ(outcome([&] { return PDFDocumentEngine::openCG(c.file, c.password); }), c.cg);
        const auto opened = PDFDocumentEngine::open(c.file, c.password);
        EXPECT_EQ(opened.has_value(), c.unlocked.ends_with(" pages"));
    }
    EXPECT_EQ(test::caughtCoreError([&] { PDFDocumentEngine::openUnlock(cut, ""); }).url(), cut);
    EXPECT_EQ(PDFDocumentEngine::openUnlock(locked, "openpassword").password(), "openpassword");
}

std::filesystem::path pages(const TempDir& dir, std::vector<std::array<double, 4>> boxes) {
    PDFBuilder builder;
    for (const auto& box : boxes) {
        builder.addPage().mediaBox(box[0], box[1], box[2], box[3]);
    }
    return builder.write(dir / "out.pdf");
}

std::filesystem::path locked(const TempDir& dir, const std::string& user) {
    return test::lockedPDF(dir / "locked.pdf", user);
}

// A one-page file whose font resource is named as producers wrote names before PDF 1.2 allowed
// # escapes (/F#1): qpdf warns when it reads it, and keeps the name as it is when it writes it.
std::filesystem::path strayHashName(const TempDir& dir) {
    const std::string content = "BT /F#1 12 Tf 20 100 Td (Stray) Tj ET";
    const std::vector<std::string> objects{
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 /A#1 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R "
        "/Resources << /Font << /F#1 5 0 R >> >> >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    std::string file = "%PDF-1.1\n";
    std::string table = "xref\n0 6\n0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        table += fmt::format("{:010} 00000 n \n", file.size());
        file += fmt::format("{} 0 obj\n{}\nendobj\n", i + 1, objects[i]);
    }
    file += fmt::format("{}trailer\n<< /Size 6 /Root 1 0 R >>\nstartxref\n{}\n%%EOF\n", table,
                        file.size());
    return dir.write("stray.pdf", file);
}

TEST(PDFDocumentEngineTest, ValidateOutputStopsAtTheFirstFailure) {
    const std::array<double, 4> letter{0, 0, 612, 792};
    const auto reopen = "Could not re-open the generated PDF.";
    const auto geometry = "First page has invalid geometry.";
    const struct {
        const char* name;
        std::function<std::filesystem::path(const TempDir&)> make;
        std::optional<int> expectedPageCount;
        std::string message; // "OK" when the output passes
    } cases[] = {
        // clang-format off
        {"missing", [](const TempDir& d) { return d / "absent.pdf"; }, 1, "Output file missing."},
        {"junk", [](const TempDir& d) { return d.write("j.pdf", "junk"); }, {}, reopen},
        {"needsPassword", [](const TempDir& d) { return locked(d, "u"); }, 1, reopen},
        {"fewerPages", [&](const TempDir& d) { return pages(d, {letter, letter}); }, 3,
         "Page count mismatch (2 vs 3)."},
        {"zeroWidth", [](const TempDir& d) { return pages(d, {{0, 0, 0, 792}}); }, 1, geometry},
        {"mismatchBeforeGeometry", [](const TempDir& d) { return pages(d, {{0, 0, 0, 792}}); }, 2,
         "Page count mismatch (1 vs 2)."},
        {"onlyFirstPageMatters", [&](const TempDir& d) { return pages(d, {letter, {0, 0, 0, 0}}); },
         2, "OK"},
        {"reversedCorners", [](const TempDir& d) { return pages(d, {{612, 792, 0, 0}}); }, 1, "OK"},
        {"noPagesNoExpectation", [](const TempDir& d) { return PDFBuilder().write(d / "e.pdf"); },
         {}, "OK"},
        {"ownerOnlyPassword", [](const TempDir& d) { return locked(d, ""); }, 1, "OK"},
        {"strayHashInAName", strayHashName, 1, "OK"},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        const auto result = PDFDocumentEngine::validateOutput(c.make(dir), c.expectedPageCount);
        EXPECT_EQ(result.ok, c.message == "OK");
        EXPECT_EQ(result.message, c.message);
    }
}

std::chrono::system_clock::time_point utc(std::chrono::year_month_day day, int hours) {
    return std::chrono::sys_days(day) + std::chrono::hours(hours);
}

TEST(PDFDocumentEngineTest, ReadMetadataTakesTheCatalogFirstAndTheTrailerForTheRest) {
    using namespace std::chrono;
    test::ScopedEnv zone("TZ", "UTC"); // the local reading of a date is its UTC reading
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    builder.info("Title", "From trailer")
        .info("Author", "Zoë 東京")
        .info("Subject", "Trailer subject")
        .info("Producer", "")
        .infoBytes("CreationDate", "D:20240131120000Z")
        .infoBytes("ModDate", "D:2024");
    builder.catalogInfo("Title", "From catalog")
        .catalogInfo("Subject", "")
        .catalogInfo("Keywords", "alpha, beta")
        .catalogInfo("CreationDate", "not a date")
        .catalogInfo("ModDate", "D:20230615080000Z");
    const auto info = PDFDocumentEngine::readMetadata(builder.write(dir / "meta.pdf"));
    EXPECT_EQ(info.title, "From catalog");
    EXPECT_EQ(info.author, "Zoë 東京");
    EXPECT_EQ(info.subject, "Trailer subject") << "an empty catalog text counts as absent";
    EXPECT_EQ(info.keywords, "alpha, beta");
    EXPECT_EQ(info.producer, std::nullopt) << "an empty trailer text counts as absent";
    EXPECT_EQ(info.creator, std::nullopt);
    EXPECT_EQ(info.creationDate, utc(2024y / January / 31, 12));
    EXPECT_EQ(info.modificationDate, utc(2023y / June / 15, 8));
}

} // namespace
} // namespace quillet
