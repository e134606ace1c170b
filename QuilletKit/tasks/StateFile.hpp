// The application's own state files ("queue.json", "history.json", "presets.json"): read whole,
// written so that a crash or a full disk never leaves half a file, and set aside instead of
// overwritten when they cannot be understood.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace quillet::StateFile {

/// The whole content, or nothing when the file is missing or cannot be read.
std::optional<std::string> read(const std::filesystem::path& file);

/// Writes `bytes` to a new file beside `file` with `permissions`, flushes it, renames it over
/// `file` and flushes the folder. On failure `file` is unchanged, nothing is left beside it, and
/// std::filesystem::filesystem_error naming the file is thrown.
void write(const std::filesystem::path& file, const std::string& bytes,
           std::filesystem::perms permissions = std::filesystem::perms::owner_read |
                                                std::filesystem::perms::owner_write);

/// Renames `file` to `file` + ".bad" (replacing an older one) so a file that could not be decoded
/// survives for a person to look at while the store starts afresh. Failures are ignored.
void setAside(const std::filesystem::path& file) noexcept;

/// Removes `file`; a missing file or a failure is ignored.
void remove(const std::filesystem::path& file) noexcept;

} // namespace quillet::StateFile
