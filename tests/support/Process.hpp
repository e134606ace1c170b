// Runs a program as a child process and captures what it printed and how it ended.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillet::test {

struct ProcessResult {
    int status = -1;   // exit status, or 128 + signal number when killed by a signal
    std::string out;   // standard output
    std::string err;   // standard error
};

/// Runs `program` with `arguments` (no shell involved), standard input closed, in `workingFolder`
/// when given, and waits for it.
ProcessResult runProcess(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments,
                         const std::filesystem::path& workingFolder = {});

} // namespace quillet::test
