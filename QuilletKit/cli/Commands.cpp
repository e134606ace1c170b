#include "cli/Commands.hpp"

#include "cli/CLIArgs.hpp"

#include <stdexcept>

namespace quillet {
namespace {

// Commands whose engines are not in this build yet: each checks its inputs like the finished one
// will and then says plainly that it cannot run. A finished command lives in a file of its own
// (InfoCommand.cpp, ...) and its line here goes.
[[noreturn]] void unavailable(const Arguments& arguments, const std::string& command) {
    CLIArgs::parse(arguments).inputs();
    throw std::runtime_error("the " + command + " command is not available in this build yet");
}

} // namespace

} // namespace quillet
