// Reordering, rotating and deleting the pages of one PDF as a job: the `organize` operation of
// the task runner. The organize screen's page model (tasks/OrganizeModel) edits a live document
// instead, but copies pages through `copyPage` here, so that both make the same pages.
//
// The output is a new document made of copies of the kept pages: a deleted page leaves nothing
// of itself behind (no content, no form field, no annotation reachable from elsewhere). Each copy
// takes its content, resources, annotations and inherited attributes along; form fields of the
// copied widgets are carried into the output's form, so a form still works after reordering. The
// information fields (title, author, ...) are kept. The outline, named destinations and document
// attachments are not: they would point at pages that may no longer exist or moved.
//
// Inputs are never modified. Stateless; different calls may run on different threads.
#pragma once

#include "model/OperationParameters.hpp"
#include "platform/PDFDocument.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace quillet {

class PDFOrganizeEngine {
  public:
    PDFOrganizeEngine() = delete;

    /// Kept order: newOrder if present else 0..pageCount-1, then every index in deletePages
    /// removed (every occurrence of it). Indices are zero-based and are not checked against
    /// `pageCount` here: a newOrder may name a page twice (two copies) or name pages that do not
    /// exist (skipped by `organize`). A negative `pageCount` counts as 0.
    static std::vector<std::int64_t> keptOrder(int pageCount,
                                               const OperationParameters::Organize& p);

    /// Opens `input` (page level, empty password), copies the kept pages in order (indices
    /// outside the document, and pages too damaged to copy, skipped), adds rotations, writes
    /// `output` atomically.
    ///
    /// Rotations pair `rotatePages[i]` with `rotations[i]` up to the shorter list; each pair adds
    /// its degrees clockwise to that source page's own rotation, result taken modulo 360. When a
    /// page is named twice no pair wins over the other: both are added (90 and 90 turn it 180),
    /// and every copy of the page gets the sum. A paired rotation that is not a multiple of 90
    /// (which no viewer could show) refuses the whole job before the input is read, with
    /// PDFCoreError invalidInput "Rotation by N degrees is not a multiple of 90."; so does it for
    /// a pair naming a page that is not kept or does not exist, since the job is wrong either way.
    ///
    /// Progress: after kept position k (1-based) of count, k / count, skipped indices included,
    /// so the last report is 1. `isCancelled` (may be empty) is asked before each position and
    /// ends the job with CancellationError. The output's folder must exist (the runner's
    /// resolution makes it).
    ///
    /// Throws PDFCoreError: fileNotFound, cannotOpen, wrongPassword (a file that needs an open
    /// password), invalidInput (a file refused on purpose, or a bad rotation); emptyDocument when
    /// no page is kept; writeFailed naming the output's file name when the output cannot be
    /// written (also when a copied page's rotation cannot be set). On any failure nothing is
    /// written and an existing file at `output` is unchanged.
    static void organize(const std::filesystem::path& input, const std::filesystem::path& output,
                         const OperationParameters::Organize& parameters,
                         const std::function<void(double)>& progress,
                         const std::function<bool()>& isCancelled = {});

    /// Inserts a copy of page `sourceIndex` of `source` so that it becomes page `index` of
    /// `target` (`target.pageCount()` appends) and answers the copy. `source` may be `target`
    /// itself (a duplicate). Unlike a bare PDFDocument::insertPageCopy, the copy gets annotations
    /// of its own (a duplicate does not share its widgets with the original) and the form fields
    /// of its widgets join `target`'s form, renamed where a name is already taken.
    /// Throws std::out_of_range for bad indices, PDFDocumentError(locked) or (damaged) when the
    /// page cannot be copied; form fields too damaged to carry over leave the widgets as copied.
    static PDFPage copyPage(PDFDocument& target, PDFDocument& source, int sourceIndex, int index);
};

} // namespace quillet
