// The real `quillet` program, run as a child process: exit status, standard output and standard
// error exactly as a user or a script sees them.
#include "cli/QuilletCLIEntry.hpp"
#include "cli/Usage.hpp"
#include "platform/TemporaryFile.hpp"
#include "cli/RunQuillet.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace quillet {
namespace {

using test::quillet;

TEST(QuilletProgram, UsageTextIsExact) {
    const std::string& usage = usageText();
    EXPECT_TRUE(usage.starts_with(
        "quillet 0.2.0 — the fast, private PDF toolkit for your desktop\n\nUSAGE:\n"
        "    quillet <command> [options]\n\nCOMMANDS:\n"));
    EXPECT_NE(usage.find("\n    split <file>         Split (--every N | --ranges \"1-5,6-10\" | "
                         "--extract \"1,3\" | --by-size 25MB)\n"),
              std::string::npos);
    EXPECT_NE(usage.find("\n    convert <file...>    PDF → images (--format png|jpeg|tiff|heic, "
                         "--dpi 150, --pages 1-5)\n"),
              std::string::npos);
    EXPECT_TRUE(usage.ends_with(
        "\n\nGLOBAL OPTIONS:\n    -o <path>            Output file (or folder, for split/convert)\n"
        "    --replace            Overwrite the input file (off by default, PRD §57)\n"));
    EXPECT_EQ(std::count(usage.begin(), usage.end(), '\n'), 19);
}

struct ProgramCase {
    const char* name;
    std::vector<std::string> arguments;
    int status;
    std::string out;
    std::string err;
};

class QuilletProgramRun : public testing::TestWithParam<ProgramCase> {};

TEST_P(QuilletProgramRun, PrintsAndExitsAsDocumented) {
    const auto& c = GetParam();
    const auto result = quillet(c.arguments);
    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(result.err, c.err);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, QuilletProgramRun,
    testing::Values(
        ProgramCase{"NoArgumentsIsUsageAndFailure", {}, 2, usageText(), ""},
        ProgramCase{"ShortHelp", {"-h"}, 0, usageText(), ""},
        ProgramCase{"LongHelp", {"--help"}, 0, usageText(), ""},
        ProgramCase{"HelpWord", {"help", "ignored"}, 0, usageText(), ""},
        ProgramCase{"UnknownCommand", {"frobnicate"}, 2, "",
                    "Unknown command: frobnicate\n\n" + usageText()},
        ProgramCase{"CommandWordsAreCaseSensitive", {"Compress"}, 2, "",
                    "Unknown command: Compress\n\n" + usageText()},
        ProgramCase{"CompressWithoutInputs", {"compress"}, 2, "", "error: no input files\n"},
        ProgramCase{"InputsCheckedBeforeOptions", {"clean", "--preset", "bogus"}, 2, "",
                    "error: no input files\n"},
        ProgramCase{"MissingInput", {"info", "/nonexistent/a b.pdf"}, 2, "",
                    "error: file not found: /nonexistent/a b.pdf\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(QuilletProgram, EveryCommandChecksItsInputsFirst) {
    for (const char* command :
         {"compress", "merge", "split", "convert", "images", "clean", "protect", "unprotect", "info"}) {
        const auto result = quillet({command, "--password", "x", "-o", "out.pdf"});
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_EQ(result.err, "error: no input files\n") << command;
        EXPECT_EQ(result.out, "") << command;
    }
}

// Ctrl-C while an output is being written: the process ends with 130 and the partial file is gone.
TEST(QuilletInterrupt, SigintRemovesTemporaryFilesAndExits130) {
    test::TempDir dir;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        QuilletCLIEntry::installInterruptHandler();
        TemporaryFile partial(dir.path(), "out-", ".pdf");
        TemporaryFile nearby = TemporaryFile::beside(dir / "report.pdf");
        const char byte = 1;
        (void)::write(ready[1], &byte, 1);
        ::pause();
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 2);
    ::kill(child, SIGINT);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
    ::close(ready[0]);
    ::close(ready[1]);
}

} // namespace
} // namespace quillet
