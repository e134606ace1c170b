// The redaction a job's parameters ask for, as the engine takes it, and the note its result
// carries: shared by the task runner and the command line.
#pragma once

#include "engines/PDFRedactionEngine.hpp"
#include "model/OperationParameters.hpp"

#include <string>

namespace quillet {

/// Throws PDFCoreError (invalidInput) for an area whose rectangle is not four numbers.
RedactionRequest redactionRequest(const OperationParameters::Redact& parameters);

/// "N areas on M pages redacted", and how many matches left the rest of the file when any did.
std::string redactionNote(const RedactionOutcome& outcome);

} // namespace quillet
