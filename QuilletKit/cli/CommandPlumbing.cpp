#include "cli/CommandPlumbing.hpp"

#include "cli/CLIError.hpp"
#include "output/OutputResolver.hpp"
#include "platform/FreeNames.hpp"

#include <algorithm>

namespace quillet {
namespace fs = std::filesystem;

void withOutputs(const std::vector<fs::path>& inputs, const std::optional<std::string>& explicitOut,
                 bool replace, const std::string& suffix, const OutputBody& body) {
    if (explicitOut && inputs.size() == 1) {
        // Overwriting the input is what --replace asks for; an -o that happens to name the input
        // (another spelling, a link) must not do it silently.
        std::error_code error;
        if (!replace && fs::equivalent(inputs.front(), fs::path(*explicitOut), error)) {
            throw CLIError("output is the input: " + *explicitOut +
                           " (pass --replace to overwrite it)");
        }
        body(inputs.front(), fs::path(*explicitOut));
        return;
    }
    const auto operation = suffix == "compressed" ? PDFOperationKind::compress
                           : suffix == "ocr"      ? PDFOperationKind::ocr
                           : suffix == "redacted" ? PDFOperationKind::redact
                           : suffix == "stamped"  ? PDFOperationKind::stamp
                                                  : PDFOperationKind::clean;
    for (const auto& input : inputs) {
        if (replace) {
            body(input, input);
            continue;
        }
        const std::string name =
            OutputResolver::applyTemplate("{name}-{action}", input.stem().string(), operation,
                                          std::nullopt) +
            ".pdf";
        // Claimed: the write never replaces a file another process put there meanwhile.
        const fs::path output = OutputResolver::uniquify(input.parent_path() / name);
        OutputResolver::ensureDirectory(output);
        try {
            body(input, output);
        } catch (...) {
            FreeNames::release(output);
            throw;
        }
        FreeNames::release(output);
    }
}

fs::path resolveSingleOutput(const CLIArgs& args, const std::vector<fs::path>& inputs,
                             const std::string& fallbackName) {
    if (inputs.empty()) {
        throw CLIError("no inputs");
    }
    if (const auto out = args.value("o")) {
        const fs::path path(*out);
        std::error_code error;
        const auto status = fs::symlink_status(path, error);
        if (!fs::exists(status)) {
            // Still refused, not replaced, when another process writes it first.
            FreeNames::claimExactly(path);
            return path;
        }
        if (fs::is_directory(fs::status(path, error))) {
            return OutputResolver::uniquify(path / fallbackName);
        }
        throw CLIError("output exists: " + *out + " (remove it or pass a new name)");
    }
    return OutputResolver::uniquify(inputs.front().parent_path() / fallbackName);
}

void printProgress(std::ostream& err, double fraction) {
    // Callers keep within 0...1; clamping keeps a stray overshoot from drawing past the bar.
    fraction = std::clamp(fraction, 0.0, 1.0);
    constexpr int cells = 24;
    const int filled = std::clamp(static_cast<int>(fraction * cells), 0, cells);
    std::string bar;
    for (int i = 0; i < cells; ++i) {
        bar += i < filled ? "█" : "·";
    }
    err << "\r  [" << bar << "] " << static_cast<int>(fraction * 100) << '%';
    if (fraction >= 1.0) {
        err << '\n';
    }
    err.flush();
}

void printProgress(const CommandIO& io, double fraction) {
    if (io.drawProgress) {
        printProgress(io.err, fraction);
    }
}

} // namespace quillet
