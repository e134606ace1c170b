// Recognises the commonest page of a scanned document: one JPEG drawn over the whole page and
// nothing else. Such a page can be rasterized by scaling the JPEG itself instead of rendering
// the page, with the same picture as a result.
#pragma once

#include "platform/PDFPage.hpp"

#include <qpdf/QPDFObjectHandle.hh>

#include <optional>
#include <string>

namespace quillet {

class FullPageJPEG {
  public:
    /// The JPEG bytes when the page's content is only q/Q/cm and one Do of a plain 8-bit gray or
    /// RGB DCT image (no mask, decode array or colour transform) whose placement covers the media
    /// box within half a point. Absent for every other page. Never throws.
    static std::optional<std::string> of(const PDFPage& page);
};

} // namespace quillet
