// Sizes such as "10MB": either a byte count that is not negative, or CLIError.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        if (quillet::parseSize(std::string_view(reinterpret_cast<const char*>(data), size)) < 0) {
            std::abort();
        }
    } catch (const quillet::CLIError&) {
    }
    return 0;
}
