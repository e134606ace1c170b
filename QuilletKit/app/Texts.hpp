// Names the user reads for the values of the task layer, in the language loaded at start.
#pragma once

#include "model/OperationKinds.hpp"
#include "tasks/TaskRecords.hpp"

#include <QString>

#include <cstdint>

namespace quillet::Texts {

/// The operation's display name ("Compress", "PDF → Images", ...), translated.
QString operationName(PDFOperationKind kind);
/// "Queued", "Running", "Completed", "Failed", "Cancelled", translated.
QString stateName(TaskState state);
/// The shared byte format ("1.5 MB"), one decimal.
QString bytes(std::int64_t count);
/// "1.5 MB → 600 KB (−60%)": sizes before and after with the saving (or the growth).
QString sizeChange(std::int64_t before, std::int64_t after);

} // namespace quillet::Texts
