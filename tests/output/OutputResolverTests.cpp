#include "output/OutputResolver.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <ctime>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using namespace OutputResolver;
using test::TempDir;

// 14 March 2025, 09:05 local time.
Clock::time_point march14At0905() {
    std::tm local{};
    local.tm_year = 2025 - 1900;
    local.tm_mon = 2;
    local.tm_mday = 14;
    local.tm_hour = 9;
    local.tm_min = 5;
    local.tm_isdst = -1;
    return Clock::from_time_t(std::mktime(&local));
}

using K = PDFOperationKind;

TEST(TemplateExpansion, Expands) {
    const struct {
        const char* nameTemplate;
        const char* stem;
        PDFOperationKind operation;
        std::optional<int> part;
        const char* expected;
    } rows[] = {
        {"", "a", K::compress, {}, "a-compressed"},
        {"{name}-{action}", "a", K::imagesToPDF, {}, "a-"},
        {"{name}-{action}", "a", K::unprotect, {}, "a-unlocked"},
        {"{date}_{name}", "a", K::compress, {}, "20250314-0905_a"},
        {"{name}_{part}", "a", K::split, 7, "a_7"},
        {"{name}", "a", K::split, 7, "a-part7"},
        {"", "report", K::split, 3, "report-part-part3"},
        // Without a part, "{part}" is not a token.
        {"{name}-{part}", "a", K::compress, {}, "a-{part}"},
        // Later tokens carried in by the stem are expanded, earlier ones are not.
        {"{name}", "x{date}{name}", K::merge, {}, "x20250314-0905{name}"},
        {"{NAME}/{other}", "a", K::merge, {}, "{NAME}/{other}"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(
            applyTemplate(row.nameTemplate, row.stem, row.operation, row.part, march14At0905()),
            row.expected)
            << row.nameTemplate << " " << row.stem;
    }
}

TEST(Uniquify, KeepsAFreeLocationAndSkipsTakenNumbers) {
    const struct {
        std::vector<std::string> taken;
        std::string wanted, given;
    } rows[] = {
        {{}, "a.pdf", "a.pdf"},
        {{"a-compressed.pdf", "a-compressed-2.pdf"}, "a-compressed.pdf", "a-compressed-3.pdf"},
        // An empty extension keeps the dot.
        {{"notes"}, "notes", "notes-2."}};
    for (const auto& row : rows) {
        TempDir dir;
        for (const auto& name : row.taken) {
            dir.write(name, "");
        }
        EXPECT_EQ(uniquify(dir / row.wanted), dir / row.given);
    }
}

TEST(Uniquify, DirectoriesAndDanglingLinksCountAsTaken) {
    TempDir dir;
    fs::create_directory(dir / "a.pdf");
    fs::create_symlink(dir / "missing", dir / "a-2.pdf");
    EXPECT_EQ(uniquify(dir / "a.pdf"), dir / "a-3.pdf");
}

TEST(Uniquify, FallsBackToSecondsWhenAllNumbersAreTaken) {
    TempDir dir;
    dir.write("a.pdf", "");
    for (int n = 2; n <= 999; ++n) {
        dir.write("a-" + std::to_string(n) + ".pdf", "");
    }
    auto now = Clock::from_time_t(1'741'943'100);
    EXPECT_EQ(uniquify(dir / "a.pdf", now), dir / "a-1741943100.pdf");
}

TEST(Resolve, AvoidsAnExistingFile) {
    TempDir dir;
    dir.write("a-compressed.pdf", "");
    auto got = resolve(dir / "a.pdf", OutputRule{}, K::compress, std::nullopt, "pdf");
    EXPECT_EQ(got, (Resolution{dir / "a-compressed-2.pdf", false}));
}

TEST(Resolve, ReplaceOriginalAnswersTheTakenLocation) {
    TempDir dir;
    dir.write("a.pdf", "");
    OutputRule rule;
    rule.nameTemplate = "{name}";
    rule.replaceOriginal = true;
    EXPECT_EQ(resolve(dir / "a.pdf", rule, K::protect, std::nullopt, ".pdf"),
              (Resolution{dir / "a.pdf", true}));
    EXPECT_EQ(resolve(dir / "b.pdf", rule, K::protect, std::nullopt, ".pdf"),
              (Resolution{dir / "b.pdf", false}));
}

TEST(Resolve, SplitPartsNeverReportOverwrite) {
    TempDir dir;
    dir.write("a-part-part2.pdf", "");
    OutputRule rule;
    rule.replaceOriginal = true;
    EXPECT_EQ(resolve(dir / "a.pdf", rule, K::split, 2, ".pdf"),
              (Resolution{dir / "a-part-part2.pdf", false}));
}

TEST(ResolveMerge, NoInputsGoToTheTemporaryFolder) {
    auto got = resolveMerge({}, OutputRule{});
    EXPECT_EQ(got, (Resolution{fs::temp_directory_path() / "merged.pdf", false}));
}

TEST(ResolveMerge, UsesTheFolderButNotTheTemplateOrReplace) {
    TempDir dir;
    OutputRule rule;
    rule.location = OutputRule::Location::subfolder;
    rule.nameTemplate = "{name}-ignored";
    rule.replaceOriginal = true;
    dir.write("Processed/merged-20250314-0905.pdf", "");
    auto got = resolveMerge({dir / "x.pdf", dir / "y.pdf"}, rule, march14At0905());
    EXPECT_EQ(got, (Resolution{dir / "Processed" / "merged-20250314-0905-2.pdf", false}));
}

TEST(ResolveImagesToPDF, IgnoresTheRule) {
    TempDir dir;
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = "/nonexistent";
    rule.nameTemplate = "{name}-x";
    EXPECT_EQ(resolveImagesToPDF({dir / "photo.jpg"}, rule),
              (Resolution{dir / "photo.pdf", false}));
    dir.write("photo.pdf", "");
    EXPECT_EQ(resolveImagesToPDF({dir / "photo.jpg"}, rule).outputURL, dir / "photo-2.pdf");
    EXPECT_EQ(resolveImagesToPDF({dir / "a.png", dir / "b.png"}, rule, march14At0905()).outputURL,
              dir / "images-20250314-0905.pdf");
    EXPECT_EQ(resolveImagesToPDF({}, rule).outputURL, fs::temp_directory_path() / "scan.pdf");
}

} // namespace
} // namespace quillet
