// Runs one job from its spec to its outputs, on the calling thread.
//
// The runner checks the inputs, picks the engine for the job's operation, resolves every output
// through OutputResolver, maps the engines' progress onto one overall fraction and honours
// cancellation. It keeps no state between runs.
//
// Progress: for the per-file operations, input i of n owns the span [i/n, (i+1)/n]; an engine's
// own fraction p is reported as i/n + p/n and the end of each input as exactly (i+1)/n. Merge and
// images to PDF pass their engine's fraction through. The callback runs on the calling thread,
// possibly many times a second; callers throttle it.
//
// Failures: PDFCoreError, unchanged from the engines, or of the runner's own:
//   - invalidInput "No input files." when no input path names an existing file;
//   - invalidInput "Missing split parameters." (and the other "Missing ..." texts) when the
//     parameters are of another kind than the operation needs;
//   - writeFailed naming the folder when an output folder cannot be created.
// CancellationError when `isCancelled` answers true, checked before each input and inside the
// engines. Outputs written for earlier inputs stay on disk in every case.
#pragma once

#include "tasks/TaskRecords.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

class TaskRunner {
  public:
    TaskRunner() = delete;

    struct ExecutionResult {
        /// Every file written, in the order written (the images of a page export, the parts of
        /// a split). A compression that found the input already optimal writes nothing and
        /// lists nothing for it.
        std::vector<std::filesystem::path> outputs;
        std::int64_t originalBytes = 0; ///< sum of the input sizes
        std::int64_t resultBytes = 0;   ///< sum of the output sizes
        /// The engines' notes joined with " · "; "N files" for a split, "N images" for a page
        /// export and for images to PDF, "N pages combined" for a merge.
        std::optional<std::string> note;
    };

    using Progress = std::function<void(double)>;
    using CancellationTest = std::function<bool()>;

    static ExecutionResult run(const TaskSpec& spec, const Progress& progress,
                               const CancellationTest& isCancelled);

    /// The file name a target-size job writes: the input's stem, "-", the target as the byte
    /// formatter shows it (one decimal below 10 MiB, none from there) without spaces, ".pdf"
    /// ("report-2.4MB.pdf" for 2,500,000 bytes).
    static std::string targetSizeFileName(const std::filesystem::path& input,
                                          std::int64_t targetBytes);

    /// The size of the file at `path`; 0 when it cannot be read.
    static std::int64_t inputSize(const std::filesystem::path& path);
};

} // namespace quillet
