// How the pages of one PDF are grouped into output files, and the writing of one group.
//
// A split is planned once (`chunkPages`) and then written one chunk at a time (`writeChunk`, or
// `writeChunks` for a whole plan), so a caller holds the source document and at most one chunk
// document at any moment: memory does not grow with the number of chunks. The page-selection
// grammar (`parseRanges`) lives here and is shared with the image export.
//
// Stateless; every operation may run on any thread with its own documents. Inputs are never
// modified on disk.
#pragma once

#include "model/OperationKinds.hpp"
#include "platform/PDFDocument.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace quillet {

/// A closed range of one-based page numbers; `lower` is never above `upper`.
struct PageRange {
    int lower = 1;
    int upper = 1;

    bool operator==(const PageRange&) const = default;
};

/// An ordered list of zero-based page indices: the pages of one output file.
using SplitChunk = std::vector<int>;

/// The chunks of a split, in output order.
using SplitPlan = std::vector<SplitChunk>;

class PDFSplitEngine {
  public:
    PDFSplitEngine() = delete;

    /// Reads a selection such as "1-5, 8, 11-30". Pieces are cut at commas, semicolons and
    /// spaces; a piece is a page ("+3" allowed) or a range "a-b" (a reversed range "9-4" means
    /// 4...9). Numbers are clamped to 1...max(pageCount, 1): "0" selects page 1, "999" the last.
    /// Malformed pieces ("abc", "-3", "5-", "2-3-4", numbers beyond 64 bits) are dropped. The
    /// ranges come back in text order, neither merged, sorted nor de-duplicated. Never fails.
    static std::vector<PageRange> parseRanges(std::string_view text, int pageCount);

    /// The split plan for `mode`:
    /// - everyPage: one chunk per page.
    /// - pageRanges: one chunk per range of `rangesText`, in text order (ranges may overlap).
    /// - everyNPages: runs of max(everyN, 1) pages; the last holds the remainder.
    /// - extract: one chunk of every selected page once, ascending.
    /// - byFileSize: consecutive pages whose estimated size stays within 90 % of `maxBytes`,
    ///   estimated from the pages' image megapixels and the size of the file at `sourceURL` (read
    ///   once; nothing is written to measure). A page estimated above the limit on its own still
    ///   gets a chunk: the limit is a goal, never a reason to fail.
    /// `rangesText`, `everyN`, `maxBytes` and `sourceURL` are read only by the modes that use
    /// them. Throws PDFCoreError: emptyDocument when `pageCount` < 1; invalidInput when the text
    /// of pageRanges or extract selects nothing, or byFileSize has `maxBytes` < 1; the opening
    /// errors of the source (cannotOpen, wrongPassword) for byFileSize.
    static SplitPlan chunkPages(SplitMode mode, int pageCount, std::string_view rangesText,
                                int everyN, std::int64_t maxBytes,
                                const std::filesystem::path& sourceURL);

    /// Writes the pages `pages` of `source` (zero-based indices, in that order; repeats allowed)
    /// as a new document at `url`. Indices outside the document and pages that cannot be copied
    /// are skipped. The output carries only what its pages use: when the source shares one
    /// resource dictionary among pages, the fonts and images that no copied page draws are left
    /// out; the form fields of the pages' widgets come along. The file is written beside `url`,
    /// re-opened and checked, and only then renamed into place and flushed to disk, so a failure
    /// leaves no file at `url` (and an existing one unchanged). `source` is unchanged except that
    /// its page tree may be normalised in memory (inherited attributes moved onto its pages).
    /// Throws PDFCoreError: emptyDocument when no page could be copied; writeFailed with the file
    /// name of `url` when it cannot be written; validationFailed with the reason when the written
    /// file does not read back as expected.
    static void writeChunk(PDFDocument& source, const SplitChunk& pages,
                           const std::filesystem::path& url);

    /// Where part `index` (zero-based, in plan order) is to be written.
    using PartDestination = std::function<std::filesystem::path(std::size_t index)>;
    /// Told that part `index` is in place.
    using PartWritten = std::function<void(std::size_t index)>;

    /// Writes every chunk of `plan` as `writeChunk` would, to `destination(index)`, and calls
    /// `written(index)` for 0, 1, 2, ... on the calling thread once that part is in place.
    /// `destination` is asked for every part first, on the calling thread. Parts are built,
    /// written and read back on several threads, each with its own reading of the source (opened
    /// again from `source.path()` with `source.password()`; `source` itself is read by one of
    /// them, and by no other thread meanwhile), and are flushed to disk together at the end rather
    /// than one by one. What a caller sees is the same as from a loop of `writeChunk`: the first
    /// failure (of a part, or thrown by a callback) ends the split with the parts before it in
    /// place and nothing of the later ones left behind. A document without a path, or a plan of a
    /// few parts, is written on the calling thread alone.
    static void writeChunks(PDFDocument& source, const SplitPlan& plan,
                            const PartDestination& destination, const PartWritten& written);

  private:
    static SplitPlan chunkByFileSize(const std::filesystem::path& sourceURL, int pageCount,
                                     std::int64_t maxBytes);
};

} // namespace quillet
