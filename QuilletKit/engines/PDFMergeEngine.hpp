// Joins PDFs and images, in the order given, into one new PDF; images-to-PDF is the same
// operation with only images.
//
// Inputs are sorted by file extension alone (FileTypes): an image extension means the file is
// read as a picture, by its content (a PNG named .jpg is fine; a PDF named .jpg fails as
// "Unsupported image: NAME"); anything else is opened as a PDF. PDF pages are copied, not redrawn
// (qpdf's foreign page copy): content, resources, rotation, annotations and form fields stay as
// they were. Each image becomes one page (see PageImage for how it is stored: JPEG bytes
// unchanged, other formats lossless, transparency on white).
//
// Image pages are built directly in the merged document; no temporary page files are made on the
// way (`renderImagePage` exists for callers that want a stand-alone page file, and is the only
// operation here that leaves a "quillet-" file behind, for its caller to remove).
//
// The output is written as qpdf's own page merge writes it (no object streams, for speed; see
// PDFMergeEngine.cpp), with the highest PDF version of its sources.
//
// Nothing is written until every input has been read: the output appears in one rename, and a
// failure or cancellation at any input leaves no file and an existing file at `output`
// unchanged. Inputs are never modified. Stateless; different merges may run on different threads.
// Memory: the source documents stay open until the write (qpdf copies their streams only then);
// JPEG bytes are read from their files at the write, one at a time.
#pragma once

#include "engines/ImagePlacement.hpp"
#include "engines/PageImage.hpp"
#include "model/ImageToPDFOptions.hpp"
#include "platform/PDFDocument.hpp"

#include <filesystem>
#include <functional>
#include <vector>

namespace quillet {

class PDFMergeEngine {
  public:
    PDFMergeEngine() = delete;

    /// Writes all pages of `inputs` in order to `output` and answers how many pages it wrote.
    /// `imageOptions` shapes the image pages only. `progress` (may be empty) is called after each
    /// input with (k + 1) / n; `isCancelled` (may be empty) is asked before each input.
    /// Throws PDFCoreError:
    /// - invalidInput "No input files." for an empty list;
    /// - invalidInput "Unsupported image: NAME" for an image that cannot be decoded;
    /// - cannotOpen(input) for a PDF that is missing, beyond repair, or needs a password (a file
    ///   with only an owner password is merged); pages of a readable PDF that cannot be copied are
    ///   skipped silently;
    /// - emptyDocument when no page was gathered;
    /// - writeFailed with the output's file name when writing fails.
    /// And CancellationError. The first failure ends the merge.
    /// `keep` (may be null): after a successful write the merged document and its sources are
    /// moved there rather than destroyed, for a caller that ends the process right after and can
    /// skip taking apart a million objects one at a time.
    static int merge(const std::vector<std::filesystem::path>& inputs,
                     const std::filesystem::path& output, const ImageToPDFOptions& imageOptions,
                     const std::function<void(double)>& progress,
                     const std::function<bool()>& isCancelled = {},
                     std::vector<PDFDocument>* keep = nullptr);

    /// Appends to `document` one page holding `image` as ImagePlacement places it for `options`
    /// (background, margin, fit or fill clipped to the content rectangle, EXIF orientation
    /// applied by the drawing matrix) and answers it. Throws PDFCoreError writeFailed "image
    /// page" when the page cannot be made, or locked when `document` is locked.
    static PDFPage makeImagePage(PDFDocument& document, const PageImage& image,
                                 const ImageToPDFOptions& options);

    /// Writes a one-page PDF of `image` on the page `options` ask for to a new file
    /// "quillet-<UUID>.pdf" in the system temporary folder and answers its location; the caller
    /// owns (and removes) the file. Throws PDFCoreError writeFailed "temp consumer" when the file
    /// cannot be written, or writeFailed "image page" as `makeImagePage`.
    static std::filesystem::path renderImagePage(const PageImage& image,
                                                 const ImageToPDFOptions& options);

  private:
    static int appendImage(PDFDocument& merged, const std::filesystem::path& input,
                           const ImageToPDFOptions& options);
    static int appendPDF(PDFDocument& merged, const std::filesystem::path& input,
                         std::vector<PDFDocument>& sources);
};

} // namespace quillet
