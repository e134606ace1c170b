// Walks a page's content (and the forms it draws) to count text operators, collect fonts and
// find every placed image with its effective resolution.
//
// Only nine operators matter: q, Q, cm (the transform), Tj, TJ, ', " (text), Tf (fonts) and Do
// (XObjects). Names are resolved through the resources of the stream being scanned, falling back
// to the enclosing streams' (a form without resources of its own is skipped). Inline images are
// skipped, not counted. A form's own /Matrix is not applied. Forms are followed through a cycle
// check on the current path and to a depth of 32, so a form that draws itself ends quickly.
// Malformed content or objects are skipped; the scan never fails because of content.
#pragma once

#include "engines/PDFAnalysis.hpp"

#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <set>
#include <string>
#include <vector>

namespace quillet {

class ContentScanner {
  public:
    /// Scans `page` (a page dictionary) as page `pageIndex` (zero-based). Never throws for
    /// content reasons.
    static PDFPageAnalysis scanPage(QPDFObjectHandle page, int pageIndex);

  private:
    struct Matrix {
        double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
        /// This matrix applied before `other`: the result of `cm` with this operand.
        Matrix concatenated(const Matrix& other) const;
    };
    struct Operand {
        enum Kind { number, name, other } kind = other;
        double value = 0;
        std::string text; // names, with their leading slash
    };

    explicit ContentScanner(int pageIndex) : pageIndex_(pageIndex) {}

    void scan(const std::string& content, int depth);
    void onOperator(const std::string& op, const std::vector<Operand>& operands, int depth);
    void onDo(const std::string& name, int depth);
    void onForm(QPDFObjectHandle form, int depth);
    void onImage(QPDFObjectHandle image);
    std::string fontName(const std::string& resourceName) const;
    QPDFObjectHandle resource(const std::string& category, const std::string& name) const;

    int pageIndex_;
    int textCount_ = 0;
    std::vector<PDFImageInfo> images_;
    std::set<std::string> fontNames_;
    Matrix ctm_;
    std::vector<Matrix> saved_;
    std::vector<QPDFObjectHandle> resources_; // innermost last
    std::vector<QPDFObjGen> formPath_;        // forms being scanned, for the cycle check
};

} // namespace quillet
