// With MuPDFEditor.cpp, the only place where MuPDF functions that can fail are called (geometry
// helpers such as fz_concat cannot, and are used freely).
//
// MuPDF reports errors with setjmp/longjmp. A longjmp that crosses a C++ frame skips its
// destructors, so every MuPDF call that can throw runs inside a small C-like function in
// MuPDFBoundary.cpp that holds no object with a destructor; the error leaves that function as a
// return value and is thrown here as `mupdf::Error`, a real C++ exception. Handles are owned by
// the unique_ptr types below; their deleters never throw.
//
// Threads: a context (and everything opened with it) belongs to one thread at a time. Clones of
// one base context share MuPDF's resource store, guarded by the base context's locks.
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillet::mupdf {

class CMYKSource;

/// A MuPDF error turned into an exception; `code` is MuPDF's FZ_ERROR_* value.
class Error : public std::runtime_error {
  public:
    Error(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
    int code() const noexcept { return code_; }

  private:
    int code_;
};

struct ContextDeleter {
    void operator()(fz_context* ctx) const noexcept { fz_drop_context(ctx); }
};
using ContextPtr = std::unique_ptr<fz_context, ContextDeleter>;

struct DocumentDeleter {
    fz_context* ctx;
    void operator()(pdf_document* doc) const noexcept { pdf_drop_document(ctx, doc); }
};
using DocumentPtr = std::unique_ptr<pdf_document, DocumentDeleter>;

struct PageDeleter {
    fz_context* ctx;
    void operator()(fz_page* page) const noexcept { fz_drop_page(ctx, page); }
};
using PagePtr = std::unique_ptr<fz_page, PageDeleter>;

/// A base context using `locks` (which must outlive it and every clone). MuPDF's messages are
/// silenced: they would land on standard error, which the command line keeps for its own output.
ContextPtr newContext(const fz_locks_context& locks);
/// A context for another thread, sharing the base context's store.
ContextPtr cloneContext(fz_context* base);

/// Opens a PDF, repairing a damaged cross-reference table as MuPDF does; throws Error.
DocumentPtr openPDF(fz_context* ctx, const char* path);
bool needsPassword(fz_context* ctx, pdf_document* doc);
/// True when `password` opens the document (user or owner password).
bool authenticate(fz_context* ctx, pdf_document* doc, const char* password);
int countPages(fz_context* ctx, pdf_document* doc);
PagePtr loadPage(fz_context* ctx, pdf_document* doc, int index);

/// The page's media box in MuPDF's page space: rotation and user unit applied, y pointing down,
/// the crop box's corner at the origin (so the media box may start at negative coordinates).
fz_rect mediaBox(fz_context* ctx, fz_page* page);

/// Draws the page through `transform` (page space to pixels) into `samples`, a caller-owned
/// buffer of width x height x n bytes (n = 1 gray, 3 RGB) already filled with the background.
/// Without `annotations`, only the page's own content is drawn (no annotations, no widgets).
/// `cookie` (may be null) is MuPDF's: another thread may set its `abort`, after which the drawing
/// stops soon and returns normally, leaving the bitmap incomplete. With `colours`, print colours
/// are drawn through its conversion (see ColourManagedDevice.hpp).
void drawPage(fz_context* ctx, fz_page* page, fz_matrix transform, bool annotations,
              unsigned char* samples, int width, int height, int n, fz_cookie* cookie,
              CMYKSource* colours = nullptr);

/// Decodes the image that is object `number` into `rows` ((width + 7) / 8 x height bytes,
/// 1 for black) and answers true when it is a 1-bit gray image (no stencil or colour-key mask)
/// of exactly that size, or with `stencil` a stencil mask of that size (1 where it paints);
/// false for anything else, `rows` then meaning nothing. Throws Error when MuPDF cannot load or
/// decode it.
bool decodeBilevelImage(fz_context* ctx, pdf_document* doc, int number, unsigned char* rows,
                        int width, int height, bool stencil = false);

/// The ICC profile of the document's first output intent that carries one; empty when none.
std::vector<std::uint8_t> outputIntentProfile(fz_context* ctx, pdf_document* doc);

/// Receives every glyph a page shows. Runs inside MuPDF's interpreter, so it must not throw.
using GlyphSink = void (*)(void* user, fz_font* font, int gid) noexcept;

/// Runs the page's content and its annotations through a device that draws nothing and hands
/// every glyph shown (filled, stroked, clipped or invisible text, and the glyphs that Type 3 glyph
/// procedures show, followed a few levels deep) to `sink`. Answers how many errors MuPDF met and
/// skipped; after any, what was reported may be incomplete. Throws Error when the run fails, and
/// when it is still drawing after `seconds`.
int runForGlyphs(fz_context* ctx, fz_page* page, GlyphSink sink, void* user, int seconds);

} // namespace quillet::mupdf
