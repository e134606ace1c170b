#include "engines/PDFMetadataEngine.hpp"

#include "engines/AnnotationAppearances.hpp"
#include "engines/DocumentScrubber.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/ValidatedWrite.hpp"
#include "platform/PDFDocument.hpp"
#include "platform/QPDFErrorTranslation.hpp"

#include <qpdf/Constants.h>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <algorithm>
#include <array>
#include <string_view>

namespace quillet {
namespace {

namespace fs = std::filesystem;

// The page entries that decide what a page shows; everything else on a page (annotations,
// actions, structure, thumbnails, private data, print boxes) is not part of what a reader saw.
constexpr std::array<std::string_view, 8> visibleEntries{
    "/Type", "/MediaBox", "/CropBox", "/Rotate", "/Resources", "/Contents", "/UserUnit", "/Group",
};

// Runs qpdf work on the input's objects; a damaged object becomes an error that names the file
// instead of one of qpdf's messages about object numbers.
template <typename Work> void onInputObjects(const fs::path& input, Work&& work) {
    try {
        work();
    } catch (const PDFCoreError&) {
        throw;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception&) {
        throw PDFCoreError::invalidInput(input.filename().string() +
                                         " is too damaged to be cleaned.");
    }
}

void report(const PDFMetadataEngine::Progress& progress, double fraction) {
    if (progress) {
        progress(fraction);
    }
}

// Appends a copy of page `index` of `source`; false when the page cannot be read, which the
// cleaner answers by leaving the page out rather than failing the document.
bool appendPageCopy(PDFDocument& destination, PDFDocument& source, int index) {
    try {
        destination.insertPageCopy(source, index, destination.pageCount());
        return true;
    } catch (const PDFDocumentError&) {
        return false;
    }
}

// qpdf fills a generated field appearance in through a token filter that only runs when this
// document writes the stream; a page copied into another document takes the raw bytes and would
// show empty fields. Reading the filtered data back into each appearance makes the value part of
// the stream itself.
void materializeFieldAppearances(QPDFPageDocumentHelper& pages, QPDFAcroFormDocumentHelper& form) {
    for (auto& page : pages.getAllPages()) {
        for (auto& widget : form.getWidgetAnnotationsForPage(page)) {
            auto appearance = widget.getAppearanceStream("/N");
            if (appearance.isStream()) {
                appearance.replaceStreamData(appearance.getStreamData(qpdf_dl_generalized),
                                             QPDFObjectHandle::newNull(),
                                             QPDFObjectHandle::newNull());
            }
        }
    }
}

// Burns the appearance of every annotation a reader sees on screen into its page's content.
// Fields flagged as needing new appearances get them first; without that qpdf leaves every field
// unflattened and the values typed into them would vanish with the form.
void burnVisibleAppearances(QPDF& qpdf) {
    QPDFPageDocumentHelper pages(qpdf);
    pages.pushInheritedAttributesToPage();
    QPDFAcroFormDocumentHelper form(qpdf);
    if (form.getNeedAppearances()) {
        form.generateAppearancesIfNeeded();
        materializeFieldAppearances(pages, form);
    }
    AnnotationAppearances::generateMissing(qpdf);
    pages.flattenAnnotations(0, an_invisible | an_hidden | an_no_view);
}

PDFRect firstMediaBox(const PDFDocument& document) {
    try {
        if (document.pageCount() > 0) {
            return document.page(0).mediaBox();
        }
    } catch (const PDFDocumentError&) {
        // The default below stands in for an unreadable first page.
    }
    return {};
}

// Reduces a page to what it shows: its boxes, rotation, content and the resources the content
// uses. The page's resource dictionary becomes its own first, because pruning a dictionary that
// other pages share would take their resources away.
void keepOnlyWhatIsSeen(PDFPage page, const PDFRect& fallbackBox) {
    auto object = page.object();
    const PDFRect box = page.mediaBox();
    const int rotation = page.rotation();
    for (const auto& key : object.getKeys()) {
        if (std::find(visibleEntries.begin(), visibleEntries.end(), key) == visibleEntries.end()) {
            object.removeKey(key);
        }
    }
    if (box.width <= 0 || box.height <= 0) {
        const PDFRect fallback =
            fallbackBox.width > 0 && fallbackBox.height > 0 ? fallbackBox : PDFRect{0, 0, 612, 792};
        object.replaceKey("/MediaBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(
                                           fallback.x, fallback.y, fallback.x + fallback.width,
                                           fallback.y + fallback.height)));
    }
    if (rotation == 0) {
        object.removeKey("/Rotate");
    } else {
        page.setRotation(rotation);
    }
    if (auto resources = object.getKey("/Resources"); resources.isDictionary()) {
        object.replaceKey("/Resources", resources.shallowCopy());
        QPDFPageObjectHelper(object).removeUnreferencedResources();
    }
}

void scrubOutput(PDFDocument& document, const fs::path& input) {
    onInputObjects(input, [&] { DocumentScrubber::scrub(document.qpdf()); });
}

} // namespace

PDFMetadataInfo PDFMetadataEngine::clean(const fs::path& input, const fs::path& output,
                                         CleanPreset preset, const Progress& progress,
                                         const CancellationTest& isCancelled) {
    PDFMetadataInfo removed = PDFDocumentEngine::readMetadata(input);
    if (preset == CleanPreset::flattenAndClean) {
        flattenPages(input, output, progress, isCancelled);
    } else {
        cleanPages(input, output, progress);
    }
    return removed;
}

void PDFMetadataEngine::cleanPages(const fs::path& input, const fs::path& output,
                                   const Progress& progress) {
    auto source = PDFDocumentEngine::openUnlock(input, "");
    auto cleaned = PDFDocument::empty();
    const int count = source.pageCount();
    for (int i = 0; i < count; ++i) {
        appendPageCopy(cleaned, source, i);
    }
    cleaned.setAttributes({});
    scrubOutput(cleaned, input);
    report(progress, 0.5);
    writeValidated(cleaned, output, cleaned.pageCount());
    report(progress, 1.0);
}

void PDFMetadataEngine::flattenPages(const fs::path& input, const fs::path& output,
                                     const Progress& progress,
                                     const CancellationTest& isCancelled) {
    auto source = PDFDocumentEngine::openCG(input);
    onInputObjects(input, [&] { burnVisibleAppearances(source.qpdf()); });
    const PDFRect fallbackBox = firstMediaBox(source);
    auto flat = PDFDocument::empty();
    const int count = source.pageCount();
    for (int i = 0; i < count; ++i) {
        if (isCancelled && isCancelled()) {
            throw CancellationError();
        }
        try {
            detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged,
                                          [&] { keepOnlyWhatIsSeen(source.page(i), fallbackBox); });
            appendPageCopy(flat, source, i);
        } catch (const PDFDocumentError&) {
            // An unreadable page is left out, as it would be by a reader that draws pages.
        }
        report(progress, static_cast<double>(i + 1) / count);
    }
    scrubOutput(flat, input);
    writeValidated(flat, output, flat.pageCount(), nullptr, "cannot create output");
}

} // namespace quillet
