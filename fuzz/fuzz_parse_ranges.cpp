// The page-selection grammar: never fails, and every range it returns is ordered and clamped to
// the document's pages.
#include "engines/PDFSplitEngine.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The page count comes from the last four bytes, the text from the rest.
    int pageCount = 0;
    const std::size_t countBytes = std::min(size, sizeof pageCount);
    std::memcpy(&pageCount, data + size - countBytes, countBytes);
    const std::string text(reinterpret_cast<const char*>(data), size - countBytes);
    const int last = std::max(pageCount, 1);
    for (const auto& range : quillet::PDFSplitEngine::parseRanges(text, pageCount)) {
        if (range.lower < 1 || range.lower > range.upper || range.upper > last) {
            std::abort();
        }
    }
    return 0;
}
