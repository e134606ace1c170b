// Where a command writes: results to `out`, progress and errors to `err`. The program passes
// the process's standard streams; tests may pass string streams.
#pragma once

#include <ostream>

namespace quillet {

struct CommandIO {
    std::ostream& out;
    std::ostream& err;
    /// Draw progress bars on `err`: only when it is a terminal, so that a script capturing
    /// standard error gets the "error: " line and nothing else.
    bool drawProgress = false;
};

} // namespace quillet
