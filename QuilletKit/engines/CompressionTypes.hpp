// What a caller asks of the compression engine and what it answers.
#pragma once

#include "model/OperationKinds.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace quillet {

struct CompressionOptions {
    /// Used when no target size is given.
    CompressionQualityTier tier = CompressionQualityTier::balanced;
    /// When present, the engine searches for settings that land under this many bytes and
    /// `tier` is ignored.
    std::optional<std::int64_t> targetBytes;
    /// Overall progress 0 ... 1, called on the calling thread, in page order.
    std::function<void(double)> progress;
    /// Polled between pages and between attempts; answering true ends the work with
    /// CancellationError and leaves no file behind.
    std::function<bool()> isCancelled;
};

struct CompressionOutcome {
    enum class Status { compressed, alreadyOptimized, bestEffort };

    Status status = Status::compressed;
    /// The written output; absent when nothing was written (`alreadyOptimized`).
    std::optional<std::filesystem::path> outputURL;
    std::int64_t originalBytes = 0;
    /// The output's size; `originalBytes` when nothing was written.
    std::int64_t resultBytes = 0;
    /// Pages replaced by one image each in the kept output.
    int rasterizedPages = 0;
    std::optional<std::string> note;
};

} // namespace quillet
