#include "support/Process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace quillet::test {
namespace {

void drain(int fd, std::string& into, bool& open) {
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(fd, buffer.data(), buffer.size());
    if (count <= 0) {
        open = false;
    } else {
        into.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

ProcessResult runProcess(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments,
                         const std::filesystem::path& workingFolder,
                         std::optional<std::chrono::milliseconds> timeout) {
    int outPipe[2];
    int errPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0 || ::pipe2(errPipe, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe failed");
    }
    std::vector<std::string> argv{program.string()};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (auto& argument : argv) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);

    const pid_t child = ::fork();
    if (child == 0) {
        const int devnull = ::open("/dev/null", O_RDONLY);
        ::dup2(devnull, 0);
        ::dup2(outPipe[1], 1);
        ::dup2(errPipe[1], 2);
        if (!workingFolder.empty() && ::chdir(workingFolder.c_str()) != 0) {
            ::_exit(127);
        }
        ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    ::close(outPipe[1]);
    ::close(errPipe[1]);

    ProcessResult result;
    bool outOpen = true;
    bool errOpen = true;
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + timeout.value_or(std::chrono::milliseconds(0));
    while (outOpen || errOpen) {
        int wait = -1;
        if (timeout) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
            if (left.count() <= 0) {
                // Killing the child closes its ends of the pipes, so the loop still drains to EOF.
                if (!result.timedOut) {
                    ::kill(child, SIGKILL);
                    result.timedOut = true;
                }
            } else {
                wait = static_cast<int>(left.count());
            }
        }
        pollfd fds[2] = {{outOpen ? outPipe[0] : -1, POLLIN, 0},
                         {errOpen ? errPipe[0] : -1, POLLIN, 0}};
        ::poll(fds, 2, wait);
        if (fds[0].revents != 0) {
            drain(outPipe[0], result.out, outOpen);
        }
        if (fds[1].revents != 0) {
            drain(errPipe[0], result.err, errOpen);
        }
    }
    ::close(outPipe[0]);
    ::close(errPipe[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

} // namespace quillet::test
