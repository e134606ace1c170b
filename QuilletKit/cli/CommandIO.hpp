// Where a command writes: results to `out`, progress and errors to `err`. The program passes
// the process's standard streams; tests may pass string streams.
#pragma once

#include <ostream>

namespace quillet {

struct CommandIO {
    std::ostream& out;
    std::ostream& err;
};

} // namespace quillet
