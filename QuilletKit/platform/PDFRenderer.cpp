#include "platform/PDFRenderer.hpp"

#include "platform/CMYKConverter.hpp"
#include "platform/ColourManagedDevice.hpp"
#include "platform/ContentDigest.hpp"
#include "platform/InOrderWorkers.hpp"
#include "platform/MuPDFBoundary.hpp"
#include "platform/RenderWatch.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <thread>

namespace quillet {

// The base context is only ever cloned, never used to open anything, so the one mutex around
// cloning is all the coordination the renderer itself needs; MuPDF locks its shared store with
// `locks`.
struct PDFRenderer::Core {
    std::array<std::mutex, FZ_LOCK_MAX> mutexes;
    fz_locks_context locks{this, lock, unlock};
    mupdf::ContextPtr base; // after the mutexes: dropped before they go
    std::mutex cloning;
    /// The conversion through the standard press profile, made once for every document that
    /// names no press of its own.
    std::once_flag standardMade;
    std::unique_ptr<CMYKConverter> standardCMYK;

    const CMYKConverter* standard() noexcept {
        try {
            std::call_once(standardMade, [this] { standardCMYK = CMYKConverter::standard(); });
        } catch (...) {
            return nullptr;
        }
        return standardCMYK.get();
    }

    Core() : base(mupdf::newContext(locks)) {}

    mupdf::ContextPtr clone() {
        std::lock_guard guard(cloning);
        return mupdf::cloneContext(base.get());
    }

    static void lock(void* user, int which) { static_cast<Core*>(user)->mutexes[which].lock(); }
    static void unlock(void* user, int which) { static_cast<Core*>(user)->mutexes[which].unlock(); }
};

struct PDFRenderer::Document::Impl {
    Impl(PDFRenderer renderer, std::filesystem::path path, std::optional<std::string> password)
        : renderer(std::move(renderer)), path(std::move(path)), password(std::move(password)) {}

    PDFRenderer renderer; // shares the core; opens the worker threads' copies
    std::filesystem::path path;
    std::optional<std::string> password;
    mupdf::ContextPtr ctx;
    mupdf::DocumentPtr doc{nullptr, mupdf::DocumentDeleter{nullptr}}; // after ctx: dropped first
    int pageCount = 0;

    // The document's press (its output intent) when it names one, the standard press
    // otherwise; looked up when a page first shows a print colour.
    class Colours final : public mupdf::CMYKSource {
      public:
        explicit Colours(Impl& impl) : impl_(impl) {}
        const CMYKConverter* converter(fz_context* ctx) noexcept override {
            if (!looked_) {
                looked_ = true;
                try {
                    own_ = CMYKConverter::fromProfile(
                        mupdf::outputIntentProfile(ctx, impl_.doc.get()));
                } catch (...) {
                    own_.reset(); // an unreadable output intent: the standard press stands in
                }
            }
            return own_ ? own_.get() : impl_.renderer.core_->standard();
        }

      private:
        Impl& impl_;
        bool looked_ = false;
        std::unique_ptr<CMYKConverter> own_;
    };
    Colours colours{*this};
    /// Digests of the font programs met by `glyphs`, each buffer kept alive while it is listed so
    /// that its address cannot come back as another font's.
    std::map<fz_buffer*, std::string> programDigests;

    ~Impl() {
        for (auto& [buffer, digest] : programDigests) {
            fz_drop_buffer(ctx.get(), buffer);
        }
    }

    std::string file() const { return path.string(); }
    void checkIndex(int index) const;
    mupdf::PagePtr loadPage(int index) const;
};

namespace {

std::string pageLabel(const std::string& file, int index) {
    return fmt::format("{}, page {}", file, static_cast<std::int64_t>(index) + 1);
}

void checkOptions(const PDFRenderer::RenderOptions& options, const std::string& label) {
    auto positive = [](double value) { return std::isfinite(value) && value > 0; };
    bool valid = options.size ? options.size->width >= 1 && options.size->height >= 1
                              : positive(options.scale);
    if (!valid) {
        throw RenderError(RenderError::Reason::invalidRequest,
                          fmt::format("{}: a render needs a positive scale and size", label));
    }
}

void checkPixelCount(PDFRenderer::PixelSize size, const std::string& label) {
    // Division keeps the test exact for sides whose product would overflow.
    if (size.width > PDFRenderer::maxPixels / size.height) {
        throw RenderError(RenderError::Reason::tooLarge,
                          fmt::format("{}: a render of {} x {} pixels is larger than the limit of "
                                      "{} megapixels; choose a lower resolution",
                                      label, size.width, size.height,
                                      PDFRenderer::maxPixels / 1'000'000));
    }
}

} // namespace

void PDFRenderer::Document::Impl::checkIndex(int index) const {
    if (index < 0 || index >= pageCount) {
        throw RenderError(RenderError::Reason::pageOutOfRange,
                          fmt::format("{} has no page {} (it has {} pages)", file(),
                                      static_cast<std::int64_t>(index) + 1, pageCount));
    }
}

mupdf::PagePtr PDFRenderer::Document::Impl::loadPage(int index) const {
    checkIndex(index);
    try {
        return mupdf::loadPage(ctx.get(), doc.get(), index);
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: {}", pageLabel(file(), index), error.what()));
    }
}

PDFRenderer::PixelSize PDFRenderer::pixelSize(PageSize points, double scale) {
    auto side = [scale](double length) -> std::int64_t {
        double pixels = std::trunc(scale * length);
        if (!(pixels >= 1)) { // also NaN
            return 1;
        }
        return pixels >= 0x1p62 ? std::int64_t{1} << 62 : static_cast<std::int64_t>(pixels);
    };
    return {side(points.width), side(points.height)};
}

PDFRenderer::PDFRenderer() {
    try {
        core_ = std::make_shared<Core>();
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::renderFailed, error.what());
    }
}

PDFRenderer::Document PDFRenderer::open(const std::filesystem::path& path,
                                        const std::optional<std::string>& password) const {
    auto impl = std::make_unique<Document::Impl>(*this, path, password);
    const auto file = impl->file();
    try {
        impl->ctx = core_->clone();
        impl->doc = mupdf::openPDF(impl->ctx.get(), file.c_str());
        if (mupdf::needsPassword(impl->ctx.get(), impl->doc.get())) {
            if (!password) {
                throw RenderError(RenderError::Reason::wrongPassword,
                                  fmt::format("{} is encrypted and needs a password", file));
            }
            if (!mupdf::authenticate(impl->ctx.get(), impl->doc.get(), password->c_str())) {
                throw RenderError(RenderError::Reason::wrongPassword,
                                  fmt::format("the password does not open {}", file));
            }
        }
        impl->pageCount = mupdf::countPages(impl->ctx.get(), impl->doc.get());
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::cannotOpen,
                          fmt::format("cannot open {}: {}", file, error.what()));
    }
    return Document(std::move(impl));
}

PDFRenderer::Document::Document(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
PDFRenderer::Document::Document(Document&&) noexcept = default;
PDFRenderer::Document& PDFRenderer::Document::operator=(Document&&) noexcept = default;
PDFRenderer::Document::~Document() = default;

const std::filesystem::path& PDFRenderer::Document::path() const noexcept {
    return impl_->path;
}

int PDFRenderer::Document::pageCount() const noexcept {
    return impl_->pageCount;
}

PDFRenderer::PageSize PDFRenderer::Document::pageSize(int index) {
    auto page = impl_->loadPage(index);
    try {
        fz_rect box = mupdf::mediaBox(impl_->ctx.get(), page.get());
        return {box.x1 - box.x0, box.y1 - box.y0};
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: {}", pageLabel(impl_->file(), index), error.what()));
    }
}

std::optional<BilevelImage> PDFRenderer::Document::bilevelImage(int number, int width,
                                                                int height, bool stencil) {
    if (width < 1 || height < 1) {
        return std::nullopt;
    }
    checkPixelCount(PixelSize{width, height}, impl_->file());
    BilevelImage image(width, height);
    try {
        if (!mupdf::decodeBilevelImage(impl_->ctx.get(), impl_->doc.get(), number, image.row(0),
                                       width, height, stencil)) {
            return std::nullopt;
        }
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: image {}: {}", impl_->file(), number, error.what()));
    }
    return image;
}

namespace {

// What one run of a page collects. A font is kept alive while it is listed, so its address
// cannot be reused by another font during the run.
struct GlyphCollection {
    fz_context* ctx = nullptr;
    std::map<fz_font*, std::set<int>> glyphs;
    bool failed = false;

    static void add(void* user, fz_font* font, int gid) noexcept {
        auto* self = static_cast<GlyphCollection*>(user);
        if (!font->buffer) {
            return; // a Type 3 font, or one without a program; substitutes are never matched
        }
        try {
            auto [entry, fresh] = self->glyphs.try_emplace(font);
            if (fresh) {
                fz_keep_font(self->ctx, font);
            }
            entry->second.insert(gid);
        } catch (...) {
            self->failed = true;
        }
    }

    ~GlyphCollection() {
        for (auto& [font, used] : glyphs) {
            fz_drop_font(ctx, font);
        }
    }
};

} // namespace

PDFRenderer::Document::PageGlyphs PDFRenderer::Document::glyphs(int index) {
    const auto label = pageLabel(impl_->file(), index);
    auto page = impl_->loadPage(index);
    GlyphCollection collection;
    collection.ctx = impl_->ctx.get();
    PageGlyphs result;
    try {
        const int errors = mupdf::runForGlyphs(impl_->ctx.get(), page.get(), GlyphCollection::add,
                                               &collection, glyphRunSeconds);
        result.complete = errors == 0 && !collection.failed;
    } catch (const mupdf::Error& error) {
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: {}", label, error.what()));
    }
    for (auto& [font, used] : collection.glyphs) {
        // A long document shows the same programs on every page: each is hashed once.
        auto [entry, fresh] = impl_->programDigests.try_emplace(font->buffer);
        if (fresh) {
            fz_keep_buffer(impl_->ctx.get(), font->buffer);
            const auto* data = reinterpret_cast<const char*>(font->buffer->data);
            entry->second = contentDigest({data, font->buffer->len});
        }
        auto& merged = result.glyphsByProgram[entry->second];
        merged.insert(used.begin(), used.end());
    }
    return result;
}

Bitmap PDFRenderer::Document::render(int index, const RenderOptions& options) {
    const auto label = pageLabel(impl_->file(), index);
    checkOptions(options, label);
    auto page = impl_->loadPage(index);
    fz_cookie cookie = {};
    std::optional<RenderWatch> watch;
    // MuPDF may end an aborted drawing quietly or with an error; either way the watch says why.
    auto stoppedByWatch = [&] {
        if (watch && watch->expired()) {
            return RenderError(RenderError::Reason::tooSlow,
                               fmt::format("{}: Page {} takes too long to draw", impl_->file(),
                                           static_cast<std::int64_t>(index) + 1));
        }
        return RenderError(RenderError::Reason::cancelled,
                           fmt::format("{}: drawing cancelled", label));
    };
    try {
        fz_rect box = mupdf::mediaBox(impl_->ctx.get(), page.get());
        const PageSize points{box.x1 - box.x0, box.y1 - box.y0};
        const PixelSize size = options.size ? *options.size : pixelSize(points, options.scale);
        checkPixelCount(size, label);
        Bitmap bitmap(static_cast<int>(size.width), static_cast<int>(size.height), options.format);
        // Stretch the media box, wherever MuPDF's page space put it, over the whole bitmap.
        fz_matrix transform = fz_concat(fz_translate(-box.x0, -box.y0),
                                        fz_scale(static_cast<float>(size.width / points.width),
                                                 static_cast<float>(size.height / points.height)));
        watch.emplace(cookie, options.timeout, options.isCancelled);
        mupdf::drawPage(impl_->ctx.get(), page.get(), transform, options.annotations, bitmap.data(),
                        bitmap.width(), bitmap.height(), bitmap.bands(), &cookie, &impl_->colours);
        watch->stop(); // its verdict is final from here on
        if (cookie.abort) {
            throw stoppedByWatch();
        }
        return bitmap;
    } catch (const mupdf::Error& error) {
        if (watch) {
            watch->stop();
        }
        if (cookie.abort) {
            throw stoppedByWatch();
        }
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: {}", label, error.what()));
    } catch (const std::bad_alloc&) {
        throw RenderError(RenderError::Reason::renderFailed,
                          fmt::format("{}: not enough memory for the bitmap", label));
    }
}

void PDFRenderer::Document::renderPagesInOrder(const std::vector<PageRequest>& requests,
                                               const std::function<void(RenderedPage&&)>& consume,
                                               unsigned threads) {
    renderPagesInOrder(
        requests, [](RenderedPage&& page) { return std::move(page); }, consume, threads);
}

std::vector<PDFRenderer::PageRequest>
PDFRenderer::Document::requests(const std::vector<int>& indices, const RenderOptions& options) {
    std::vector<PageRequest> list;
    list.reserve(indices.size());
    for (int index : indices) {
        list.push_back({index, options});
    }
    return list;
}

void PDFRenderer::Document::runInOrder(const std::vector<PageRequest>& requests, unsigned threads,
                                       const ProducePage& produce, const ConsumePage& consume) {
    if (threads == 0) {
        threads = std::max(1u, std::thread::hardware_concurrency());
    }
    threads = static_cast<unsigned>(std::min<std::size_t>(threads, requests.size()));
    const bool serial = threads <= 1 || requests.size() <= 1;
    // Each worker renders with a document of its own, opened on first use on its own thread.
    std::vector<std::optional<Document>> copies(serial ? 0 : threads);
    auto documentFor = [&](unsigned worker) -> Document& {
        if (serial) {
            return *this;
        }
        auto& copy = copies[worker];
        if (!copy) {
            copy.emplace(impl_->renderer.open(impl_->path, impl_->password));
        }
        return *copy;
    };
    quillet::runInOrder(
        requests.size(), serial ? 1 : threads, 2 * static_cast<std::size_t>(threads),
        [&](unsigned worker, std::size_t position) {
            const auto& request = requests[position];
            RenderedPage page{request.pageIndex, std::nullopt, nullptr};
            try {
                page.bitmap.emplace(documentFor(worker).render(request.pageIndex, request.options));
            } catch (...) {
                page.error = std::current_exception();
            }
            produce(position, std::move(page));
        },
        consume);
}

} // namespace quillet
