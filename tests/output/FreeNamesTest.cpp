// A free name is taken only if it is still free when the finished file arrives: a file that
// another writer put there after the name was chosen is never replaced.
#include "output/OutputResolver.hpp"
#include "platform/FreeNames.hpp"
#include "platform/TemporaryFile.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::TempDir;

TemporaryFile finished(const fs::path& destination, const std::string& content) {
    auto file = TemporaryFile::beside(destination);
    std::FILE* out = std::fopen(file.path().c_str(), "wb");
    std::fputs(content.c_str(), out);
    std::fclose(out);
    return file;
}

TEST(FreeNames, ANameTakenAfterItWasChosenMovesTheWriteOnAlongTheSequence) {
    TempDir folder;
    folder.write("a-clean-2.pdf", "older");
    const auto chosen = OutputResolver::uniquify(folder / "a-clean.pdf");
    ASSERT_EQ(chosen, folder / "a-clean.pdf");
    folder.write("a-clean.pdf", "other writer");

    auto file = finished(chosen, "ours");
    EXPECT_EQ(file.commit(chosen), folder / "a-clean-3.pdf");
    EXPECT_EQ(FreeNames::placed(chosen), folder / "a-clean-3.pdf");
    EXPECT_EQ(readFile(folder / "a-clean.pdf"), "other writer");
    EXPECT_EQ(readFile(folder / "a-clean-2.pdf"), "older");
    EXPECT_EQ(readFile(folder / "a-clean-3.pdf"), "ours");
    EXPECT_EQ(test::fileNames(folder.path()).size(), 3U);
}

TEST(FreeNames, AnExactClaimFailsInsteadOfReplacing) {
    TempDir folder;
    const auto chosen = folder / "out.pdf";
    FreeNames::claimExactly(chosen);
    folder.write("out.pdf", "other writer");

    auto file = finished(chosen, "ours");
    EXPECT_THROW(file.commit(chosen), fs::filesystem_error);
    FreeNames::release(chosen);
    EXPECT_EQ(readFile(chosen), "other writer");
}

TEST(FreeNames, AnUnclaimedDestinationIsReplacedAsBefore) {
    TempDir folder;
    const auto destination = folder.write("report.pdf", "original");
    auto file = finished(destination, "replacement");
    EXPECT_EQ(file.commit(destination), destination);
    EXPECT_EQ(readFile(destination), "replacement");
}

} // namespace
} // namespace quillet
