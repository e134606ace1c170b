// Planning a split: the page-selection grammar and the grouping of pages into chunks.
#include "engines/PDFSplitEngine.hpp"

#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"

#include <algorithm>
#include <charconv>
#include <optional>

namespace quillet {
namespace fs = std::filesystem;
namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

// A whole decimal number, an optional "+" in front, nothing else; absent when it does not fit in
// 64 bits, as a number that large cannot have been meant as a page anyway.
std::optional<std::int64_t> decimal(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || text.front() == '-') {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::vector<std::string_view> pieces(std::string_view text) {
    std::vector<std::string_view> result;
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = std::min(text.find_first_of(",; ", start), text.size());
        if (const auto piece = trimmed(text.substr(start, end - start)); !piece.empty()) {
            result.push_back(piece);
        }
        start = end + 1;
    }
    return result;
}

std::optional<PageRange> range(std::string_view piece, std::int64_t lastPage) {
    const auto clamp = [&](std::int64_t n) {
        return static_cast<int>(std::clamp<std::int64_t>(n, 1, lastPage));
    };
    const auto dash = piece.find('-');
    if (dash == std::string_view::npos) {
        const auto page = decimal(piece);
        if (!page) {
            return std::nullopt;
        }
        return PageRange{clamp(*page), clamp(*page)};
    }
    const auto left = decimal(piece.substr(0, dash));
    const auto right = decimal(piece.substr(dash + 1));
    if (!left || !right) {
        return std::nullopt;
    }
    return PageRange{clamp(std::min(*left, *right)), clamp(std::max(*left, *right))};
}

SplitChunk consecutive(int first, int last) {
    SplitChunk chunk;
    chunk.reserve(static_cast<std::size_t>(last - first + 1));
    for (int index = first; index <= last; ++index) {
        chunk.push_back(index);
    }
    return chunk;
}

std::vector<PageRange> selection(std::string_view text, int pageCount, const char* whenEmpty) {
    auto ranges = PDFSplitEngine::parseRanges(text, pageCount);
    if (ranges.empty()) {
        throw PDFCoreError::invalidInput(whenEmpty);
    }
    return ranges;
}

SplitPlan byRanges(std::string_view text, int pageCount) {
    SplitPlan plan;
    for (const auto& r :
         selection(text, pageCount, "Enter at least one page range, e.g. 1-5, 8, 11-30.")) {
        plan.push_back(consecutive(r.lower - 1, r.upper - 1));
    }
    return plan;
}

SplitPlan extracted(std::string_view text, int pageCount) {
    // Every selected page once, in page order: marking pages does both at once.
    std::vector<bool> selected(static_cast<std::size_t>(pageCount), false);
    for (const auto& r :
         selection(text, pageCount, "Enter the pages to extract, e.g. 1, 3, 5, 7-20.")) {
        std::fill(selected.begin() + (r.lower - 1), selected.begin() + r.upper, true);
    }
    SplitChunk chunk;
    for (int index = 0; index < pageCount; ++index) {
        if (selected[static_cast<std::size_t>(index)]) {
            chunk.push_back(index);
        }
    }
    return {chunk};
}

SplitPlan everyN(int pageCount, int n) {
    n = std::max(n, 1);
    SplitPlan plan;
    for (int first = 0; first < pageCount; first += n) {
        plan.push_back(consecutive(first, std::min(first + n, pageCount) - 1));
    }
    return plan;
}

// One megapixel of image data weighs as much as a page of anything else: images are what make
// pages large, and their stored size follows their pixel count closely enough to plan by.
std::vector<double> pageWeights(const PDFDocument& document, int pageCount) {
    std::vector<double> weights(static_cast<std::size_t>(pageCount), 1.0);
    const int available = std::min(pageCount, document.pageCount());
    for (int index = 0; index < available; ++index) {
        try {
            double pixels = 0;
            for (const auto& image :
                 PDFAnalysisEngine::analyzePage(document.page(index), index).images) {
                pixels += static_cast<double>(image.pixelWidth) * image.pixelHeight;
            }
            weights[static_cast<std::size_t>(index)] += pixels / 1'000'000;
        } catch (const std::exception&) {
            // A page that cannot be read keeps the weight of a plain page.
        }
    }
    return weights;
}

} // namespace

std::vector<PageRange> PDFSplitEngine::parseRanges(std::string_view text, int pageCount) {
    const std::int64_t lastPage = std::max(pageCount, 1);
    std::vector<PageRange> ranges;
    for (const auto piece : pieces(text)) {
        if (const auto r = range(piece, lastPage)) {
            ranges.push_back(*r);
        }
    }
    return ranges;
}

SplitPlan PDFSplitEngine::chunkPages(SplitMode mode, int pageCount, std::string_view rangesText,
                                     int everyNPages, std::int64_t maxBytes,
                                     const fs::path& sourceURL) {
    if (pageCount < 1) {
        throw PDFCoreError::emptyDocument();
    }
    switch (mode) {
    case SplitMode::everyPage: return everyN(pageCount, 1);
    case SplitMode::pageRanges: return byRanges(rangesText, pageCount);
    case SplitMode::everyNPages: return everyN(pageCount, everyNPages);
    case SplitMode::extract: return extracted(rangesText, pageCount);
    case SplitMode::byFileSize: return chunkByFileSize(sourceURL, pageCount, maxBytes);
    }
    throw PDFCoreError::invalidInput("Unknown split mode.");
}

SplitPlan PDFSplitEngine::chunkByFileSize(const fs::path& sourceURL, int pageCount,
                                          std::int64_t maxBytes) {
    if (maxBytes < 1) {
        throw PDFCoreError::invalidInput("Set a maximum size per output file.");
    }
    const auto weights = pageWeights(PDFDocumentEngine::openCG(sourceURL), pageCount);
    std::error_code error;
    const auto fileSize = fs::file_size(sourceURL, error);
    if (error) {
        throw PDFCoreError::cannotOpen(sourceURL);
    }
    double totalWeight = 0;
    for (const double weight : weights) {
        totalWeight += weight;
    }
    const double bytesPerWeight = static_cast<double>(fileSize) / totalWeight;
    // The margin leaves room for what every file carries whatever its pages (header, catalog,
    // cross-reference data, fonts repeated in each part).
    const auto budget = static_cast<std::int64_t>(static_cast<double>(maxBytes) * 0.9);

    SplitPlan plan;
    SplitChunk current;
    double accumulated = 0;
    for (int index = 0; index < pageCount; ++index) {
        const double weight = weights[static_cast<std::size_t>(index)];
        const auto estimate = static_cast<std::int64_t>(bytesPerWeight * (accumulated + weight));
        if (!current.empty() && estimate > budget) {
            plan.push_back(std::move(current));
            current = {};
            accumulated = 0;
        }
        current.push_back(index);
        accumulated += weight;
    }
    plan.push_back(std::move(current));
    return plan;
}

} // namespace quillet
