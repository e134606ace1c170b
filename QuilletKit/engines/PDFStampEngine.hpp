// Stamping: page numbers, Bates numbers, text and pictures put on the pages of a PDF.
//
// Every mark becomes a Form XObject drawn on the pages it applies to, placed against the page as
// the reader sees it (see StampPlacement), over the page's content or under it. The page's own
// content is kept byte for byte inside a q/Q pair; its annotations, links, forms and outline are
// not touched. Text is real text (StampFonts: shaped, subset fonts embedded once per document,
// findable and copyable); a JPEG picture keeps its bytes, any other picture is stored without
// loss with its transparency. A mark whose content is the same on every page (a watermark) is
// one XObject shared by all of them. Opacity goes through an ExtGState.
#pragma once

#include "model/OperationParameters.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

struct StampPictures;

/// What runs on from one file of a job to the next, and what every file shares.
struct StampContext {
    /// The marks' pictures, read for the first file and kept for the others.
    std::shared_ptr<StampPictures> pictures;
    /// The next number of each Bates mark, by mark index; filled from `start` when empty.
    std::vector<std::int64_t> nextBates;
    /// What {date} reads, "YYYY-MM-DD"; today when empty.
    std::string date;
};

struct StampOutcome {
    int pagesStamped = 0;
    /// The first and last Bates number written, formatted as on the page (first Bates mark).
    std::optional<std::pair<std::string, std::string>> bates;
};

class PDFStampEngine {
  public:
    using Progress = std::function<void(double)>;
    using Cancelled = std::function<bool()>;

    /// Checks the marks on their own. Throws PDFCoreError (invalidInput) naming the mark and
    /// what is wrong: no mark, an unknown kind, position or layer, an empty format or text, a
    /// colour that is not #RRGGBB, an opacity outside 0...1, a font size, width or margin out of
    /// range, digits outside 1...18, a page selection that names no page, a control character
    /// in a text, and with `readPictures` a picture whose header cannot be read or that is too
    /// large (without, nothing is read from disk: cheap enough for any thread).
    static void validate(const OperationParameters::Stamp& stamp, bool readPictures = true);

    /// Writes `input` stamped to `output` (which may be `input`), through the checked write.
    /// Throws PDFCoreError as `validate` does and for the input (fileNotFound, cannotOpen,
    /// wrongPassword) or the write; CancellationError when `cancelled` answers true.
    static StampOutcome stamp(const std::filesystem::path& input,
                              const std::filesystem::path& output,
                              const OperationParameters::Stamp& stamp, StampContext& context,
                              const Progress& progress = {}, const Cancelled& cancelled = {});

    /// Writes page `pageIndex` (zero-based) of `input` alone to `output`, stamped as `stamp`
    /// would stamp it in the whole file (its number counts the pages before it): the preview.
    static void preview(const std::filesystem::path& input, int pageIndex,
                        const OperationParameters::Stamp& stamp,
                        const std::filesystem::path& output);
};

} // namespace quillet
