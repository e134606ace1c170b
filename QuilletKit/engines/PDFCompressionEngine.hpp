// Makes a PDF smaller: by a quality tier (image-dominated pages replaced by one image each at
// the tier's resolution and quality), losslessly (the document rewritten with object streams
// and recompressed streams, no page touched), or under a target size (a calibrated search over a
// ladder of nine resolution/quality rungs: one probe and at most three rebuilds, then at most two
// more between two rungs that straddle the target).
//
// The input is never modified. Every candidate is written to a "quillet-<UUID>.pdf" file in the
// system temporary folder; the kept one is validated and then moved onto `output` in one rename
// (also when `output` is the input itself, and across file systems). Every other temporary file
// is removed on success, failure and cancellation. A result that is not smaller than the input
// is not kept: the outcome is then `alreadyOptimized` and nothing is written.
#pragma once

#include "engines/CompressionTypes.hpp"
#include "engines/DocumentRewriter.hpp"
#include "platform/TemporaryFile.hpp"

#include <array>
#include <filesystem>

namespace quillet {

class PDFCompressionEngine {
  public:
    PDFCompressionEngine() = delete;

    /// Throws PDFCoreError (opening, analysis, writing, validation) and CancellationError. A folder
    /// that cannot take `output` fails with writeFailed before any work is done.
    static CompressionOutcome compress(const std::filesystem::path& input,
                                       const std::filesystem::path& output,
                                       const CompressionOptions& options);

    /// DPI and quality of the three rasterizing tiers (lossless has none).
    static std::optional<RasterSetting> tierSetting(CompressionQualityTier tier);

    /// How far images on pages that stay vector content may be reduced at `tier`: resampled
    /// above 1.5x this resolution, continuous tone re-encoded at this quality. Absent for
    /// lossless.
    static std::optional<ImageSetting> imageSetting(CompressionQualityTier tier);

    /// The same for a target rung (or a setting between two): its own resolution and quality.
    static ImageSetting rungImages(const RasterSetting& rung);

    /// The target ladder, best first. The search builds every rung with JPEG pages, whose sizes
    /// it can predict; from rung 5 on, a rung may also split text scans into a mask over a
    /// background (mixed raster content) when JPEG pages cannot reach the target at all.
    static constexpr std::array<RasterSetting, 9> ladder{{{350, 0.88},
                                                          {300, 0.85},
                                                          {250, 0.80},
                                                          {200, 0.75},
                                                          {150, 0.70},
                                                          {120, 0.62, true},
                                                          {96, 0.52, true},
                                                          {72, 0.42, true},
                                                          {54, 0.34, true}}};

    /// The predicted size at `rung` (clamped to the ladder) from a reference rebuild at 150 DPI,
    /// quality 0.72 whose images took `refRaster` bytes and the rest `vectorParts`.
    static std::int64_t predictForRung(int rung, std::int64_t refRaster, std::int64_t vectorParts);

    /// The first (best) rung whose prediction, times `factor` (the ratio of an actual result to
    /// its prediction), fits in `budget`; the last rung when none does.
    static int startRung(std::int64_t refRaster, std::int64_t vectorParts, std::int64_t budget,
                         double factor = 1.0);

    /// "Already under " and "Best effort" notes show targets below 10 MB with one decimal.
    static std::string targetText(std::int64_t targetBytes);

  private:
    static CompressionOutcome compressWithProfile(const std::filesystem::path& input,
                                                  const std::filesystem::path& output,
                                                  const PDFAnalysis& analysis,
                                                  std::int64_t originalBytes,
                                                  const CompressionOptions& options);
    static CompressionOutcome compressToTarget(const std::filesystem::path& input,
                                               const std::filesystem::path& output,
                                               const PDFAnalysis& analysis,
                                               std::int64_t originalBytes,
                                               std::int64_t targetBytes,
                                               const CompressionOptions& options);
    /// When the kept result of the rung search is under 85% of the target and a rung above it
    /// overshoots, rebuilds at most twice at settings between the two and makes the largest
    /// result that fits the candidate.
    /// When even the search's smallest result is over the target and it rasterized pages, builds
    /// rungs 5 and then 8 with scans split into a mask over a background (mixed raster
    /// content), and keeps the first that fits, or else the smallest.
    static void splitScansToReach(const std::filesystem::path& input, const PDFAnalysis& analysis,
                                  std::int64_t targetBytes, const CompressionOptions& options,
                                  std::optional<TemporaryFile>& candidate, RewriteDetail& kept,
                                  const std::optional<FontCompactor::GlyphUsage>& glyphs);
    static void refineBetweenRungs(const std::filesystem::path& input, const PDFAnalysis& analysis,
                                   std::int64_t targetBytes, const CompressionOptions& options,
                                   int keptRung, int attempts,
                                   const std::array<std::int64_t, ladder.size()>& measured,
                                   std::int64_t refRaster, std::int64_t vectorParts,
                                   std::optional<TemporaryFile>& candidate, RewriteDetail& kept,
                                   const std::optional<FontCompactor::GlyphUsage>& glyphs);
};

} // namespace quillet
