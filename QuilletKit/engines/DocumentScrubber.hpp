// Removes what identifies a document or acts on its own from a document that is about to be
// written as a cleaned copy.
//
// The cleaner rebuilds documents from their pages, which leaves the catalog's metadata behind but
// not what the pages themselves carry: an XMP packet on a page, an image or a font descriptor, a
// producer's private data (/PieceInfo), page thumbnails, scripts that run when a page opens or a
// field changes, and files attached to the page as annotations. `scrub` finds them anywhere in the
// object graph that the writer would write, not only where producers usually put them, because a
// packet left on one image of one page is as much of a leak as the document's own.
#pragma once

#include <qpdf/QPDF.hh>

namespace quillet {

class DocumentScrubber {
  public:
    DocumentScrubber() = delete;

    /// Walks every object reachable from the trailer of `qpdf` (each object once; loops are
    /// harmless) and, in every dictionary and stream dictionary:
    /// - removes /Metadata, /PieceInfo and /Thumb;
    /// - removes additional actions (/AA), the /JavaScript and /EmbeddedFiles name trees, and the
    ///   embedded files of file dictionaries (/EF);
    /// - removes every entry or array element that is a JavaScript action (/S /JavaScript, or any
    ///   dictionary carrying /JS), a FileAttachment annotation or an embedded file stream, so an
    ///   /OpenAction script, a script in an action chain (/Next) and an attachment annotation in
    ///   /Annots all go.
    /// Links, other annotations and page content are left alone. Edits `qpdf` in memory only;
    /// qpdf's exceptions on a damaged object propagate (callers translate them).
    static void scrub(QPDF& qpdf);
};

} // namespace quillet
