// One page of a PDFDocument, as the page-level operations see it.
//
// A PDFPage is a light handle (a qpdf object reference), cheap to copy. It does not own the page:
// it is valid while the document it came from is alive and the page has not been removed from
// it. Reads follow the page tree's inheritance (a media box or rotation set on a /Pages node
// applies to the pages below it); writes go to the page itself. A page too damaged to read throws
// PDFDocumentError(damaged), never one of qpdf's exceptions.
#pragma once

#include "platform/PDFDocumentError.hpp"

#include <qpdf/QPDFObjectHandle.hh>

#include <optional>
#include <string>
#include <vector>

namespace quillet {

/// A rectangle in PDF user space (points), normalised: width and height are never negative.
struct PDFRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const PDFRect&) const = default;
};

/// An annotation as the page model reports it.
struct PDFAnnotation {
    /// The subtype without its slash ("Link", "Widget", "Text"); "" when the entry is missing.
    /// A widget of a signature field (/FT /Sig, possibly inherited) reads "Signature".
    std::string type;
    /// Where the annotation leads outside the document: a URI action's URI as written, or
    /// "file:" + the file named by a Launch or GoToR action.
    std::optional<std::string> url;
};

class PDFPage {
  public:
    explicit PDFPage(QPDFObjectHandle page);

    /// The media box, inherited if need be. A missing or malformed box (not four numbers) gives
    /// the empty rectangle, which callers treat as invalid geometry.
    PDFRect mediaBox() const;

    /// The page rotation in degrees clockwise: 0, 90, 180 or 270. Values in the file are taken
    /// modulo 360 (-90 reads as 270); a value that is not a quarter turn reads as 0, as viewers
    /// ignore it.
    int rotation() const;

    /// Sets the rotation on the page itself. `degrees` is taken modulo 360 (450 sets 90, -90 sets
    /// 270). Throws std::invalid_argument when it is not a multiple of 90.
    void setRotation(int degrees);

    /// The page's annotations in /Annots order; entries that are not dictionaries are skipped.
    std::vector<PDFAnnotation> annotations() const;

    /// The page dictionary, for object-level work.
    QPDFObjectHandle object() const { return page_; }

  private:
    PDFRect box() const;
    int rotationValue() const;
    std::vector<PDFAnnotation> annotationList() const;

    QPDFObjectHandle page_;
};

} // namespace quillet
