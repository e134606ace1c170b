#include "tasks/TaskRunner.hpp"

#include "engines/Formatters.hpp"
#include "engines/PDFCompressionEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFImageEngine.hpp"
#include "engines/PDFMergeEngine.hpp"
#include "engines/PDFMetadataEngine.hpp"
#include "engines/PDFOCREngine.hpp"
#include "engines/PDFRedactionEngine.hpp"
#include "engines/PDFOrganizeEngine.hpp"
#include "engines/PDFSecurityEngine.hpp"
#include "engines/PDFSplitEngine.hpp"
#include "engines/PDFStampEngine.hpp"
#include "output/OutputResolver.hpp"
#include "platform/FreeNames.hpp"
#include "tasks/MergeSeparators.hpp"
#include "tasks/RedactionRequest.hpp"

#include <algorithm>
#include <limits>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using P = OperationParameters;
using Result = TaskRunner::ExecutionResult;

/// What one input gave: its outputs, their total size and an optional note.
struct FileResult {
    std::vector<fs::path> outputs;
    std::int64_t bytes = 0;
    std::optional<std::string> note;
};

using FileBody = std::function<FileResult(const fs::path& input, const TaskRunner::Progress&)>;

void checkCancelled(const TaskRunner::CancellationTest& isCancelled) {
    if (isCancelled && isCancelled()) {
        throw CancellationError();
    }
}

void report(const TaskRunner::Progress& progress, double fraction) {
    if (progress) {
        progress(fraction);
    }
}

std::int64_t totalSize(const std::vector<fs::path>& files) {
    std::int64_t total = 0;
    for (const auto& file : files) {
        total += TaskRunner::inputSize(file);
    }
    return total;
}

/// The folder for `output` exists afterwards, or the job fails naming it.
void ensureDirectory(const fs::path& output) {
    try {
        OutputResolver::ensureDirectory(output);
    } catch (const fs::filesystem_error& error) {
        throw PDFCoreError::writeFailed(output.parent_path().string() + ": " +
                                        error.code().message());
    }
}

Result runPerFile(const std::vector<fs::path>& inputs, const TaskRunner::Progress& progress,
                  const TaskRunner::CancellationTest& isCancelled, const FileBody& body) {
    Result result;
    std::vector<std::string> notes;
    const double n = static_cast<double>(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        checkCancelled(isCancelled);
        const double base = static_cast<double>(i) / n;
        const double span = 1.0 / n;
        auto file = body(inputs[i], [&](double p) { report(progress, base + span * p); });
        result.originalBytes += TaskRunner::inputSize(inputs[i]);
        result.resultBytes += file.bytes;
        result.outputs.insert(result.outputs.end(), file.outputs.begin(), file.outputs.end());
        if (file.note) {
            notes.push_back(std::move(*file.note));
        }
        report(progress, base + span);
    }
    if (!notes.empty()) {
        std::string joined = notes.front();
        for (std::size_t i = 1; i < notes.size(); ++i) {
            joined += " · " + notes[i];
        }
        result.note = std::move(joined);
    }
    return result;
}

/// Single-input resolution with the ".pdf" extension, the folder made.
fs::path resolvedOutput(const fs::path& input, const OutputRule& rule, PDFOperationKind operation) {
    auto output = OutputResolver::resolve(input, rule, operation, std::nullopt, ".pdf").outputURL;
    ensureDirectory(output);
    return output;
}

/// For the operations that may write over their input.
fs::path replaceableOutput(const fs::path& input, const OutputRule& rule,
                           PDFOperationKind operation) {
    return rule.replaceOriginal ? input : resolvedOutput(input, rule, operation);
}

/// Runs `write` onto `output`, then answers where the file went: a free name that another
/// writer took meanwhile moves the output on to the next name of its sequence.
template <typename Write>
fs::path writeAndPlace(const fs::path& output, Write&& write) {
    try {
        write();
    } catch (...) {
        FreeNames::release(output);
        throw;
    }
    return FreeNames::placed(output);
}

FileResult writtenFile(const fs::path& output) {
    return FileResult{{output}, TaskRunner::inputSize(output), std::nullopt};
}

template <typename Case>
const Case& requireParameters(const TaskSpec& spec, const char* message) {
    if (const auto* parameters = spec.parameters.as<Case>()) {
        return *parameters;
    }
    throw PDFCoreError::invalidInput(message);
}

FileBody compressBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    CompressionOptions options;
    if (const auto* tier = spec.parameters.as<P::Compress>()) {
        options.tier = tier->tier;
    } else if (const auto* target = spec.parameters.as<P::TargetSize>()) {
        options.targetBytes = target->bytes;
    }
    options.isCancelled = isCancelled;
    const bool targetName = spec.operation == PDFOperationKind::targetSize && options.targetBytes;
    return [&spec, options, targetName](const fs::path& input, const TaskRunner::Progress& progress) {
        fs::path output;
        if (spec.outputRule.replaceOriginal) {
            output = input;
        } else if (targetName) {
            output = OutputResolver::outputFolder(input, spec.outputRule) /
                     TaskRunner::targetSizeFileName(input, *options.targetBytes);
            ensureDirectory(output);
        } else {
            output = resolvedOutput(input, spec.outputRule, spec.operation);
        }
        auto withProgress = options;
        withProgress.progress = progress;
        CompressionOutcome outcome;
        writeAndPlace(output, [&] {
            outcome = PDFCompressionEngine::compress(input, output, withProgress);
        });
        FileResult file{{}, outcome.resultBytes, outcome.note};
        if (outcome.outputURL) {
            file.outputs.push_back(*outcome.outputURL);
        }
        return file;
    };
}

FileBody splitBody(const TaskSpec& spec) {
    const auto& parameters = requireParameters<P::Split>(spec, "Missing split parameters.");
    return [&spec, &parameters](const fs::path& input, const TaskRunner::Progress& progress) {
        PDFDocument source = PDFDocumentEngine::openUnlock(input, "");
        const int everyN = static_cast<int>(
            std::clamp<std::int64_t>(parameters.everyN, 1, std::numeric_limits<int>::max()));
        const auto plan = PDFSplitEngine::chunkPages(parameters.mode, source.pageCount(),
                                                     parameters.ranges, everyN,
                                                     parameters.maxBytes, input);
        std::vector<fs::path> parts(plan.size());
        const auto destination = [&](std::size_t index) {
            // Split parts never report an overwrite; a taken name is made unique unless the
            // rule says to replace.
            parts[index] = OutputResolver::resolve(input, spec.outputRule, PDFOperationKind::split,
                                                   static_cast<int>(index) + 1, ".pdf")
                               .outputURL;
            ensureDirectory(parts[index]);
            return parts[index];
        };
        try {
            PDFSplitEngine::writeChunks(source, plan, destination, [&](std::size_t index) {
                progress(static_cast<double>(index + 1) / static_cast<double>(plan.size()));
            });
        } catch (...) {
            for (const auto& part : parts) {
                FreeNames::release(part);
            }
            throw;
        }
        for (auto& part : parts) {
            part = FreeNames::placed(part);
        }
        return FileResult{parts, totalSize(parts), std::to_string(parts.size()) + " files"};
    };
}

FileBody imagesBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters =
        requireParameters<P::PDFToImages>(spec, "Missing conversion parameters.");
    return [&parameters, &isCancelled](const fs::path& input, const TaskRunner::Progress& progress) {
        const auto stem = input.stem().string();
        const auto folder = input.parent_path() / (stem + "-images");
        const auto format =
            fromRawValue<ImageOutputFormat>(parameters.format).value_or(ImageOutputFormat::png);
        const int dpi = static_cast<int>(
            std::clamp<std::int64_t>(parameters.dpi, 0, std::numeric_limits<int>::max()));
        const auto timeout = std::chrono::seconds(std::clamp<std::int64_t>(
            parameters.renderTimeout, 0, std::numeric_limits<std::int32_t>::max()));
        auto images = PDFImageEngine::pdfToImages(input, folder, stem, format, dpi,
                                                  parameters.pages, parameters.jpegQuality,
                                                  progress, isCancelled, 0, timeout);
        const auto count = images.files.size();
        const auto bytes = totalSize(images.files);
        std::string note = std::to_string(count) + " images";
        if (!images.skipped.empty()) {
            note += " · " + std::to_string(images.skipped.size()) + " pages skipped";
        }
        return FileResult{std::move(images.files), bytes, std::move(note)};
    };
}

FileBody cleanBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters = requireParameters<P::Clean>(spec, "Missing clean preset.");
    return [&spec, &parameters, &isCancelled](const fs::path& input,
                                              const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        return writtenFile(writeAndPlace(output, [&] {
            PDFMetadataEngine::clean(input, output, parameters.preset, progress, isCancelled);
        }));
    };
}

FileBody protectBody(const TaskSpec& spec) {
    const auto& parameters = requireParameters<P::Protect>(spec, "Missing password.");
    return [&spec, &parameters](const fs::path& input, const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        return writtenFile(writeAndPlace(output, [&] {
            PDFSecurityEngine::protect(input, output, parameters.userPassword,
                                       parameters.ownerPassword, progress);
        }));
    };
}

FileBody unprotectBody(const TaskSpec& spec) {
    const auto& parameters = requireParameters<P::Unprotect>(spec, "Missing password.");
    return [&spec, &parameters](const fs::path& input, const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        return writtenFile(writeAndPlace(output, [&] {
            PDFSecurityEngine::removePassword(input, output, parameters.password, progress);
        }));
    };
}

FileBody ocrBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters = requireParameters<P::OCR>(spec, "Missing OCR parameters.");
    // A language that is not installed fails the job before any file is read or named.
    PDFOCREngine::requireLanguages(parameters.languages);
    return [&spec, &parameters, &isCancelled](const fs::path& input,
                                              const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        OCROptions options;
        options.languages = parameters.languages;
        options.progress = progress;
        options.isCancelled = isCancelled;
        OCROutcome outcome;
        auto file = writtenFile(writeAndPlace(
            output, [&] { outcome = PDFOCREngine::makeSearchable(input, output, options); }));
        file.note = std::to_string(outcome.pagesRead) + " of " +
                    std::to_string(outcome.pageCount) + " pages made searchable";
        return file;
    };
}

FileBody redactBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters = requireParameters<P::Redact>(spec, "Missing redaction parameters.");
    auto request = std::make_shared<RedactionRequest>(redactionRequest(parameters));
    // A request that cannot work fails the job before any file is read or named.
    PDFRedactionEngine::validate(*request);
    return [&spec, request, &isCancelled](const fs::path& input,
                                          const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        RedactionOutcome outcome;
        auto file = writtenFile(writeAndPlace(output, [&] {
            outcome = PDFRedactionEngine::redact(input, output, *request, progress, isCancelled);
        }));
        file.note = redactionNote(outcome);
        return file;
    };
}

FileBody stampBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters = requireParameters<P::Stamp>(spec, "Missing stamp parameters.");
    PDFStampEngine::validate(parameters);
    // Bates numbers run on from one file to the next, in input order.
    auto context = std::make_shared<StampContext>();
    return [&spec, &parameters, context, &isCancelled](const fs::path& input,
                                                       const TaskRunner::Progress& progress) {
        const auto output = replaceableOutput(input, spec.outputRule, spec.operation);
        StampOutcome outcome;
        auto file = writtenFile(writeAndPlace(output, [&] {
            outcome = PDFStampEngine::stamp(input, output, parameters, *context, progress, isCancelled);
        }));
        file.note = std::to_string(outcome.pagesStamped) +
                    (outcome.pagesStamped == 1 ? " page stamped" : " pages stamped");
        if (outcome.bates) {
            *file.note += ", Bates " + outcome.bates->first + "–" + outcome.bates->second;
        }
        return file;
    };
}

FileBody organizeBody(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    const auto& parameters = requireParameters<P::Organize>(spec, "Missing organize parameters.");
    return [&spec, &parameters, &isCancelled](const fs::path& input,
                                              const TaskRunner::Progress& progress) {
        // A file that cannot be read fails before any output folder is made.
        (void)PDFDocumentEngine::openCG(input);
        const auto output = resolvedOutput(input, spec.outputRule, PDFOperationKind::organize);
        return writtenFile(writeAndPlace(output, [&] {
            PDFOrganizeEngine::organize(input, output, parameters, progress, isCancelled);
        }));
    };
}

ImageToPDFOptions imageOptions(const OperationParameters& parameters) {
    ImageToPDFOptions options;
    if (const auto* images = parameters.as<P::ImagesToPDF>()) {
        options.pageSize = fromRawValue<ImageToPDFOptions::PageSize>(images->pageSize)
                               .value_or(ImageToPDFOptions::PageSize::original);
        options.fit = fromRawValue<ImageToPDFOptions::Fit>(images->fit)
                          .value_or(ImageToPDFOptions::Fit::fit);
        options.marginPoints = std::max(0.0, images->marginPT);
    }
    return options;
}

Result runWholeBatch(const TaskSpec& spec, const std::vector<fs::path>& inputs,
                     const TaskRunner::Progress& progress,
                     const TaskRunner::CancellationTest& isCancelled) {
    const bool merge = spec.operation == PDFOperationKind::merge;
    const auto resolved = merge
                              ? OutputResolver::resolveMerge(inputs, spec.outputRule).outputURL
                              : OutputResolver::resolveImagesToPDF(inputs, spec.outputRule).outputURL;
    ensureDirectory(resolved);
    const auto options = imageOptions(spec.parameters);
    const auto* parameters = spec.parameters.as<P::Merge>();
    std::optional<MergeSeparators> separators;
    if (merge && parameters && parameters->insertBlankBetween) {
        separators.emplace(inputs, options, isCancelled);
    }
    // The blank pages are among the pages counted: the note tells the pages of the output.
    int pages = 0;
    const auto output = writeAndPlace(resolved, [&] {
        pages = PDFMergeEngine::merge(separators ? separators->inputs() : inputs, resolved,
                                      options, progress, isCancelled);
    });
    Result result;
    result.outputs = {output};
    result.originalBytes = totalSize(inputs);
    result.resultBytes = TaskRunner::inputSize(output);
    result.note = merge ? std::to_string(pages) + " pages combined"
                        : std::to_string(inputs.size()) + " images";
    return result;
}

FileBody bodyFor(const TaskSpec& spec, const TaskRunner::CancellationTest& isCancelled) {
    switch (spec.operation) {
    case PDFOperationKind::compress:
    case PDFOperationKind::targetSize:
        return compressBody(spec, isCancelled);
    case PDFOperationKind::split:
        return splitBody(spec);
    case PDFOperationKind::pdfToImages:
        return imagesBody(spec, isCancelled);
    case PDFOperationKind::clean:
        return cleanBody(spec, isCancelled);
    case PDFOperationKind::protect:
        return protectBody(spec);
    case PDFOperationKind::unprotect:
        return unprotectBody(spec);
    case PDFOperationKind::organize:
        return organizeBody(spec, isCancelled);
    case PDFOperationKind::ocr:
        return ocrBody(spec, isCancelled);
    case PDFOperationKind::redact:
        return redactBody(spec, isCancelled);
    case PDFOperationKind::stamp:
        return stampBody(spec, isCancelled);
    case PDFOperationKind::merge:
    case PDFOperationKind::imagesToPDF:
        break;
    }
    throw PDFCoreError::invalidInput("Unsupported operation.");
}

} // namespace

std::int64_t TaskRunner::inputSize(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : static_cast<std::int64_t>(size);
}

std::string TaskRunner::targetSizeFileName(const fs::path& input, std::int64_t targetBytes) {
    constexpr std::int64_t tenMiB = 10 * 1024 * 1024;
    auto size = formattedBytes(targetBytes, targetBytes < tenMiB ? 1 : 0);
    std::erase(size, ' ');
    return input.stem().string() + "-" + size + ".pdf";
}

TaskRunner::ExecutionResult TaskRunner::run(const TaskSpec& spec, const Progress& progress,
                                            const CancellationTest& isCancelled) {
    std::vector<fs::path> inputs;
    for (const auto& path : spec.inputs) {
        std::error_code error;
        if (!path.empty() && fs::exists(path, error)) {
            inputs.emplace_back(path);
        }
    }
    if (inputs.empty()) {
        throw PDFCoreError::invalidInput("No input files.");
    }
    if (spec.operation == PDFOperationKind::merge ||
        spec.operation == PDFOperationKind::imagesToPDF) {
        return runWholeBatch(spec, inputs, progress, isCancelled);
    }
    return runPerFile(inputs, progress, isCancelled, bodyFor(spec, isCancelled));
}

} // namespace quillet
