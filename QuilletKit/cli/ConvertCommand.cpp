// `quillet convert FILE... [--format png|jpeg|tiff|heic] [--dpi N] [--pages TEXT] [-o FOLDER]
// [--render-timeout SECONDS]`: the pages of each PDF as image files, by default in
// "<stem>-images" beside the input. A page that cannot be drawn (or not within the time limit,
// 30 s by default, 0 for none) is skipped with a warning on standard error.
#include "cli/CLIArgs.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/CLIError.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFImageEngine.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace quillet {
namespace fs = std::filesystem;
namespace {

constexpr int defaultDPI = 150;
constexpr double commandLineJPEGQuality = 0.85;

// An unknown format is not worth failing a batch over: PNG is always a faithful choice.
ImageOutputFormat formatOption(const std::optional<std::string>& text) {
    return fromRawValue<ImageOutputFormat>(text.value_or("png")).value_or(ImageOutputFormat::png);
}

// Anything that is not a whole number (an empty value, "150dpi", "2.5") means the default.
int dpiOption(const std::optional<std::string>& text) {
    if (!text) {
        return defaultDPI;
    }
    std::string_view digits = *text;
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
    }
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
        return defaultDPI;
    }
    return value;
}

std::chrono::milliseconds renderTimeoutOption(const std::optional<std::string>& text) {
    if (!text) {
        return PDFRenderer::defaultTimeout;
    }
    double seconds = -1;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), seconds);
    if (error != std::errc() || end != text->data() + text->size() || !std::isfinite(seconds) ||
        seconds < 0) {
        throw CLIError("--render-timeout needs a number of seconds (0 for no limit), not \"" +
                       *text + "\"");
    }
    return std::chrono::milliseconds(static_cast<std::int64_t>(std::min(seconds, 1e9) * 1000));
}

fs::path outputFolder(const CLIArgs& args, const fs::path& input) {
    if (const auto folder = args.value("o")) {
        return *folder;
    }
    return input.parent_path() / (input.stem().string() + "-images");
}

std::string upperCased(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

} // namespace

void runConvert(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const ImageOutputFormat format = formatOption(args.value("format"));
    const int dpi = dpiOption(args.value("dpi"));
    const std::string pages = args.value("pages").value_or("");
    const auto renderTimeout = renderTimeoutOption(args.value("render-timeout"));

    for (const fs::path& input : inputs) {
        const fs::path folder = outputFolder(args, input);
        double shown = 1.0;
        auto progress = [&io, &shown](double fraction) {
            shown = fraction;
            printProgress(io, fraction);
        };
        const auto result =
            PDFImageEngine::pdfToImages(input, folder, input.stem().string(), format, dpi, pages,
                                        commandLineJPEGQuality, progress, {}, 0, renderTimeout);
        // Skipped pages still advance the bar, but make sure the line is finished.
        if (shown < 1.0) {
            printProgress(io, 1.0);
        }
        for (const auto& reason : result.skipped) {
            io.err << "warning: " << reason << " (page skipped)\n";
        }
        io.out << input.filename().string() << ": " << result.files.size() << " × "
               << upperCased(rawValue(format)) << " @ " << dpi << " DPI → " << folder.string()
               << '\n';
        io.out.flush();
    }
}

} // namespace quillet
