#include "engines/DocumentCompactor.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/StreamDeduplicator.hpp"
#include "platform/InOrderWorkers.hpp"
#include "platform/PDFRenderer.hpp"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace quillet {
namespace {

struct Reached {
    std::vector<QPDFObjectHandle> fonts;
    std::vector<QPDFObjectHandle> images;
    /// Dictionaries carrying an application's private editing data (/PieceInfo).
    std::vector<QPDFObjectHandle> pieceInfoHolders;
    bool embedsFonts = false;
};

// A font a content stream names: a simple font or a Type0 font. A Type0's descendant (a CIDFont)
// is reached through its parent, so that its program is known to be reached by CID.
bool isFont(QPDFObjectHandle dictionary) {
    auto subtype = dictionary.getKey("/Subtype");
    if (subtype.isNameAndEquals("/CIDFontType0") || subtype.isNameAndEquals("/CIDFontType2")) {
        return false;
    }
    return dictionary.getKey("/Type").isNameAndEquals("/Font") ||
           dictionary.hasKey("/FontDescriptor") || dictionary.hasKey("/DescendantFonts");
}

// Every indirect object the trailer leads to, without reading any stream's data.
Reached reach(QPDF& qpdf) {
    Reached reached;
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> pending{qpdf.getTrailer()};
    while (!pending.empty()) {
        auto object = pending.back();
        pending.pop_back();
        if (object.isIndirect() && !seen.insert(object.getObjGen()).second) {
            continue;
        }
        auto dictionary = object.isStream() ? object.getDict() : object;
        if (object.isStream() && dictionary.getKey("/Subtype").isNameAndEquals("/Image")) {
            reached.images.push_back(object);
        } else if (object.isIndirect() && dictionary.isDictionary() && isFont(dictionary)) {
            reached.fonts.push_back(object);
        }
        if (dictionary.isDictionary()) {
            if (dictionary.hasKey("/PieceInfo")) {
                reached.pieceInfoHolders.push_back(dictionary);
            }
            if (dictionary.hasKey("/FontFile") || dictionary.hasKey("/FontFile2") ||
                dictionary.hasKey("/FontFile3")) {
                reached.embedsFonts = true;
            }
            for (const auto& key : dictionary.getKeys()) {
                auto item = dictionary.getKey(key);
                if (item.isIndirect() || item.isArray() || item.isDictionary()) {
                    pending.push_back(item);
                }
            }
        } else if (dictionary.isArray()) {
            for (auto& item : dictionary.getArrayAsVector()) {
                if (item.isIndirect() || item.isArray() || item.isDictionary()) {
                    pending.push_back(item);
                }
            }
        }
    }
    return reached;
}

std::map<QPDFObjGen, PlacedResolution> placedResolutions(const DocumentCompactor::Source& source) {
    std::map<QPDFObjGen, PlacedResolution> dpi;
    if (!source.analysis) {
        return dpi;
    }
    for (const auto& page : source.analysis->pages) {
        if (source.rasterizedPages.count(page.index)) {
            continue;
        }
        for (const auto& image : page.images) {
            if (image.objectNumber > 0) {
                // An image placed several times keeps what its largest placement needs.
                const QPDFObjGen id(image.objectNumber, image.objectGeneration);
                const auto [entry, fresh] =
                    dpi.try_emplace(id, PlacedResolution{image.acrossDPI, image.downDPI});
                if (!fresh) {
                    entry->second.across = std::min(entry->second.across, image.acrossDPI);
                    entry->second.down = std::min(entry->second.down, image.downDPI);
                }
            }
        }
    }
    return dpi;
}

} // namespace

std::optional<FontCompactor::GlyphUsage>
DocumentCompactor::glyphUsage(const std::filesystem::path& path, const std::string& password,
                              const Cancelled& cancelled, const Progress& progress) {
    try {
        PDFRenderer renderer;
        auto first = renderer.open(path, password);
        const int count = first.pageCount();
        const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1u,
                                            static_cast<unsigned>(std::max(1, count)));
        // Each worker reads the document on its own; the first reading serves worker 0.
        std::vector<std::optional<PDFRenderer::Document>> readers(threads);
        readers[0] = std::move(first);
        std::vector<std::optional<PDFRenderer::Document::PageGlyphs>> slots(2 * threads);
        FontCompactor::GlyphUsage usage;
        bool complete = true;
        runInOrder(
            static_cast<std::size_t>(count), threads, slots.size(),
            [&](unsigned worker, std::size_t page) {
                if (cancelled && cancelled()) {
                    throw CancellationError();
                }
                if (!readers[worker]) {
                    readers[worker] = renderer.open(path, password);
                }
                slots[page % slots.size()] = readers[worker]->glyphs(static_cast<int>(page));
            },
            [&](std::size_t page) {
                auto& glyphs = *slots[page % slots.size()];
                complete = complete && glyphs.complete;
                for (auto& [program, used] : glyphs.glyphsByProgram) {
                    usage[program].insert(used.begin(), used.end());
                }
                if (progress) {
                    progress(static_cast<double>(page + 1) / count);
                }
            });
        // The worker threads' allocations sit in malloc arenas of their own; hand them back
        // before the document is written.
        readers.clear();
        malloc_trim(0);
        if (!complete) {
            return std::nullopt;
        }
        return usage;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

DocumentCompaction DocumentCompactor::compact(QPDF& qpdf, const Source& source,
                                              const std::optional<ImageSetting>& images,
                                              const Cancelled& cancelled) {
    DocumentCompaction result;
    const Reached reached = reach(qpdf);
    if (reached.embedsFonts) {
        // A layer that is hidden now may be shown later: its glyphs must stay.
        const bool layered = qpdf.getRoot().hasKey("/OCProperties");
        result.fonts = FontCompactor::compact(qpdf, reached.fonts,
                                              layered ? std::nullopt : source.glyphs, cancelled);
    }
    if (images) {
        // Private data an application keeps to edit its own drawings again (often a second copy
        // of every picture); nothing draws it, and the lossy tiers do not keep it.
        for (auto holder : reached.pieceInfoHolders) {
            holder.removeKey("/PieceInfo");
        }
    }
    std::vector<QPDFObjectHandle> kept;
    for (auto& image : reached.images) {
        if (!source.freshImages.count(image.getObjGen())) {
            kept.push_back(image);
        }
    }
    result.images =
        ImageCompactor::compact(qpdf, kept, placedResolutions(source), images, cancelled);
    if (cancelled && cancelled()) {
        throw CancellationError();
    }
    try {
        result.mergedStreams = StreamDeduplicator::deduplicate(qpdf);
    } catch (const std::exception&) {
        // A stream that cannot be read is written as it is, duplicates and all.
    }
    return result;
}

} // namespace quillet
