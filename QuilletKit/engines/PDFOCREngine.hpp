// Makes scanned pages searchable: an invisible text layer, read from each page's picture by
// Tesseract, is laid over every page that has no text of its own.
//
// Nothing else of the document changes: each page's own content, images, links, forms, outline
// and metadata are kept as they are (no image is re-encoded), and pages that already have text
// are left alone. The words sit where they are seen, so they can be selected and searched where
// they stand, on rotated pages and pages whose media box does not start at the origin too.
//
// Pages are read on every core, each worker thread with its own reading of the document, its own
// renderer and its own Tesseract; the layers are laid on in page order on the calling thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace quillet {

struct OCROptions {
    /// Tesseract's language codes joined by "+": "eng", "eng+chi_sim".
    std::string languages = "eng";
    /// The password of an encrypted input (user or owner); absent for none.
    std::optional<std::string> password;
    /// Told the share of pages done, in page order.
    std::function<void(double)> progress;
    /// Asked between pages; answering true stops the work with CancellationError.
    std::function<bool()> isCancelled;
};

struct OCROutcome {
    int pageCount = 0;
    int pagesRead = 0;      // pages that received a text layer
    int pagesWithText = 0;  // pages left as they were
    std::int64_t originalBytes = 0;
    std::int64_t resultBytes = 0;
};

class PDFOCREngine {
  public:
    PDFOCREngine() = delete;

    /// Pictures are read at this resolution, or at the embedded image's own when a scanned page
    /// holds less.
    static constexpr int readingDPI = 300;

    /// Throws PDFCoreError::invalidInput naming the first language of `languages` whose data is
    /// not installed, with the package that brings it.
    static void requireLanguages(const std::string& languages);

    /// Writes `input` with its text layers to `output` (validated, then moved into place; the
    /// input is never touched, `output` may be the input itself). Throws PDFCoreError:
    /// invalidInput (languages), fileNotFound, cannotOpen, wrongPassword, writeFailed,
    /// validationFailed; RenderError when a page cannot be drawn or is too large to read;
    /// CancellationError when cancelled. On every failure `output` is unchanged.
    static OCROutcome makeSearchable(const std::filesystem::path& input,
                                     const std::filesystem::path& output,
                                     const OCROptions& options);
};

} // namespace quillet
