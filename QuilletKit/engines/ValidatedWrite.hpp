// Writing an engine's finished document so that its destination only ever holds a checked file.
//
// The document is written to a temporary file beside the destination, read back as a new reader
// would, and only then moved over the destination in one rename. That is what makes writing over
// the input itself (`--replace`) safe: until the rename the input is untouched, and a result
// that fails its check never replaces anything.
#pragma once

#include "platform/PDFDocument.hpp"

#include <filesystem>
#include <functional>
#include <string>

namespace quillet {

/// Writes `document` to `destination` as described above, expecting `expectedPageCount` pages.
/// With `passwords` the file is encrypted with them (AES-256, revision 6) and read back with the
/// user password; it must then be encrypted and open with it.
///
/// Throws PDFCoreError: writeFailed carrying the destination's file name when writing or the
/// final rename fails, or `unwritableFolderText` (when not empty) when no temporary file can be
/// made beside the destination (missing or read-only folder); validationFailed with the reason
/// ("Could not re-open the generated PDF.", "Page count mismatch (ACTUAL vs EXPECTED).", ...) when
/// the written file does not pass. `proof`, when given, is called with the written file once it
/// has passed, before the move, and may throw to refuse it. On every failure the destination is
/// unchanged and no temporary file is left.
void writeValidated(const PDFDocument& document, const std::filesystem::path& destination,
                    int expectedPageCount, const PDFPasswords* passwords = nullptr,
                    const std::string& unwritableFolderText = {},
                    const std::function<void(const std::filesystem::path&)>& proof = {});

} // namespace quillet
