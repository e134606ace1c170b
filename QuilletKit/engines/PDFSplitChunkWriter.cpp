// Writing one chunk of a split: page copies into a fresh document, trimmed to what they draw,
// written beside the destination, checked, then moved into place.
#include "engines/PDFSplitEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "platform/TemporaryFile.hpp"

#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <future>
#include <optional>

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
    // Form fields live in the catalog, which a page copy does not take along: without them the
    // widgets of a part would still show their values but no longer work as fields.
    std::optional<QPDFAcroFormDocumentHelper> sourceForms;
    if (source.qpdf().getRoot().getKey("/AcroForm").isDictionary()) {
        sourceForms.emplace(source.qpdf());
    }
    QPDFAcroFormDocumentHelper targetForms(chunk.qpdf());
    int copied = 0;
    for (const int index : pages) {
        if (index < 0 || static_cast<std::size_t>(index) >= sourcePages.size()) {
            continue;
        }
        const auto& original = sourcePages[static_cast<std::size_t>(index)];
        try {
            // qpdf copies a page of another document with everything it refers to, except other
            // pages (links to them end up pointing nowhere), and duplicates a repeated page.
            target.addPage(QPDFPageObjectHelper(original), false);
            ++copied;
        } catch (const std::exception&) {
            continue; // An unreadable page is left out; the others still make a document.
        }
        try {
            if (sourceForms) {
                targetForms.fixCopiedAnnotations(chunk.qpdf().getAllPages().back(), original,
                                                 *sourceForms);
            }
        } catch (const std::exception&) {
            // Damaged fields leave the widgets as they were copied: visible, not fillable.
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

// A part written beside its destination, neither checked nor in place yet.
struct WrittenPart {
    TemporaryFile file;
    fs::path destination;
    int pageCount = 0;
};

WrittenPart writeTemporary(const PDFDocument& chunk, bool packObjects, int pageCount,
                           const fs::path& url) {
    try {
        WrittenPart part{TemporaryFile::beside(url), url, pageCount};
        QPDFWriter writer(chunk.qpdf(), part.file.path().c_str());
        writer.setObjectStreamMode(packObjects ? qpdf_o_generate : qpdf_o_disable);
        writer.setCompressStreams(true);
        writer.write();
        return part;
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(url.filename().string());
    }
}

// Reads the source; must run on the thread that owns it.
WrittenPart writePart(PDFDocument& source, const SplitChunk& pages, const fs::path& url) {
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
    return writeTemporary(chunk, usesObjectStreams(source.qpdf()), copied, url);
}

// Touches only the written file, so it may run on any thread. Returns where the part went (a
// later name when its free name was taken meanwhile).
fs::path finishPart(WrittenPart& part) {
    const auto validation = PDFDocumentEngine::validateOutput(part.file.path(), part.pageCount);
    if (!validation.ok) {
        throw PDFCoreError::validationFailed(validation.message);
    }
    const auto name = part.destination.filename().string();
    try {
        // Flushed together with the other parts once the split is done.
        return part.file.commit(part.destination, TemporaryFile::Durability::deferred);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(name);
    }
}

void flushParts(const std::vector<fs::path>& parts) {
    try {
        TemporaryFile::flushToDisk(parts);
    } catch (const std::filesystem::filesystem_error& error) {
        throw PDFCoreError::writeFailed(error.path1().filename().string());
    }
}

// Builds each part while the one before is checked and moved into place; `placed` collects the
// parts in place, in order.
void writeInTurn(PDFDocument& source, const SplitPlan& plan,
                 const PDFSplitEngine::PartDestination& destination,
                 const PDFSplitEngine::PartWritten& written, std::vector<fs::path>& placed) {
    std::future<fs::path> finishing;
    const auto settle = [&](std::size_t index) {
        placed.push_back(finishing.get());
        written(index);
    };
    for (std::size_t index = 0; index < plan.size(); ++index) {
        std::optional<WrittenPart> part;
        try {
            part.emplace(writePart(source, plan[index], destination(index)));
        } catch (...) {
            // The part before failed first if it failed at all; its error is the one to report.
            if (index > 0) {
                settle(index - 1);
            }
            throw;
        }
        if (index > 0) {
            settle(index - 1);
        }
        finishing = std::async(std::launch::async, [finished = std::move(*part)]() mutable {
            return finishPart(finished);
        });
    }
    if (!plan.empty()) {
        settle(plan.size() - 1);
    }
}

} // namespace

void PDFSplitEngine::writeChunk(PDFDocument& source, const SplitChunk& pages, const fs::path& url) {
    auto part = writePart(source, pages, url);
    flushParts({finishPart(part)});
}

void PDFSplitEngine::writeChunks(PDFDocument& source, const SplitPlan& plan,
                                 const PartDestination& destination, const PartWritten& written) {
    // Reading a part back waits on the disk as much as it computes, so it runs beside the
    // building of the next part. One part at most is in flight: memory stays that of two parts,
    // and a failure stops the split one part later at the latest.
    std::vector<fs::path> placed;
    try {
        writeInTurn(source, plan, destination, written, placed);
    } catch (...) {
        try {
            TemporaryFile::flushToDisk(placed);
        } catch (const std::exception&) {
            // The failure that stopped the split is the one to report.
        }
        throw;
    }
    flushParts(placed);
}

} // namespace quillet
