// What the page-level document layer throws.
//
// qpdf reports trouble with several exception types (QPDFExc, QPDFSystemError, std::logic_error,
// std::runtime_error). They are translated at this boundary so that callers handle one type and
// never include qpdf's headers for the purpose; the engines map the kinds to PDFCoreError.
#pragma once

#include <stdexcept>
#include <string>

namespace quillet {

class PDFDocumentError : public std::runtime_error {
  public:
    enum class Kind {
        /// The file cannot be read or qpdf cannot make a document of it, even with repair.
        cannotOpen,
        /// The operation needs the content of a document that is still locked.
        locked,
        /// Writing (to a file or to memory) failed; the destination is unchanged.
        writeFailed,
        /// A page or object of an opened document is too damaged for the operation.
        damaged,
        /// The file is readable but holds what is refused on purpose (a decompression bomb); the
        /// message says what, for the user.
        refused,
    };

    PDFDocumentError(Kind kind, const std::string& message, std::string detail = {})
        : std::runtime_error(message), kind_(kind), detail_(std::move(detail)) {}

    Kind kind() const noexcept { return kind_; }
    /// What is wrong, in a few words and without the file's name or offsets ("loop detected in
    /// /Pages structure"); the whole message when qpdf gave no separate detail.
    std::string detail() const { return detail_.empty() ? what() : detail_; }

  private:
    Kind kind_;
    std::string detail_;
};

} // namespace quillet
