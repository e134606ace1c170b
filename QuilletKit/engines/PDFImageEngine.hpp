// Pages of a PDF as image files: "<base>-page-<NN>.<ext>" in an output folder.
//
// Pages are drawn as a viewer shows them: rotation and the media box origin applied, annotations
// and form fields drawn, transparent areas white. They are rendered and encoded on all cores, but
// files appear, progress moves and errors surface in page order, exactly as a one-page-at-a-time
// loop would behave; only a few pages are in flight at once, so memory does not grow with the
// page count.
//
// Stateless; the input is never modified. Each image is written beside its destination and
// renamed into place, so no half-written image is ever visible, and an existing file of the same
// name is replaced only by a complete one.
#pragma once

#include "model/OperationKinds.hpp"
#include "platform/PDFRenderer.hpp"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

class PDFImageEngine {
  public:
    PDFImageEngine() = delete;

    struct Result {
        /// The files written, in the order of the selected pages.
        std::vector<std::filesystem::path> files;
        /// Why each page without an image has none ("FILE: Page 3 takes too long to draw"), in
        /// page order.
        std::vector<std::string> skipped;
    };

    using Progress = std::function<void(double)>;
    using CancellationTest = std::function<bool()>;

    /// Renders the pages of `input` chosen by `pagesText` at `dpi` and writes one image per page
    /// into `outputDirectory` (created when missing).
    ///
    /// - Selection: blank text means every page; otherwise the split grammar
    ///   ("1-5, 8, 11-30"), each page once, ascending whatever the text order.
    /// - Names: `baseName` + "-page-" + the one-based page number padded to the digits of the
    ///   page count (at least two) + "." + the extension of the format written.
    /// - Each side of an image is the integer part of dpi / 72 x the rotated media box, at least
    ///   one pixel.
    /// - Encoding that fails in `format` is retried as heic, then as jpeg (in that order, on
    ///   purpose); the file takes the extension of the format that worked. A page that cannot be
    ///   rendered or encoded at all is skipped, and so is a page still drawing after
    ///   `renderTimeout` (zero: no limit); `Result::skipped` says why.
    /// - `progress` gets (pages done) / (pages selected) after each page, on the calling thread.
    ///   `isCancelled` is asked before each page; images already written stay.
    /// - `threads`: 0 uses every core; 1 does everything on the calling thread.
    ///
    /// Throws PDFCoreError: cannotOpen, wrongPassword (any password is needed to open);
    /// invalidInput when `dpi` < 1, when the text selects no page ("No pages matched \"TEXT\"."),
    /// or when a selected page would be larger than 400 megapixels (checked for every selected
    /// page before anything is written; the message names the file, page and size); writeFailed
    /// "no images produced" when no page gave an image. std::filesystem::filesystem_error, naming
    /// the path, when the folder or an image cannot be written (earlier images stay).
    /// CancellationError when cancelled.
    static Result pdfToImages(const std::filesystem::path& input,
                              const std::filesystem::path& outputDirectory,
                              const std::string& baseName, ImageOutputFormat format, int dpi,
                              std::string_view pagesText, double jpegQuality,
                              const Progress& progress, const CancellationTest& isCancelled = {},
                              unsigned threads = 0,
                              std::chrono::milliseconds renderTimeout = PDFRenderer::defaultTimeout);

    /// The zero-based pages `pagesText` selects in a document of `pageCount` pages: all of them
    /// for blank text, else every page of every range once, ascending. Throws invalidInput
    /// "No pages matched \"TEXT\"." (the text as given) when nothing is selected.
    static std::vector<int> selectedPages(std::string_view pagesText, int pageCount);

    /// "report-page-007.png": `pageNumber` (one-based) padded to the digits of `pageCount`, at
    /// least two.
    static std::string fileName(const std::string& baseName, int pageNumber, int pageCount,
                                std::string_view extension);
};

} // namespace quillet
