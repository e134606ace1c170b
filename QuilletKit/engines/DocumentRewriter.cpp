#include "engines/DocumentRewriter.hpp"

#include "engines/DocumentCompactor.hpp"
#include "engines/FullPageImage.hpp"
#include "engines/MixedRaster.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PageRasterizer.hpp"
#include "engines/TextLayer.hpp"
#include "platform/AreaResampler.hpp"
#include "platform/InOrderWorkers.hpp"
#include "platform/JBIG2Encoder.hpp"
#include "platform/JPEGScaler.hpp"
#include "platform/PDFRenderer.hpp"

#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDFWriter.hh>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <thread>

namespace quillet {
namespace fs = std::filesystem;
namespace {

struct PagePlan {
    int index = 0;
    bool monochrome = false;
    PageRasterizer::Size size;
    int rotation = 0;
    /// The page as scanned: the resolution it is read at (`readingDpi`) and its size there.
    int scanDpi = 300;
    PageRasterizer::Size scanSize;
    /// A page of mixed raster content already: its text mask, of `scanSize`, which is kept.
    std::optional<int> mask;
};

// Mixed raster content keeps the text at the scan's resolution and the background at the
// tier's divided by this.
constexpr double backgroundDivisor = 4.8;
// A JPEG page at the setting's resolution is not smaller than this many bytes a pixel, so a
// split under it needs no comparison (a 120 DPI JPEG text page weighs 0.05 to 0.1).
constexpr double clearlySmaller = 0.04;
// The background of a split page with photos.
constexpr int photoDpi = 150;
constexpr double photoQuality = 0.7;
constexpr int lowestScanDpi = 150;
constexpr int highestScanDpi = 400;
constexpr int coarseScanDpi = 200;

// The resolution a page is read at, from the finest of its images: their own, within 150 to
// 400 DPI, but a coarse scan (under 200 DPI) twice its own, at most 300. At 150 DPI a letter's
// strokes are a pixel or two wide, too few for a mask to draw their shapes; cut from the scan
// drawn twice as fine, the mask keeps them (Tesseract found 25 to 31 more words in 3,500).
int readingDpi(double finest) {
    if (!(finest > 0)) {
        return 300;
    }
    const int dpi = static_cast<int>(std::lround(std::min(finest, 1e6)));
    return dpi < coarseScanDpi ? std::clamp(2 * dpi, lowestScanDpi, 300)
                               : std::min(dpi, highestScanDpi);
}

QPDFObjectHandle imageStream(QPDF& qpdf, const RasterizedPage& raster) {
    const bool gray = raster.format == PixelFormat::gray;
    auto image = QPDFObjectHandle::newStream(&qpdf);
    // JPEG bytes are stored as they are; raw pixels are compressed by the writer.
    const auto& bytes = raster.isJPEG ? raster.data : raster.pixels;
    image.replaceStreamData(std::string(bytes.begin(), bytes.end()),
                            raster.isJPEG ? QPDFObjectHandle::newName("/DCTDecode")
                                          : QPDFObjectHandle::newNull(),
                            QPDFObjectHandle::newNull());
    auto dictionary = image.getDict();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(raster.width));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(raster.height));
    dictionary.replaceKey("/ColorSpace",
                          QPDFObjectHandle::newName(gray ? "/DeviceGray" : "/DeviceRGB"));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    return image;
}

// A JBIG2 mask: a stencil painted in the fill colour, or (`opaque`) a black-and-white image.
QPDFObjectHandle maskStream(QPDF& qpdf, const RasterizedPage& raster, bool opaque) {
    auto image = QPDFObjectHandle::newStream(&qpdf);
    image.replaceStreamData(std::string(raster.mask.begin(), raster.mask.end()),
                            QPDFObjectHandle::newName("/JBIG2Decode"), QPDFObjectHandle::newNull());
    auto dictionary = image.getDict();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(raster.maskWidth));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(raster.maskHeight));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(1));
    // The filter hands out 0 for ink, which a stencil paints and a gray image shows black.
    if (opaque) {
        dictionary.replaceKey("/ColorSpace", QPDFObjectHandle::newName("/DeviceGray"));
    } else {
        dictionary.replaceKey("/ImageMask", QPDFObjectHandle::newBool(true));
    }
    return image;
}

// A name for the page's picture that the text layer's forms do not use.
std::string freeName(QPDFObjectHandle taken, const std::string& stem) {
    std::string name = "/" + stem;
    for (int n = 1; taken.hasKey(name); ++n) {
        name = fmt::format("/{}{}", stem, n);
    }
    return name;
}

// Replaces the page's content with its picture and, over it, the text it showed (invisible).
// Answers the new images.
std::vector<QPDFObjectHandle> replaceContent(QPDF& qpdf, QPDFObjectHandle page,
                                             const PDFRect& box, const RasterizedPage& raster,
                                             TextLayer& text) {
    auto layer = text.of(page);
    auto resources = QPDFObjectHandle::newDictionary();
    auto xobjects = layer ? layer->forms.shallowCopy() : QPDFObjectHandle::newDictionary();
    const std::string place =
        fmt::format("{:.4f} 0 0 {:.4f} {:.4f} {:.4f} cm", box.width, box.height, box.x, box.y);
    std::string content;
    std::vector<QPDFObjectHandle> images;
    if (!raster.data.empty()) {
        const std::string name = freeName(xobjects, "Page");
        images.push_back(imageStream(qpdf, raster));
        xobjects.replaceKey(name, images.back());
        content += fmt::format("q {} {} Do Q\n", place, name);
    } else if (raster.paper) {
        content += fmt::format("q {:.4f} {:.4f} {:.4f} rg {:.4f} {:.4f} {:.4f} {:.4f} re f Q\n",
                               (*raster.paper)[0] / 255.0, (*raster.paper)[1] / 255.0,
                               (*raster.paper)[2] / 255.0, box.x, box.y, box.width, box.height);
    }
    for (const auto& patch : raster.patches) {
        RasterizedPage photo;
        photo.data = patch.jpeg;
        photo.isJPEG = true;
        photo.width = patch.width;
        photo.height = patch.height;
        photo.format = raster.format;
        const std::string name = freeName(xobjects, "Photo");
        images.push_back(imageStream(qpdf, photo));
        xobjects.replaceKey(name, images.back());
        // The box's share of the page, measured from the bottom as PDF does.
        const double across = box.width / raster.maskWidth;
        const double down = box.height / raster.maskHeight;
        content += fmt::format("q {:.4f} 0 0 {:.4f} {:.4f} {:.4f} cm {} Do Q\n",
                               across * (patch.box.right - patch.box.left),
                               down * (patch.box.bottom - patch.box.top),
                               box.x + across * patch.box.left,
                               box.y + down * (raster.maskHeight - patch.box.bottom), name);
    }
    if (!raster.foreground.empty()) {
        // The inks' colours, painted where the mask has ink.
        RasterizedPage colours = raster;
        colours.data = raster.foreground;
        colours.isJPEG = true; // even over a page of plain paper, which has no JPEG of its own
        colours.width = raster.foregroundWidth;
        colours.height = raster.foregroundHeight;
        const std::string name = freeName(xobjects, "Ink");
        images.push_back(imageStream(qpdf, colours));
        images.push_back(maskStream(qpdf, raster, false));
        images[images.size() - 2].getDict().replaceKey("/Mask", images.back());
        xobjects.replaceKey(name, images[images.size() - 2]);
        content += fmt::format("q {} {} Do Q\n", place, name);
    } else if (!raster.mask.empty()) {
        const bool opaque = raster.data.empty() && !raster.paper;
        const std::string name = freeName(xobjects, "Ink");
        images.push_back(maskStream(qpdf, raster, opaque));
        xobjects.replaceKey(name, images.back());
        content += opaque ? fmt::format("q {} {} Do Q\n", place, name)
                          : fmt::format("q {:.4f} {:.4f} {:.4f} rg {} {} Do Q\n",
                                        raster.ink[0] / 255.0, raster.ink[1] / 255.0,
                                        raster.ink[2] / 255.0, place, name);
    }
    if (layer) {
        content += "q\n" + layer->content + "Q\n";
        resources.replaceKey("/Font", layer->fonts);
        if (layer->properties.getKeys().size() > 0) {
            resources.replaceKey("/Properties", layer->properties);
        }
    }
    resources.replaceKey("/XObject", xobjects);
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", QPDFObjectHandle::newStream(&qpdf, content));
    return images;
}

void writeRebuilt(QPDF& qpdf, const fs::path& output) {
    try {
        // The Flate level is qpdf's process-wide setting; every writer of ours wants the best.
        Pl_Flate::setCompressionLevel(9);
        QPDFWriter writer(qpdf, output.c_str());
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.setCompressStreams(true);
        writer.setRecompressFlate(true);
        writer.setDecodeLevel(qpdf_dl_generalized);
        writer.write();
    } catch (const std::exception& error) {
        throw PDFCoreError::writeFailed(output.filename().string() + ": " + error.what());
    }
}

std::vector<PagePlan> planRasters(const PDFDocument& document, const PDFAnalysis& analysis,
                                  int dpi) {
    std::map<int, const PDFPageAnalysis*> byIndex;
    for (const auto& page : analysis.pages) {
        byIndex[page.index] = &page;
    }
    std::vector<PagePlan> plans;
    for (int i = 0; i < document.pageCount(); ++i) {
        const auto found = byIndex.find(i);
        if (found == byIndex.end() || !DocumentRewriter::shouldRasterize(*found->second)) {
            continue;
        }
        const auto& images = found->second->images;
        PagePlan plan;
        plan.index = i;
        plan.monochrome = std::all_of(images.begin(), images.end(),
                                      [](const auto& image) { return image.isMonochrome; });
        const auto page = document.page(i);
        const auto box = page.mediaBox();
        plan.size = PageRasterizer::rasterSize(box.width, box.height, dpi);
        plan.rotation = page.rotation();
        double finest = 0;
        for (const auto& image : images) {
            finest = std::max(finest, image.effectiveDPI);
        }
        // A page that is mixed raster content already: its mask, seen through a picture of the
        // inks, is no image of its own, but its resolution is the scan's.
        const auto mask = box.width > 0 && box.height > 0 ? FullPageImage::textMask(page)
                                                          : std::nullopt;
        const double across = mask ? mask->width * 72.0 / box.width : 0;
        const double down = mask ? mask->height * 72.0 / box.height : 0;
        finest = std::max(finest, across);
        plan.scanDpi = readingDpi(finest);
        plan.scanSize = PageRasterizer::rasterSize(box.width, box.height, plan.scanDpi);
        // Such a page is read at its mask's own size, which is kept, when that is a size a page
        // is read at: square pixels, 150 to 400 DPI, no larger than a page is ever drawn.
        if (mask && std::abs(across - down) <= 0.01 * across && across >= lowestScanDpi - 0.5 &&
            across <= highestScanDpi + 0.5) {
            const auto largest = PageRasterizer::rasterSize(mask->width, mask->height, 72);
            if (largest.width == mask->width && largest.height == mask->height) {
                plan.scanDpi = static_cast<int>(std::lround(across));
                plan.scanSize = {mask->width, mask->height};
                plan.mask = mask->object;
            }
        }
        plans.push_back(plan);
    }
    return plans;
}

// What one worker thread keeps between pages: its own readers of the input, since neither a qpdf
// nor a MuPDF document may be used by two threads at once.
struct WorkerState {
    std::optional<PDFDocument> document;
    std::optional<PDFRenderer::Document> renderer;
    bool rendererFailed = false;
};

// A page that is one JPEG over the whole page: scaled from the JPEG itself, far faster than a
// render and the same picture (the image is in the page's unrotated space already). Absent when
// the page is anything else or the JPEG cannot be read.
std::optional<RasterizedPage> fromFullPageJPEG(const fs::path& input, const std::string& password,
                                               const PagePlan& plan, const RasterSetting& setting,
                                               WorkerState& state) {
    const auto format = plan.monochrome ? PixelFormat::gray : PixelFormat::rgb;
    try {
        if (!state.document) {
            state.document = PDFDocumentEngine::openCG(input, password);
        }
        const auto jpeg = FullPageImage::jpeg(state.document->page(plan.index));
        if (!jpeg) {
            return std::nullopt;
        }
        const std::span bytes(reinterpret_cast<const std::uint8_t*>(jpeg->data()), jpeg->size());
        if (PageRasterizer::encodesAsJPEG(setting.quality, plan.monochrome)) {
            auto data = JPEGScaler::reencoded(bytes, plan.size.width, plan.size.height, format,
                                              setting.quality);
            if (!data) {
                return std::nullopt;
            }
            return RasterizedPage{std::move(*data), true,   plan.size.width,
                                  plan.size.height, format, {}};
        }
        auto bitmap = JPEGScaler::decodeScaled(bytes, plan.size.width, plan.size.height, format);
        return bitmap ? PageRasterizer::encode(std::move(*bitmap), setting.quality, plan.monochrome)
                      : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// The page drawn at `size` (of its unrotated space) without its annotations (they stay as
// objects on top of the image), turned back so that the page's /Rotate still applies. Absent
// when it cannot be rendered.
// The worker's own reading of the file for MuPDF, opened once; false when it cannot be.
bool openRenderer(const fs::path& input, const std::string& password, const PDFRenderer& renderer,
                  WorkerState& state) {
    if (!state.renderer && !state.rendererFailed) {
        state.rendererFailed = true;
        state.renderer = renderer.open(input, password);
        state.rendererFailed = false;
    }
    return state.renderer.has_value();
}

std::optional<Bitmap> drawnPage(const fs::path& input, const std::string& password,
                                const PDFRenderer& renderer, const PagePlan& plan,
                                PageRasterizer::Size size, WorkerState& state) {
    try {
        if (!openRenderer(input, password, renderer, state)) {
            return std::nullopt;
        }
        const bool swap = plan.rotation % 180 != 0;
        PDFRenderer::RenderOptions options;
        options.size = PDFRenderer::PixelSize{swap ? size.height : size.width,
                                              swap ? size.width : size.height};
        options.format = plan.monochrome ? PixelFormat::gray : PixelFormat::rgb;
        options.annotations = false;
        return PageRasterizer::unrotated(state.renderer->render(plan.index, options),
                                         plan.rotation);
    } catch (const RenderError&) {
        return std::nullopt; // the page stays vector content
    }
}

// Any other page, drawn at the setting's resolution.
std::optional<RasterizedPage> fromRender(const fs::path& input, const std::string& password,
                                         const PDFRenderer& renderer, const PagePlan& plan,
                                         const RasterSetting& setting, WorkerState& state) {
    auto bitmap = drawnPage(input, password, renderer, plan, plan.size, state);
    return bitmap ? PageRasterizer::encode(std::move(*bitmap), setting.quality, plan.monochrome)
                  : std::nullopt;
}

// The page as scanned, in its unrotated space: a full-page JPEG decoded at the scan's size, any
// other page drawn at the scan's resolution. Absent when neither works.
std::optional<Bitmap> scanPicture(const fs::path& input, const std::string& password,
                                  const PDFRenderer& renderer, const PagePlan& plan,
                                  WorkerState& state) {
    try {
        if (!state.document) {
            state.document = PDFDocumentEngine::openCG(input, password);
        }
        if (const auto jpeg = FullPageImage::jpeg(state.document->page(plan.index))) {
            const std::span bytes(reinterpret_cast<const std::uint8_t*>(jpeg->data()),
                                  jpeg->size());
            if (auto bitmap = JPEGScaler::decodeScaled(
                    bytes, plan.scanSize.width, plan.scanSize.height,
                    plan.monochrome ? PixelFormat::gray : PixelFormat::rgb)) {
                return bitmap;
            }
        }
    } catch (const std::exception&) {
        // Drawn instead.
    }
    return drawnPage(input, password, renderer, plan, plan.scanSize, state);
}

// A bilevel page: one JBIG2 image of its ink at the scan's resolution.
RasterizedPage bilevelPage(const BilevelImage& ink, int dpi) {
    RasterizedPage page;
    page.mask = JBIG2Encoder::encode(ink, dpi);
    page.maskWidth = ink.width();
    page.maskHeight = ink.height();
    return page;
}

// A page read at the scan's resolution: a bilevel page becomes one JBIG2 image at that
// resolution; with `setting.mixed`, a text page becomes a mask over a background when that is
// smaller than its JPEG; everything else the JPEG (or gray PNG) at the setting's resolution.
std::optional<RasterizedPage> fromScan(const Bitmap& scan, const PagePlan& plan,
                                       const RasterSetting& setting, const BilevelImage* ink) {
    const ScanReading reading = MixedRaster::read(scan, plan.scanDpi, ink);
    if (reading.kind == ScanReading::Kind::bilevel) {
        return bilevelPage(reading.ink, plan.scanDpi);
    }
    const auto picture = [&] {
        return PageRasterizer::encode(
            AreaResampler::resample(scan.data(), scan.width(), scan.height(), scan.format(),
                                    plan.size.width, plan.size.height),
            setting.quality, plan.monochrome);
    };
    if (!setting.mixed || reading.kind != ScanReading::Kind::text) {
        return picture();
    }
    // Paper alone needs little resolution. Photos keep 150 DPI: a page mostly of photos in one
    // background at quality 0.7, the text's bytes saved paying for them; smaller photos and
    // figures in pictures of their own at the setting's quality.
    const int photoResolution = std::max(setting.dpi, photoDpi);
    const MixedRaster::Settings settings{
        {std::max(1, static_cast<int>(std::lround(setting.dpi / backgroundDivisor))),
         setting.quality},
        {photoResolution, std::max(setting.quality, photoQuality)},
        {photoResolution, setting.quality}};
    auto layers = MixedRaster::split(scan, reading, plan.scanDpi, settings);
    if (!layers) {
        return picture();
    }
    // Split pages of text are a fraction of their JPEG; only a split that is not (a page of
    // halftone dots or noise taken for ink) is weighed against the JPEG. A page with photos
    // keeps them better than the setting's JPEG would, and is not weighed.
    const double jpegFloor = clearlySmaller * plan.size.width * plan.size.height;
    if (layers->bytes() > jpegFloor && !reading.hasPhotos) {
        if (auto jpeg = picture(); jpeg && jpeg->bytes() <= layers->bytes()) {
            return jpeg;
        }
    }
    return layers;
}

// A page that is one 1-bit image over the whole page: its bits, coded again as JBIG2 without
// being drawn. Absent for every other page and when the image cannot be read.
std::optional<RasterizedPage> fromBilevelImage(const fs::path& input, const std::string& password,
                                               const PDFRenderer& renderer, const PagePlan& plan,
                                               WorkerState& state) {
    try {
        if (!state.document) {
            state.document = PDFDocumentEngine::openCG(input, password);
        }
        const auto page = state.document->page(plan.index);
        const auto image = FullPageImage::bilevel(page);
        if (!image || !openRenderer(input, password, renderer, state)) {
            return std::nullopt;
        }
        // The bits as they are, at the image's own size: no resolution ceiling applies to a
        // lossless copy.
        if (auto ink = state.renderer->bilevelImage(image->object, image->width, image->height)) {
            const double width = page.mediaBox().width;
            const int dpi = width > 0 ? static_cast<int>(std::clamp(
                                            std::lround(image->width * 72.0 / width), 1L, 100'000L))
                                      : plan.scanDpi;
            return bilevelPage(*ink, dpi);
        }
    } catch (const std::exception&) {
        // Drawn instead.
    }
    return std::nullopt;
}

// The mask of a page that is mixed raster content already, at the scan's size: kept as it is,
// so compressing such a page again does not thicken its letters. Absent for every other page.
std::optional<BilevelImage> existingMask(const fs::path& input, const std::string& password,
                                         const PDFRenderer& renderer, const PagePlan& plan,
                                         WorkerState& state) {
    try {
        if (!plan.mask || !openRenderer(input, password, renderer, state)) {
            return std::nullopt;
        }
        return state.renderer->bilevelImage(*plan.mask, plan.scanSize.width, plan.scanSize.height,
                                            true);
    } catch (const std::exception&) {
        return std::nullopt; // thresholded from the render instead
    }
}

std::optional<RasterizedPage> rasterize(const fs::path& input, const std::string& password,
                                        const PDFRenderer& renderer, const PagePlan& plan,
                                        const RasterSetting& setting, WorkerState& state) {
    if (plan.monochrome) {
        if (auto page = fromBilevelImage(input, password, renderer, plan, state)) {
            return page;
        }
    }
    // Gray pages may be bilevel and text pages may split: both are read at the scan's size.
    if (setting.mixed || plan.monochrome) {
        try {
            if (auto scan = scanPicture(input, password, renderer, plan, state)) {
                const auto mask = setting.mixed
                                      ? existingMask(input, password, renderer, plan, state)
                                      : std::nullopt;
                return fromScan(*scan, plan, setting, mask ? &*mask : nullptr);
            }
        } catch (const std::exception&) {
            // Too large to hold, or a codec failed: the page is drawn at the setting's size.
        }
    }
    if (auto page = fromFullPageJPEG(input, password, plan, setting, state)) {
        return page;
    }
    return fromRender(input, password, renderer, plan, setting, state);
}

// Rasterizes the planned pages on all cores and hands each result to `apply` in page order on
// the calling thread.
void rasterizeInOrder(
    const fs::path& input, const PDFDocument& document, const std::vector<PagePlan>& plans,
    const RasterSetting& setting,
    const std::function<void(const PagePlan&, std::optional<RasterizedPage>)>& apply) {
    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t window = 2 * threads;
    PDFRenderer renderer;
    std::vector<WorkerState> workers(threads);
    std::vector<std::optional<RasterizedPage>> slots(window);
    runInOrder(
        plans.size(), threads, window,
        [&](unsigned worker, std::size_t i) {
            slots[i % window] =
                rasterize(input, document.password(), renderer, plans[i], setting, workers[worker]);
        },
        [&](std::size_t i) { apply(plans[i], std::move(slots[i % window])); });
}

} // namespace

RewriteDetail DocumentRewriter::rewrite(const fs::path& input, const fs::path& output,
                                        const PDFAnalysis& analysis,
                                        std::optional<RasterSetting> raster,
                                        std::optional<ImageSetting> images,
                                        const Progress& progress, const Cancelled& cancelled,
                                        const std::optional<FontCompactor::GlyphUsage>* glyphs) {
    // The glyph run reads the file with MuPDF before qpdf reads it here, so the two readings
    // never hold memory at once. It takes the first 40% of the bar, the pages the rest.
    const double glyphShare = glyphs ? 0.0 : 0.4;
    std::optional<FontCompactor::GlyphUsage> learnt;
    if (!glyphs) {
        learnt = DocumentCompactor::glyphUsage(input, "", cancelled, [&](double fraction) {
            if (progress) {
                progress(glyphShare * fraction);
            }
        });
    }
    PDFDocument document = PDFDocumentEngine::openCG(input);
    const int count = document.pageCount();
    if (count < 1) {
        throw PDFCoreError::emptyDocument();
    }
    const auto checkCancelled = [&] {
        if (cancelled && cancelled()) {
            throw CancellationError();
        }
    };
    const auto report = [&](int pagesDone) {
        if (progress && count > 0) {
            progress(glyphShare + (1.0 - glyphShare) * static_cast<double>(pagesDone) / count);
        }
    };
    RewriteDetail detail;
    const auto plans =
        raster ? planRasters(document, analysis, raster->dpi) : std::vector<PagePlan>{};
    int done = 0;
    DocumentCompactor::Source source{
        input, document.password(), raster || images ? &analysis : nullptr, {}};
    TextLayer text(document.qpdf());
    if (!plans.empty()) {
        rasterizeInOrder(input, document, plans, *raster,
                         [&](const PagePlan& plan, std::optional<RasterizedPage> encoded) {
                             for (; done < plan.index; ++done) {
                                 checkCancelled();
                                 report(done + 1);
                             }
                             checkCancelled();
                             if (encoded) {
                                 auto page = document.page(plan.index);
                                 for (const auto& image :
                                      replaceContent(document.qpdf(), page.object(),
                                                     page.mediaBox(), *encoded, text)) {
                                     source.freshImages.insert(image.getObjGen());
                                 }
                                 ++detail.rasterizedPages;
                                 source.rasterizedPages.insert(plan.index);
                                 detail.rasterBytes +=
                                     static_cast<std::int64_t>(encoded->bytes());
                             }
                             report(++done);
                         });
    }
    for (; done < count; ++done) {
        checkCancelled();
        report(done + 1);
    }
    source.glyphs = glyphs ? *glyphs : std::move(learnt);
    DocumentCompactor::compact(document.qpdf(), source, images, cancelled);
    writeRebuilt(document.qpdf(), output);
    std::error_code error;
    detail.bytes = static_cast<std::int64_t>(fs::file_size(output, error));
    return detail;
}

} // namespace quillet
