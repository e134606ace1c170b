// The command-line program: picks a command by its first argument, runs it, and turns the
// outcome into an exit status.
//
//   0    the command completed (also "help", "--help", "-h")
//   1    the work failed (engine errors, file-system errors): "error: " + description
//   2    usage and validation errors (CLIError), no arguments, unknown command
//   130  interrupted (cancellation, or SIGINT: temporary files are removed first)
#pragma once

#include "cli/CommandIO.hpp"

#include <string>
#include <vector>

namespace quillet {

struct QuilletCLIEntry {
    /// The process entry: installs the interrupt handler and runs with the standard streams.
    static int main(int argc, char** argv);

    /// Runs one command line (without the program name) against the given streams.
    static int run(const std::vector<std::string>& arguments, CommandIO& io);

    /// SIGINT and SIGTERM remove every registered temporary file, then end the process with
    /// status 130 (SIGINT) or 143 (SIGTERM).
    static void installInterruptHandler();
};

} // namespace quillet
