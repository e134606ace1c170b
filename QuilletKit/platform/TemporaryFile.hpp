// A file that exists only until its content is complete.
//
// Outputs are never written in place: they are written to a temporary file and moved over the
// destination in one rename once complete, so a reader (or a crash, or Ctrl-C) never sees a
// half-written file and an input that is being replaced is never damaged. The temporary file is
// removed when the object goes away without `commit`, and it is registered with
// InterruptCleanup so an interrupted process removes it too.
#pragma once

#include "platform/InterruptCleanup.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace quillet {

class TemporaryFile {
  public:
    /// Creates an empty file named `prefix` + a fresh UUID + `suffix` in `folder` (mode 0600
    /// until committed). Throws std::filesystem::filesystem_error naming the folder when the file
    /// cannot be created (missing or read-only folder).
    TemporaryFile(const std::filesystem::path& folder, const std::string& prefix,
                  const std::string& suffix);

    /// A hidden temporary beside `destination`, in its folder, so `commit` is a same-file-system
    /// rename.
    static TemporaryFile beside(const std::filesystem::path& destination);

    /// "quillet-" + UUID + `suffix` in the system temporary folder.
    static TemporaryFile inSystemTemporaryFolder(const std::string& suffix);

    TemporaryFile(TemporaryFile&&) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) noexcept;
    ~TemporaryFile();

    const std::filesystem::path& path() const { return path_; }

    /// Whether `commit` waits for the disk. `deferred` is for many outputs written together (the
    /// parts of a split): they appear in one rename each as always, and the caller flushes them
    /// all at once with `flushToDisk` when the last is in place.
    enum class Durability { flushed, deferred };

    /// Flushes the file to disk and moves it over `destination` (replacing any file there). When
    /// the two are on different file systems, the content is first copied next to the
    /// destination, so the final step is still one rename. The file is then given the permissions
    /// a new file gets from the umask. Afterwards this object owns nothing. Throws
    /// std::filesystem::filesystem_error; on failure the destination is unchanged.
    ///
    /// A `destination` chosen as a free name (FreeNames::claim) is never replaced: the file goes
    /// there only if the name is still free, else to the next free name of its sequence. Returns
    /// where the file went.
    std::filesystem::path commit(const std::filesystem::path& destination,
                Durability durability = Durability::flushed);

    /// Flushes the given files, then each of their folders once. Throws
    /// std::filesystem::filesystem_error naming the first path that cannot be flushed.
    static void flushToDisk(const std::vector<std::filesystem::path>& files);

  private:
    void discard() noexcept;

    std::filesystem::path path_;
    std::unique_ptr<InterruptCleanup::Registration> registration_;
};

} // namespace quillet
