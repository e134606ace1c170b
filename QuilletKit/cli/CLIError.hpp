// A usage or validation failure of the command line: the process prints "error: " and the
// message on standard error and exits with status 2.
#pragma once

#include <stdexcept>
#include <string>

namespace quillet {

class CLIError : public std::runtime_error {
  public:
    explicit CLIError(std::string message) : std::runtime_error(message), message(std::move(message)) {}

    std::string message;
};

} // namespace quillet
