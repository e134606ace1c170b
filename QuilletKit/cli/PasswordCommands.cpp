// `quillet protect FILE... --password P [-o OUT] [--replace]` and its reverse, `unprotect`.
//
// Derived output names come from withOutputs, which names every word but "compressed" after the
// clean operation; the two commands keep that naming on purpose rather than "-protected" or
// "-unlocked".
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFSecurityEngine.hpp"
#include "platform/FreeNames.hpp"

namespace quillet {
namespace {

std::string requiredPassword(const CLIArgs& args, const std::string& command) {
    auto password = args.value("password");
    if (!password) {
        throw CLIError(command + " requires --password");
    }
    return *password;
}

void printResult(CommandIO& io, const std::filesystem::path& input, const std::string& what,
                 const std::filesystem::path& output) {
    // Where the file went: a free name another process took meanwhile moves it on.
    io.out << input.filename().string() << ": " << what << " → "
           << FreeNames::placed(output).string() << '\n';
    io.out.flush();
}

} // namespace

void runProtect(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const std::string password = requiredPassword(args, "protect");
    // An empty value is a password the user typed, so it is the document that cannot be
    // processed (status 1), not the command line that is wrong (status 2).
    if (password.empty()) {
        throw PDFCoreError::validationFailed("Enter an open password.");
    }
    withOutputs(inputs, args.value("o"), args.flag("replace"), "protected",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    PDFSecurityEngine::protect(input, output, password, password);
                    printResult(io, input, "encrypted", output);
                });
}

void runUnprotect(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const std::string password = requiredPassword(args, "unprotect");
    withOutputs(inputs, args.value("o"), args.flag("replace"), "unlocked",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    PDFSecurityEngine::removePassword(input, output, password);
                    printResult(io, input, "password removed", output);
                });
}

} // namespace quillet
