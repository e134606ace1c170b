// Last-resort repair of a page tree that leads nowhere.
//
// qpdf repairs a damaged cross-reference table, but when the catalog it settles on has no usable
// /Pages (a broken update section, a dangling reference) the document has no pages at all,
// although its page objects are intact in the file. Viewers find them by scanning; so do we.
#pragma once

#include <qpdf/QPDF.hh>

namespace quillet::detail {

/// When qpdf cannot list the pages (a /Kids array leads back to a node above it, a loop), gives
/// the catalog a flat page tree of the pages met walking the tree depth first, each node once, in reading order; inherited attributes (/MediaBox, /CropBox, /Resources, /Rotate) are
/// copied onto the pages first. Answers whether it did. Throws qpdf's exceptions.
bool flattenLoopingPageTree(QPDF& qpdf);

/// When the catalog leads to no page, gives it a new flat page tree of every dictionary with
/// /Type /Page found in the file, in the order they lie in the file. Answers whether it did.
/// Pages lose what they inherited from the lost tree. Throws qpdf's exceptions.
bool rebuildPageTreeIfEmpty(QPDF& qpdf);

/// Gives every page whose media box (its own or inherited) is missing, not four numbers, or
/// without area the box viewers show such a page with, US Letter (612 x 792 points), as its own
/// /MediaBox. Answers how many pages it changed. Throws qpdf's exceptions.
int repairDegenerateMediaBoxes(QPDF& qpdf);

} // namespace quillet::detail
