// `quillet job SPEC.json [--progress-json]`: runs task specs (one object, or an array as the
// queue file holds them) through the task runner, one after the other. "-" reads the specs from
// standard input, so a caller can hand over passwords without writing them to a file.
//
// Plain output: each written file's path on its own line; a failed spec prints "error: " and its
// text on standard error and the next spec still runs; the status is 1 when any spec failed.
//
// With --progress-json, standard output carries one JSON object per line for programs (the
// desktop app runs each queued job this way, in a process of its own):
//   {"id":ID,"progress":0.42}                                  as the work advances
//   {"id":ID,"outputs":[...],"originalBytes":N,"resultBytes":N[,"note":TEXT]}   on success
//   {"id":ID,"error":TEXT}                                     on failure
// Every line is flushed as it is written, so a reader sees progress while the work goes on.
#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"
#include "cli/Commands.hpp"
#include "engines/PDFCoreError.hpp"
#include "tasks/StateFile.hpp"
#include "tasks/TaskRunner.hpp"

#include <cmath>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace quillet {
namespace {

using nlohmann::ordered_json;

std::optional<std::string> readAll(const std::filesystem::path& file) {
    if (file == "-") {
        std::ostringstream content;
        content << std::cin.rdbuf();
        return std::move(content).str();
    }
    return StateFile::read(file);
}

std::vector<TaskSpec> readSpecs(const std::filesystem::path& file) {
    const auto bytes = readAll(file);
    if (!bytes) {
        throw CLIError("cannot read job file: " + file.string());
    }
    try {
        const auto json = ordered_json::parse(*bytes);
        return json.is_array() ? TaskSpec::listFromJSON(json)
                               : std::vector<TaskSpec>{TaskSpec::fromJSON(json)};
    } catch (const std::exception& error) {
        throw CLIError("not a job file: " + file.string() + " (" + error.what() + ")");
    }
}

void writeLine(CommandIO& io, const ordered_json& json) {
    // Replace rather than throw on bytes that are not UTF-8 (a file name from an old disk).
    io.out << json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << '\n'
           << std::flush;
}

ordered_json resultJSON(const std::string& id, const TaskRunner::ExecutionResult& result) {
    auto outputs = ordered_json::array();
    for (const auto& output : result.outputs) {
        outputs.push_back(output.string());
    }
    ordered_json json{{"id", id},
                      {"outputs", std::move(outputs)},
                      {"originalBytes", result.originalBytes},
                      {"resultBytes", result.resultBytes}};
    if (result.note) {
        json["note"] = *result.note;
    }
    return json;
}

/// Runs one spec and reports it; answers whether it succeeded.
bool runOne(const TaskSpec& spec, bool progressJSON, CommandIO& io) {
    double lastShown = -1;
    const auto progress = [&](double fraction) {
        // Thousandths are all a reader can use; finer steps only fill the pipe.
        if (progressJSON && (std::fabs(fraction - lastShown) >= 0.001 || fraction >= 1.0)) {
            lastShown = fraction;
            writeLine(io, ordered_json{{"id", spec.id}, {"progress", fraction}});
        }
    };
    try {
        const auto result = TaskRunner::run(spec, progress, {});
        if (progressJSON) {
            writeLine(io, resultJSON(spec.id, result));
        } else {
            for (const auto& output : result.outputs) {
                io.out << output.string() << '\n';
            }
            io.out.flush();
        }
        return true;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception& error) {
        if (progressJSON) {
            writeLine(io, ordered_json{{"id", spec.id}, {"error", error.what()}});
        } else {
            io.err << "error: " << error.what() << '\n';
        }
        return false;
    }
}

} // namespace

void runJob(const Arguments& arguments, CommandIO& io) {
    const CLIArgs args = CLIArgs::parse(arguments);
    if (args.positional.size() != 1) {
        throw CLIError("job takes one spec file: quillet job SPEC.json [--progress-json]");
    }
    const auto specs = readSpecs(args.positional.front());
    const bool progressJSON = args.flag("progress-json");
    std::size_t failed = 0;
    for (const auto& spec : specs) {
        failed += runOne(spec, progressJSON, io) ? 0 : 1;
    }
    if (failed > 0) {
        throw std::runtime_error(std::to_string(failed) + " of " + std::to_string(specs.size()) +
                                 " jobs failed");
    }
}

} // namespace quillet
