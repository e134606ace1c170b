#include "model/OperationKinds.hpp"

namespace quillet {

std::string_view displayName(PDFOperationKind kind) {
    switch (kind) {
    case PDFOperationKind::compress: return "Compress";
    case PDFOperationKind::targetSize: return "Target Size";
    case PDFOperationKind::merge: return "Merge";
    case PDFOperationKind::split: return "Split";
    case PDFOperationKind::organize: return "Organize";
    case PDFOperationKind::pdfToImages: return "PDF → Images";
    case PDFOperationKind::imagesToPDF: return "Images → PDF";
    case PDFOperationKind::clean: return "Privacy Clean";
    case PDFOperationKind::protect: return "Protect";
    case PDFOperationKind::unprotect: return "Remove Password";
    case PDFOperationKind::ocr: return "Make Searchable";
    case PDFOperationKind::redact: return "Redact";
    case PDFOperationKind::stamp: return "Stamp";
    }
    return {};
}

} // namespace quillet
