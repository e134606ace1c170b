// Writing one chunk of a split: page copies into a fresh document, trimmed to what they draw,
// written beside the destination, checked, then moved into place.
#include "engines/PDFSplitEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "platform/InOrderWorkers.hpp"
#include "platform/TemporaryFile.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <string_view>
#include <thread>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// Which pages of the source share a resource dictionary (or its /Font or /XObject part) with
// another page: some producers put all of a document's fonts and images in one dictionary, and a
// copy of such a page would carry all of them. Only these pages are pruned in a part; pages with
// resources of their own keep them as the producer wrote them, at no cost. Decided once per
// source from the page objects alone (no content is parsed), after inherited attributes have been
// moved onto the pages, since an inherited dictionary is shared by every page below it. Empty
// when the page tree cannot be read: every page then counts as sharing.
std::vector<bool> pagesSharingResources(QPDF& source) try {
    source.pushInheritedAttributesToPage();
    const auto& pages = source.getAllPages();
    std::map<QPDFObjGen, int> users;
    std::vector<std::vector<QPDFObjGen>> held(pages.size());
    for (std::size_t index = 0; index < pages.size(); ++index) {
        auto page = pages[index];
        auto resources = page.getKey("/Resources");
        const auto note = [&](QPDFObjectHandle object) {
            if (object.isIndirect()) {
                held[index].push_back(object.getObjGen());
                ++users[object.getObjGen()];
            }
        };
        note(resources);
        if (resources.isDictionary()) {
            note(resources.getKey("/Font"));
            note(resources.getKey("/XObject"));
        }
    }
    std::vector<bool> sharing(pages.size(), false);
    for (std::size_t index = 0; index < pages.size(); ++index) {
        for (const auto& object : held[index]) {
            sharing[index] = sharing[index] || users[object] > 1;
        }
    }
    return sharing;
} catch (const std::exception&) {
    return {};
}

// Copies the pages into `chunk`; answers the source indices of those that arrived, in order. Pages are taken from qpdf's own page
// list, which costs nothing per page, where a per-page count of the source would make a split of
// a long document quadratic.
SplitChunk copyPages(PDFDocument& source, const SplitChunk& pages, PDFDocument& chunk) {
    const auto& sourcePages = source.qpdf().getAllPages();
    QPDFPageDocumentHelper target(chunk.qpdf());
    // Form fields live in the catalog, which a page copy does not take along: without them the
    // widgets of a part would still show their values but no longer work as fields.
    std::optional<QPDFAcroFormDocumentHelper> sourceForms;
    if (source.qpdf().getRoot().getKey("/AcroForm").isDictionary()) {
        sourceForms.emplace(source.qpdf());
    }
    QPDFAcroFormDocumentHelper targetForms(chunk.qpdf());
    SplitChunk copied;
    for (const int index : pages) {
        if (index < 0 || static_cast<std::size_t>(index) >= sourcePages.size()) {
            continue;
        }
        const auto& original = sourcePages[static_cast<std::size_t>(index)];
        try {
            // qpdf copies a page of another document with everything it refers to, except other
            // pages (links to them end up pointing nowhere), and duplicates a repeated page.
            target.addPage(QPDFPageObjectHelper(original), false);
            copied.push_back(index);
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

// `copied` holds the source index of each page of `chunk`, in order.
void pruneSharedResources(PDFDocument& chunk, const SplitChunk& copied,
                          const std::vector<bool>& sharing) {
    auto pages = QPDFPageDocumentHelper(chunk.qpdf()).getAllPages();
    for (std::size_t position = 0; position < pages.size() && position < copied.size(); ++position) {
        auto& page = pages[position];
        try {
            const auto index = static_cast<std::size_t>(copied[position]);
            if (index >= sharing.size() || sharing[index]) {
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

// A part written beside its destination, not in place yet.
struct WrittenPart {
    TemporaryFile file;
    fs::path destination;
    int pageCount = 0;
};

// Parts are written without object streams whatever the source did: packing a part of a page or
// two saves about a twentieth of it and takes longer than the rest of writing it, which a split
// into hundreds of parts pays hundreds of times.
void configure(QPDFWriter& writer) {
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.setCompressStreams(true);
}

void check(const PDFDocumentEngine::ValidationResult& validation) {
    if (!validation.ok) {
        throw PDFCoreError::validationFailed(validation.message);
    }
}

// Written to disk by qpdf and read back from there: for parts of large sources, which may be
// large themselves.
WrittenPart writeThroughDisk(const PDFDocument& chunk, int pageCount, const fs::path& url) {
    std::optional<WrittenPart> part;
    try {
        part.emplace(WrittenPart{TemporaryFile::beside(url), url, pageCount});
        QPDFWriter writer(chunk.qpdf(), part->file.path().c_str());
        configure(writer);
        writer.write();
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(url.filename().string());
    }
    check(PDFDocumentEngine::validateOutput(part->file.path(), pageCount));
    return std::move(*part);
}

// Assembled and checked in memory, then put on disk in one write: a part of a split is read back
// without a system call per object, which for hundreds of small parts is most of the cost of
// checking them.
WrittenPart writeThroughMemory(const PDFDocument& chunk, int pageCount, const fs::path& url) {
    std::shared_ptr<Buffer> buffer;
    try {
        QPDFWriter writer(chunk.qpdf());
        writer.setOutputMemory();
        configure(writer);
        writer.write();
        buffer = writer.getBufferSharedPointer();
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(url.filename().string());
    }
    const std::string_view bytes(reinterpret_cast<const char*>(buffer->getBuffer()),
                                 buffer->getSize());
    check(PDFDocumentEngine::validateOutput(bytes, pageCount));
    try {
        WrittenPart part{TemporaryFile::beside(url), url, pageCount};
        std::ofstream out(part.file.path(), std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            throw std::runtime_error("short write");
        }
        return part;
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(url.filename().string());
    }
}

// Whether the parts of `source` are assembled in memory: those of a file of 64 MB or less, as one
// part is never larger than its source by more than the few objects a copy adds. Decided once
// per split.
bool assembleInMemory(const PDFDocument& source) {
    constexpr std::uintmax_t limit = 64U << 20U;
    std::error_code error;
    return !source.path().empty() && fs::file_size(source.path(), error) <= limit && !error;
}

// Reads the source; must run on the thread that owns it. `sharing` is the source's
// `pagesSharingResources`, `inMemory` its `assembleInMemory`. The part comes back written beside
// `url` and checked.
WrittenPart writePart(PDFDocument& source, const SplitChunk& pages, const std::vector<bool>& sharing,
                      bool inMemory, const fs::path& url) {
    PDFDocument chunk = PDFDocument::empty();
    SplitChunk copied;
    try {
        chunk.qpdf().setSuppressWarnings(true);
        copied = copyPages(source, pages, chunk);
    } catch (const std::exception&) {
        // A source whose page list cannot be read yields no pages at all.
    }
    if (copied.empty()) {
        throw PDFCoreError::emptyDocument();
    }
    pruneSharedResources(chunk, copied, sharing);
    const int pageCount = static_cast<int>(copied.size());
    return inMemory ? writeThroughMemory(chunk, pageCount, url)
                    : writeThroughDisk(chunk, pageCount, url);
}

// Moves a checked part into place. Returns where it went (a later name when its free name was
// taken meanwhile).
fs::path placePart(WrittenPart& part) {
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

// The source as one worker of a split reads it, with the pages that share resources. Worker 0
// reads the caller's document; the others open the same file again, so that no two threads ever
// touch one document.
class WorkerSource {
  public:
    explicit WorkerSource(PDFDocument& shared) : document_(&shared) {}
    WorkerSource() = default;

    PDFDocument& document(const PDFDocument& original) {
        if (document_ == nullptr) {
            own_.emplace(PDFDocumentEngine::openUnlock(original.path(), original.password()));
            if (own_->pageCount() != original.pageCount()) {
                throw PDFCoreError::validationFailed("The file changed while it was being split.");
            }
            document_ = &*own_;
        }
        return *document_;
    }

    const std::vector<bool>& sharing(const PDFDocument& original) {
        if (!sharing_) {
            sharing_ = pagesSharingResources(document(original).qpdf());
        }
        return *sharing_;
    }

  private:
    std::optional<PDFDocument> own_;
    PDFDocument* document_ = nullptr;
    std::optional<std::vector<bool>> sharing_;
};

// One worker per core for long splits of a document read from a file; a short split is not worth
// opening the file again.
unsigned splitWorkers(const PDFDocument& source, std::size_t parts) {
    if (source.path().empty() || parts < 8) {
        return 1;
    }
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

} // namespace

void PDFSplitEngine::writeChunk(PDFDocument& source, const SplitChunk& pages, const fs::path& url) {
    auto part = writePart(source, pages, pagesSharingResources(source.qpdf()),
                          assembleInMemory(source), url);
    flushParts({placePart(part)});
}

void PDFSplitEngine::writeChunks(PDFDocument& source, const SplitPlan& plan,
                                 const PartDestination& destination, const PartWritten& written) {
    // Parts are built, written and read back on every core, each worker with its own reading of
    // the source, and moved into place in order on the calling thread. A few parts at most wait
    // ahead of the one being placed: a failure still leaves the parts before it in place and
    // nothing of the later ones.
    std::vector<fs::path> destinations;
    destinations.reserve(plan.size());
    for (std::size_t index = 0; index < plan.size(); ++index) {
        destinations.push_back(destination(index));
    }
    const unsigned workers = splitWorkers(source, plan.size());
    const std::size_t window = 2 * static_cast<std::size_t>(workers);
    const bool inMemory = assembleInMemory(source);
    std::vector<WorkerSource> sources(workers);
    sources.front() = WorkerSource(source);
    std::vector<std::optional<WrittenPart>> waiting(window);
    std::vector<fs::path> placed;
    try {
        runInOrder(
            plan.size(), workers, window,
            [&](unsigned worker, std::size_t index) {
                auto& reader = sources[worker];
                auto part = writePart(reader.document(source), plan[index],
                                      reader.sharing(source), inMemory, destinations[index]);
                waiting[index % window].emplace(std::move(part));
            },
            [&](std::size_t index) {
                auto part = std::move(*waiting[index % window]);
                waiting[index % window].reset();
                placed.push_back(placePart(part));
                written(index);
            });
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
