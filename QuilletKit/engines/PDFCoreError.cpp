#include "engines/PDFCoreError.hpp"

#include "engines/Formatters.hpp"

namespace quillet {

PDFCoreError::PDFCoreError(Case errorCase, std::string description)
    : case_(errorCase), description_(std::move(description)) {}

PDFCoreError PDFCoreError::fileNotFound(const std::filesystem::path& url) {
    PDFCoreError error(Case::fileNotFound, "File not found: " + url.filename().string());
    error.url_ = url;
    return error;
}

PDFCoreError PDFCoreError::cannotOpen(const std::filesystem::path& url, std::string reason) {
    while (!reason.empty() && (reason.back() == '.' || reason.back() == ' ')) {
        reason.pop_back();
    }
    PDFCoreError error(Case::cannotOpen, "Could not open " + url.filename().string() +
                                             (reason.empty() ? "." : ": " + reason + "."));
    error.text_ = std::move(reason);
    error.url_ = url;
    return error;
}

PDFCoreError PDFCoreError::invalidInput(std::string text) {
    PDFCoreError error(Case::invalidInput, text);
    error.text_ = std::move(text);
    return error;
}

PDFCoreError PDFCoreError::writeFailed(std::string text) {
    PDFCoreError error(Case::writeFailed, "Writing the PDF failed: " + text);
    error.text_ = std::move(text);
    return error;
}

PDFCoreError PDFCoreError::validationFailed(std::string text) {
    PDFCoreError error(Case::validationFailed, "Could not safely process this PDF. " + text);
    error.text_ = std::move(text);
    return error;
}

PDFCoreError PDFCoreError::cannotReachTarget(std::int64_t bytes) {
    PDFCoreError error(Case::cannotReachTarget, "This PDF cannot be compressed under " +
                                                    formattedBytes(bytes, 2) +
                                                    " without unacceptable quality loss.");
    error.bytes_ = bytes;
    return error;
}

PDFCoreError PDFCoreError::wrongPassword() {
    return PDFCoreError(Case::wrongPassword, "Incorrect password.");
}

PDFCoreError PDFCoreError::emptyDocument() {
    return PDFCoreError(Case::emptyDocument, "The document has no pages.");
}

} // namespace quillet
