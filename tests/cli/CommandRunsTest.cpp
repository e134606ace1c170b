// The real `quillet` program run as a user runs it, one command line per row: the exit status,
// standard output and standard error (in full, with `{*}` for what varies, such as sizes and
// times), exactly which files appear, and that no file already there changes unless the row
// replaces its inputs.
#include "cli/RunQuillet.hpp"
#include "cli/Usage.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <functional>
#include <map>
#include <regex>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

/// `pattern` with {dir}, {corpus} and {usage} filled in, where `{*}` stands for any text on one
/// line and `{**}` for any text at all.
bool matches(const std::string& text, std::string pattern, const fs::path& dir) {
    for (const auto& [token, value] : {std::pair<std::string, std::string>{"{dir}", dir.string()},
                                       {"{corpus}", test::corpusFolder()},
                                       {"{usage}", usageText()}}) {
        for (auto at = pattern.find(token); at != std::string::npos; at = pattern.find(token)) {
            pattern.replace(at, token.size(), value);
        }
    }
    if (pattern.find("{*") == std::string::npos) {
        return text == pattern;
    }
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    std::string expression;
    for (std::size_t at = 0;;) {
        const auto star = pattern.find("{*", at);
        expression += std::regex_replace(pattern.substr(at, star - at), special, R"(\$&)");
        if (star == std::string::npos) {
            break;
        }
        const bool any = pattern.compare(star, 4, "{**}") == 0;
        expression += any ? R"([\s\S]*)" : R"([^\n]*)";
        at = star + (any ? 4 : 3);
    }
    return std::regex_match(text, std::regex(expression));
}

/// Every file below `dir`, relative, with its bytes.
std::map<std::string, std::string> contents(const fs::path& dir) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(dir)) {
        if (entry.is_regular_file()) {
            files[fs::relative(entry.path(), dir).string()] = test::readFile(entry.path());
        }
    }
    return files;
}

// a.pdf and b.pdf carry a title, doc.pdf has four numbered pages, locked.pdf needs "secret",
// blocker is a file where a folder would go; the others are made when a row names them.
void writeInputs(const TempDir& dir, const std::vector<std::string>& arguments) {
    for (const char* name : {"a.pdf", "b.pdf"}) {
        test::PDFBuilder b;
        b.addPage().text(name);
        b.info("Title", "Quarterly").write(dir / name);
    }
    test::numberedPDF(dir / "doc.pdf", 4);
    test::lockedPDF(dir / "locked.pdf", "secret", "secret");
    dir.write("blocker", "a file where a folder should be");
    fs::create_directory(dir / "into");
    const auto scan = [](const fs::path& p) {
        test::PDFBuilder builder;
        builder.addPage().image({.width = 1000, .height = 1294, .grain = 24}, 0, 0, 612, 792);
        builder.write(p);
    };
    const std::map<std::string, std::function<void(const fs::path&)>> onDemand{
        {"ten.pdf", [](const fs::path& p) { test::numberedPDF(p, 10); }},
        {"report.v2.pdf", [](const fs::path& p) { test::numberedPDF(p, 2); }},
        {"smile.png",
         [](const fs::path& p) {
             fs::copy_file(test::corpus("007-imagemagick-images/smile.png"), p);
         }},
        {"scan.pdf", scan},
        {"scan2.pdf", scan}};
    for (const auto& [name, make] : onDemand) {
        for (const auto& argument : arguments) {
            if (argument.ends_with("/" + name) && !fs::exists(dir / name)) {
                make(dir / name);
            }
        }
    }
}

struct Run {
    const char* name;
    std::vector<std::string> arguments;
    int status;
    std::string out;
    std::string err;
    std::vector<std::string> created;       // relative names, sorted, `{*}` allowed
    std::vector<std::string> existing = {}; // made beforehand, holding "earlier"
    bool replacesInputs = false;
};

void PrintTo(const Run& run, std::ostream* os) {
    *os << run.name;
}

class CommandRuns : public testing::TestWithParam<Run> {};

TEST_P(CommandRuns, PrintWriteAndExitAsDocumented) {
    const auto& c = GetParam();
    TempDir dir;
    std::vector<std::string> arguments;
    for (auto argument : c.arguments) {
        for (const auto& [token, value] : {std::pair<std::string, std::string>{"{dir}", dir.path()},
                                           {"{corpus}", test::corpusFolder()}}) {
            if (const auto at = argument.find(token); at != std::string::npos) {
                argument.replace(at, token.size(), value);
            }
        }
        arguments.push_back(argument);
    }
    writeInputs(dir, arguments);
    for (const auto& name : c.existing) {
        dir.write(name, "earlier");
    }
    const auto before = contents(dir.path());

    const auto result = test::quillet(arguments);

    EXPECT_EQ(result.status, c.status);
    EXPECT_TRUE(matches(result.out, c.out, dir.path())) << result.out;
    EXPECT_TRUE(matches(result.err, c.err, dir.path())) << result.err;
    const auto after = contents(dir.path());
    std::vector<std::string> created;
    for (const auto& [name, bytes] : after) {
        if (!before.contains(name)) {
            created.push_back(name);
        } else if (!c.replacesInputs) {
            EXPECT_EQ(bytes, before.at(name)) << name << " changed";
        }
    }
    ASSERT_EQ(created.size(), c.created.size()) << testing::PrintToString(created);
    for (std::size_t i = 0; i < created.size(); ++i) {
        EXPECT_TRUE(matches(created[i], c.created[i], dir.path())) << created[i];
    }
    EXPECT_EQ(after.size(), before.size() + created.size()) << "a file disappeared";
}

const std::string wrongPassword = "error: Incorrect password.\n";
const std::string cleaned = "a.pdf: cleaned (Privacy Clean) → {dir}/";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Program, CommandRuns, testing::Values(
    Run{"NoArgumentsIsUsageAndFailure", {}, 2, "{usage}", "", {}},
    Run{"HelpWord", {"help", "ignored"}, 0, "{usage}", "", {}},
    Run{"UnknownCommand", {"frobnicate"}, 2, "", "Unknown command: frobnicate\n\n{usage}", {}},
    Run{"MissingInput", {"info", "/nonexistent/a b.pdf"}, 2, "",
        "error: file not found: /nonexistent/a b.pdf\n", {}}),
    [](const auto& info) { return std::string(info.param.name); });

// A refusal of an engine ends the command with status 1 and the engine's message; what each
// engine refuses is told apart by the engines' own tests.
INSTANTIATE_TEST_SUITE_P(CleanProtect, CommandRuns, testing::Values(
    Run{"PrivacyIsTheDefault", {"clean", "{dir}/a.pdf"}, 0, cleaned + "a-clean.pdf\n", "",
        {"a-clean.pdf"}},
    Run{"Safe", {"clean", "{dir}/a.pdf", "--preset", "safe"}, 0,
        "a.pdf: cleaned (Safe Clean) → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    Run{"Flatten", {"clean", "--preset", "flatten", "{dir}/a.pdf"}, 0,
        "a.pdf: cleaned (Flatten & Clean) → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    Run{"PresetsAreCaseSensitive", {"clean", "{dir}/a.pdf", "--preset", "Safe"}, 2, "",
        "error: invalid --preset; use safe|privacy|flatten\n", {}},
    Run{"MissingFileComesFirst", {"clean", "{dir}/no.pdf", "--preset", "bogus"}, 2, "",
        "error: file not found: {dir}/no.pdf\n", {}},
    Run{"ExplicitOutput", {"clean", "{dir}/a.pdf", "-o", "{dir}/out.pdf"}, 0, cleaned + "out.pdf\n",
        "", {"out.pdf"}},
    Run{"NeverOverwritesAnEarlierResult", {"clean", "{dir}/a.pdf"}, 0, cleaned + "a-clean-2.pdf\n",
        "", {"a-clean-2.pdf"}, {"a-clean.pdf"}},
    Run{"LockedInputStopsTheCommandThere",
        {"clean", "{dir}/a.pdf", "{dir}/locked.pdf", "{dir}/b.pdf"}, 1, cleaned + "a-clean.pdf\n",
        wrongPassword, {"a-clean.pdf"}},
    Run{"ReplaceRewritesInPlace", {"clean", "--replace", "{dir}/a.pdf"}, 0, cleaned + "a.pdf\n",
        "", {}, {}, true},
    Run{"ProtectNeedsAPassword", {"protect", "{dir}/a.pdf"}, 2, "",
        "error: protect requires --password\n", {}},
    Run{"UnprotectNeedsAPassword", {"unprotect", "{dir}/locked.pdf"}, 2, "",
        "error: unprotect requires --password\n", {}},
    Run{"ProtectWithAnEmptyPassword", {"protect", "{dir}/a.pdf", "--password", ""}, 1, "",
        "error: Could not safely process this PDF. Enter an open password.\n", {}},
    Run{"ProtectNamesOutputsAsCleanDoes", {"protect", "{dir}/a.pdf", "--password", "pw"}, 0,
        "a.pdf: encrypted → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    Run{"Unprotect", {"unprotect", "{dir}/locked.pdf", "--password", "secret"}, 0,
        "locked.pdf: password removed → {dir}/locked-clean.pdf\n", "", {"locked-clean.pdf"}},
    Run{"UnprotectWrongPassword", {"unprotect", "{dir}/locked.pdf", "--password", "guess"}, 1, "",
        wrongPassword, {}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(Split, CommandRuns, testing::Values(
    Run{"EveryPageByDefault", {"split", "{dir}/doc.pdf"}, 0,
        "doc-part1.pdf: pages 1 ({*})\ndoc-part2.pdf: pages 2 ({*})\ndoc-part3.pdf: pages 3 ({*})\n"
        "doc-part4.pdf: pages 4 ({*})\nsplit into 4 files\n", "",
        {"doc-part1.pdf", "doc-part2.pdf", "doc-part3.pdf", "doc-part4.pdf"}},
    Run{"EveryN", {"split", "{dir}/doc.pdf", "--every", "3"}, 0,
        "doc-part1.pdf: pages 1,2,3 ({*})\ndoc-part2.pdf: pages 4 ({*})\nsplit into 2 files\n", "",
        {"doc-part1.pdf", "doc-part2.pdf"}},
    Run{"RangesInTheirOrder", {"split", "{dir}/doc.pdf", "--ranges", "4, 1-2"}, 0,
        "doc-part1.pdf: pages 4 ({*})\ndoc-part2.pdf: pages 1,2 ({*})\nsplit into 2 files\n", "",
        {"doc-part1.pdf", "doc-part2.pdf"}},
    Run{"ExtractOnceInOrder", {"split", "{dir}/doc.pdf", "--extract", "3,1,3"}, 0,
        "doc-part1.pdf: pages 1,3 ({*})\nsplit into 1 files\n", "", {"doc-part1.pdf"}},
    Run{"BySize", {"split", "{dir}/doc.pdf", "--by-size", "10MB"}, 0,
        "doc-part1.pdf: pages 1,2,3,4 ({*})\nsplit into 1 files\n", "", {"doc-part1.pdf"}},
    Run{"EveryWinsOverRanges", {"split", "{dir}/doc.pdf", "--ranges", "1", "--every", "3"}, 0,
        "doc-part1.pdf: pages 1,2,3 ({*})\ndoc-part2.pdf: pages 4 ({*})\nsplit into 2 files\n", "",
        {"doc-part1.pdf", "doc-part2.pdf"}},
    Run{"RangesWinOverExtract", {"split", "{dir}/doc.pdf", "--extract", "2", "--ranges", "3-4"}, 0,
        "doc-part1.pdf: pages 3,4 ({*})\nsplit into 1 files\n", "", {"doc-part1.pdf"}},
    Run{"ExtractWinsOverSize", {"split", "{dir}/doc.pdf", "--by-size", "1", "--extract", "4"}, 0,
        "doc-part1.pdf: pages 4 ({*})\nsplit into 1 files\n", "", {"doc-part1.pdf"}},
    Run{"PartNumbersPaddedToTheCount", {"split", "{dir}/ten.pdf", "-o", "{dir}/parts"}, 0,
        "ten-part01.pdf: pages 1 ({**}\nten-part10.pdf: pages 10 ({*})\nsplit into 10 files\n", "",
        {"parts/ten-part01.pdf", "parts/ten-part02.pdf", "parts/ten-part03.pdf",
         "parts/ten-part04.pdf", "parts/ten-part05.pdf", "parts/ten-part06.pdf",
         "parts/ten-part07.pdf", "parts/ten-part08.pdf", "parts/ten-part09.pdf",
         "parts/ten-part10.pdf"}},
    Run{"IntoANewFolderKeepingDotsOfTheName",
        {"split", "-o", "{dir}/out/nested", "{dir}/report.v2.pdf"}, 0,
        "report.v2-part1.pdf: pages 1 ({*})\nreport.v2-part2.pdf: pages 2 ({*})\nsplit into 2 files\n",
        "", {"out/nested/report.v2-part1.pdf", "out/nested/report.v2-part2.pdf"}},
    Run{"TwoInputs", {"split", "{dir}/doc.pdf", "{dir}/a.pdf"}, 2, "",
        "error: split takes exactly one input PDF\n", {}},
    Run{"EveryNotANumber", {"split", "{dir}/doc.pdf", "--every", "two"}, 2, "",
        "error: invalid --every; use a whole number of pages\n", {}},
    Run{"ExtractSelectsNothing", {"split", "{dir}/doc.pdf", "--extract", "5-"}, 1, "",
        "error: Enter the pages to extract, e.g. 1, 3, 5, 7-20.\n", {}},
    Run{"SizeNotReadable", {"split", "{dir}/doc.pdf", "--by-size", "lots"}, 2, "",
        "error: invalid size \"lots\" (use a number and KB, MB or GB, for example 10MB)\n", {}},
    Run{"Locked", {"split", "{dir}/locked.pdf"}, 1, "", wrongPassword, {}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(Convert, CommandRuns, testing::Values(
    Run{"Defaults", {"convert", "{dir}/doc.pdf"}, 0,
        "doc.pdf: 4 × PNG @ 150 DPI → {dir}/doc-images\n", "",
        {"doc-images/doc-page-01.png", "doc-images/doc-page-02.png", "doc-images/doc-page-03.png",
         "doc-images/doc-page-04.png"}},
    Run{"GifFallsBackToPNG", {"convert", "{dir}/doc.pdf", "--format", "gif", "--pages", "2"}, 0,
        "doc.pdf: 1 × PNG @ 150 DPI → {dir}/doc-images\n", "", {"doc-images/doc-page-02.png"}},
    Run{"HEIC", {"convert", "{dir}/doc.pdf", "--format", "heic", "--dpi", "72", "--pages", "1"}, 0,
        "doc.pdf: 1 × HEIC @ 72 DPI → {dir}/doc-images\n", "", {"doc-images/doc-page-01.heic"}},
    Run{"TIFFSelection", {"convert", "{dir}/doc.pdf", "--format", "tiff", "--pages", "3,1", "--dpi",
        "36"}, 0, "doc.pdf: 2 × TIFF @ 36 DPI → {dir}/doc-images\n", "",
        {"doc-images/doc-page-01.tiff", "doc-images/doc-page-03.tiff"}},
    Run{"FractionalDPIGives150", {"convert", "{dir}/doc.pdf", "--dpi", "72.5", "--pages", "1"}, 0,
        "doc.pdf: 1 × PNG @ 150 DPI → {dir}/doc-images\n", "", {"doc-images/doc-page-01.png"}},
    Run{"EveryInputIntoTheGivenFolder",
        {"convert", "{dir}/a.pdf", "{dir}/b.pdf", "-o", "{dir}/made/here", "--dpi", "20"}, 0,
        "a.pdf: 1 × PNG @ 20 DPI → {dir}/made/here\nb.pdf: 1 × PNG @ 20 DPI → {dir}/made/here\n",
        "", {"made/here/a-page-01.png", "made/here/b-page-01.png"}},
    Run{"Locked", {"convert", "{dir}/locked.pdf"}, 1, "", wrongPassword, {}},
    Run{"UnwritableFolder", {"convert", "{dir}/doc.pdf", "-o", "{dir}/blocker/out"}, 1, "",
        "error: filesystem error: cannot create directories: Not a directory "
        "[{dir}/blocker/out]{**}", {}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(MergeImages, CommandRuns, testing::Values(
    Run{"MergesInOrder",
        {"merge", "{dir}/a.pdf", "{corpus}/007-imagemagick-images/smile.jpg", "{dir}/doc.pdf", "-o",
         "{dir}/joined.pdf"}, 0, "merged 3 files → 6 pages → {dir}/joined.pdf ({*})\n", "",
        {"joined.pdf"}},
    Run{"NamedByTheTimeInsideAFolder", {"merge", "{dir}/a.pdf", "{dir}/a.pdf", "-o", "{dir}/into"},
        0, "merged 2 files → 2 pages → {dir}/into/merged-{*}.pdf ({*})\n", "",
        {"into/merged-{*}.pdf"}},
    Run{"OneInputIsRefused", {"merge", "{dir}/a.pdf", "-o", "{dir}/x.pdf"}, 2, "",
        "error: merge needs at least two input files\n", {}},
    Run{"AnExistingOutputIsRefused", {"merge", "{dir}/a.pdf", "{dir}/a.pdf", "-o", "{dir}/taken.pdf"},
        2, "", "error: output exists: {dir}/taken.pdf (remove it or pass a new name)\n", {},
        {"taken.pdf"}},
    Run{"ImagesBesideTheFirstInput", {"images", "{dir}/smile.png"}, 0,
        "created {dir}/images-{*}.pdf (1 pages, {*})\n", "", {"images-{*}.pdf"}}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(Compress, CommandRuns, testing::Values(
    Run{"ResultLine", {"compress", "{dir}/scan.pdf", "-t", "small"}, 0,
        "scan.pdf: {*} → {*} KB (−{*}%) → {dir}/scan-compressed.pdf\n", "",
        {"scan-compressed.pdf"}},
    Run{"NeverOverwritesAnEarlierResult", {"compress", "{dir}/scan.pdf", "-t", "small"}, 0,
        "scan.pdf: {*} → {dir}/scan-compressed-2.pdf\n", "", {"scan-compressed-2.pdf"},
        {"scan-compressed.pdf"}},
    Run{"OutputIgnoredForTwoInputs",
        {"compress", "{dir}/scan.pdf", "{dir}/scan2.pdf", "-o", "{dir}/out.pdf"}, 0,
        "scan.pdf: {*} → {dir}/scan-compressed.pdf\nscan2.pdf: {*} → {dir}/scan2-compressed.pdf\n",
        "", {"scan-compressed.pdf", "scan2-compressed.pdf"}},
    Run{"OutputWinsOverReplace",
        {"compress", "{dir}/scan.pdf", "--replace", "-o", "{dir}/explicit.pdf"}, 0,
        "scan.pdf: {*} → {dir}/explicit.pdf\n", "", {"explicit.pdf"}},
    Run{"ReplaceAlone", {"compress", "{dir}/scan.pdf", "--replace"}, 0,
        "scan.pdf: {*} → {dir}/scan.pdf\n", "", {}, {}, true},
    Run{"UnreachableTargetIsABestEffort", {"compress", "{dir}/scan.pdf", "--under", "1KB"}, 0,
        "scan.pdf: {*}\n  note: Best effort: {**}", "", {"scan-compressed.pdf"}},
    Run{"TierIsCaseSensitive", {"compress", "{dir}/a.pdf", "-t", "High"}, 2, "",
        "{**}error: invalid --tier; use high|balanced|smallest|lossless\n", {}},
    // Only -t takes the tier: "--tier" is a flag and "high" becomes an input path.
    Run{"LongTierIsAFlag", {"compress", "{dir}/a.pdf", "--tier", "high"}, 2, "",
        "{**}error: file not found: high\n", {}}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

// Inputs are checked before any option: not even an invalid preset is reported first.
TEST(CommandLine, EveryCommandChecksItsInputsFirst) {
    for (const char* command : {"compress", "merge", "split", "convert", "images", "clean",
                                "protect", "unprotect", "info"}) {
        const auto result =
            test::quillet({command, "--preset", "bogus", "--password", "x", "-o", "out.pdf"});
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_EQ(result.err, "error: no input files\n") << command;
        EXPECT_EQ(result.out, "") << command;
    }
}

// On a terminal the progress bar is drawn, 24 cells wide; captured, as in every row above, it is
// not.
TEST(CommandLine, ProgressBarOnATerminal) {
    TempDir dir;
    const auto input = dir / "a.pdf";
    fs::copy_file(test::corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"), input);
    const auto onTerminal = test::runProcess(
        "/usr/bin/script",
        {"-qec", std::string(QUILLET_BINARY) + " compress -t lossless " + input.string(),
         "/dev/null"});
    EXPECT_EQ(onTerminal.status, 0) << onTerminal.out;
    std::string full;
    for (int cell = 0; cell < 24; ++cell) {
        full += "█";
    }
    EXPECT_NE(onTerminal.out.find("\r  [" + full + "] 100%"), std::string::npos) << onTerminal.out;
}

// The page size, fit and margin of `images` are read leniently.
TEST(CommandLine, ImagesPageSizeFitAndMargin) {
    const std::vector<std::pair<std::vector<std::string>, std::vector<double>>> cases{
        {{}, {0, 0, 16, 16}},
        {{"--page-size", "A4"}, {0, 0, 16, 16}}, // unknown: the picture's own size
        {{"--page-size", "letter"}, {0, 0, 612, 792}},
        {{"--page-size", "a4", "--fit", "FILL", "--margin", "wide"}, {0, 0, 595.28, 841.89}}};
    for (const auto& [options, mediaBox] : cases) {
        TempDir dir;
        std::vector<std::string> arguments{
            "images", test::corpus("007-imagemagick-images/smile.jpg").string(),
            test::corpus("007-imagemagick-images/smile.tiff").string(), "-o",
            (dir / "o.pdf").string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const auto result = test::quillet(arguments);
        ASSERT_EQ(result.status, 0) << result.err;
        QPDF qpdf;
        qpdf.processFile((dir / "o.pdf").c_str());
        auto page = qpdf.getAllPages().at(0);
        const auto box = page.getKey("/MediaBox").getArrayAsRectangle();
        EXPECT_EQ((std::vector<double>{box.llx, box.lly, box.urx, box.ury}), mediaBox);
    }
}

} // namespace
} // namespace quillet
