// The blank pages a merge puts between its inputs when asked to.
//
// The merge engine joins what it is given, in order, so each blank page is handed to it as an
// input of its own: a one-page PDF with nothing drawn, in the system temporary folder, one file
// per page size met. The files are removed when the MergeSeparators goes away, so it must outlive
// the merge that reads them. The merge then writes blank and real pages together in its one pass
// and its one rename, and counts the blank pages among the pages it wrote.
//
// A blank page is shaped like the last page before it, so that a printed booklet stays uniform:
// the same media box, crop box and rotation. After an image, that is the page the engine makes of
// the image with the same image options. An input without pages (an empty PDF) neither gets nor
// separates anything; an input that cannot be read gets nothing either, as the merge then fails
// on it with its usual message.
#pragma once

#include "model/ImageToPDFOptions.hpp"
#include "platform/TemporaryFile.hpp"

#include <filesystem>
#include <functional>
#include <vector>

namespace quillet {

class MergeSeparators {
  public:
    /// Opens each of `inputs` once for its last page (a PDF's page tree; an image's size, which
    /// for formats other than JPEG means decoding it) and makes the separator files.
    /// `isCancelled` (may be empty) is asked before each input. Throws CancellationError, or
    /// PDFCoreError writeFailed "blank page" when a separator file cannot be made.
    MergeSeparators(const std::vector<std::filesystem::path>& inputs,
                    const ImageToPDFOptions& imageOptions,
                    const std::function<bool()>& isCancelled);

    /// The inputs in their order with a separator between each two that give pages.
    const std::vector<std::filesystem::path>& inputs() const { return inputs_; }

  private:
    std::vector<TemporaryFile> files_;
    std::vector<std::filesystem::path> inputs_;
};

} // namespace quillet
