// The page model behind the organize screen: one PDF edited in memory (reorder, rotate, delete,
// duplicate, insert, extract), an undo stack of snapshots, and saving.
//
// Plain C++ without widgets; the screen is a view of this state and calls the operations, and
// owns what needs a person (file dialogs, the confirmation, error dialogs). Every operation that
// changes the document snapshots it first, changes it, then rebuilds `cells` from it; one that
// would change nothing (no document, nothing selected, a move onto itself) takes no snapshot.
//
// Errors: every operation either succeeds or throws PDFCoreError and leaves the document as it
// was. A change that fails half-way is rolled back from its snapshot, as `undo` does (so pages
// get new identities and the selection follows them by position). Texts name the file.
//
// Pages copied into the document (duplicates, inserted files) get annotations of their own and
// bring their form fields along, as the organize job does (PDFOrganizeEngine::copyPage).
//
// Touch a model from one thread only. `cells` hold page handles into `document`: they are valid
// until the next change and must not be kept across one.
#pragma once

#include "output/OutputRule.hpp"
#include "platform/PDFDocument.hpp"
#include "tasks/TaskRecords.hpp"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

class HistoryStore;

/// The identity of a page object in the live document (its object and generation numbers).
struct PageID {
    int object = 0;
    int generation = 0;
    auto operator<=>(const PageID&) const = default;
};

/// Where a page of the live document came from: the file it was loaded or inserted from, its
/// index there, and its rotation there (a picture of the page drawn from that file shows that
/// rotation already). A duplicate has the source of its original.
struct PageSource {
    std::filesystem::path file;
    int pageIndex = 0;
    int rotation = 0;
    bool operator==(const PageSource&) const = default;
};

/// One thumbnail cell.
struct PageCell {
    PageID id;
    PDFPage page;
    /// The page's rotation when the cells were built, 0..359.
    int displayRotation = 0;
    /// The page's index in the document when the cells were built.
    int originalIndex = 0;
    PageSource source;
};

class OrganizeModel {
  public:
    // The words of the screen, kept here so every view says the same.
    static constexpr std::string_view emptyPrompt = "Drop a PDF to organize pages";
    static constexpr std::string_view rotateLeftLabel = "Rotate selection 90° left";
    static constexpr std::string_view rotateRightLabel = "Rotate selection 90° right";
    static constexpr std::string_view insertPrompt = "Insert pages from PDFs (appended at the end)";
    static constexpr std::string_view signatureWarningTitle =
        "This PDF may contain digital signatures";
    static constexpr std::string_view signatureWarningMessage =
        "Flattening or reorganizing signed documents can invalidate their signatures. Continue?";
    static constexpr std::string_view saveAnywayLabel = "Save Anyway";
    static constexpr std::string_view cancelLabel = "Cancel";

    /// Every snapshot is a whole copy of the document; the oldest are dropped while all of them
    /// together exceed the budget, but the newest is always kept.
    static constexpr std::size_t defaultUndoBudget = std::size_t{512} << 20;

    /// A document as it was before a change, which positions were selected then, and where
    /// the page at each position came from.
    struct Snapshot {
        std::string bytes;
        std::vector<int> selectedPositions;
        std::vector<PageSource> sources;
    };

    enum class SaveOutcome { saved, needsConfirmation };

    /// `history` (may be null, must outlive the model) receives an entry for every save and
    /// extraction.
    explicit OrganizeModel(HistoryStore* history = nullptr,
                           std::size_t undoBudget = defaultUndoBudget)
        : history_(history), undoBudget_(undoBudget) {}

    const std::optional<PDFDocument>& document() const { return document_; }
    const std::optional<std::filesystem::path>& sourceURL() const { return sourceURL_; }
    const std::vector<PageCell>& cells() const { return cells_; }
    const std::set<PageID>& selection() const { return selection_; }
    const std::vector<Snapshot>& undoStack() const { return undoStack_; }
    const std::optional<std::filesystem::path>& lastOutput() const { return lastOutput_; }
    bool showSignatureWarning() const { return showSignatureWarning_; }

    /// The selection only ever holds pages of `cells`: other identities are dropped.
    void setSelection(const std::set<PageID>& ids);
    void selectAll();

    /// Opens `path` without a password and makes it the document, starting afresh: no
    /// selection, no undo, no last output. Throws PDFCoreError (fileNotFound, cannotOpen,
    /// wrongPassword for a file that needs a password, invalidInput for one refused on purpose)
    /// and then keeps the document it had.
    void load(const std::filesystem::path& path);

    /// Adds `degrees` clockwise to every selected page (-90 turns left). Throws PDFCoreError
    /// invalidInput for a turn that is not a multiple of 90, before anything changes.
    void rotateSelection(int degrees);
    /// Removes the selected pages; the selection is empty afterwards.
    void deleteSelection();
    /// Puts a copy of every selected page right after it; the originals stay selected.
    void duplicateSelection();
    /// Moves page `from` so that it becomes page `to` (indices of the document before the move;
    /// `to` is not adjusted for the removal, as a drop on a cell means "here"). Answers whether
    /// a page moved: indices outside the document, or equal, change nothing. The moved page keeps
    /// its identity, hence its selection.
    bool movePage(int from, int to);
    /// The index a dragged cell carries as text, or nothing when the text is not a whole decimal
    /// number (such a drop is ignored).
    static std::optional<int> dragIndex(std::string_view text);
    /// Appends every page of each file, in the order given. Every file is opened before anything
    /// changes, so one that fails to open (PDFCoreError as `load`) inserts nothing at all; pages
    /// of an opened file too damaged to copy are left out.
    void insertFromFiles(const std::vector<std::filesystem::path>& files);

    /// Writes copies of the selected pages, in document order, to `destination` (whose folder
    /// must exist) and records it in the history unless `recordInHistory` is false (a file made
    /// for a drag out of the window is no result of the user's). The document is not changed.
    /// Throws
    /// PDFCoreError emptyDocument when nothing is selected, writeFailed naming the file.
    void extractSelection(const std::filesystem::path& destination, bool recordInHistory = true);
    /// "<stem of the source>-extracted.pdf", or "pages-extracted.pdf" without a source.
    std::string suggestedExtractName() const;

    /// Goes back to the newest snapshot. The document is rebuilt from its bytes, so every page
    /// gets a new identity: the selection becomes the pages at the positions that were selected
    /// when the snapshot was taken, i.e. what the undone operation acted on. Answers false when
    /// there is nothing to undo. Throws PDFCoreError invalidInput when the snapshot does not
    /// read back, keeping the current state and the snapshot.
    bool undo();
    bool canUndo() const { return !undoStack_.empty(); }

    /// Writes the document where `rule` puts outputs of `sourceURL` for the organize operation
    /// (a free name unless the rule replaces the original), making the folder when missing. The
    /// file is made of copies of the pages in cell order with the information fields, as the
    /// organize job writes it, so nothing of a deleted page survives through a form field or an
    /// outline entry that still pointed at it (the outline itself is not kept).
    /// Without `skipWarning` a document holding signatures is not written: the answer is
    /// needsConfirmation and `showSignatureWarning` is set, on every such call; the view asks
    /// and calls again with `skipWarning` (or `dismissSignatureWarning`). On success sets
    /// `lastOutput` and records the save in the history. Throws PDFCoreError emptyDocument when
    /// there is no document or it has no page left (a PDF without pages helps nobody), and
    /// writeFailed naming the output's file name, leaving nothing at the output.
    SaveOutcome save(bool skipWarning, const OutputRule& rule);
    void dismissSignatureWarning();

    /// Whether any page of the document has an annotation of type "Signature".
    bool hasSignatures() const { return document_ && hasSignatures(*document_); }
    static bool hasSignatures(const PDFDocument& document);

    /// "4 pages · 2 selected".
    std::string statusLine() const;
    /// "Saved: <path>" after a save, nothing before.
    std::optional<std::string> savedLine() const;

    /// Called after every change of the state (for the view).
    std::function<void()> changed;
    /// When set, receives the history entries of saves and extractions instead of the store
    /// (for a model touched from another thread than the store's).
    std::function<void(HistoryEntry)> recorded;

  private:
    void change(const std::function<void(PDFDocument&)>& work);
    void pushUndo();
    void dropNewestSnapshot();
    void rebuildCells();
    void selectPositions(const std::vector<int>& positions);
    void restoreSources(const std::vector<PageSource>& sources);
    std::string description() const;
    void record(const std::filesystem::path& output, std::int64_t originalBytes) const;
    void notify() const;
    /// A new document of copies of the pages (all, or the selected ones) in cell order, with the
    /// live document's information fields. Throws emptyDocument when no page was copied.
    PDFDocument copyOfPages(bool selectedOnly);

    HistoryStore* history_;
    std::size_t undoBudget_;
    std::size_t undoBytes_ = 0;

    std::optional<PDFDocument> document_;
    std::optional<std::filesystem::path> sourceURL_;
    std::vector<PageCell> cells_;
    std::set<PageID> selection_;
    std::map<PageID, PageSource> sources_;
    std::vector<Snapshot> undoStack_;
    std::optional<std::filesystem::path> lastOutput_;
    bool showSignatureWarning_ = false;
};

} // namespace quillet
