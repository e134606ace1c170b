// Passwords added and removed, checked with qpdf and pdfinfo rather than with our own reader.
#include "engines/PDFSecurityEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;
using Case = PDFCoreError::Case;

fs::path titledDocument(const TempDir& dir, const std::string& name = "report.pdf") {
    PDFBuilder b;
    b.addPage().text("one");
    b.addPage(595, 842).text("two");
    return b.info("Title", "Quarterly").info("Author", "Jane Roe").write(dir / name);
}

// `qpdf --show-encryption` with `password`: what qpdf says about the file and the password.
std::string encryptionReport(const fs::path& file, const std::string& password) {
    return test::runTool("qpdf", {"--show-encryption", "--password=" + password, file.string()})
        .out;
}

std::string pdfinfo(const fs::path& file, const std::string& password = "") {
    std::vector<std::string> arguments{file.string()};
    if (!password.empty()) {
        arguments.insert(arguments.begin(), {"-upw", password});
    }
    return test::runTool("pdfinfo", arguments).out;
}

struct Passwords {
    const char* name;
    std::string user;
    std::string owner;
    std::string expectedOwner;
};

class ProtectTest : public testing::TestWithParam<Passwords> {};

TEST_P(ProtectTest, EncryptsWithAES256AndTheRightOwnerPassword) {
    const auto& c = GetParam();
    TempDir dir;
    const auto output = dir / "locked.pdf";
    std::vector<double> progress;
    PDFSecurityEngine::protect(titledDocument(dir), output, c.user, c.owner,
                               [&](double f) { progress.push_back(f); });

    EXPECT_EQ(progress, (std::vector<double>{0.4, 1.0}));
    const auto report = encryptionReport(output, c.user);
    EXPECT_NE(report.find("R = 6\n"), std::string::npos) << report;
    EXPECT_NE(report.find("file encryption method: AESv3"), std::string::npos) << report;
    EXPECT_NE(report.find("Supplied password is user password"), std::string::npos);
    EXPECT_NE(encryptionReport(output, c.expectedOwner).find("Supplied password is owner password"),
              std::string::npos);
    EXPECT_FALSE(test::qpdfChecks(output)) << "opens without a password";
    EXPECT_TRUE(test::qpdfChecks(output, c.user));
    EXPECT_NE(pdfinfo(output, c.user).find("Title:           Quarterly"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProtectTest,
                         testing::Values(Passwords{"OwnerDefaultsToTheOpenPassword", "a", "", "a"},
                                         Passwords{"SeparateOwner", "open", "boss", "boss"},
                                         Passwords{"Unicode", "pässwörd 東京", "",
                                                   "pässwörd 東京"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PDFSecurityEngineTest, ProtectMakesTheOutputFolderAndCanReplaceItsInput) {
    TempDir dir;
    const auto input = titledDocument(dir);
    PDFSecurityEngine::protect(input, dir / "new/folder/out.pdf", "pw", "");
    EXPECT_NE(encryptionReport(dir / "new/folder/out.pdf", "pw").find("R = 6"), std::string::npos);
    PDFSecurityEngine::protect(input, input, "pw", "");
    EXPECT_NE(encryptionReport(input, "pw").find("R = 6"), std::string::npos);
    EXPECT_EQ(
        test::caughtCase([&] { PDFSecurityEngine::protect(input, dir / "again.pdf", "x", ""); }),
        Case::wrongPassword);
}

TEST(PDFSecurityEngineTest, AWrongPasswordFailsAndWritesNothing) {
    TempDir dir;
    const auto locked = dir / "locked.pdf";
    PDFSecurityEngine::protect(titledDocument(dir), locked, "right", "");
    const std::string before = test::readFile(locked);
    for (const auto& output : {dir / "out.pdf", locked}) {
        const auto error = test::caughtCoreError(
            [&] { PDFSecurityEngine::removePassword(locked, output, "wrong"); });
        EXPECT_EQ(error.errorCase(), Case::wrongPassword);
        EXPECT_STREQ(error.what(), "Incorrect password.");
    }
    EXPECT_FALSE(fs::exists(dir / "out.pdf"));
    EXPECT_EQ(test::readFile(locked), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 2);
}

} // namespace
} // namespace quillet
