// The one door through which engines open a PDF, check an output they wrote, and read the
// document information.
//
// There are two openers on purpose, after the two ways a document is used: `open`/`openUnlock`
// for page-level work (write, reorder, copy pages) and `openCG` for object-level work (walk
// dictionaries and content, render). Both answer a PDFDocument, which serves either use; what
// differs is how passwords and failures are handled (see each). Every operation is stateless and
// may run on any thread; documents answered are owned by the caller. qpdf's exceptions never get
// out of here: failures are PDFCoreError or an absent answer.
#pragma once

#include "engines/PDFMetadataInfo.hpp"
#include "platform/PDFDocument.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillet {

class PDFDocumentEngine {
  public:
    struct ValidationResult {
        bool ok = false;
        /// "OK" when `ok`; otherwise the reason, one of the fixed texts of `validateOutput`.
        std::string message;
    };

    PDFDocumentEngine() = delete;

    /// The unlocked document, or absent when no file exists at `url`, it cannot be parsed, or it
    /// is locked and `password` (the empty text when none) does not unlock it. The password of an
    /// unencrypted file is never tested. Never throws.
    static std::optional<PDFDocument> open(const std::filesystem::path& url,
                                           const std::optional<std::string>& password = {});

    /// The unlocked document. Throws PDFCoreError: fileNotFound when no file exists, cannotOpen
    /// when it cannot be parsed, wrongPassword when it is locked and `password` does not unlock
    /// it. An unencrypted file ignores the password.
    static PDFDocument openUnlock(const std::filesystem::path& url, const std::string& password);

    /// The unlocked document for object-level work. A locked file is tried with `password` (the
    /// empty text when none) and then with the empty password, so a file with only an owner
    /// password opens whatever was typed. Throws PDFCoreError: cannotOpen when the file is
    /// missing or cannot be parsed (no separate fileNotFound here), wrongPassword when both tries
    /// fail.
    static PDFDocument openCG(const std::filesystem::path& url,
                              const std::optional<std::string>& password = {});

    /// Checks a freshly written output, stopping at the first failure: "Output file missing.",
    /// "Could not re-open the generated PDF." (also for an output that needs a password, or one
    /// whose cross-reference data only reads after repair), "Page count mismatch (ACTUAL vs
    /// EXPECTED)." (the count the page tree states), "First page has invalid geometry." (media
    /// box width or height not positive). A document without pages and no expected count is
    /// accepted. Reads the file's structure and first page only, not every page.
    static ValidationResult validateOutput(const std::filesystem::path& url,
                                           std::optional<int> expectedPageCount = {});

    /// The same checks on an output still in memory (`bytes`, the whole file), for writers that
    /// assemble a small file before putting it on disk.
    static ValidationResult validateOutput(std::string_view bytes,
                                           std::optional<int> expectedPageCount);

    /// The information fields, looked up first in an /Info dictionary of the *catalog* (where
    /// some producers put it), then, for the fields still absent, in the trailer's Info
    /// dictionary. Empty texts and unparsable dates count as absent. A file that cannot be
    /// opened without a password yields every field absent. Never throws.
    static PDFMetadataInfo readMetadata(const std::filesystem::path& url);

  private:
    static std::optional<std::string> stringKey(QPDFObjectHandle dictionary,
                                                const std::string& key);
};

} // namespace quillet
