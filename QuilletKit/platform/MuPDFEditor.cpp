#include "platform/MuPDFEditor.hpp"

#include "platform/MuPDFBoundary.hpp"
#include "platform/MuPDFCaught.hpp"

#include <map>

namespace quillet {

namespace {

using mupdf::detail::Caught;
using mupdf::detail::raise;
using mupdf::detail::remember;

// C-like from here to the end of the anonymous namespace (see MuPDFCaught.hpp).

void ignoreMessage(void*, const char*) {
}

fz_stext_page* tryText(fz_context* ctx, fz_page* page, Caught* caught) {
    fz_stext_page* volatile text = nullptr;
    fz_try(ctx) {
        fz_stext_options options = {};
        options.flags = 0; // ligatures split, whitespace normalised, nothing dehyphenated
        text = fz_new_stext_page_from_page(ctx, page, &options);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return nullptr;
    }
    return text;
}

int tryTransform(fz_context* ctx, fz_page* page, fz_matrix* ctm, fz_rect* box, Caught* caught) {
    fz_try(ctx) {
        pdf_page_transform(ctx, pdf_page_from_fz_page(ctx, page), box, ctm);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    return 1;
}

int tryRedact(fz_context* ctx, pdf_document* doc, fz_page* page, const fz_rect* rects, int count,
              Caught* caught) {
    pdf_annot* annot = nullptr;
    fz_var(annot);
    fz_try(ctx) {
        pdf_page* pdfPage = pdf_page_from_fz_page(ctx, page);
        for (int i = 0; i < count; ++i) {
            annot = pdf_create_annot(ctx, pdfPage, PDF_ANNOT_REDACT);
            pdf_set_annot_rect(ctx, annot, rects[i]);
            pdf_drop_annot(ctx, annot);
            annot = nullptr;
        }
        pdf_redact_options options = {};
        options.black_boxes = 0; // the fill is painted later, in the colour asked for
        options.image_method = PDF_REDACT_IMAGE_PIXELS;
        pdf_redact_page(ctx, doc, pdfPage, &options);
    }
    fz_always(ctx) {
        pdf_drop_annot(ctx, annot);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    return 1;
}

int trySave(fz_context* ctx, pdf_document* doc, const char* path, Caught* caught) {
    fz_try(ctx) {
        pdf_write_options options = pdf_default_write_options;
        options.do_garbage = 1;
        options.do_encrypt = PDF_ENCRYPT_NONE;
        pdf_save_document(ctx, doc, path, &options);
    }
    fz_catch(ctx) {
        remember(ctx, caught);
        return 0;
    }
    return 1;
}

} // namespace

struct MuPDFEditor::Impl {
    mupdf::ContextPtr ctx;
    mupdf::DocumentPtr doc{nullptr, mupdf::DocumentDeleter{nullptr}}; // after ctx: dropped first
    std::map<int, mupdf::PagePtr> pages;                             // after doc: dropped first

    fz_page* page(int index) {
        auto found = pages.find(index);
        if (found == pages.end()) {
            found = pages.emplace(index, mupdf::loadPage(ctx.get(), doc.get(), index)).first;
        }
        return found->second.get();
    }
};

MuPDFEditor::MuPDFEditor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
MuPDFEditor::MuPDFEditor(MuPDFEditor&&) noexcept = default;
MuPDFEditor& MuPDFEditor::operator=(MuPDFEditor&&) noexcept = default;
MuPDFEditor::~MuPDFEditor() = default;

MuPDFEditor MuPDFEditor::open(const std::filesystem::path& path, const std::string& password) {
    auto impl = std::make_unique<Impl>();
    impl->ctx.reset(fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT));
    if (!impl->ctx) {
        throw mupdf::Error(FZ_ERROR_MEMORY, "cannot create a MuPDF context");
    }
    fz_set_error_callback(impl->ctx.get(), ignoreMessage, nullptr);
    fz_set_warning_callback(impl->ctx.get(), ignoreMessage, nullptr);
    impl->doc = mupdf::openPDF(impl->ctx.get(), path.c_str());
    if (mupdf::needsPassword(impl->ctx.get(), impl->doc.get()) &&
        !mupdf::authenticate(impl->ctx.get(), impl->doc.get(), password.c_str())) {
        throw PasswordRequired(password.empty() ? "the file is protected by a password"
                                                : "the password is not correct");
    }
    return MuPDFEditor(std::move(impl));
}

int MuPDFEditor::pageCount() const {
    return mupdf::countPages(impl_->ctx.get(), impl_->doc.get());
}

MuPDFEditor::Box MuPDFEditor::pageBox(int index) {
    Caught caught;
    fz_matrix ctm;
    fz_rect box;
    if (!tryTransform(impl_->ctx.get(), impl_->page(index), &ctm, &box, &caught)) {
        raise(caught);
    }
    const fz_rect seen = fz_transform_rect(box, ctm);
    return {0, 0, seen.x1 - seen.x0, seen.y1 - seen.y0};
}

std::vector<MuPDFEditor::Line> MuPDFEditor::lines(int index) {
    Caught caught;
    fz_context* ctx = impl_->ctx.get();
    // Read and let go: only pages that are redacted stay loaded.
    const auto kept = impl_->pages.find(index);
    const mupdf::PagePtr loaded = kept == impl_->pages.end()
                                      ? mupdf::loadPage(ctx, impl_->doc.get(), index)
                                      : mupdf::PagePtr(nullptr, mupdf::PageDeleter{ctx});
    fz_stext_page* text = tryText(ctx, loaded ? loaded.get() : kept->second.get(), &caught);
    if (!text) {
        raise(caught);
    }
    std::vector<Line> lines;
    try {
        for (fz_stext_block* block = text->first_block; block; block = block->next) {
            if (block->type != FZ_STEXT_BLOCK_TEXT) {
                continue;
            }
            for (fz_stext_line* line = block->u.t.first_line; line; line = line->next) {
                Line glyphs;
                for (fz_stext_char* c = line->first_char; c; c = c->next) {
                    const fz_rect r = fz_rect_from_quad(c->quad);
                    glyphs.push_back({static_cast<char32_t>(c->c), {r.x0, r.y0, r.x1, r.y1}});
                }
                if (!glyphs.empty()) {
                    lines.push_back(std::move(glyphs));
                }
            }
        }
    } catch (...) {
        fz_drop_stext_page(ctx, text);
        throw;
    }
    fz_drop_stext_page(ctx, text);
    return lines;
}

std::array<double, 6> MuPDFEditor::toUserSpace(int index) {
    Caught caught;
    fz_matrix ctm;
    fz_rect box;
    if (!tryTransform(impl_->ctx.get(), impl_->page(index), &ctm, &box, &caught)) {
        raise(caught);
    }
    const fz_matrix back = fz_invert_matrix(ctm);
    return {back.a, back.b, back.c, back.d, back.e, back.f};
}

void MuPDFEditor::redact(int index, const std::vector<Box>& boxes) {
    if (boxes.empty()) {
        return;
    }
    std::vector<fz_rect> rects;
    rects.reserve(boxes.size());
    for (const Box& box : boxes) {
        rects.push_back({static_cast<float>(box.x0), static_cast<float>(box.y0),
                         static_cast<float>(box.x1), static_cast<float>(box.y1)});
    }
    Caught caught;
    if (!tryRedact(impl_->ctx.get(), impl_->doc.get(), impl_->page(index), rects.data(),
                   static_cast<int>(rects.size()), &caught)) {
        raise(caught);
    }
}

void MuPDFEditor::save(const std::filesystem::path& path) {
    // Pages hold the document's objects: drop them before writing.
    impl_->pages.clear();
    Caught caught;
    if (!trySave(impl_->ctx.get(), impl_->doc.get(), path.c_str(), &caught)) {
        raise(caught);
    }
}

} // namespace quillet
