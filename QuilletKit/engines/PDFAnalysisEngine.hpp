// Reads a PDF without changing it and says what is in it and what to do about it.
#pragma once

#include "engines/PDFAnalysis.hpp"
#include "platform/PDFPage.hpp"

#include <filesystem>
#include <vector>

namespace quillet {

class PDFAnalysisEngine {
  public:
    PDFAnalysisEngine() = delete;

    /// Analyses every page and the document. Opens without a password (a file that needs one
    /// fails with PDFCoreError wrongPassword); a file that cannot be read or parsed fails with
    /// cannotOpen, a document without pages with emptyDocument. Pages that cannot be read are
    /// left out of `pages`. Large documents are analysed on all cores, with the same result as a
    /// serial run.
    static PDFAnalysis analyze(const std::filesystem::path& url);

    /// One page's text operators, fonts, images and media box size.
    static PDFPageAnalysis analyzePage(const PDFPage& page, int index);

    /// Up to five suggestions, in a fixed order: unprotect, compress, OCR (not yet available),
    /// clean personal metadata, clean embedded content.
    static std::vector<RecommendedAction> recommendations(const PDFAnalysis& analysis);
};

} // namespace quillet
