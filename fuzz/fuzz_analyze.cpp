// Opens and analyses arbitrary bytes as a PDF. The engines take paths, so each input is written to
// one temporary file of this process first. The only error the contract allows is PDFCoreError;
// anything else escaping, or a sanitizer report, is a finding.
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

const std::filesystem::path& inputPath() {
    static const auto path = std::filesystem::temp_directory_path() /
                             ("quillet-fuzz-analyze-" + std::to_string(getpid()) + ".pdf");
    return path;
}

void removeInput() {
    std::error_code ignored;
    std::filesystem::remove(inputPath(), ignored);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool registered = std::atexit(removeInput) == 0;
    (void)registered;
    {
        std::ofstream out(inputPath(), std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    try {
        const auto analysis = quillet::PDFAnalysisEngine::analyze(inputPath());
        (void)quillet::PDFAnalysisEngine::recommendations(analysis);
    } catch (const quillet::PDFCoreError&) {
    }
    return 0;
}
