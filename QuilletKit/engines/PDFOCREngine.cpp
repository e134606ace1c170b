#include "engines/PDFOCREngine.hpp"

#include "engines/FullPageImage.hpp"
#include "engines/PDFAnalysisEngine.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/ValidatedWrite.hpp"
#include "platform/InOrderWorkers.hpp"
#include "engines/JPEGHeader.hpp"
#include "platform/JPEGScaler.hpp"
#include "platform/PDFRenderer.hpp"
#include "platform/SafetyLimits.hpp"
#include "platform/TextRecognizer.hpp"

#include <qpdf/QPDFPageObjectHelper.hh>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// What one worker reads pages with; each part is made on first use, on the worker's thread.
struct Reader {
    std::optional<PDFDocument> document;
    std::optional<PDFRenderer::Document> drawing;
    std::unique_ptr<TextRecognizer> recognizer;
};

struct Picture {
    Bitmap pixels;
    int dpi = 0;
};

// The embedded JPEG of a page that is nothing else, at its own resolution or brought down to the
// reading resolution; absent for any other page, and for a turned page (its picture lies on its
// side, and the rendered page reads upright).
std::optional<Picture> embeddedPicture(const PDFPage& page) {
    if (page.rotation() != 0) {
        return std::nullopt;
    }
    const auto jpeg = FullPageImage::jpeg(page);
    if (!jpeg) {
        return std::nullopt;
    }
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(jpeg->data()), jpeg->size());
    const auto header = JPEGHeader::read(bytes);
    const auto box = page.mediaBox();
    if (!header || box.width <= 0 || box.height <= 0) {
        return std::nullopt;
    }
    const double dpi = header->width * 72.0 / box.width;
    const double scale = std::min(1.0, PDFOCREngine::readingDPI / dpi);
    const auto width = std::max(1, static_cast<int>(std::lround(header->width * scale)));
    const auto height = std::max(1, static_cast<int>(std::lround(header->height * scale)));
    if (static_cast<std::int64_t>(width) * height > limits::renderPixels) {
        return std::nullopt; // left to the renderer, which refuses it with its own error
    }
    auto pixels = JPEGScaler::decodeScaled(bytes, width, height, PixelFormat::gray);
    if (!pixels) {
        return std::nullopt;
    }
    return Picture{std::move(*pixels), std::max(1, static_cast<int>(std::lround(dpi * scale)))};
}

// The text layer of page `index` as one worker reads it: absent when the page has text of its
// own or shows no words.
std::optional<std::string> readPage(Reader& reader, const PDFRenderer& renderer,
                                    const PDFDocument& original, const OCROptions& options,
                                    int index) {
    if (!reader.document) {
        reader.document.emplace(
            PDFDocumentEngine::openUnlock(original.path(), original.password()));
    }
    const auto page = reader.document->page(index);
    const auto analysis = PDFAnalysisEngine::analyzePage(page, index);
    if (analysis.hasText) {
        return std::nullopt;
    }
    // A page whose text is a bilevel mask finer than the reading resolution (a compressed scan)
    // is read at the mask's own resolution, up to 400 DPI.
    int readingDPI = PDFOCREngine::readingDPI;
    for (const auto& image : analysis.images) {
        if (image.isMonochrome && image.effectiveDPI > readingDPI) {
            readingDPI = std::min(400, static_cast<int>(std::lround(image.effectiveDPI)));
        }
    }
    auto picture = embeddedPicture(page);
    if (!picture) {
        if (!reader.drawing) {
            reader.drawing.emplace(renderer.open(original.path(), original.password()));
        }
        PDFRenderer::RenderOptions drawing;
        drawing.scale = readingDPI / 72.0;
        drawing.format = PixelFormat::gray;
        drawing.annotations = false;
        picture = Picture{reader.drawing->render(index, drawing), readingDPI};
    }
    if (!reader.recognizer) {
        reader.recognizer = std::make_unique<TextRecognizer>(options.languages);
    }
    return reader.recognizer->textLayer(picture->pixels, picture->dpi);
}

// Lays the one page of `layer` over `page`, fitted to its media box as the page is shown (turned
// by its /Rotate), inside a q/Q of its own so that it neither changes nor is changed by the
// page's graphics state. `layer` must stay alive until the document is written.
void layOver(PDFDocument& document, int index, const PDFDocument& layer) {
    auto& qpdf = document.qpdf();
    QPDFPageObjectHelper target(document.page(index).object());
    auto form =
        qpdf.copyForeignObject(QPDFPageObjectHelper(layer.page(0).object()).getFormXObjectForPage());

    // The page gets resource dictionaries of its own, so that a dictionary shared with other
    // pages does not grow a name on their behalf.
    auto resources = target.getAttribute("/Resources", true);
    resources = resources.isDictionary() ? resources.shallowCopy() : QPDFObjectHandle::newDictionary();
    auto xobjects = resources.getKey("/XObject");
    xobjects = xobjects.isDictionary() ? xobjects.shallowCopy() : QPDFObjectHandle::newDictionary();
    int suffix = 1;
    const auto name = resources.getUniqueResourceName("/OCR", suffix);
    xobjects.replaceKey(name, form);
    resources.replaceKey("/XObject", xobjects);
    target.getObjectHandle().replaceKey("/Resources", resources);

    const auto box = document.page(index).mediaBox();
    const QPDFObjectHandle::Rectangle rect(box.x, box.y, box.x + box.width, box.y + box.height);
    const auto placement = target.placeFormXObject(form, name, rect, true, true, true);
    target.addPageContents(QPDFObjectHandle::newStream(&qpdf, "q\n"), true);
    target.addPageContents(QPDFObjectHandle::newStream(&qpdf, "\nQ\nq\n" + placement + "\nQ\n"),
                           false);
}

// One reader per core, at most eight: each holds a Tesseract with its languages loaded (tens of
// megabytes each), and never more readers than pages.
unsigned readers(int pages) {
    const int cores = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 8);
    return static_cast<unsigned>(std::min(cores, std::max(pages, 1)));
}

std::string packageFor(const std::string& language) {
    std::string package = "tesseract-ocr-" + language;
    std::replace(package.begin(), package.end(), '_', '-');
    std::transform(package.begin(), package.end(), package.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return package;
}

} // namespace

void PDFOCREngine::requireLanguages(const std::string& languages) {
    const auto missing = TextRecognizer::missingLanguages(languages);
    if (missing.empty()) {
        return;
    }
    const auto& language = missing.front();
    if (language.empty()) {
        throw PDFCoreError::invalidInput("Name the languages to read, e.g. eng or eng+chi_sim.");
    }
    throw PDFCoreError::invalidInput("The language \"" + language +
                                     "\" is not installed (it comes with the package " +
                                     packageFor(language) + ").");
}

OCROutcome PDFOCREngine::makeSearchable(const fs::path& input, const fs::path& output,
                                        const OCROptions& options) {
    requireLanguages(options.languages);
    auto document = PDFDocumentEngine::openUnlock(input, options.password.value_or(""));
    OCROutcome outcome;
    outcome.pageCount = document.pageCount();
    if (outcome.pageCount < 1) {
        throw PDFCoreError::emptyDocument();
    }
    std::error_code error;
    outcome.originalBytes = static_cast<std::int64_t>(fs::file_size(input, error));

    const PDFRenderer renderer;
    const unsigned threads = readers(outcome.pageCount);
    const std::size_t window = 2 * static_cast<std::size_t>(threads);
    std::vector<Reader> workers(threads);
    std::vector<std::optional<std::string>> layers(window);
    std::vector<PDFDocument> placed; // the layers laid over pages, alive until written
    const auto stopIfCancelled = [&] {
        if (options.isCancelled && options.isCancelled()) {
            throw CancellationError();
        }
    };
    runInOrder(
        static_cast<std::size_t>(outcome.pageCount), threads, window,
        [&](unsigned worker, std::size_t index) {
            stopIfCancelled();
            layers[index % window] =
                readPage(workers[worker], renderer, document, options, static_cast<int>(index));
        },
        [&](std::size_t index) {
            auto layer = std::move(layers[index % window]);
            layers[index % window].reset();
            if (layer) {
                placed.push_back(PDFDocument::open(std::move(*layer), "text layer"));
                layOver(document, static_cast<int>(index), placed.back());
                ++outcome.pagesRead;
            }
            if (options.progress) {
                options.progress(static_cast<double>(index + 1) / outcome.pageCount);
            }
            stopIfCancelled();
        });
    outcome.pagesWithText = outcome.pageCount - outcome.pagesRead;
    writeValidated(document, output, outcome.pageCount);
    outcome.resultBytes = static_cast<std::int64_t>(fs::file_size(output, error));
    return outcome;
}

} // namespace quillet
