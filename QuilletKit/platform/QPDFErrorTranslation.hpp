// Runs qpdf work and turns whatever qpdf throws into a PDFDocumentError of the given kind.
//
// qpdf throws QPDFExc, QPDFSystemError, std::logic_error and plain std::runtime_error, and its
// messages already name the file; they are kept as the error's message.
#pragma once

#include "platform/PDFDocumentError.hpp"

#include <exception>
#include <stdexcept>
#include <utility>

namespace quillet::detail {

template <typename Work>
auto translatingQPDFErrors(PDFDocumentError::Kind kind, Work&& work) -> decltype(work()) {
    try {
        return std::forward<Work>(work)();
    } catch (const PDFDocumentError&) {
        throw;
    } catch (const std::out_of_range&) {
        throw;
    } catch (const std::invalid_argument&) {
        throw;
    } catch (const std::exception& error) {
        throw PDFDocumentError(kind, error.what());
    }
}

} // namespace quillet::detail
