#include "tasks/OrganizeModel.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFOrganizeEngine.hpp"
#include "output/OutputResolver.hpp"
#include "platform/FreeNames.hpp"
#include "platform/UUID.hpp"
#include "tasks/HistoryStore.hpp"

#include <fmt/format.h>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
#include <charconv>
#include <utility>

namespace quillet {
namespace fs = std::filesystem;
namespace {

PageID idOf(const PDFPage& page) {
    const auto og = page.object().getObjGen();
    return {og.getObj(), og.getGen()};
}

std::int64_t sizeOf(const fs::path& file) {
    std::error_code ignored;
    const auto size = fs::file_size(file, ignored);
    return ignored ? 0 : static_cast<std::int64_t>(size);
}

// The model promises PDFCoreError only; the document layer's errors already name the file.
[[noreturn]] void rethrowAsCoreError() {
    try {
        throw;
    } catch (const PDFCoreError&) {
        throw;
    } catch (const PDFDocumentError& error) {
        if (error.kind() == PDFDocumentError::Kind::writeFailed) {
            throw PDFCoreError::writeFailed(error.what());
        }
        throw PDFCoreError::invalidInput(error.what());
    } catch (const std::exception& error) {
        throw PDFCoreError::invalidInput(error.what());
    }
}

} // namespace

void OrganizeModel::setSelection(const std::set<PageID>& ids) {
    selection_.clear();
    for (const auto& cell : cells_) {
        if (ids.contains(cell.id)) {
            selection_.insert(cell.id);
        }
    }
    notify();
}

void OrganizeModel::selectAll() {
    selection_.clear();
    for (const auto& cell : cells_) {
        selection_.insert(cell.id);
    }
    notify();
}

void OrganizeModel::load(const fs::path& path) {
    PDFDocument opened = PDFDocumentEngine::openUnlock(path, "");
    std::map<PageID, PageSource> sources;
    const int count = opened.pageCount();
    for (int index = 0; index < count; ++index) {
        try {
            const PDFPage page = opened.page(index);
            sources[idOf(page)] = {path, index, page.rotation()};
        } catch (const std::exception&) {
            // Gets no cell either.
        }
    }
    document_ = std::move(opened);
    sources_ = std::move(sources);
    sourceURL_ = path;
    selection_.clear();
    undoStack_.clear();
    undoBytes_ = 0;
    lastOutput_.reset();
    showSignatureWarning_ = false;
    rebuildCells();
    notify();
}

void OrganizeModel::rotateSelection(int degrees) {
    if (degrees % 90 != 0) {
        throw PDFCoreError::invalidInput(
            fmt::format("Rotation by {} degrees is not a multiple of 90.", degrees));
    }
    if (!document_ || selection_.empty()) {
        return;
    }
    change([&](PDFDocument&) {
        for (auto& cell : cells_) {
            if (selection_.contains(cell.id)) {
                // Reduced first: rotation + INT_MAX would overflow.
                cell.page.setRotation(cell.page.rotation() + degrees % 360);
            }
        }
    });
}

void OrganizeModel::deleteSelection() {
    if (!document_ || selection_.empty()) {
        return;
    }
    change([&](PDFDocument& document) {
        // From the end, so the indices of the pages still to go stay right.
        for (auto cell = cells_.rbegin(); cell != cells_.rend(); ++cell) {
            if (selection_.contains(cell->id)) {
                document.removePage(cell->originalIndex);
            }
        }
        selection_.clear();
    });
}

void OrganizeModel::duplicateSelection() {
    if (!document_ || selection_.empty()) {
        return;
    }
    change([&](PDFDocument& document) {
        for (auto cell = cells_.rbegin(); cell != cells_.rend(); ++cell) {
            if (selection_.contains(cell->id)) {
                const PDFPage copy = PDFOrganizeEngine::copyPage(
                    document, document, cell->originalIndex, cell->originalIndex + 1);
                sources_[idOf(copy)] = cell->source;
            }
        }
    });
}

bool OrganizeModel::movePage(int from, int to) {
    const auto holds = [&](int index) {
        return std::any_of(cells_.begin(), cells_.end(),
                           [&](const PageCell& cell) { return cell.originalIndex == index; });
    };
    if (!document_ || from == to || !holds(from) || !holds(to)) {
        return false;
    }
    change([&](PDFDocument& document) {
        // The page object itself is moved, not a copy of it, so its identity (and with it the
        // selection) survives the move.
        QPDFPageDocumentHelper pages(document.qpdf());
        QPDFPageObjectHelper page(document.page(from).object());
        pages.removePage(page);
        const auto rest = pages.getAllPages();
        if (static_cast<std::size_t>(to) >= rest.size()) {
            pages.addPage(page, false);
        } else {
            pages.addPageAt(page, true, rest.at(static_cast<std::size_t>(to)));
        }
    });
    return true;
}

std::optional<int> OrganizeModel::dragIndex(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

void OrganizeModel::insertFromFiles(const std::vector<fs::path>& files) {
    if (!document_ || files.empty()) {
        return;
    }
    std::vector<PDFDocument> sources;
    for (const auto& file : files) {
        sources.push_back(PDFDocumentEngine::openUnlock(file, ""));
    }
    change([&](PDFDocument& document) {
        for (std::size_t file = 0; file < files.size(); ++file) {
            PDFDocument& source = sources[file];
            const int count = source.pageCount();
            for (int index = 0; index < count; ++index) {
                try {
                    const int rotation = source.page(index).rotation();
                    const PDFPage copy =
                        PDFOrganizeEngine::copyPage(document, source, index, document.pageCount());
                    sources_[idOf(copy)] = {files[file], index, rotation};
                } catch (const std::exception&) {
                    // A page that cannot be read is left out; the rest of the file still comes.
                }
            }
        }
    });
}

PDFDocument OrganizeModel::copyOfPages(bool selectedOnly) {
    PDFDocument copy = PDFDocument::empty();
    try {
        for (const auto& cell : cells_) {
            if (!selectedOnly || selection_.contains(cell.id)) {
                PDFOrganizeEngine::copyPage(copy, *document_, cell.originalIndex, copy.pageCount());
            }
        }
        copy.setAttributes(document_->attributes());
    } catch (const std::exception&) {
        rethrowAsCoreError();
    }
    if (copy.pageCount() == 0) {
        throw PDFCoreError::emptyDocument();
    }
    return copy;
}

void OrganizeModel::extractSelection(const fs::path& destination, bool recordInHistory) {
    if (!document_) {
        throw PDFCoreError::emptyDocument();
    }
    PDFDocument extracted = copyOfPages(true);
    const auto originalBytes = sourceURL_ ? sizeOf(*sourceURL_) : 0;
    try {
        extracted.write(destination);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(destination.filename().string());
    }
    if (recordInHistory) {
        record(destination, originalBytes);
    }
}

std::string OrganizeModel::suggestedExtractName() const {
    const auto stem = sourceURL_ ? sourceURL_->stem().string() : std::string();
    return (stem.empty() ? std::string("pages") : stem) + "-extracted.pdf";
}

bool OrganizeModel::undo() {
    if (undoStack_.empty()) {
        return false;
    }
    std::optional<PDFDocument> restored;
    try {
        restored = PDFDocument::open(undoStack_.back().bytes, description());
    } catch (const std::exception&) {
        rethrowAsCoreError();
    }
    const auto positions = undoStack_.back().selectedPositions;
    const auto sources = undoStack_.back().sources;
    dropNewestSnapshot();
    document_ = std::move(restored);
    restoreSources(sources);
    selectPositions(positions);
    notify();
    return true;
}

OrganizeModel::SaveOutcome OrganizeModel::save(bool skipWarning, const OutputRule& rule) {
    if (!document_ || !sourceURL_ || cells_.empty()) {
        throw PDFCoreError::emptyDocument();
    }
    if (!skipWarning && hasSignatures(*document_)) {
        showSignatureWarning_ = true;
        notify();
        return SaveOutcome::needsConfirmation;
    }
    showSignatureWarning_ = false;
    const auto chosen =
        OutputResolver::resolve(*sourceURL_, rule, PDFOperationKind::organize, std::nullopt, ".pdf")
            .outputURL;
    // Measured first: with replaceOriginal the write puts the result where the source was.
    const auto originalBytes = sizeOf(*sourceURL_);
    // A fresh document of copies, as the organize job writes: the live one may still reach a
    // deleted page through a form field or an outline entry, and its content must not survive.
    PDFDocument saved = copyOfPages(false);
    try {
        OutputResolver::ensureDirectory(chosen);
        saved.write(chosen);
    } catch (const std::exception&) {
        FreeNames::release(chosen);
        notify();
        throw PDFCoreError::writeFailed(chosen.filename().string());
    }
    // A free name taken meanwhile by another writer moved the file on to the next one.
    const auto output = FreeNames::placed(chosen);
    lastOutput_ = output;
    record(output, originalBytes);
    notify();
    return SaveOutcome::saved;
}

void OrganizeModel::dismissSignatureWarning() {
    showSignatureWarning_ = false;
    notify();
}

bool OrganizeModel::hasSignatures(const PDFDocument& document) {
    const int count = document.pageCount();
    for (int index = 0; index < count; ++index) {
        try {
            for (const auto& annotation : document.page(index).annotations()) {
                if (annotation.type == "Signature") {
                    return true;
                }
            }
        } catch (const std::exception&) {
            // An unreadable page shows no signature to anyone either.
        }
    }
    return false;
}

std::string OrganizeModel::statusLine() const {
    return fmt::format("{} pages · {} selected", cells_.size(), selection_.size());
}

std::optional<std::string> OrganizeModel::savedLine() const {
    if (!lastOutput_) {
        return std::nullopt;
    }
    return "Saved: " + lastOutput_->string();
}

// Snapshot first, so that a change failing half-way is undone on the spot: the caller sees the
// error and the document as it was.
void OrganizeModel::change(const std::function<void(PDFDocument&)>& work) {
    try {
        pushUndo();
    } catch (const std::exception&) {
        rethrowAsCoreError();
    }
    try {
        work(*document_);
    } catch (const std::exception&) {
        try {
            undo();
        } catch (const std::exception&) {
            // The snapshot did not read back: what is left is at least shown as it is.
            rebuildCells();
            notify();
        }
        rethrowAsCoreError();
    }
    rebuildCells();
    notify();
}

void OrganizeModel::pushUndo() {
    Snapshot snapshot{document_->dataRepresentation(), {}, {}};
    for (std::size_t position = 0; position < cells_.size(); ++position) {
        if (selection_.contains(cells_[position].id)) {
            snapshot.selectedPositions.push_back(static_cast<int>(position));
        }
        snapshot.sources.push_back(cells_[position].source);
    }
    undoBytes_ += snapshot.bytes.size();
    undoStack_.push_back(std::move(snapshot));
    while (undoBytes_ > undoBudget_ && undoStack_.size() > 1) {
        undoBytes_ -= undoStack_.front().bytes.size();
        undoStack_.erase(undoStack_.begin());
    }
}

void OrganizeModel::dropNewestSnapshot() {
    undoBytes_ -= undoStack_.back().bytes.size();
    undoStack_.pop_back();
}

void OrganizeModel::rebuildCells() {
    cells_.clear();
    const int count = document_ ? document_->pageCount() : 0;
    for (int index = 0; index < count; ++index) {
        try {
            PDFPage page = document_->page(index);
            const PageID id = idOf(page);
            const auto source = sources_.find(id);
            cells_.push_back({id, page, page.rotation(), index,
                              source != sources_.end() ? source->second : PageSource{}});
        } catch (const std::exception&) {
            // A page that cannot be read gets no cell; the others still can be worked on.
        }
    }
    std::erase_if(selection_, [&](const PageID& id) {
        return std::none_of(cells_.begin(), cells_.end(),
                            [&](const PageCell& cell) { return cell.id == id; });
    });
    // Deleted pages take their sources with them.
    std::map<PageID, PageSource> kept;
    for (const auto& cell : cells_) {
        kept[cell.id] = cell.source;
    }
    sources_ = std::move(kept);
}

// A document read back from a snapshot has new page identities; the same bytes give the same
// cells, so the sources follow by position.
void OrganizeModel::restoreSources(const std::vector<PageSource>& sources) {
    sources_.clear();
    rebuildCells();
    for (std::size_t position = 0; position < cells_.size() && position < sources.size();
         ++position) {
        cells_[position].source = sources[position];
        sources_[cells_[position].id] = sources[position];
    }
}

void OrganizeModel::selectPositions(const std::vector<int>& positions) {
    selection_.clear();
    for (const int position : positions) {
        if (position >= 0 && static_cast<std::size_t>(position) < cells_.size()) {
            selection_.insert(cells_[static_cast<std::size_t>(position)].id);
        }
    }
}

std::string OrganizeModel::description() const {
    return sourceURL_ ? sourceURL_->filename().string() : std::string("organized PDF");
}

void OrganizeModel::record(const fs::path& output, std::int64_t originalBytes) const {
    if (history_ == nullptr && !recorded) {
        return;
    }
    HistoryEntry entry;
    entry.id = newUUIDString();
    entry.date = TaskClock::now();
    entry.operation = PDFOperationKind::organize;
    if (sourceURL_) {
        entry.inputNames = {sourceURL_->filename().string()};
        entry.inputURLs = {sourceURL_->string()};
    }
    entry.outputURLs = {output.string()};
    entry.originalBytes = originalBytes;
    entry.resultBytes = sizeOf(output);
    entry.succeeded = true;
    if (recorded) {
        recorded(std::move(entry));
    } else {
        history_->add(std::move(entry));
    }
}

void OrganizeModel::notify() const {
    if (changed) {
        changed();
    }
}

} // namespace quillet
