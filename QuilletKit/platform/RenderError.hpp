// The one error type of the rendering layer. Its message is complete and names the file, so a
// caller can show it as it is; `reason` is what a caller branches on (a wrong password becomes a
// password prompt or PDFCoreError::wrongPassword, a refused size becomes invalidInput, ...).
#pragma once

#include <stdexcept>
#include <string>

namespace quillet {

class RenderError : public std::runtime_error {
  public:
    enum class Reason {
        cannotOpen,     ///< missing, unreadable, or not a PDF even after repair
        wrongPassword,  ///< encrypted, and no password or the wrong one was given
        pageOutOfRange, ///< a page index outside 0 ..< pageCount
        tooLarge,       ///< the bitmap would exceed PDFRenderer::maxPixels
        invalidRequest, ///< a scale or size that describes no bitmap (zero, negative, NaN)
        renderFailed,   ///< MuPDF gave up on the page or ran out of memory
        tooSlow,        ///< the page was still drawing when its time ran out
        cancelled,      ///< the caller gave up while the page was drawing
    };

    RenderError(Reason reason, const std::string& message)
        : std::runtime_error(message), reason_(reason) {}

    Reason reason() const noexcept { return reason_; }

  private:
    Reason reason_;
};

} // namespace quillet
