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

    PDFDocumentError(Kind kind, const std::string& message)
        : std::runtime_error(message), kind_(kind) {}

    Kind kind() const noexcept { return kind_; }

  private:
    Kind kind_;
};

} // namespace quillet
