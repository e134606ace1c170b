// Cleaning a document of what it says about itself and its makers.
//
// Every preset writes a new document made of the input's pages alone; the input file is never
// touched, and the output only appears (or replaces the input, when it is the same path) after it
// has been read back and has every page (see ValidatedWrite).
//
// - `safe` and `privacy` (the same work; the screens only describe them differently) keep the
//   pages as they are, annotations and links included, and drop every document-level part: the
//   information dictionary, the XMP packet, outlines, the form, scripts, attachments. On the
//   pages they also drop XMP packets, private producer data (/PieceInfo) and thumbnails, down to
//   images and fonts, and every script and attachment (DocumentScrubber). The file gets a fresh
//   document ID and no producer of ours.
// - `flattenAndClean` keeps only what a reader saw: the visible appearance of annotations and
//   filled form fields is burnt into the page content first (appearances are generated for fields
//   that ask for it), then everything interactive goes. Each page keeps its own media box, crop
//   box and rotation; the rest of the page dictionary does not travel. The same scrubbing, fresh
//   ID and absent producer apply.
#pragma once

#include "engines/PDFMetadataInfo.hpp"
#include "model/OperationKinds.hpp"

#include <filesystem>
#include <functional>

namespace quillet {

class PDFMetadataEngine {
  public:
    using Progress = std::function<void(double)>;
    using CancellationTest = std::function<bool()>;

    PDFMetadataEngine() = delete;

    /// Writes the cleaned copy of `input` to `output` and answers the information fields the
    /// input had (PDFDocumentEngine::readMetadata), so a caller can tell what was removed.
    /// `output` may be `input` itself. Progress: `safe`/`privacy` report 0.5 before writing and
    /// 1.0 after; `flattenAndClean` reports i/N after page i and checks `isCancelled` before each
    /// page (throwing CancellationError). Pages that cannot be read are skipped.
    ///
    /// Throws PDFCoreError: from opening (fileNotFound, cannotOpen, wrongPassword for a file that
    /// needs an open password; `flattenAndClean` reports a missing file as cannotOpen);
    /// writeFailed naming the output, or "cannot create output" when `flattenAndClean` cannot
    /// create a file in the output's folder; validationFailed when the written file does not
    /// read back.
    static PDFMetadataInfo clean(const std::filesystem::path& input,
                                 const std::filesystem::path& output, CleanPreset preset,
                                 const Progress& progress = {},
                                 const CancellationTest& isCancelled = {});

  private:
    static void cleanPages(const std::filesystem::path& input, const std::filesystem::path& output,
                           const Progress& progress);
    static void flattenPages(const std::filesystem::path& input,
                             const std::filesystem::path& output, const Progress& progress,
                             const CancellationTest& isCancelled);
};

} // namespace quillet
