// `quillet clean`, `protect` and `unprotect` run as the real program: exit status, the exact
// lines on standard output and standard error, and exactly which files exist afterwards.
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/Process.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <set>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;

std::string expand(std::string text, const fs::path& dir) {
    for (auto at = text.find("{dir}"); at != std::string::npos; at = text.find("{dir}")) {
        text.replace(at, 5, dir.string());
    }
    return text;
}

std::set<std::string> filesIn(const fs::path& dir) {
    const auto names = test::fileNames(dir);
    return {names.begin(), names.end()};
}

// a.pdf and b.pdf carry a title; locked.pdf needs the password "secret".
void writeInputs(const TempDir& dir) {
    for (const char* name : {"a.pdf", "b.pdf"}) {
        PDFBuilder b;
        b.addPage().text(name);
        b.info("Title", "Quarterly").write(dir / name);
    }
    test::lockedPDF(dir / "locked.pdf", "secret", "secret");
}

test::ProcessResult quillet(const std::vector<std::string>& arguments, const fs::path& dir) {
    std::vector<std::string> expanded;
    for (const auto& argument : arguments) {
        expanded.push_back(expand(argument, dir));
    }
    return test::runProcess(QUILLET_BINARY, expanded);
}

struct CommandCase {
    const char* name;
    std::vector<std::string> arguments;
    int status;
    std::string out;
    std::string err;
    std::set<std::string> created;
};

// The case's name, not its bytes, in test names.
void PrintTo(const CommandCase& c, std::ostream* os) {
    *os << c.name;
}

class CleanCommandRun : public testing::TestWithParam<CommandCase> {};

TEST_P(CleanCommandRun, PrintsWritesAndExitsAsDocumented) {
    const auto& c = GetParam();
    TempDir dir;
    writeInputs(dir);
    auto expected = filesIn(dir.path());
    expected.insert(c.created.begin(), c.created.end());

    const auto result = quillet(c.arguments, dir.path());

    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(result.out, expand(c.out, dir.path()));
    EXPECT_EQ(result.err, expand(c.err, dir.path()));
    EXPECT_EQ(filesIn(dir.path()), expected);
}

const std::string presetError = "error: invalid --preset; use safe|privacy|flatten\n";
const std::string wrongPassword = "error: Incorrect password.\n";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, CleanCommandRun, testing::Values(
    CommandCase{"PrivacyIsTheDefault", {"clean", "{dir}/a.pdf"}, 0,
                "a.pdf: cleaned (Privacy Clean) → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    CommandCase{"Safe", {"clean", "{dir}/a.pdf", "--preset", "safe"}, 0,
                "a.pdf: cleaned (Safe Clean) → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    CommandCase{"Flatten", {"clean", "--preset", "flatten", "{dir}/a.pdf"}, 0,
                "a.pdf: cleaned (Flatten & Clean) → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    CommandCase{"PresetsAreCaseSensitive", {"clean", "{dir}/a.pdf", "--preset", "Safe"}, 2, "",
                presetError, {}},
    CommandCase{"MissingFileComesFirst", {"clean", "{dir}/no.pdf", "--preset", "bogus"}, 2, "",
                "error: file not found: {dir}/no.pdf\n", {}},
    CommandCase{"ExplicitOutput", {"clean", "{dir}/a.pdf", "-o", "{dir}/out.pdf"}, 0,
                "a.pdf: cleaned (Privacy Clean) → {dir}/out.pdf\n", "", {"out.pdf"}},
    CommandCase{"LockedInputStopsTheCommandThere",
                {"clean", "{dir}/a.pdf", "{dir}/locked.pdf", "{dir}/b.pdf"}, 1,
                "a.pdf: cleaned (Privacy Clean) → {dir}/a-clean.pdf\n", wrongPassword,
                {"a-clean.pdf"}},
    CommandCase{"ProtectNeedsAPassword", {"protect", "{dir}/a.pdf"}, 2, "",
                "error: protect requires --password\n", {}},
    CommandCase{"UnprotectNeedsAPassword", {"unprotect", "{dir}/locked.pdf"}, 2, "",
                "error: unprotect requires --password\n", {}},
    CommandCase{"ProtectWithAnEmptyPassword", {"protect", "{dir}/a.pdf", "--password", ""}, 1, "",
                "error: Could not safely process this PDF. Enter an open password.\n", {}},
    CommandCase{"ProtectNamesOutputsAsCleanDoes", {"protect", "{dir}/a.pdf", "--password", "pw"},
                0, "a.pdf: encrypted → {dir}/a-clean.pdf\n", "", {"a-clean.pdf"}},
    CommandCase{"Unprotect", {"unprotect", "{dir}/locked.pdf", "--password", "secret"}, 0,
                "locked.pdf: password removed → {dir}/locked-clean.pdf\n", "",
                {"locked-clean.pdf"}}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

TEST(CleanCommand, ReplaceRewritesEachInputInPlace) {
    TempDir dir;
    writeInputs(dir);
    const auto before = filesIn(dir.path());
    const auto a = (dir / "a.pdf").string();

    EXPECT_EQ(quillet({"clean", "--replace", a}, dir.path()).out,
              "a.pdf: cleaned (Privacy Clean) → " + a + "\n");
    EXPECT_EQ(test::runTool("pdfinfo", {a}).out.find("Quarterly"), std::string::npos);

    EXPECT_EQ(quillet({"protect", "--replace", a, "--password", "pw"}, dir.path()).status, 0);
    EXPECT_FALSE(test::qpdfChecks(a)) << "not encrypted in place";
    EXPECT_EQ(quillet({"unprotect", "--replace", a, "--password", "pw"}, dir.path()).status, 0);
    EXPECT_NE(test::runTool("qpdf", {"--show-encryption", a}).out.find("File is not encrypted"),
              std::string::npos);
    EXPECT_EQ(filesIn(dir.path()), before);
}

} // namespace
} // namespace quillet
