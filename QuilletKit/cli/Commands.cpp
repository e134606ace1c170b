#include "cli/Commands.hpp"

#include "cli/CLIArgs.hpp"
#include "cli/InfoReport.hpp"
#include "engines/PDFAnalysisEngine.hpp"

#include <stdexcept>

namespace quillet {
namespace {

// The engines behind these commands are still being built; until then each command checks its
// inputs like the finished one will and then says plainly that it cannot run yet.
[[noreturn]] void unavailable(const Arguments& arguments, const std::string& command) {
    CLIArgs::parse(arguments).inputs();
    throw std::runtime_error("the " + command + " command is not available in this build yet");
}

} // namespace

void runCompress(const Arguments& arguments, CommandIO&) { unavailable(arguments, "compress"); }
void runMerge(const Arguments& arguments, CommandIO&) { unavailable(arguments, "merge"); }
void runSplit(const Arguments& arguments, CommandIO&) { unavailable(arguments, "split"); }
void runConvert(const Arguments& arguments, CommandIO&) { unavailable(arguments, "convert"); }
void runImages(const Arguments& arguments, CommandIO&) { unavailable(arguments, "images"); }
void runClean(const Arguments& arguments, CommandIO&) { unavailable(arguments, "clean"); }
void runProtect(const Arguments& arguments, CommandIO&) { unavailable(arguments, "protect"); }
void runUnprotect(const Arguments& arguments, CommandIO&) { unavailable(arguments, "unprotect"); }
void runInfo(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const bool json = args.flag("json");
    for (const auto& input : inputs) {
        const PDFAnalysis analysis = PDFAnalysisEngine::analyze(input);
        if (json) {
            nlohmann::ordered_json object{{"file", input.string()}};
            object.update(toJSON(analysis, PDFAnalysisEngine::recommendations(analysis)));
            io.out << object.dump() << '\n';
        } else {
            io.out << infoReport(input.filename().string(), analysis);
        }
        io.out.flush();
    }
}

} // namespace quillet
