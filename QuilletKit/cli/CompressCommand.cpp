// `quillet compress FILE... [-t high|balanced|smallest|lossless] [--under SIZE] [-o OUT]
// [--replace]`: one output per input, a progress bar on standard error and a result line each.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFCompressionEngine.hpp"

#include <algorithm>
#include <map>

namespace quillet {
namespace {

CompressionQualityTier tierFromText(const std::string& text) {
    static const std::map<std::string, CompressionQualityTier> tiers{
        {"high", CompressionQualityTier::highQuality},
        {"highquality", CompressionQualityTier::highQuality},
        {"high-quality", CompressionQualityTier::highQuality},
        {"balanced", CompressionQualityTier::balanced},
        {"small", CompressionQualityTier::smallest},
        {"smallest", CompressionQualityTier::smallest},
        {"lossless", CompressionQualityTier::lossless},
    };
    const auto found = tiers.find(text);
    if (found == tiers.end()) {
        throw CLIError("invalid --tier; use high|balanced|smallest|lossless");
    }
    return found->second;
}

} // namespace

std::string compressionResultLine(const std::filesystem::path& input,
                                  const CompressionOutcome& outcome) {
    const std::string name = input.filename().string();
    if (outcome.status == CompressionOutcome::Status::alreadyOptimized) {
        return name + ": this PDF is already optimized — original kept\n";
    }
    const double saving = outcome.originalBytes < 1
                              ? 0.0
                              : static_cast<double>(std::max<std::int64_t>(
                                    0, outcome.originalBytes - outcome.resultBytes)) /
                                    static_cast<double>(outcome.originalBytes);
    std::string line = name + ": " + formattedBytes(outcome.originalBytes, 2) + " → " +
                       formattedBytes(outcome.resultBytes, 2) + " (−" +
                       PercentFormat::string(saving, 1) + ") → " +
                       outcome.outputURL.value_or(std::filesystem::path()).string() + "\n";
    if (outcome.note) {
        line += "  note: " + *outcome.note + "\n";
    }
    return line;
}

void runCompress(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    CompressionOptions options;
    options.tier = tierFromText(args.value("t").value_or("balanced"));
    if (const auto under = args.value("under")) {
        options.targetBytes = parseSize(*under);
    }
    double shown = 1.0;
    options.progress = [&io, &shown](double fraction) {
        shown = fraction;
        printProgress(io, fraction);
    };
    withOutputs(inputs, args.value("o"), args.flag("replace"), "compressed",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    const auto outcome = PDFCompressionEngine::compress(input, output, options);
                    // Some paths stop reporting short of 1 (the lossless rewrite ends at 0.95):
                    // finish the bar so the result starts on a line of its own.
                    if (shown < 1.0) {
                        printProgress(io, 1.0);
                    }
                    io.out << compressionResultLine(input, outcome);
                    io.out.flush();
                });
}

} // namespace quillet
