// `quillet redact FILE... [--text WORDS]... [--regex RE]... [--preset email|phone|iban|card|date]...
// [--area PAGE:X,Y,W,H]... [--match-case] [--fill black|white|none|#RRGGBB] [--password P]
// [-o OUT] [--replace] [--dry-run] [--json]`: removes what lies under the areas and the matches,
// one output per input ("<stem>-redacted.pdf" unless told). `--dry-run` lists the matches and
// writes nothing; `--json` prints each result as one JSON object a line, with the count of each
// pattern.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFRedactionEngine.hpp"
#include "platform/FreeNames.hpp"
#include "tasks/RedactionRequest.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <charconv>

namespace quillet {
namespace {

// "3:72,100,200,14" -> page 3, x 72, y 100, width 200, height 14.
RedactionArea parseArea(const std::string& text) {
    const auto invalid = [&] {
        return CLIError("invalid area \"" + text + "\" (use PAGE:X,Y,W,H in points, for example 1:72,90,200,14)");
    };
    const auto colon = text.find(':');
    if (colon == std::string::npos) {
        throw invalid();
    }
    std::vector<double> numbers;
    std::size_t start = colon + 1;
    while (start <= text.size()) {
        const auto end = std::min(text.find(',', start), text.size());
        double value = 0;
        const auto parsed = std::from_chars(text.data() + start, text.data() + end, value);
        if (parsed.ec != std::errc() || parsed.ptr != text.data() + end) {
            throw invalid();
        }
        numbers.push_back(value);
        start = end + 1;
    }
    int page = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + colon, page);
    if (parsed.ec != std::errc() || parsed.ptr != text.data() + colon || numbers.size() != 4) {
        throw invalid();
    }
    return {page, numbers[0], numbers[1], numbers[2], numbers[3]};
}

RedactionRequest requestFrom(const CLIArgs& args) {
    RedactionRequest request;
    const bool matchCase = args.flag("match-case");
    for (const auto& words : args.all("text")) {
        request.patterns.push_back({words, false, matchCase});
    }
    for (const auto& expression : args.all("regex")) {
        request.patterns.push_back({expression, true, matchCase});
    }
    request.presets = args.all("preset");
    for (const auto& area : args.all("area")) {
        request.areas.push_back(parseArea(area));
    }
    request.fill = args.value("fill").value_or("black");
    request.password = args.value("password").value_or("");
    try {
        PDFRedactionEngine::validate(request);
    } catch (const PDFCoreError& error) {
        throw CLIError(error.errorDescription());
    }
    return request;
}

std::string boxText(const MuPDFEditor::Box& box) {
    return fmt::format("{:.1f},{:.1f},{:.1f},{:.1f}", box.x0, box.y0, box.x1 - box.x0,
                       box.y1 - box.y0);
}

void listMatches(const std::vector<std::filesystem::path>& inputs, const RedactionRequest& request,
                 bool json, CommandIO& io) {
    int total = 0;
    for (const auto& input : inputs) {
        const auto hits = PDFRedactionEngine::find(input, request);
        total += static_cast<int>(hits.size());
        for (const auto& hit : hits) {
            if (json) {
                nlohmann::ordered_json boxes = nlohmann::ordered_json::array();
                for (const auto& box : hit.match.boxes) {
                    boxes.push_back({box.x0, box.y0, box.x1 - box.x0, box.y1 - box.y0});
                }
                io.out << nlohmann::ordered_json{{"file", input.string()},
                                                 {"page", hit.page},
                                                 {"pattern", hit.match.label},
                                                 {"text", hit.match.text},
                                                 {"boxes", boxes}}
                              .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                       << '\n';
            } else {
                io.out << input.filename().string() << ": page " << hit.page << ": \""
                       << hit.match.text << "\" (" << hit.match.label << ") at "
                       << boxText(hit.match.boxes.front()) << '\n';
            }
        }
    }
    if (total == 0 && request.areas.empty()) {
        throw PDFCoreError::invalidInput("nothing to redact");
    }
}

} // namespace

void runRedact(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    const auto inputs = args.inputs();
    const RedactionRequest request = requestFrom(args);
    const bool json = args.flag("json");
    if (args.flag("dry-run")) {
        listMatches(inputs, request, json, io);
        return;
    }
    double shown = 1.0;
    const auto progress = [&io, &shown](double fraction) {
        shown = fraction;
        printProgress(io, fraction);
    };
    withOutputs(inputs, args.value("o"), args.flag("replace"), "redacted",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    shown = 0.0;
                    const auto outcome = PDFRedactionEngine::redact(input, output, request, progress);
                    if (shown < 1.0) {
                        printProgress(io, 1.0);
                    }
                    const auto placed = FreeNames::placed(output);
                    if (json) {
                        io.out << nlohmann::ordered_json{
                                      {"file", input.string()},
                                      {"output", placed.string()},
                                      {"areas", outcome.areas},
                                      {"pages", outcome.pages},
                                      {"matches", outcome.matchesByPattern},
                                      {"elsewhere", outcome.matchesElsewhere}}
                                      .dump(-1, ' ', false,
                                            nlohmann::ordered_json::error_handler_t::replace)
                               << '\n';
                    } else {
                        io.out << input.filename().string() << ": " << redactionNote(outcome)
                               << " → " << placed.string() << '\n';
                    }
                    io.out.flush();
                });
}

} // namespace quillet
