// Appearances for markup annotations that were saved without one.
//
// Many producers write highlights, ink, shapes and lines as bare geometry (/QuadPoints,
// /InkList, /L, /Vertices) and leave drawing them to the viewer. Burning annotations into the
// page only works from an appearance stream, so without this step the highlights a reader saw
// would silently vanish from a flattened page. The drawing follows what viewers commonly do with
// such annotations: colour /C, interior colour /IC, border width from /BS or /Border, opacity /CA,
// highlights multiplied over the text. Annotations that carry an appearance are left alone, as
// are kinds whose look depends on the viewer (text-note icons, free text, stamps, media).
#pragma once

#include <qpdf/QPDF.hh>

namespace quillet {

class AnnotationAppearances {
  public:
    AnnotationAppearances() = delete;

    /// Gives every Highlight, Underline, StrikeOut, Squiggly, Ink, Line, Square, Circle, Polygon
    /// and PolyLine annotation on the pages of `qpdf` that has no normal appearance (/AP /N) one
    /// drawn from its geometry, and sets its /Rect to the drawing's bounds (a producer's /Rect
    /// does not always enclose the geometry, and a rectangle that clips the drawing would hide
    /// it). An annotation whose geometry is missing or malformed is skipped. Edits `qpdf` in
    /// memory only; qpdf's exceptions on damaged objects propagate.
    static void generateMissing(QPDF& qpdf);
};

} // namespace quillet
