// The command runners: one per command word. Each parses its own arguments, checks its inputs
// first ("no input files", "file not found: "), then calls the engines directly on the calling
// thread. A runner either returns (status 0) or throws: CLIError for usage and validation
// failures, CancellationError when interrupted, anything else for failures of the work itself.
#pragma once

#include "cli/CommandIO.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace quillet {

using Arguments = std::vector<std::string>;

void runCompress(const Arguments& arguments, CommandIO& io);
void runMerge(const Arguments& arguments, CommandIO& io);
void runSplit(const Arguments& arguments, CommandIO& io);
void runConvert(const Arguments& arguments, CommandIO& io);
void runImages(const Arguments& arguments, CommandIO& io);
void runClean(const Arguments& arguments, CommandIO& io);
void runProtect(const Arguments& arguments, CommandIO& io);
void runUnprotect(const Arguments& arguments, CommandIO& io);
void runOCR(const Arguments& arguments, CommandIO& io);
void runRedact(const Arguments& arguments, CommandIO& io);
void runStamp(const Arguments& arguments, CommandIO& io);
void runInfo(const Arguments& arguments, CommandIO& io);
void runJob(const Arguments& arguments, CommandIO& io);

struct CompressionOutcome;
/// The lines `compress` prints for one input: sizes, saving and output, then any note.
std::string compressionResultLine(const std::filesystem::path& input,
                                  const CompressionOutcome& outcome);

} // namespace quillet
