// The command line's interrupt handling, in a child process of this test.
#include "cli/QuilletCLIEntry.hpp"
#include "platform/TemporaryFile.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace quillet {
namespace {

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
