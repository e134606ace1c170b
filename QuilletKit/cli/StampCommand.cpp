// `quillet stamp FILE... [--page-numbers FORMAT] [--bates PREFIX --start N --digits D]
// [--text TEXT] [--image FILE --width PT] [--position bottom-center] [--margin 24] [--size 10]
// [--color #RRGGBB] [--opacity 0.3] [--rotation 45] [--under] [--pages RANGES] [-o] [--replace]`:
// puts page numbers, Bates numbers, texts and pictures on the pages, one output per input
// ("<stem>-stamped.pdf" unless told). Each of --page-numbers, --bates, --text and --image adds one
// mark; the placement and style options apply to every mark of the command. Bates numbers run on
// from one input to the next, in the order given.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/CommandPlumbing.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFStampEngine.hpp"
#include "platform/FreeNames.hpp"

#include <array>
#include <cctype>
#include <charconv>
#include <tuple>

namespace quillet {
namespace {

using Mark = OperationParameters::StampMark;

constexpr std::string_view stampUsage = R"(USAGE:
    quillet stamp <file...> [marks] [options]

MARKS (each adds one; give as many as you like):
    --page-numbers FORMAT  Page numbers: "{n}", "Page {n} of {total}", "第 {n} 页"
    --bates PREFIX         Bates numbers PREFIX000001... running on across the files
        --digits D         Zero-padded digits (default 6)
    --text TEXT            Any text; {n}, {total}, {date} and {name} are filled in
    --start N              The first number of the marked pages (default 1)
    --image FILE           A PNG or JPEG picture          --width PT   Its width (default 144)

OPTIONS (for every mark):
    --position POS         top-left|top-center|top-right|center|bottom-left|bottom-center|bottom-right
    --margin PT            Distance from the page edges (default 24)
    --size PT              Font size (default 10)
    --color #RRGGBB        Text colour (default #000000)
    --opacity 0..1         1 is opaque (default 1)
    --rotation DEG         Turn counter-clockwise; 45 in the center makes a diagonal watermark
    --under                Put the marks under the page content instead of over it
    --pages RANGES         Only these pages, as split takes them: "1-5,8"
    --skip-first           Leave the first of those pages unmarked (a cover)
    -o <path>              Output file (one input only)
    --replace              Overwrite the input file
)";

std::int64_t wholeOption(const CLIArgs& args, const std::string& name, std::int64_t fallback) {
    const auto text = args.value(name);
    if (!text) {
        return fallback;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
    if (error != std::errc() || end != text->data() + text->size()) {
        throw CLIError("invalid --" + name + " \"" + *text + "\" (a whole number)");
    }
    return value;
}

double numberOption(const CLIArgs& args, const std::string& name, double fallback) {
    const auto text = args.value(name);
    if (!text) {
        return fallback;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
    if (error != std::errc() || end != text->data() + text->size()) {
        throw CLIError("invalid --" + name + " \"" + *text + "\" (a number)");
    }
    return value;
}

OperationParameters::Stamp stampFrom(const CLIArgs& args) {
    Mark style;
    style.position = args.value("position").value_or(style.position);
    style.margin = numberOption(args, "margin", style.margin);
    style.fontSize = numberOption(args, "size", style.fontSize);
    style.color = args.value("color").value_or(style.color);
    style.opacity = numberOption(args, "opacity", style.opacity);
    style.rotation = numberOption(args, "rotation", style.rotation);
    style.layer = args.flag("under-content") ? "under" : "over";
    style.pages = args.value("pages").value_or("");
    style.skipFirst = args.flag("skip-first");
    style.start = wholeOption(args, "start", 1);
    style.digits = wholeOption(args, "digits", 6);

    // Each mark option adds one mark of its kind, in the order of the kinds.
    const std::array<std::tuple<const char*, const char*, std::string Mark::*>, 4> sources{{
        {"page-numbers", "pageNumber", &Mark::format},
        {"bates", "bates", &Mark::prefix},
        {"text", "text", &Mark::text},
        {"image", "picture", &Mark::image},
    }};
    OperationParameters::Stamp stamp;
    for (const auto& [option, kind, field] : sources) {
        for (const auto& value : args.all(option)) {
            Mark mark = style;
            mark.kind = kind;
            mark.*field = value;
            if (mark.kind == "picture") {
                mark.width = numberOption(args, "width", mark.width);
            }
            stamp.marks.push_back(mark);
        }
    }
    if (stamp.marks.empty()) {
        throw CLIError("nothing to stamp (give --page-numbers, --bates, --text or --image)");
    }
    try {
        PDFStampEngine::validate(stamp);
    } catch (const PDFCoreError& error) {
        throw CLIError(error.errorDescription());
    }
    return stamp;
}

} // namespace

void runStamp(const Arguments& arguments, CommandIO& io) {
    Arguments rewritten;
    for (const auto& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            io.out << stampUsage;
            return;
        }
        // "under" takes a size elsewhere; here it is a switch.
        if (argument == "--under") {
            rewritten.push_back("--under-content");
        } else if (!rewritten.empty() && rewritten.back() == "--rotation" && argument.size() == 2 &&
                   argument[0] == '-' && std::isdigit(static_cast<unsigned char>(argument[1]))) {
            // "-5" would read as an option: a negative rotation of one digit.
            rewritten.push_back(argument + ".0");
        } else {
            rewritten.push_back(argument);
        }
    }
    const CLIArgs args = CLIArgs::parse(rewritten);
    const auto stamp = stampFrom(args);
    const auto inputs = args.inputs();
    StampContext context;
    double shown = 1.0;
    const auto progress = [&io, &shown](double fraction) {
        shown = fraction;
        printProgress(io, fraction);
    };
    withOutputs(inputs, args.value("o"), args.flag("replace"), "stamped",
                [&](const std::filesystem::path& input, const std::filesystem::path& output) {
                    shown = 0.0;
                    const auto outcome =
                        PDFStampEngine::stamp(input, output, stamp, context, progress);
                    if (shown < 1.0) {
                        printProgress(io, 1.0);
                    }
                    io.out << input.filename().string() << ": " << outcome.pagesStamped
                           << (outcome.pagesStamped == 1 ? " page stamped" : " pages stamped");
                    if (outcome.bates) {
                        io.out << ", Bates " << outcome.bates->first << "–" << outcome.bates->second;
                    }
                    io.out << " → " << FreeNames::placed(output).string() << '\n';
                });
}

} // namespace quillet
