// `quillet ocr FILE... [--lang eng+chi_sim] [--password P] [-o OUT] [--replace]`: an invisible
// text layer on every page without text, one output per input ("<stem>-ocr.pdf" unless told),
// a progress bar on standard error and a result line each.
#include "cli/CLIArgs.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFOCREngine.hpp"
#include "platform/FreeNames.hpp"

namespace quillet {

void runOCR(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    OCROptions options;
    options.languages = args.value("lang").value_or("eng");
    options.password = args.value("password");
    // A missing language fails before any file is read or named.
    PDFOCREngine::requireLanguages(options.languages);
    double shown = 1.0;
    options.progress = [&io, &shown](double fraction) {
        shown = fraction;
        printProgress(io, fraction);
    };
    withOutputs(inputs, args.value("o"), args.flag("replace"), "ocr",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    shown = 0.0;
                    const auto outcome = PDFOCREngine::makeSearchable(input, output, options);
                    if (shown < 1.0) {
                        printProgress(io, 1.0);
                    }
                    io.out << input.filename().string() << ": " << outcome.pagesRead << " of "
                           << outcome.pageCount << " pages made searchable, "
                           << formattedBytes(outcome.originalBytes, 2) << " → "
                           << formattedBytes(outcome.resultBytes, 2) << " → "
                           << FreeNames::placed(output).string() << '\n';
                    io.out.flush();
                });
}

} // namespace quillet
