// Output names chosen because they were free, and the write that keeps them free.
//
// Choosing a free name and writing the file are one step: a name chosen as free is only ever
// taken with an exclusive move of the complete file (renameat2 with RENAME_NOREPLACE, or link(2)
// where that is missing), which fails when the name has meanwhile appeared. Then the next name of
// the same sequence is tried. Another process that chose the same name at the same moment
// therefore never has its output replaced, and a file appears under its final name only once it
// is complete.
//
// The sequence for "<folder>/<stem>.<ext>": the name itself, then "<stem>-<n>.<ext>" for n in
// 2...999, then "<stem>-<seconds since 1970>.<ext>" (the dot is written even for an empty
// extension). `OutputResolver::uniquify` answers the first name of it that is free now and
// `claim`s it; `TemporaryFile::commit` onto a claimed name places the file exclusively; `placed`
// tells the caller where it went.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

namespace quillet::FreeNames {

using Clock = std::chrono::system_clock;

/// Position `index` of the sequence of `base`: 1 is `base` itself, 2...999 the numbered names,
/// anything else the name carrying the seconds of `now`.
std::filesystem::path candidate(const std::filesystem::path& base, int index,
                                Clock::time_point now);

/// Remembers that `chosen`, position `index` of the sequence of `base`, was picked as a free name:
/// the write onto it must not replace anything. Forgets any earlier claim on `chosen`.
void claim(const std::filesystem::path& chosen, const std::filesystem::path& base, int index,
           Clock::time_point now);

/// Remembers that `chosen` was asked for by name and was free: the write onto it must not
/// replace anything, and fails (EEXIST) instead of moving on when the name has been taken.
void claimExactly(const std::filesystem::path& chosen);

/// Whether `destination` is a claimed name.
bool isClaimed(const std::filesystem::path& destination);

/// Moves the complete `file` to the claimed `destination`, or to the next free name of its
/// sequence when `destination` has been taken meanwhile, never replacing anything. Returns where
/// it went and remembers it for `placed`. Throws std::filesystem::filesystem_error when the move
/// fails for another reason or when `destination` is not claimed.
std::filesystem::path placeExclusively(const std::filesystem::path& file,
                                       const std::filesystem::path& destination);

/// Where the output meant for `chosen` ended up: `chosen` itself unless a write onto the claim
/// had to move on to a later name. Forgets the claim: call it once the write is over (or failed).
std::filesystem::path placed(const std::filesystem::path& chosen);

/// Gives up a claim (when nothing is written to it). Harmless for names never claimed.
void release(const std::filesystem::path& chosen);

} // namespace quillet::FreeNames
