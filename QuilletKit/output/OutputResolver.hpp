// Where an operation's result goes and what it is called.
//
// Nothing here writes an output; a free name answered is claimed so that the write onto it is
// exclusive (see uniquify). Resolution only looks at what already exists (any
// directory entry counts, a dangling symbolic link included, so nothing is ever written through
// one) and never fails; only `ensureDirectory` creates anything or throws.
//
// Every operation that shows a time ("{date}", merged-..., images-..., the last-resort unique
// name) reads it from `now`, which defaults to the clock at the call; local time, "%Y%m%d-%H%M"
// (20250314-0905).
#pragma once

#include "model/OperationKinds.hpp"
#include "output/OutputRule.hpp"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillet::OutputResolver {

using Clock = std::chrono::system_clock;

struct Resolution {
    std::filesystem::path outputURL;
    /// The chosen location already holds a file that writing there will replace.
    bool willOverwrite = false;

    bool operator==(const Resolution&) const = default;
};

/// The "{action}" word: "compressed", "merged", "part", ..., "clean" for clean and empty for the
/// two image conversions (so the default template leaves a trailing hyphen there).
std::string_view actionWord(PDFOperationKind operation);

/// Local time as "yyyyMMdd-HHmm".
std::string timestamp(Clock::time_point now = Clock::now());

/// The base name (no extension) for `stem`. An empty template means "{name}-{action}". The tokens
/// {name}, {action}, {date}, {size} (always the word "sized") and, with a part, {part} are
/// replaced literally, in that order, each over the text the earlier steps produced (a stem
/// holding "{date}" gets the date). With a part and no "{part}" left, "-part<N>" is appended.
/// Nothing is sanitised: a "/" reaches the path.
std::string applyTemplate(std::string_view nameTemplate, std::string_view stem,
                          PDFOperationKind operation, std::optional<int> part,
                          Clock::time_point now = Clock::now());

/// `url` itself when nothing is there, otherwise the first free "<stem>-<n>.<ext>" for n in
/// 2...999. The dot is written even for an empty extension ("notes" gives "notes-2."). When all
/// are taken: "<stem>-<seconds since 1970>.<ext>", unchecked.
///
/// The answer is claimed (FreeNames): a write onto it never replaces a file that appears there
/// meanwhile (another process that chose the same name) but moves on along the same sequence;
/// `FreeNames::placed` tells where the output went.
std::filesystem::path uniquify(const std::filesystem::path& url,
                               Clock::time_point now = Clock::now());

/// The folder the rule chooses for outputs of `input`: its own folder, `subfolderName` inside
/// it, or `customFolder`.
std::filesystem::path outputFolder(const std::filesystem::path& input, const OutputRule& rule);

/// One output for one input (every split part is one call). `extension` is the output's
/// extension with or without its dot (".pdf" or "pdf"); empty adds none. With `replaceOriginal`
/// the templated location is answered even when taken, otherwise a free one. A split part
/// (`part` given) always reports `willOverwrite` false.
Resolution resolve(const std::filesystem::path& input, const OutputRule& rule,
                   PDFOperationKind operation, std::optional<int> part, std::string_view extension,
                   Clock::time_point now = Clock::now());

/// "merged-<time>.pdf" in the rule's folder for the first input, made unique. The template and
/// `replaceOriginal` are not consulted. No inputs: "merged.pdf" in the temporary folder, as is.
Resolution resolveMerge(const std::vector<std::filesystem::path>& inputs, const OutputRule& rule,
                        Clock::time_point now = Clock::now());

/// Beside the first input, ignoring the rule entirely: "<stem>.pdf" for one input,
/// "images-<time>.pdf" for several, made unique. No inputs: "scan.pdf" in the temporary folder.
Resolution resolveImagesToPDF(const std::vector<std::filesystem::path>& inputs,
                              const OutputRule& rule, Clock::time_point now = Clock::now());

/// Creates the folder that is to hold `url`, with any missing parents, when nothing is at that
/// path. A regular file there is left alone (the later write fails instead). Throws the
/// `std::filesystem::filesystem_error` of a failed creation unchanged.
void ensureDirectory(const std::filesystem::path& url);

} // namespace quillet::OutputResolver
