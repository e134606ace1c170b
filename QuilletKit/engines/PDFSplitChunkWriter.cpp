// Writing one chunk of a split: page copies into a fresh document, trimmed to what they draw,
// written beside the destination, checked, then moved into place.
#include "engines/PDFSplitEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "platform/TemporaryFile.hpp"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// A page whose resources are reached through an indirect object may be sharing them with every
// other page (some producers put all of a document's fonts and images in one dictionary). Pages
// with resources of their own are left alone: pruning them would cost a content parse and could
// only drop what the producer chose to keep.
bool mayShareResources(QPDFObjectHandle page) {
    auto resources = page.getKey("/Resources");
    if (resources.isIndirect()) {
        return true;
    }
    if (!resources.isDictionary()) {
        return false;
    }
    return resources.getKey("/Font").isIndirect() || resources.getKey("/XObject").isIndirect();
}

// Copies the pages into `chunk`; answers how many arrived. Pages are taken from qpdf's own page
// list, which costs nothing per page, where a per-page count of the source would make a split of
// a long document quadratic.
int copyPages(PDFDocument& source, const SplitChunk& pages, PDFDocument& chunk) {
    const auto& sourcePages = source.qpdf().getAllPages();
    QPDFPageDocumentHelper target(chunk.qpdf());
    int copied = 0;
    for (const int index : pages) {
        if (index < 0 || static_cast<std::size_t>(index) >= sourcePages.size()) {
            continue;
        }
        try {
            // qpdf copies a page of another document with everything it refers to, except other
            // pages (links to them end up pointing nowhere), and duplicates a repeated page.
            target.addPage(QPDFPageObjectHelper(sourcePages[static_cast<std::size_t>(index)]),
                           false);
            ++copied;
        } catch (const std::exception&) {
            // An unreadable page is left out; the others still make a document.
        }
    }
    return copied;
}

void pruneSharedResources(PDFDocument& chunk) {
    for (auto& page : QPDFPageDocumentHelper(chunk.qpdf()).getAllPages()) {
        try {
            if (mayShareResources(page.getObjectHandle())) {
                // Gives the page its own /Font and /XObject dictionaries holding only the names
                // its content (and that of its forms) uses; content that does not parse cleanly
                // is left untouched by qpdf.
                page.removeUnreferencedResources();
            }
        } catch (const std::exception&) {
            // Keeping every resource is always correct, only larger.
        }
    }
}

// Whether the source packs objects into object streams (which only cross-reference streams can
// point into). Parts follow it: packing saves a sixth of a small file but costs more time than
// the rest of writing it, and a producer that chose not to pack would not expect packed parts.
bool usesObjectStreams(QPDF& source) {
    auto trailer = source.getTrailer();
    return trailer.getKey("/Type").isNameAndEquals("/XRef") || trailer.hasKey("/XRefStm");
}

void writeChecked(const PDFDocument& chunk, bool packObjects, int pageCount, const fs::path& url) {
    const std::string name = url.filename().string();
    std::optional<TemporaryFile> temporary;
    try {
        temporary.emplace(TemporaryFile::beside(url));
        QPDFWriter writer(chunk.qpdf(), temporary->path().c_str());
        writer.setObjectStreamMode(packObjects ? qpdf_o_generate : qpdf_o_disable);
        writer.setCompressStreams(true);
        writer.write();
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(name);
    }
    const auto validation = PDFDocumentEngine::validateOutput(temporary->path(), pageCount);
    if (!validation.ok) {
        throw PDFCoreError::validationFailed(validation.message);
    }
    try {
        temporary->commit(url);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(name);
    }
}

} // namespace

void PDFSplitEngine::writeChunk(PDFDocument& source, const SplitChunk& pages, const fs::path& url) {
    PDFDocument chunk = PDFDocument::empty();
    int copied = 0;
    try {
        chunk.qpdf().setSuppressWarnings(true);
        copied = copyPages(source, pages, chunk);
    } catch (const std::exception&) {
        // A source whose page list cannot be read yields no pages at all.
    }
    if (copied < 1) {
        throw PDFCoreError::emptyDocument();
    }
    pruneSharedResources(chunk);
    writeChecked(chunk, usesObjectStreams(source.qpdf()), copied, url);
}

} // namespace quillet
