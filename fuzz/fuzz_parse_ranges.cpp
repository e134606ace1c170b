// The page-selection grammar: never fails, and every range it returns is ordered and clamped to
// the document's pages.
#include "engines/PDFSplitEngine.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    const int pageCount = provider.ConsumeIntegral<int>();
    const std::string text = provider.ConsumeRemainingBytesAsString();
    const int last = std::max(pageCount, 1);
    for (const auto& range : quillet::PDFSplitEngine::parseRanges(text, pageCount)) {
        if (range.lower < 1 || range.lower > range.upper || range.upper > last) {
            std::abort();
        }
    }
    return 0;
}
