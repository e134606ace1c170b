// The one error type of the PDF engines.
//
// Each case carries a fixed English description (what the command line prints after "error: " and
// what the screens show); engines wrap their own wording into `invalidInput`, `writeFailed` or
// `validationFailed`. The case order is stable: it is the numeric code used when the error crosses
// a process boundary.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace quillet {

class PDFCoreError : public std::exception {
  public:
    enum class Case {
        fileNotFound,
        cannotOpen,
        invalidInput,
        writeFailed,
        validationFailed,
        cannotReachTarget,
        wrongPassword,
        emptyDocument,
    };

    static PDFCoreError fileNotFound(const std::filesystem::path& url);
    /// "Could not open NAME." or, with a `reason`, "Could not open NAME: REASON."
    static PDFCoreError cannotOpen(const std::filesystem::path& url, std::string reason = {});
    static PDFCoreError invalidInput(std::string text);
    static PDFCoreError writeFailed(std::string text);
    static PDFCoreError validationFailed(std::string text);
    static PDFCoreError cannotReachTarget(std::int64_t bytes);
    static PDFCoreError wrongPassword();
    static PDFCoreError emptyDocument();

    Case errorCase() const noexcept { return case_; }
    /// The path of `fileNotFound` and `cannotOpen`; empty for the other cases.
    const std::filesystem::path& url() const noexcept { return url_; }
    /// The payload text of `invalidInput`, `writeFailed` and `validationFailed`; the reason of
    /// `cannotOpen` (may be empty).
    const std::string& text() const noexcept { return text_; }
    /// The target size of `cannotReachTarget`; 0 for the other cases.
    std::int64_t bytes() const noexcept { return bytes_; }

    /// The user-facing description of the case.
    const std::string& errorDescription() const noexcept { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

  private:
    PDFCoreError(Case errorCase, std::string description);

    Case case_;
    std::filesystem::path url_;
    std::string text_;
    std::int64_t bytes_ = 0;
    std::string description_;
};

/// Thrown by an engine whose cancellation test answered true; it carries no message.
class CancellationError : public std::exception {
  public:
    const char* what() const noexcept override { return "The operation was cancelled."; }
};

} // namespace quillet
