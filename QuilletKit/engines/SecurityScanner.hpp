// Counts what a document carries besides its pages: attachments, form fields, JavaScript.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

namespace quillet {

class SecurityScanner {
  public:
    struct Result {
        int attachmentCount = 0;
        int formFieldCount = 0;
        bool javascriptDetected = false;
    };

    /// Reads the catalog: the EmbeddedFiles and JavaScript name trees, the AcroForm's Fields
    /// (an AcroForm without a Fields array counts as one field) and a JavaScript OpenAction.
    /// Malformed entries count as nothing. Never throws.
    static Result scan(QPDFObjectHandle catalog);

    /// Entries of a name tree: a node's Names array holds key/value pairs; otherwise its Kids are
    /// summed. Loops in the tree and depths beyond 64 levels are not followed.
    static int countNameTreeEntries(QPDFObjectHandle node);
};

} // namespace quillet
