#include "engines/PDFDocumentEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillet {
namespace {

using test::Damage;
using test::EncryptionSpec;
using test::PDFBuilder;
using test::TempDir;

const std::string encryptedCorpus =
    "005-libreoffice-writer-password/libreoffice-writer-password.pdf";

std::filesystem::path plainFile(const TempDir& dir, int pages = 2) {
    PDFBuilder builder;
    for (int i = 0; i < pages; ++i) {
        builder.addPage();
    }
    return builder.write(dir / "plain.pdf");
}

TEST(PDFDocumentEngineTest, OpenAnswersAbsentInsteadOfFailing) {
    TempDir dir;
    EXPECT_FALSE(PDFDocumentEngine::open(dir / "missing.pdf"));
    EXPECT_FALSE(PDFDocumentEngine::open(dir.write("junk.pdf", "no pdf here")));
    EXPECT_FALSE(PDFDocumentEngine::open(test::corpus(encryptedCorpus)));
    EXPECT_FALSE(PDFDocumentEngine::open(test::corpus(encryptedCorpus), "wrong"));
    auto unlocked = PDFDocumentEngine::open(test::corpus(encryptedCorpus), "openpassword");
    ASSERT_TRUE(unlocked);
    EXPECT_EQ(unlocked->pageCount(), 1);
    EXPECT_TRUE(PDFDocumentEngine::open(test::corpus(encryptedCorpus), "permissionpassword"));
}

TEST(PDFDocumentEngineTest, PasswordOfAnUnencryptedFileIsNotTested) {
    TempDir dir;
    const auto path = plainFile(dir);
    auto opened = PDFDocumentEngine::open(path, "wrong");
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->pageCount(), 2);
    EXPECT_EQ(PDFDocumentEngine::openUnlock(path, "wrong").pageCount(), 2);
    EXPECT_EQ(PDFDocumentEngine::openCG(path, "wrong").pageCount(), 2);
}

TEST(PDFDocumentEngineTest, OpenUnlockTellsWhyOpeningFailed) {
    TempDir dir;
    const auto junk = dir.write("junk.pdf", "no pdf here");
    const auto truncated = PDFBuilder().write(dir / "cut.pdf", Damage::truncated);
    using Case = PDFCoreError::Case;
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openUnlock(dir / "missing.pdf", ""); }),
              Case::fileNotFound);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openUnlock(junk, ""); }), Case::cannotOpen);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openUnlock(truncated, ""); }), Case::cannotOpen);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openUnlock(test::corpus(encryptedCorpus), ""); }),
              Case::wrongPassword);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openUnlock(test::corpus(encryptedCorpus), "nope"); }),
              Case::wrongPassword);
}

TEST(PDFDocumentEngineTest, FailuresNameTheFile) {
    TempDir dir;
    try {
        PDFDocumentEngine::openUnlock(dir / "missing.pdf", "");
    } catch (const PDFCoreError& error) {
        EXPECT_STREQ(error.what(), "File not found: missing.pdf");
    }
    const auto broken = PDFBuilder().write(dir / "broken.pdf", Damage::zeroBytes);
    try {
        PDFDocumentEngine::openUnlock(broken, "");
    } catch (const PDFCoreError& error) {
        EXPECT_STREQ(error.what(), "Could not open broken.pdf.");
        EXPECT_EQ(error.url(), broken);
    }
}

TEST(PDFDocumentEngineTest, OpenUnlockRemembersTheWorkingPassword) {
    auto document = PDFDocumentEngine::openUnlock(test::corpus(encryptedCorpus), "openpassword");
    EXPECT_FALSE(document.isLocked());
    EXPECT_EQ(document.password(), "openpassword");
}

TEST(PDFDocumentEngineTest, OpenCGReportsAMissingFileAsCannotOpen) {
    TempDir dir;
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openCG(dir / "missing.pdf"); }),
              PDFCoreError::Case::cannotOpen);
}

TEST(PDFDocumentEngineTest, OpenCGNeedsTheUserOrOwnerPasswordOfAProtectedFile) {
    const auto path = test::corpus(encryptedCorpus);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openCG(path); }), PDFCoreError::Case::wrongPassword);
    EXPECT_EQ(test::caughtCase([&] { PDFDocumentEngine::openCG(path, "wrong"); }),
              PDFCoreError::Case::wrongPassword);
    EXPECT_EQ(PDFDocumentEngine::openCG(path, "openpassword").pageCount(), 1);
    EXPECT_EQ(PDFDocumentEngine::openCG(path, "permissionpassword").pageCount(), 1);
}

class OwnerOnlyEncryption : public testing::TestWithParam<EncryptionSpec::Method> {};

// The second, empty, try makes a file with only an owner password open whatever was typed.
TEST_P(OwnerOnlyEncryption, OpenCGWithAWrongPasswordStillOpens) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    builder.addPage();
    builder.encrypt({.user = "", .owner = "owner", .method = GetParam()});
    const auto path = builder.write(dir / "owner-only.pdf");
    auto document = PDFDocumentEngine::openCG(path, "typed by mistake");
    EXPECT_TRUE(document.isEncrypted());
    EXPECT_EQ(document.pageCount(), 2);
    EXPECT_EQ(PDFDocumentEngine::openUnlock(path, "typed by mistake").pageCount(), 2);
}

INSTANTIATE_TEST_SUITE_P(PDFDocumentEngineTest, OwnerOnlyEncryption,
                         testing::Values(EncryptionSpec::Method::aes256,
                                         EncryptionSpec::Method::aes128,
                                         EncryptionSpec::Method::rc4_128,
                                         EncryptionSpec::Method::rc4_40));

struct ValidationCase {
    const char* name;
    std::function<std::filesystem::path(const TempDir&)> make;
    std::optional<int> expectedPageCount;
    bool ok;
    const char* message;
};

std::filesystem::path pages(const TempDir& dir, std::vector<std::array<double, 4>> boxes) {
    PDFBuilder builder;
    for (const auto& box : boxes) {
        builder.addPage().mediaBox(box[0], box[1], box[2], box[3]);
    }
    return builder.write(dir / "out.pdf");
}

class ValidateOutput : public testing::TestWithParam<ValidationCase> {};

TEST_P(ValidateOutput, StopsAtTheFirstFailure) {
    TempDir dir;
    const auto& param = GetParam();
    const auto result = PDFDocumentEngine::validateOutput(param.make(dir), param.expectedPageCount);
    EXPECT_EQ(result.ok, param.ok);
    EXPECT_EQ(result.message, param.message);
}

const std::array<double, 4> letter{0, 0, 612, 792};

INSTANTIATE_TEST_SUITE_P(
    PDFDocumentEngineTest, ValidateOutput,
    testing::Values(ValidationCase{"missing", [](const TempDir& d) { return d / "absent.pdf"; }, 1,
                                   false, "Output file missing."},
                    ValidationCase{"junk",
                                   [](const TempDir& d) { return d.write("j.pdf", "junk"); },
                                   {},
                                   false,
                                   "Could not re-open the generated PDF."},
                    ValidationCase{"needsPassword",
                                   [](const TempDir& d) {
                                       PDFBuilder b;
                                       b.addPage();
                                       b.encrypt({.user = "u", .owner = "o"});
                                       return b.write(d / "locked.pdf");
                                   },
                                   1, false, "Could not re-open the generated PDF."},
                    ValidationCase{"fewerPages",
                                   [](const TempDir& d) {
                                       return pages(d, {letter, letter});
                                   },
                                   3, false, "Page count mismatch (2 vs 3)."},
                    ValidationCase{"morePages",
                                   [](const TempDir& d) {
                                       return pages(d, {letter, letter});
                                   },
                                   1, false, "Page count mismatch (2 vs 1)."},
                    ValidationCase{"zeroWidth",
                                   [](const TempDir& d) {
                                       return pages(d, {{0, 0, 0, 792}});
                                   },
                                   1, false, "First page has invalid geometry."},
                    ValidationCase{"zeroHeight",
                                   [](const TempDir& d) {
                                       return pages(d, {{0, 50, 612, 50}});
                                   },
                                   {},
                                   false,
                                   "First page has invalid geometry."},
                    ValidationCase{"mismatchBeforeGeometry",
                                   [](const TempDir& d) {
                                       return pages(d, {{0, 0, 0, 792}});
                                   },
                                   2, false, "Page count mismatch (1 vs 2)."},
                    ValidationCase{"onlyFirstPageMatters",
                                   [](const TempDir& d) {
                                       return pages(d, {letter, {0, 0, 0, 0}});
                                   },
                                   2, true, "OK"},
                    ValidationCase{"reversedCorners",
                                   [](const TempDir& d) {
                                       return pages(d, {{612, 792, 0, 0}});
                                   },
                                   1, true, "OK"},
                    ValidationCase{
                        "noPagesNoExpectation",
                        [](const TempDir& d) { return PDFBuilder().write(d / "empty.pdf"); },
                        {},
                        true,
                        "OK"},
                    ValidationCase{"ownerOnlyPassword",
                                   [](const TempDir& d) {
                                       PDFBuilder b;
                                       b.addPage();
                                       b.encrypt({.user = "", .owner = "o"});
                                       return b.write(d / "owner.pdf");
                                   },
                                   1, true, "OK"}),
    [](const auto& info) { return std::string(info.param.name); });

// With TZ=UTC the local reading of a date is its UTC reading.
class UTCZone {
  public:
    UTCZone() {
        if (const char* zone = std::getenv("TZ")) {
            saved_ = zone;
        }
        setenv("TZ", "UTC", 1);
        tzset();
    }
    ~UTCZone() {
        if (saved_) {
            setenv("TZ", saved_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

  private:
    std::optional<std::string> saved_;
};

std::chrono::system_clock::time_point utc(std::chrono::year_month_day day, int hours) {
    return std::chrono::sys_days(day) + std::chrono::hours(hours);
}

TEST(PDFDocumentEngineTest, ReadMetadataTakesTheCatalogFirstAndTheTrailerForTheRest) {
    using namespace std::chrono;
    UTCZone zone;
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

TEST(PDFDocumentEngineTest, ReadMetadataOfUnreadableFilesHasEveryFieldAbsent) {
    TempDir dir;
    EXPECT_EQ(PDFDocumentEngine::readMetadata(dir / "missing.pdf"), PDFMetadataInfo{});
    EXPECT_EQ(PDFDocumentEngine::readMetadata(dir.write("junk.pdf", "junk")), PDFMetadataInfo{});
    EXPECT_EQ(PDFDocumentEngine::readMetadata(test::corpus(encryptedCorpus)), PDFMetadataInfo{});
}

TEST(PDFDocumentEngineTest, ReadMetadataOpensOwnerOnlyProtectedFiles) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage();
    builder.info("Title", "Quarterly").info("Creator", "Writer");
    builder.encrypt({.user = "", .owner = "o"});
    const auto info = PDFDocumentEngine::readMetadata(builder.write(dir / "owner.pdf"));
    EXPECT_EQ(info.title, "Quarterly");
    EXPECT_EQ(info.creator, "Writer");
}

} // namespace
} // namespace quillet
