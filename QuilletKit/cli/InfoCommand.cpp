// `quillet info FILE... [--json]`: the analysis of each file as a report, or as one JSON object
// per line for scripts.
#include "cli/CLIArgs.hpp"
#include "cli/Commands.hpp"
#include "cli/InfoReport.hpp"
#include "engines/PDFAnalysisEngine.hpp"

namespace quillet {

void runInfo(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const bool json = args.flag("json");
    for (const auto& input : inputs) {
        const PDFAnalysis analysis = PDFAnalysisEngine::analyze(input);
        if (json) {
            nlohmann::ordered_json object{{"file", input.string()}};
            object.update(toJSON(analysis, PDFAnalysisEngine::recommendations(analysis)));
            // Texts of the analysis are UTF-8 already; any that a producer's bytes still slip
            // past is shown as U+FFFD rather than failing the whole report.
            io.out << object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                   << '\n';
        } else {
            io.out << infoReport(input.filename().string(), analysis);
        }
        io.out.flush();
    }
}


} // namespace quillet
