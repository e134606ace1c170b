#include "cli/QuilletCLIEntry.hpp"

#include "cli/CLIError.hpp"
#include "cli/Commands.hpp"
#include "cli/Usage.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/InterruptCleanup.hpp"

#include <csignal>
#include <unistd.h>

#include <iostream>
#include <map>
#include <string_view>

namespace quillet {
namespace {

using Runner = void (*)(const Arguments&, CommandIO&);

const std::map<std::string_view, Runner>& commandTable() {
    static const std::map<std::string_view, Runner> table{
        {"compress", runCompress}, {"merge", runMerge},         {"split", runSplit},
        {"convert", runConvert},   {"images", runImages},       {"clean", runClean},
        {"protect", runProtect},   {"unprotect", runUnprotect}, {"info", runInfo},
        {"job", runJob},           {"ocr", runOCR},             {"redact", runRedact},
        {"stamp", runStamp},
    };
    return table;
}

extern "C" void onInterrupt(int signal) {
    InterruptCleanup::removeRegisteredFiles();
    ::_exit(signal == SIGINT ? 130 : 128 + signal);
}

} // namespace

int QuilletCLIEntry::run(const std::vector<std::string>& arguments, CommandIO& io) {
    if (arguments.empty()) {
        io.out << usageText();
        return 2;
    }
    const std::string& command = arguments.front();
    if (command == "help" || command == "--help" || command == "-h") {
        io.out << usageText();
        return 0;
    }
    const auto entry = commandTable().find(command);
    if (entry == commandTable().end()) {
        io.err << "Unknown command: " << command << "\n\n" << usageText();
        return 2;
    }
    const Arguments rest(arguments.begin() + 1, arguments.end());
    try {
        entry->second(rest, io);
        io.out.flush();
        return 0;
    } catch (const CLIError& error) {
        io.err << "error: " << error.message << '\n';
        return 2;
    } catch (const CancellationError&) {
        return 130;
    } catch (const std::exception& error) {
        io.err << "error: " << error.what() << '\n';
        return 1;
    }
}

void QuilletCLIEntry::installInterruptHandler() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int QuilletCLIEntry::main(int argc, char** argv) {
    installInterruptHandler();
    std::ios::sync_with_stdio(true);
    std::vector<std::string> arguments(argv + 1, argv + argc);
    CommandIO io{std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1};
    const int status = run(arguments, io);
    std::cout.flush();
    std::cerr.flush();
    return status;
}

} // namespace quillet
