// `quillet merge FILE FILE... [-o OUT]` and `quillet images IMAGE... [--page-size a4|letter|legal]
// [--fit fit|fill] [--margin POINTS] [-o OUT]`: many inputs into one PDF through the merge engine.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFMergeEngine.hpp"
#include "output/OutputResolver.hpp"
#include "platform/FreeNames.hpp"

#include <charconv>
#include <cmath>
#include <memory>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// Unknown sizes are not refused: they give the picture's own size.
ImageToPDFOptions::PageSize pageSizeOption(const std::optional<std::string>& text) {
    if (!text) {
        return ImageToPDFOptions::PageSize::original;
    }
    return fromRawValue<ImageToPDFOptions::PageSize>(*text).value_or(
        ImageToPDFOptions::PageSize::original);
}

// A margin that does not read as a number is no margin rather than an error.
double marginOption(const std::optional<std::string>& text) {
    if (!text) {
        return 0;
    }
    double value = 0;
    const char* end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, value);
    return error == std::errc() && stop == end && std::isfinite(value) ? value : 0;
}

std::string sizeText(const fs::path& output) {
    std::error_code error;
    const auto size = fs::file_size(output, error);
    return formattedBytes(error ? 0 : static_cast<std::int64_t>(size), 2);
}

int mergeTo(const std::vector<fs::path>& inputs, const fs::path& output,
            const ImageToPDFOptions& options, CommandIO& io) {
    // The command ends the process once the file is written: the documents are left for the
    // system to reclaim with the rest of the memory, which takes a quarter of the time of a big
    // merge when done object by object. Builds that check for leaks take them apart as usual.
    auto kept = std::make_unique<std::vector<PDFDocument>>();
    const int pages = PDFMergeEngine::merge(
        inputs, output, options, [&io](double fraction) { printProgress(io, fraction); }, {},
        kept.get());
#if !defined(__SANITIZE_ADDRESS__)
    (void)kept.release();
#endif
    return pages;
}

} // namespace

void runMerge(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    if (inputs.size() < 2) {
        throw CLIError("merge needs at least two input files");
    }
    const fs::path output =
        resolveSingleOutput(args, inputs, "merged-" + OutputResolver::timestamp() + ".pdf");
    const int pages = mergeTo(inputs, output, ImageToPDFOptions{}, io);
    const auto written = FreeNames::placed(output);
    io.out << "merged " << inputs.size() << " files → " << pages << " pages → " << written.string()
           << " (" << sizeText(written) << ")\n";
}

void runImages(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const fs::path output =
        resolveSingleOutput(args, inputs, "images-" + OutputResolver::timestamp() + ".pdf");
    ImageToPDFOptions options;
    options.pageSize = pageSizeOption(args.value("page-size"));
    options.fit =
        args.value("fit") == "fill" ? ImageToPDFOptions::Fit::fill : ImageToPDFOptions::Fit::fit;
    options.marginPoints = marginOption(args.value("margin"));
    const int pages = mergeTo(inputs, output, options, io);
    const auto written = FreeNames::placed(output);
    io.out << "created " << written.string() << " (" << pages << " pages, " << sizeText(written)
           << ")\n";
}

} // namespace quillet
