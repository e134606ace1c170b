// Runs a program as a child process and captures what it printed and how it ended.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillet::test {

struct ProcessResult {
    int status = -1;       // exit status, or 128 + signal number when killed by a signal
    std::string out;       // standard output
    std::string err;       // standard error
    bool timedOut = false; // killed (SIGKILL) because it outlived its timeout
};

/// Runs `program` with `arguments` (no shell involved), standard input closed, in `workingFolder`
/// when given, and waits for it. With a `timeout`, a child still running after it is killed and
/// reported through `timedOut`, so a hang fails one test instead of stalling the whole run.
ProcessResult runProcess(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments,
                         const std::filesystem::path& workingFolder = {},
                         std::optional<std::chrono::milliseconds> timeout = std::nullopt);

} // namespace quillet::test
