// One output of a split on its way to its destination, and the flush of a finished split.
//
// Like TemporaryFile, a part is written to a hidden file beside its destination and appears
// there in one rename once complete, so no reader (and no Ctrl-C) ever sees half a part, and a
// part that is not moved into place is removed. Unlike TemporaryFile::commit, the rename is not
// preceded and followed by a flush to disk: a split of a long document writes hundreds of parts,
// and two flushes per part cost more than writing them. `flushToDisk` flushes the parts of a split
// all at once at its end instead; a power failure before then can only cost parts of a split whose
// source is untouched, never an input.
#pragma once

#include "platform/InterruptCleanup.hpp"

#include <filesystem>
#include <memory>
#include <vector>

namespace quillet {

class SplitPartFile {
  public:
    /// Creates the hidden file beside `destination` (permissions as for any new file). Throws
    /// std::filesystem::filesystem_error naming the folder when it cannot be created.
    explicit SplitPartFile(const std::filesystem::path& destination);

    SplitPartFile(SplitPartFile&&) noexcept;
    SplitPartFile& operator=(SplitPartFile&&) noexcept;
    /// Removes the file unless it was moved into place.
    ~SplitPartFile();

    const std::filesystem::path& path() const { return path_; }
    const std::filesystem::path& destination() const { return destination_; }

    /// Renames the file over the destination (replacing a file there). Afterwards this object
    /// owns nothing. Throws std::filesystem::filesystem_error; the destination is then unchanged.
    void moveIntoPlace();

    /// Flushes the given files and then their folders to disk, each folder once. One flush of
    /// many files written together costs about what a flush of one file does. Throws
    /// std::filesystem::filesystem_error naming the first path that cannot be flushed.
    static void flushToDisk(const std::vector<std::filesystem::path>& files);

  private:
    void discard() noexcept;

    std::filesystem::path path_;
    std::filesystem::path destination_;
    std::unique_ptr<InterruptCleanup::Registration> registration_;
};

} // namespace quillet
