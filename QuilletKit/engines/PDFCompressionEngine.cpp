#include "engines/PDFCompressionEngine.hpp"

#include "engines/DocumentCompactor.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "platform/TemporaryFile.hpp"

#include <cmath>
#include <limits>

namespace quillet {
namespace fs = std::filesystem;
namespace {

const std::string alreadyOptimizedNote = "This PDF is already optimized.";

std::int64_t fileSize(const fs::path& url) {
    std::error_code error;
    const auto size = fs::file_size(url, error);
    if (error) {
        throw PDFCoreError::cannotOpen(url);
    }
    return static_cast<std::int64_t>(size);
}

CompressionOutcome notKept(std::int64_t originalBytes, std::string note) {
    CompressionOutcome outcome;
    outcome.status = CompressionOutcome::Status::alreadyOptimized;
    outcome.originalBytes = originalBytes;
    outcome.resultBytes = originalBytes;
    outcome.note = std::move(note);
    return outcome;
}

// Validates a finished candidate and moves it onto `output`.
CompressionOutcome keep(TemporaryFile& candidate, const fs::path& output,
                        std::int64_t originalBytes, const RewriteDetail& detail) {
    const auto validation = PDFDocumentEngine::validateOutput(candidate.path());
    if (!validation.ok) {
        throw PDFCoreError::validationFailed(validation.message);
    }
    fs::path written;
    try {
        // A free name taken meanwhile by another writer moves the output on to the next one.
        written = candidate.commit(output);
    } catch (const fs::filesystem_error& error) {
        throw PDFCoreError::writeFailed(output.string() + ": " + error.code().message());
    }
    CompressionOutcome outcome;
    outcome.outputURL = written;
    outcome.originalBytes = originalBytes;
    outcome.resultBytes = detail.bytes;
    outcome.rasterizedPages = detail.rasterizedPages;
    return outcome;
}

// Progress of one rebuild mapped into [start, start + span] of the whole.
DocumentRewriter::Progress mapped(const CompressionOptions& options, double start, double span) {
    return [&options, start, span](double fraction) {
        if (options.progress) {
            options.progress(start + fraction * span);
        }
    };
}

TemporaryFile temporaryCandidate() {
    try {
        return TemporaryFile::inSystemTemporaryFolder(".pdf");
    } catch (const fs::filesystem_error& error) {
        throw PDFCoreError::writeFailed("cannot create output (" + error.code().message() + ")");
    }
}

} // namespace

std::optional<RasterSetting> PDFCompressionEngine::tierSetting(CompressionQualityTier tier) {
    switch (tier) {
    case CompressionQualityTier::highQuality: return RasterSetting{300, 0.85};
    case CompressionQualityTier::balanced: return RasterSetting{200, 0.72};
    case CompressionQualityTier::smallest: return RasterSetting{120, 0.55, true};
    case CompressionQualityTier::lossless: return std::nullopt;
    }
    return std::nullopt;
}

std::optional<ImageSetting> PDFCompressionEngine::imageSetting(CompressionQualityTier tier) {
    switch (tier) {
    case CompressionQualityTier::highQuality: return ImageSetting{300, 0.80};
    case CompressionQualityTier::balanced: return ImageSetting{150, 0.60};
    case CompressionQualityTier::smallest: return ImageSetting{96, 0.45};
    case CompressionQualityTier::lossless: return std::nullopt;
    }
    return std::nullopt;
}

ImageSetting PDFCompressionEngine::rungImages(const RasterSetting& rung) {
    return ImageSetting{rung.dpi, rung.quality};
}

std::int64_t PDFCompressionEngine::predictForRung(int rung, std::int64_t refRaster,
                                                  std::int64_t vectorParts) {
    const auto& setting = ladder[static_cast<std::size_t>(std::clamp(rung, 0, 8))];
    const double q = setting.quality;
    const double scale = (setting.dpi / 150.0) * (setting.dpi / 150.0);
    const double raster = scale * static_cast<double>(refRaster) * ((q * q * 2.2 + 0.12) / 1.26048);
    if (!(raster + static_cast<double>(vectorParts) < 9.0e18)) {
        throw PDFCoreError::invalidInput("The size prediction overflowed.");
    }
    return vectorParts + static_cast<std::int64_t>(raster);
}

std::string PDFCompressionEngine::targetText(std::int64_t targetBytes) {
    return formattedBytes(targetBytes, targetBytes < 10'485'760 ? 1 : 0);
}

namespace {

// A folder that cannot take the output fails now, before minutes of work, with the system's words.
void requireWritableFolder(const fs::path& output) {
    try {
        TemporaryFile probe = TemporaryFile::beside(output);
    } catch (const fs::filesystem_error& error) {
        const fs::path folder = output.has_parent_path() ? output.parent_path() : fs::path(".");
        throw PDFCoreError::writeFailed("cannot write to " + folder.string() + ": " +
                                        error.code().message());
    }
}

} // namespace

int PDFCompressionEngine::startRung(std::int64_t refRaster, std::int64_t vectorParts,
                                    std::int64_t budget, double factor) {
    for (int rung = 0; rung < static_cast<int>(ladder.size()); ++rung) {
        const auto predicted = predictForRung(rung, refRaster, vectorParts);
        if (budget >= static_cast<std::int64_t>(factor * static_cast<double>(predicted))) {
            return rung;
        }
    }
    return static_cast<int>(ladder.size()) - 1;
}

CompressionOutcome PDFCompressionEngine::compress(const fs::path& input, const fs::path& output,
                                                  const CompressionOptions& options) {
    requireWritableFolder(output);
    const std::int64_t originalBytes = fileSize(input);
    // Only the rasterizing tiers and the target search read the page analysis; a lossless
    // rewrite does not, and skipping it halves the work on long documents.
    const bool rasterizes = options.targetBytes || tierSetting(options.tier);
    // (the lossy tiers also read it for where images are placed)
    const PDFAnalysis analysis = rasterizes ? PDFAnalysisEngine::analyze(input) : PDFAnalysis{};
    if (options.targetBytes) {
        return compressToTarget(input, output, analysis, originalBytes, *options.targetBytes,
                                options);
    }
    return compressWithProfile(input, output, analysis, originalBytes, options);
}

CompressionOutcome PDFCompressionEngine::compressWithProfile(const fs::path& input,
                                                             const fs::path& output,
                                                             const PDFAnalysis& analysis,
                                                             std::int64_t originalBytes,
                                                             const CompressionOptions& options) {
    const auto setting = tierSetting(options.tier);
    TemporaryFile candidate = temporaryCandidate();
    // The lossless rewrite reports up to 0.95, the rasterizing tiers the whole range.
    const auto detail = DocumentRewriter::rewrite(
        input, candidate.path(), analysis, setting, imageSetting(options.tier),
        mapped(options, 0.0, setting ? 1.0 : 0.95), options.isCancelled);
    if (detail.bytes >= originalBytes) {
        return notKept(originalBytes, alreadyOptimizedNote);
    }
    return keep(candidate, output, originalBytes, detail);
}

void PDFCompressionEngine::refineBetweenRungs(
    const fs::path& input, const PDFAnalysis& analysis, std::int64_t targetBytes,
    const CompressionOptions& options, int keptRung, int attempts,
    const std::array<std::int64_t, ladder.size()>& measured, std::int64_t refRaster,
    std::int64_t vectorParts, std::optional<TemporaryFile>& candidate, RewriteDetail& kept,
    const std::optional<FontCompactor::GlyphUsage>& glyphs) {
    const auto target = static_cast<double>(targetBytes);
    if (!candidate || kept.bytes <= 0 || kept.bytes > targetBytes || kept.bytes >= target * 0.85 ||
        keptRung == 0) {
        return;
    }
    // The nearest rung above that overshoots: by its measured size, or by its prediction scaled
    // by how far the kept rung's prediction was off. Between it and the kept rung lies the target.
    const auto keptPrediction = predictForRung(keptRung, refRaster, vectorParts);
    const double factor =
        keptPrediction > 0 ? static_cast<double>(kept.bytes) / static_cast<double>(keptPrediction)
                           : 1.0;
    int above = -1;
    double aboveBytes = 0;
    for (int r = keptRung - 1; r >= 0 && above < 0; --r) {
        const auto known = measured[static_cast<std::size_t>(r)];
        const double bytes =
            known > 0 ? static_cast<double>(known)
                      : factor * static_cast<double>(predictForRung(r, refRaster, vectorParts));
        if (bytes > target) {
            above = r;
            aboveBytes = bytes;
        }
    }
    if (above < 0) {
        return;
    }

    // Sizes grow with the square of the resolution and steadily with quality, so the log of the
    // size is close to linear along a path that is linear in log DPI and in quality.
    struct Point {
        double logDpi;
        double quality;
        double logBytes;
    };
    const auto point = [](const RasterSetting& setting, double bytes) {
        return Point{std::log(static_cast<double>(setting.dpi)), setting.quality, std::log(bytes)};
    };
    Point low = point(ladder[static_cast<std::size_t>(keptRung)], static_cast<double>(kept.bytes));
    Point high = point(ladder[static_cast<std::size_t>(above)], aboveBytes);
    const double aim = std::log(target * 0.94);

    constexpr int rebuilds = 2;
    const double start = 0.35 + 0.25 * attempts;
    const double span = std::max(0.0, 1.0 - start) / rebuilds;
    for (int step = 0; step < rebuilds; ++step) {
        if (options.isCancelled && options.isCancelled()) {
            throw CancellationError();
        }
        const double rise = high.logBytes - low.logBytes;
        const double t = std::clamp(rise > 0 ? (aim - low.logBytes) / rise : 0.5, 0.1, 0.9);
        const RasterSetting setting{
            static_cast<int>(std::lround(std::exp(low.logDpi + t * (high.logDpi - low.logDpi)))),
            low.quality + t * (high.quality - low.quality)};
        TemporaryFile file = temporaryCandidate();
        const auto detail = DocumentRewriter::rewrite(
            input, file.path(), analysis, setting, rungImages(setting),
            mapped(options, start + span * step, span), options.isCancelled, &glyphs);
        if (detail.bytes <= 0) {
            return;
        }
        const Point reached = point(setting, static_cast<double>(detail.bytes));
        if (detail.bytes > targetBytes) {
            high = reached;
            continue;
        }
        if (detail.bytes > kept.bytes) {
            candidate = std::move(file);
            kept = detail;
        }
        // Close enough to the aim; a result just over 85% gets the second try.
        if (detail.bytes >= target * 0.9) {
            return;
        }
        low = reached;
    }
}

void PDFCompressionEngine::splitScansToReach(
    const fs::path& input, const PDFAnalysis& analysis, std::int64_t targetBytes,
    const CompressionOptions& options, std::optional<TemporaryFile>& candidate,
    RewriteDetail& kept, const std::optional<FontCompactor::GlyphUsage>& glyphs) {
    if (!candidate || kept.bytes <= targetBytes || kept.rasterizedPages == 0) {
        return;
    }
    for (const int rung : {5, 8}) {
        if (options.isCancelled && options.isCancelled()) {
            throw CancellationError();
        }
        const auto& setting = ladder[static_cast<std::size_t>(rung)];
        TemporaryFile file = temporaryCandidate();
        const auto detail =
            DocumentRewriter::rewrite(input, file.path(), analysis, setting, rungImages(setting),
                                      mapped(options, 0.95, 0.05), options.isCancelled, &glyphs);
        if (detail.bytes > 0 && detail.bytes < kept.bytes) {
            candidate = std::move(file);
            kept = detail;
        }
        if (kept.bytes <= targetBytes) {
            return;
        }
    }
}

CompressionOutcome PDFCompressionEngine::compressToTarget(
    const fs::path& input, const fs::path& output, const PDFAnalysis& analysis,
    std::int64_t originalBytes, std::int64_t targetBytes, const CompressionOptions& options) {
    const auto target = static_cast<double>(targetBytes);
    if (originalBytes <= static_cast<std::int64_t>(target * 0.95)) {
        TemporaryFile candidate = temporaryCandidate();
        const auto detail =
            DocumentRewriter::rewrite(input, candidate.path(), analysis, std::nullopt, std::nullopt,
                                      mapped(options, 0.0, 0.95), options.isCancelled);
        if (detail.bytes >= originalBytes) {
            return notKept(originalBytes, "Already under " + targetText(targetBytes) + ".");
        }
        auto outcome = keep(candidate, output, originalBytes, detail);
        outcome.note = "Already under target — optimized losslessly.";
        return outcome;
    }
    // Every candidate is built from the same file: which glyphs it shows is learnt once.
    const auto glyphs =
        DocumentCompactor::glyphUsage(input, "", options.isCancelled, mapped(options, 0.0, 0.02));
    if (options.progress) {
        options.progress(0.02);
    }
    RewriteDetail probe;
    {
        TemporaryFile probeFile = temporaryCandidate();
        const RasterSetting reference{150, 0.72};
        probe = DocumentRewriter::rewrite(input, probeFile.path(), analysis, reference,
                                          rungImages(reference), mapped(options, 0.02, 0.33),
                                          options.isCancelled, &glyphs);
    }
    const std::int64_t refRaster = probe.rasterBytes;
    const std::int64_t vectorParts = std::max<std::int64_t>(0, probe.bytes - probe.rasterBytes);
    const auto budget = static_cast<std::int64_t>(target * 0.97);
    const auto upper = static_cast<std::int64_t>(target * 1.02);
    const auto firstRungWithin = [&](double factor) {
        return startRung(refRaster, vectorParts, budget, factor);
    };

    int rung = firstRungWithin(1.0);
    std::optional<TemporaryFile> candidate;
    RewriteDetail kept;
    int previousRung = rung;
    std::int64_t previousBytes = 0;
    int keptRung = rung;
    int attempts = 0;
    std::array<std::int64_t, ladder.size()> measured{}; // bytes per rung, 0 when not built
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (options.isCancelled && options.isCancelled()) {
            throw CancellationError();
        }
        TemporaryFile file = temporaryCandidate();
        // Sizes follow the prediction only with JPEG pages: scans are split further down.
        RasterSetting setting = ladder[static_cast<std::size_t>(rung)];
        setting.mixed = false;
        const auto detail = DocumentRewriter::rewrite(
            input, file.path(), analysis, setting, rungImages(setting),
            mapped(options, 0.35 + 0.25 * attempt, 0.25), options.isCancelled, &glyphs);
        candidate = std::move(file); // the previous candidate's file goes here
        kept = detail;
        keptRung = rung;
        ++attempts;
        measured[static_cast<std::size_t>(rung)] = detail.bytes;

        int next = rung;
        if (detail.bytes > 0) {
            // The reference lags one attempt behind on purpose: it damps oscillation.
            const int referenceRung = attempt == 0 ? rung : previousRung;
            const std::int64_t referenceBytes = attempt == 0 ? detail.bytes : previousBytes;
            const auto predicted = predictForRung(referenceRung, refRaster, vectorParts);
            const double factor =
                predicted > 0 ? std::max(1.0, static_cast<double>(referenceBytes)) / predicted
                              : 1.0;
            next = firstRungWithin(factor);
        }
        previousRung = rung;
        previousBytes = detail.bytes;
        if (detail.bytes <= upper ? next <= rung : next >= rung) {
            break;
        }
        rung = next;
    }
    if (!candidate) {
        throw PDFCoreError::writeFailed("compression produced no output");
    }
    refineBetweenRungs(input, analysis, targetBytes, options, keptRung, attempts, measured,
                       refRaster, vectorParts, candidate, kept, glyphs);
    splitScansToReach(input, analysis, targetBytes, options, candidate, kept, glyphs);
    if (kept.bytes >= originalBytes) {
        return notKept(originalBytes, alreadyOptimizedNote);
    }
    auto outcome = keep(*candidate, output, originalBytes, kept);
    if (kept.bytes > targetBytes) {
        outcome.status = CompressionOutcome::Status::bestEffort;
        outcome.note = "Best effort: " + formattedBytes(kept.bytes, 2) +
                       " — this PDF cannot reach " + targetText(targetBytes) +
                       " without destroying quality.";
    }
    if (options.progress) {
        options.progress(1.0);
    }
    return outcome;
}

} // namespace quillet
