// The appearance streams of every annotation on every page: /AP's normal, rollover and down
// appearances, each a stream or a dictionary of streams by state (a check box's on and off).
#pragma once

#include <qpdf/QPDF.hh>

#include <functional>

namespace quillet {

/// Calls `visit` with each appearance stream (a stream shared by several annotations once per
/// use). Pages and annotations that are not what they should be are skipped.
void forEachAppearanceStream(QPDF& qpdf, const std::function<void(QPDFObjectHandle)>& visit);

} // namespace quillet
