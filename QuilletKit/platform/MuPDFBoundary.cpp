#include "platform/MuPDFBoundary.hpp"

#include "platform/ColourManagedDevice.hpp"
#include "platform/MuPDFCaught.hpp"

#include <climits>
#include <cstdint>
#include <cstring>
#include <ctime>

namespace quillet::mupdf {

namespace {

using detail::Caught;
using detail::raise;
using detail::remember;

// Everything between here and the end of the anonymous namespace is C-like on purpose (see
// MuPDFCaught.hpp).

void ignoreMessage(void*, const char*) {
}

pdf_document* tryOpen(fz_context* ctx, const char* path, Caught* caught) {
    pdf_document* volatile doc = nullptr;
    fz_try(ctx) {
        doc = pdf_open_document(ctx, path);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return nullptr;
    }
    return doc;
}

// -1 = failed, 0 = false, 1 = true.
int tryNeedsPassword(fz_context* ctx, pdf_document* doc, Caught* caught) {
    int volatile needs = 0;
    fz_try(ctx) {
        needs = pdf_needs_password(ctx, doc);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return -1;
    }
    return needs ? 1 : 0;
}

int tryAuthenticate(fz_context* ctx, pdf_document* doc, const char* password, Caught* caught) {
    int volatile granted = 0;
    fz_try(ctx) {
        granted = pdf_authenticate_password(ctx, doc, password);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return -1;
    }
    return granted ? 1 : 0;
}

int tryCountPages(fz_context* ctx, pdf_document* doc, Caught* caught) {
    int volatile count = 0;
    fz_try(ctx) {
        count = pdf_count_pages(ctx, doc);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return -1;
    }
    return count;
}

fz_page* tryLoadPage(fz_context* ctx, pdf_document* doc, int index, Caught* caught) {
    fz_page* volatile page = nullptr;
    fz_try(ctx) {
        page = fz_load_page(ctx, &doc->super, index);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return nullptr;
    }
    return page;
}

int tryMediaBox(fz_context* ctx, fz_page* page, fz_rect* box, Caught* caught) {
    fz_try(ctx) {
        pdf_page* pdfPage = pdf_page_from_fz_page(ctx, page);
        fz_rect visible;
        fz_matrix toPageSpace;
        // The transform also carries /Rotate and /UserUnit, snapped and defaulted as MuPDF does.
        pdf_page_transform(ctx, pdfPage, &visible, &toPageSpace);
        pdf_obj* media = pdf_dict_get_inheritable(ctx, pdfPage->obj, PDF_NAME(MediaBox));
        fz_rect rect = pdf_to_rect(ctx, media);
        if (fz_is_empty_rect(rect)) {
            rect = visible;
        }
        *box = fz_transform_rect(rect, toPageSpace);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    return 1;
}

int tryDraw(fz_context* ctx, fz_page* page, fz_matrix transform, int annotations,
            unsigned char* samples, int width, int height, int n, fz_cookie* cookie,
            CMYKSource* colours, Caught* caught) {
    fz_pixmap* pixmap = nullptr;
    fz_device* draw = nullptr;
    fz_device* device = nullptr;
    fz_var(pixmap);
    fz_var(draw);
    fz_var(device);
    fz_try(ctx) {
        fz_colorspace* space = n == 1 ? fz_device_gray(ctx) : fz_device_rgb(ctx);
        pixmap = fz_new_pixmap_with_data(ctx, space, width, height, nullptr, 0, width * n, samples);
        draw = fz_new_draw_device(ctx, fz_identity, pixmap);
        device = colours ? newColourManagedDevice(ctx, draw, fz_pixmap_bbox(ctx, pixmap), colours)
                         : fz_keep_device(ctx, draw);
        if (annotations) {
            fz_run_page(ctx, page, device, transform, cookie);
        } else {
            fz_run_page_contents(ctx, page, device, transform, cookie);
        }
        fz_close_device(ctx, device);
        fz_close_device(ctx, draw);
    }
    fz_always(ctx) {
        fz_drop_device(ctx, device);
        fz_drop_device(ctx, draw);
        fz_drop_pixmap(ctx, pixmap);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    return 1;
}

// Decodes image object `number`, a 1-bit gray image (or, with `stencil`, a stencil mask) of
// width x height, into `rows` packed with 1 for black (for a mask: where it paints). 1 when it
// was one, 0 when it is something else, -1 when MuPDF failed (in `caught`).
int tryDecodeBilevelImage(fz_context* ctx, pdf_document* doc, int number, unsigned char* rows,
                          int width, int height, int stencil, Caught* caught) {
    pdf_obj* object = nullptr;
    fz_image* image = nullptr;
    fz_stream* stream = nullptr;
    int decoded = 0;
    fz_var(object);
    fz_var(image);
    fz_var(stream);
    fz_var(decoded);
    fz_try(ctx) {
        object = pdf_new_indirect(ctx, doc, number, 0);
        image = pdf_load_image(ctx, doc, object);
        fz_compressed_buffer* buffer = fz_compressed_image_buffer(ctx, image);
        if (buffer && (stencil ? image->imagemask : !image->imagemask) && image->n == 1 &&
            image->bpc == 1 && !image->mask && !image->use_colorkey && image->w == width &&
            image->h == height) {
            const std::size_t size = static_cast<std::size_t>((width + 7) / 8) * height;
            stream = fz_open_compressed_buffer(ctx, buffer);
            // Samples of 0 are black, and a mask paints where they are 0, unless the object's
            // decode array turns them round.
            pdf_obj* decode = pdf_dict_get(ctx, object, PDF_NAME(Decode));
            const bool turned = pdf_array_len(ctx, decode) == 2 &&
                                pdf_to_real(ctx, pdf_array_get(ctx, decode, 0)) >
                                    pdf_to_real(ctx, pdf_array_get(ctx, decode, 1));
            if (fz_read(ctx, stream, rows, size) == size) {
                if (!turned) {
                    for (std::size_t i = 0; i < size; ++i) {
                        rows[i] = static_cast<unsigned char>(~rows[i]);
                    }
                }
                decoded = 1;
            }
        }
    }
    fz_always(ctx) {
        fz_drop_stream(ctx, stream);
        fz_drop_image(ctx, image);
        pdf_drop_obj(ctx, object);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return -1;
    }
    return decoded;
}

// The ICC profile of the first output intent that has one, in a new buffer; null when none.
fz_buffer* tryOutputIntentProfile(fz_context* ctx, pdf_document* doc, Caught* caught) {
    fz_buffer* volatile profile = nullptr;
    fz_try(ctx) {
        pdf_obj* intents = pdf_dict_get(
            ctx, pdf_dict_get(ctx, pdf_trailer(ctx, doc), PDF_NAME(Root)), PDF_NAME(OutputIntents));
        const int count = pdf_array_len(ctx, intents);
        for (int i = 0; i < count && !profile; ++i) {
            pdf_obj* stream =
                pdf_dict_get(ctx, pdf_array_get(ctx, intents, i), PDF_NAME(DestOutputProfile));
            if (pdf_is_stream(ctx, stream)) {
                profile = pdf_load_stream(ctx, stream);
            }
        }
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return nullptr;
    }
    return profile;
}

// A device that draws nothing and reports glyphs. Type 3 glyphs are made of content of their
// own, which may show other fonts; they are run through the same device a few levels deep.
struct GlyphDevice {
    fz_device super;
    GlyphSink sink;
    void* user;
    int depth;
    struct timespec deadline;
    int calls;
    int skipped; // Type 3 glyphs nested too deep to follow: what they show is not known
};

constexpr int maximumType3Depth = 4;

// A page that draws for too long (millions of paths, a rendering bomb) is given up on: every few
// hundred drawing calls the clock is read, and past the deadline the run throws.
void tick(fz_context* ctx, fz_device* device) {
    auto* glyphs = reinterpret_cast<GlyphDevice*>(device);
    if (++glyphs->calls % 256 != 0) {
        return;
    }
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (now.tv_sec > glyphs->deadline.tv_sec ||
        (now.tv_sec == glyphs->deadline.tv_sec && now.tv_nsec > glyphs->deadline.tv_nsec)) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "the page takes too long to run");
    }
}

void tickPath(fz_context* ctx, fz_device* dev, const fz_path*, int, fz_matrix, fz_colorspace*,
              const float*, float, fz_color_params) {
    tick(ctx, dev);
}
void tickStroke(fz_context* ctx, fz_device* dev, const fz_path*, const fz_stroke_state*, fz_matrix,
                fz_colorspace*, const float*, float, fz_color_params) {
    tick(ctx, dev);
}
void tickClip(fz_context* ctx, fz_device* dev, const fz_path*, int, fz_matrix, fz_rect) {
    tick(ctx, dev);
}
void tickClipStroke(fz_context* ctx, fz_device* dev, const fz_path*, const fz_stroke_state*,
                    fz_matrix, fz_rect) {
    tick(ctx, dev);
}
void tickShade(fz_context* ctx, fz_device* dev, fz_shade*, fz_matrix, float, fz_color_params) {
    tick(ctx, dev);
}
void tickImage(fz_context* ctx, fz_device* dev, fz_image*, fz_matrix, float, fz_color_params) {
    tick(ctx, dev);
}
void tickImageMask(fz_context* ctx, fz_device* dev, fz_image*, fz_matrix, fz_colorspace*,
                   const float*, float, fz_color_params) {
    tick(ctx, dev);
}

void reportText(fz_context* ctx, fz_device* device, const fz_text* text) {
    tick(ctx, device);
    auto* glyphs = reinterpret_cast<GlyphDevice*>(device);
    for (const fz_text_span* span = text->head; span; span = span->next) {
        for (int i = 0; i < span->len; ++i) {
            const int gid = span->items[i].gid;
            if (gid < 0) {
                continue;
            }
            if (span->font->t3procs) {
                if (glyphs->depth >= maximumType3Depth) {
                    ++glyphs->skipped;
                } else if (gid < 256 && span->font->t3procs[gid]) {
                    ++glyphs->depth;
                    fz_run_t3_glyph(ctx, span->font, gid, fz_identity, device);
                    --glyphs->depth;
                }
            } else {
                glyphs->sink(glyphs->user, span->font, gid);
            }
        }
    }
}

void glyphsFill(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix, fz_colorspace*,
                const float*, float, fz_color_params) {
    reportText(ctx, dev, text);
}
void glyphsStroke(fz_context* ctx, fz_device* dev, const fz_text* text, const fz_stroke_state*,
                  fz_matrix, fz_colorspace*, const float*, float, fz_color_params) {
    reportText(ctx, dev, text);
}
void glyphsClip(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix, fz_rect) {
    reportText(ctx, dev, text);
}
void glyphsClipStroke(fz_context* ctx, fz_device* dev, const fz_text* text, const fz_stroke_state*,
                      fz_matrix, fz_rect) {
    reportText(ctx, dev, text);
}
void glyphsIgnore(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix) {
    reportText(ctx, dev, text);
}

int tryRunForGlyphs(fz_context* ctx, fz_page* page, GlyphSink sink, void* user, int seconds,
                    int* errors, Caught* caught) {
    GlyphDevice* device = nullptr;
    int volatile skipped = 0;
    fz_var(device);
    fz_cookie cookie = {};
    fz_try(ctx) {
        device = fz_new_derived_device(ctx, GlyphDevice);
        device->super.fill_text = glyphsFill;
        device->super.stroke_text = glyphsStroke;
        device->super.clip_text = glyphsClip;
        device->super.clip_stroke_text = glyphsClipStroke;
        device->super.ignore_text = glyphsIgnore;
        device->super.fill_path = tickPath;
        device->super.stroke_path = tickStroke;
        device->super.clip_path = tickClip;
        device->super.clip_stroke_path = tickClipStroke;
        device->super.fill_shade = tickShade;
        device->super.fill_image = tickImage;
        device->super.fill_image_mask = tickImageMask;
        device->sink = sink;
        device->user = user;
        device->depth = 0;
        device->calls = 0;
        device->skipped = 0;
        clock_gettime(CLOCK_MONOTONIC, &device->deadline);
        device->deadline.tv_sec += seconds;
        fz_run_page(ctx, page, &device->super, fz_identity, &cookie);
        fz_close_device(ctx, &device->super);
        skipped = device->skipped;
    }
    fz_always(ctx) {
        fz_drop_device(ctx, device ? &device->super : nullptr);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    *errors = cookie.errors + skipped;
    return 1;
}

} // namespace

namespace {

void silence(fz_context* ctx) {
    fz_set_error_callback(ctx, ignoreMessage, nullptr);
    fz_set_warning_callback(ctx, ignoreMessage, nullptr);
}

} // namespace

ContextPtr newContext(const fz_locks_context& locks) {
    ContextPtr ctx(fz_new_context(nullptr, &locks, FZ_STORE_DEFAULT));
    if (!ctx) {
        throw Error(FZ_ERROR_MEMORY, "cannot create a MuPDF context");
    }
    silence(ctx.get());
    return ctx;
}

ContextPtr cloneContext(fz_context* base) {
    ContextPtr ctx(fz_clone_context(base));
    if (!ctx) {
        throw Error(FZ_ERROR_MEMORY, "cannot clone a MuPDF context");
    }
    silence(ctx.get());
    return ctx;
}

DocumentPtr openPDF(fz_context* ctx, const char* path) {
    Caught caught;
    pdf_document* doc = tryOpen(ctx, path, &caught);
    if (!doc) {
        raise(caught);
    }
    return DocumentPtr(doc, DocumentDeleter{ctx});
}

bool needsPassword(fz_context* ctx, pdf_document* doc) {
    Caught caught;
    int needs = tryNeedsPassword(ctx, doc, &caught);
    if (needs < 0) {
        raise(caught);
    }
    return needs == 1;
}

bool authenticate(fz_context* ctx, pdf_document* doc, const char* password) {
    Caught caught;
    int granted = tryAuthenticate(ctx, doc, password, &caught);
    if (granted < 0) {
        raise(caught);
    }
    return granted == 1;
}

int countPages(fz_context* ctx, pdf_document* doc) {
    Caught caught;
    int count = tryCountPages(ctx, doc, &caught);
    if (count < 0) {
        raise(caught);
    }
    return count;
}

PagePtr loadPage(fz_context* ctx, pdf_document* doc, int index) {
    Caught caught;
    fz_page* page = tryLoadPage(ctx, doc, index, &caught);
    if (!page) {
        raise(caught);
    }
    return PagePtr(page, PageDeleter{ctx});
}

fz_rect mediaBox(fz_context* ctx, fz_page* page) {
    Caught caught;
    fz_rect box{};
    if (!tryMediaBox(ctx, page, &box, &caught)) {
        raise(caught);
    }
    return box;
}

void drawPage(fz_context* ctx, fz_page* page, fz_matrix transform, bool annotations,
              unsigned char* samples, int width, int height, int n, fz_cookie* cookie,
              CMYKSource* colours) {
    if (width < 1 || height < 1 || static_cast<std::int64_t>(width) * n > INT_MAX) {
        throw Error(FZ_ERROR_GENERIC, "the bitmap's rows are too long for MuPDF");
    }
    Caught caught;
    if (!tryDraw(ctx, page, transform, annotations ? 1 : 0, samples, width, height, n, cookie,
                 colours, &caught)) {
        raise(caught);
    }
}

bool decodeBilevelImage(fz_context* ctx, pdf_document* doc, int number, unsigned char* rows,
                        int width, int height, bool stencil) {
    Caught caught;
    const int decoded =
        tryDecodeBilevelImage(ctx, doc, number, rows, width, height, stencil ? 1 : 0, &caught);
    if (decoded < 0) {
        raise(caught);
    }
    return decoded == 1;
}

std::vector<std::uint8_t> outputIntentProfile(fz_context* ctx, pdf_document* doc) {
    Caught caught;
    fz_buffer* profile = tryOutputIntentProfile(ctx, doc, &caught);
    if (caught.code != 0) {
        raise(caught);
    }
    if (!profile) {
        return {};
    }
    std::vector<std::uint8_t> bytes(profile->data, profile->data + profile->len);
    fz_drop_buffer(ctx, profile);
    return bytes;
}

int runForGlyphs(fz_context* ctx, fz_page* page, GlyphSink sink, void* user, int seconds) {
    Caught caught;
    int errors = 0;
    if (!tryRunForGlyphs(ctx, page, sink, user, seconds, &errors, &caught)) {
        raise(caught);
    }
    return errors;
}

} // namespace quillet::mupdf
