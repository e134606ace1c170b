// `quillet split FILE [--every N | --ranges TEXT | --extract TEXT | --by-size SIZE] [-o FOLDER]`:
// one PDF into numbered parts, "<stem>-part<N>.pdf", in the input's folder or the given one.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFSplitEngine.hpp"

#include <fmt/format.h>

#include <charconv>

namespace quillet {
namespace fs = std::filesystem;
namespace {

struct SplitRequest {
    SplitMode mode = SplitMode::everyPage;
    std::string rangesText;
    int everyN = 1;
    std::int64_t maxBytes = 0;
};

int pageCountOption(const std::string& text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        throw CLIError("invalid --every; use a whole number of pages");
    }
    return value;
}

// A split has one mode: the first of these options present decides, in this fixed order, and the
// others are ignored rather than refused.
SplitRequest splitRequest(const CLIArgs& args) {
    if (const auto every = args.value("every")) {
        return {SplitMode::everyNPages, {}, pageCountOption(*every), 0};
    }
    if (const auto ranges = args.value("ranges")) {
        return {SplitMode::pageRanges, *ranges, 1, 0};
    }
    if (const auto extract = args.value("extract")) {
        return {SplitMode::extract, *extract, 1, 0};
    }
    if (const auto size = args.value("by-size")) {
        return {SplitMode::byFileSize, {}, 1, parseSize(*size)};
    }
    return {};
}

// "report-part07.pdf": the number padded to the width of the largest, so the parts sort in order
// in any file list.
std::string partName(const fs::path& input, std::size_t number, std::size_t count) {
    const auto width = std::to_string(count).size();
    return fmt::format("{}-part{:0{}}.pdf", input.stem().string(), number, width);
}

std::string resultLine(const std::string& name, const SplitChunk& chunk, const fs::path& output) {
    std::string pages;
    for (const int index : chunk) {
        if (!pages.empty()) {
            pages += ',';
        }
        pages += std::to_string(index + 1);
    }
    std::error_code error;
    const auto size = fs::file_size(output, error);
    return name + ": pages " + pages + " (" +
           formattedBytes(error ? 0 : static_cast<std::int64_t>(size), 2) + ")";
}

// Result lines wait for the progress bar to finish its line; the parts already written are still
// listed when a later one fails.
void writeParts(PDFDocument& source, const SplitPlan& plan, const fs::path& input,
                const fs::path& folder, CommandIO& io) {
    std::vector<std::string> lines;
    const auto printLines = [&] {
        for (const auto& line : lines) {
            io.out << line << '\n';
        }
    };
    const auto partPath = [&](std::size_t index) {
        return folder / partName(input, index + 1, plan.size());
    };
    try {
        PDFSplitEngine::writeChunks(source, plan, partPath, [&](std::size_t index) {
            const fs::path output = partPath(index);
            lines.push_back(resultLine(output.filename().string(), plan[index], output));
            printProgress(io, static_cast<double>(index + 1) / static_cast<double>(plan.size()));
        });
    } catch (...) {
        printLines();
        throw;
    }
    printLines();
}

} // namespace

void runSplit(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    if (inputs.size() != 1) {
        throw CLIError("split takes exactly one input PDF");
    }
    const fs::path& input = inputs.front();
    const SplitRequest request = splitRequest(args);
    const fs::path folder = args.value("o").value_or(input.parent_path().string());

    PDFDocument source = PDFDocumentEngine::openUnlock(input, "");
    const SplitPlan plan =
        PDFSplitEngine::chunkPages(request.mode, source.pageCount(), request.rangesText,
                                   request.everyN, request.maxBytes, input);
    if (!folder.empty()) {
        fs::create_directories(folder);
    }
    writeParts(source, plan, input, folder, io);
    io.out << "split into " << plan.size() << " files\n";
}

} // namespace quillet
