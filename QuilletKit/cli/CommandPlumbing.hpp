// What the per-file and many-to-one commands share: choosing output files and drawing progress.
#pragma once

#include "cli/CLIArgs.hpp"
#include "cli/CommandIO.hpp"

#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace quillet {

using OutputBody =
    std::function<void(const std::filesystem::path& input, const std::filesystem::path& output)>;

/// Calls `body(input, output)` for each input in order; the first error propagates.
/// - `explicitOut` with exactly one input: that path as given; CLIError "output is the input"
///   when it names the input file itself and `replace` is not set. With several inputs it is
///   ignored and every input gets its own derived name.
/// - `replace`: the output is the input itself (writers replace it atomically).
/// - otherwise: "<stem>-<action>.pdf" beside the input, made unique, folder created if missing.
///   `suffix` "compressed" names by the compress operation, "ocr" by ocr, "redacted" by redact,
///   any other word by clean.
void withOutputs(const std::vector<std::filesystem::path>& inputs,
                 const std::optional<std::string>& explicitOut, bool replace,
                 const std::string& suffix, const OutputBody& body);

/// The one output of a many-to-one command. With `-o`: the path when free; inside it when it is a
/// folder; CLIError "output exists: <path> (remove it or pass a new name)" when a file is there.
/// Without `-o`: `fallbackName` in the first input's folder. No inputs: CLIError "no inputs".
/// A name inside a folder is made unique; every answer is claimed (FreeNames), so the write never
/// replaces a file that another process put there meanwhile (`-o FILE` then fails instead).
std::filesystem::path resolveSingleOutput(const CLIArgs& args,
                                          const std::vector<std::filesystem::path>& inputs,
                                          const std::string& fallbackName);

/// "\r  [████····] 37%": 24 cells, truncated fill and percentage, a line break at 1.0.
/// `fraction` is expected in 0...1 and clamped to it.
void printProgress(std::ostream& err, double fraction);
/// The same on `io.err`, when `io` draws progress at all.
void printProgress(const CommandIO& io, double fraction);

} // namespace quillet
