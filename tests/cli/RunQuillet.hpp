// The real `quillet` program of this build, run as a user runs it.
#pragma once

#include "support/Process.hpp"

#include <string>
#include <vector>

namespace quillet::test {

inline ProcessResult quillet(const std::vector<std::string>& arguments) {
    return runProcess(QUILLET_BINARY, arguments);
}

} // namespace quillet::test
