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
        ProgramCase{"MissingInput", {"info", "/nonexistent/a b.pdf"}, 2, "",
                    "error: file not found: /nonexistent/a b.pdf\n"}),
    [](const auto& info) { return std::string(info.param.name); });

// Inputs are checked before any option: not even an invalid preset is reported first.
TEST(QuilletProgram, EveryCommandChecksItsInputsFirst) {
    for (const char* command : {"compress", "merge", "split", "convert", "images", "clean",
                                "protect", "unprotect", "info"}) {
        const auto result =
            quillet({command, "--preset", "bogus", "--password", "x", "-o", "out.pdf"});
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
