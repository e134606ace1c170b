// Files to remove when the process is interrupted.
//
// A temporary file registers its path while it exists; a SIGINT/SIGTERM handler calls
// `removeRegisteredFiles`, which is async-signal-safe (it only calls unlink on preformatted
// paths), and then ends the process. This is the one piece of process-wide state in the platform
// layer: signals are process-wide, so the list of what to remove on one has to be too.
#pragma once

#include <filesystem>

namespace quillet {

class InterruptCleanup {
  public:
    /// Keeps `path` on the list for the lifetime of the object. Paths longer than the slot size,
    /// or registrations beyond the slot count, are not tracked (they are still removed normally).
    class Registration {
      public:
        explicit Registration(const std::filesystem::path& path) noexcept;
        ~Registration();
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;

      private:
        int slot_ = -1;
    };

    /// Unlinks every registered path. Safe to call from a signal handler.
    static void removeRegisteredFiles() noexcept;
};

} // namespace quillet
