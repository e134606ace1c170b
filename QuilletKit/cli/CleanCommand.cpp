// `quillet clean FILE... [--preset safe|privacy|flatten] [-o OUT] [--replace]`.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFMetadataEngine.hpp"
#include "platform/FreeNames.hpp"

#include <map>

namespace quillet {
namespace {

struct PresetChoice {
    CleanPreset preset;
    const char* displayName;
};

PresetChoice presetNamed(const std::string& text) {
    static const std::map<std::string, PresetChoice> presets{
        {"safe", {CleanPreset::safe, "Safe Clean"}},
        {"privacy", {CleanPreset::privacy, "Privacy Clean"}},
        {"flatten", {CleanPreset::flattenAndClean, "Flatten & Clean"}},
    };
    const auto found = presets.find(text);
    if (found == presets.end()) {
        throw CLIError("invalid --preset; use safe|privacy|flatten");
    }
    return found->second;
}

} // namespace

void runClean(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const PresetChoice choice = presetNamed(args.value("preset").value_or("privacy"));
    withOutputs(inputs, args.value("o"), args.flag("replace"), "clean",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    PDFMetadataEngine::clean(input, output, choice.preset);
                    io.out << input.filename().string() << ": cleaned (" << choice.displayName
                           << ") → " << FreeNames::placed(output).string() << '\n';
                    io.out.flush();
                });
}

} // namespace quillet
