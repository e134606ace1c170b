// Command-line parsing: the input is split at NUL bytes into arguments. Parsing never touches
// the file system (`inputs()` does, so it is left out); the only allowed error is CLIError.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> arguments(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            arguments.emplace_back();
        } else {
            arguments.back().push_back(static_cast<char>(data[i]));
        }
    }
    try {
        const auto args = quillet::CLIArgs::parse(arguments);
        for (const auto& name : quillet::CLIArgs::valueOptions) {
            (void)args.value(std::string(name));
        }
    } catch (const quillet::CLIError&) {
    }
    return 0;
}
