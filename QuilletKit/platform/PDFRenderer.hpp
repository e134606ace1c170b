// Renders PDF pages to bitmaps with MuPDF.
//
// A `PDFRenderer` owns MuPDF's shared state (a base context with its locks and resource store);
// it is cheap to keep one per job. `open` gives a `Document` for the calling thread; a Document
// may move between threads but must not be used by two at once. `renderPagesInOrder` renders many
// pages on all cores, each worker thread with its own context clone and its own copy of the
// document (MuPDF documents cannot be shared between threads), and hands the pages back in
// request order on the calling thread.
//
// What is drawn: the page's media box, rotation and /UserUnit applied, on white, as a viewer
// shows it (annotations and form fields included unless `annotations` is false). Every failure is
// a RenderError whose message names the file; MuPDF's own errors never escape as longjmp.
#pragma once

#include "platform/BilevelImage.hpp"
#include "platform/Bitmap.hpp"
#include "platform/RenderError.hpp"
#include "platform/SafetyLimits.hpp"

#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace quillet {

class PDFRenderer {
  public:
    /// The media box in points after rotation (a /Rotate 90 page is as wide as its box is tall).
    struct PageSize {
        double width = 0;
        double height = 0;
    };

    struct PixelSize {
        std::int64_t width = 0;
        std::int64_t height = 0;
    };

    struct RenderOptions {
        /// Pixels per point (dpi / 72); each side is the integer part of scale x points, at
        /// least 1 (see `pixelSize`).
        double scale = 1.0;
        /// When set, the page is stretched to exactly this size and `scale` is ignored.
        std::optional<PixelSize> size = std::nullopt;
        PixelFormat format = PixelFormat::rgb;
        bool annotations = true;
        /// The longest the page may take to draw; past it the drawing stops and the render
        /// throws RenderError (tooSlow). Zero or less: no limit.
        std::chrono::milliseconds timeout = defaultTimeout;
        /// Asked every tenth of a second, from another thread, while the page draws; true stops
        /// the drawing and the render throws RenderError (cancelled). Must be thread-safe.
        std::function<bool()> isCancelled = {};
    };

    struct PageRequest {
        int pageIndex = 0;
        RenderOptions options;
    };

    /// One page of `renderPagesInOrder`: the bitmap, or the RenderError (or other exception) that
    /// rendering it raised. One failed page does not stop the others.
    struct RenderedPage {
        int pageIndex = 0;
        std::optional<Bitmap> bitmap;
        std::exception_ptr error;
    };

    class Document;

    /// How long a page may take to draw unless the caller says otherwise.
    static constexpr std::chrono::milliseconds defaultTimeout{30'000};

    /// Renders larger than this many pixels are refused before anything is allocated.
    static constexpr std::int64_t maxPixels = limits::renderPixels;

    /// How long one page may take to be run for its glyphs.
    static constexpr int glyphRunSeconds = 10;

    /// The bitmap size of a page at `scale`: each side truncated, at least 1. Huge products
    /// saturate instead of overflowing, so the size check still refuses them.
    static PixelSize pixelSize(PageSize points, double scale);

    /// Throws RenderError (renderFailed) only when MuPDF cannot allocate its context.
    PDFRenderer();

    /// Opens a PDF for the calling thread. A document that needs a password is unlocked with
    /// `password` (user or owner password). Throws RenderError: cannotOpen (missing, unreadable,
    /// not a PDF), wrongPassword (none given, or it does not fit).
    Document open(const std::filesystem::path& path,
                  const std::optional<std::string>& password = std::nullopt) const;

  private:
    struct Core;
    std::shared_ptr<Core> core_;
};

class PDFRenderer::Document {
  public:
    Document(Document&&) noexcept;
    Document& operator=(Document&&) noexcept;
    ~Document();

    const std::filesystem::path& path() const noexcept;
    int pageCount() const noexcept;

    /// Throws RenderError: pageOutOfRange, or renderFailed when the page cannot be loaded.
    PageSize pageSize(int index);

    /// The glyphs page `index` shows with each embedded font program, as MuPDF resolves them:
    /// keyed by the `contentDigest` of the program's bytes as the font dictionary's stream
    /// decodes to, the glyph indices the program is drawn with (FreeType's numbering). Content
    /// and annotations are run without drawing. Throws RenderError as `render` does, and
    /// renderFailed for a page still running after `glyphRunSeconds`.
    struct PageGlyphs {
        std::map<std::string, std::set<int>> glyphsByProgram;
        /// False when MuPDF skipped errors in the page, so some text may be missing.
        bool complete = true;
    };
    PageGlyphs glyphs(int index);

    /// The 1-bit gray image that is object `number` of the file, decoded at its own `width` x
    /// `height` (a page that is only that image reads faster this way than drawn), 1 for black;
    /// with `stencil`, the stencil mask that is that object, 1 where it paints. Absent when the
    /// object is no such image of that size; throws RenderError (renderFailed) when it cannot be
    /// decoded, and what BilevelImage's constructor throws for sizes it refuses.
    std::optional<BilevelImage> bilevelImage(int number, int width, int height,
                                             bool stencil = false);

    /// Renders one page. Throws RenderError: pageOutOfRange, invalidRequest (scale or size not
    /// positive and finite), tooLarge (above maxPixels, refused before allocating), renderFailed,
    /// tooSlow ("Page N takes too long to draw", past `options.timeout`), cancelled.
    Bitmap render(int index, const RenderOptions& options = {});

    /// Renders every request on up to `threads` threads (0: one per core; never more than there
    /// are requests) and calls `consume` on the calling thread in request order, exactly as a
    /// serial loop would. A few pages are in flight at a time, never all of them. An exception
    /// thrown by `consume` (a cancellation, say) stops the work and propagates.
    void renderPagesInOrder(const std::vector<PageRequest>& requests,
                            const std::function<void(RenderedPage&&)>& consume,
                            unsigned threads = 0);

    /// As above, with `transform` (RenderedPage&& -> Result) run on the worker threads too, for
    /// work that should share the cores (encoding the bitmap, say); `consume` receives each
    /// Result in request order. An exception from `transform` is rethrown on the calling thread
    /// at that page's turn.
    template <typename Transform, typename Consume>
    requires std::invocable<Consume&, std::invoke_result_t<Transform&, RenderedPage&&>>
    void renderPagesInOrder(const std::vector<PageRequest>& requests, Transform transform,
                            Consume consume, unsigned threads = 0);

    /// The pages of `indices`, all with the same options.
    static std::vector<PageRequest> requests(const std::vector<int>& indices,
                                             const RenderOptions& options);

  private:
    friend class PDFRenderer;
    struct Impl;
    explicit Document(std::unique_ptr<Impl> impl);

    using ProducePage = std::function<void(std::size_t position, RenderedPage&&)>;
    using ConsumePage = std::function<void(std::size_t position)>;
    void runInOrder(const std::vector<PageRequest>& requests, unsigned threads,
                    const ProducePage& produce, const ConsumePage& consume);

    std::unique_ptr<Impl> impl_;
};

template <typename Transform, typename Consume>
requires std::invocable<Consume&, std::invoke_result_t<Transform&, PDFRenderer::RenderedPage&&>>
void PDFRenderer::Document::renderPagesInOrder(const std::vector<PageRequest>& requests,
                                               Transform transform, Consume consume,
                                               unsigned threads) {
    using Result = std::invoke_result_t<Transform&, RenderedPage&&>;
    // One slot per request, but only those in flight hold a value: each is emptied as consumed.
    std::vector<std::optional<Result>> results(requests.size());
    runInOrder(
        requests, threads,
        [&](std::size_t position, RenderedPage&& page) {
            results[position].emplace(transform(std::move(page)));
        },
        [&](std::size_t position) {
            Result result = std::move(*results[position]);
            results[position].reset();
            consume(std::move(result));
        });
}

} // namespace quillet
