// What a redaction reaches outside the pages' content: annotations and form fields under the
// areas, and the matches of the patterns wherever a document keeps text of its own.
//
// Places searched: the document information dictionary, the XMP metadata stream, the outline's
// titles, every annotation's /Contents, /T, /Subj and /RC, every form field's /V, /DV, /TU and
// choices (text strings), the structure tree's /Alt, /ActualText, /E and /T, and the names and
// descriptions of embedded files. Strings are read and written as
// text strings (PDFDocEncoding or UTF-16); the XMP packet as UTF-8.
#pragma once

#include "engines/RedactedDrawing.hpp"
#include "engines/RedactionFinder.hpp"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace quillet {

class RedactedExtras {
  public:
    /// Takes off `page` every annotation whose rectangle overlaps one of `areas` (the page's user
    /// space). A form field whose widget goes loses its value and leaves the form. Answers how
    /// many annotations went.
    static int removeAnnotationsUnder(QPDF& qpdf, QPDFObjectHandle page,
                                      const std::vector<RedactedDrawing::Area>& areas);

    /// Takes every match of `finder` out of the places above; answers how many there were.
    static int eraseMatches(QPDF& qpdf, const RedactionFinder& finder);

    /// How many matches of `finder` the places above hold, changing nothing.
    static int countMatches(QPDF& qpdf, const RedactionFinder& finder);
};

} // namespace quillet
