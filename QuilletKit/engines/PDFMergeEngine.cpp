#include "engines/PDFMergeEngine.hpp"

#include "engines/ContentOperand.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/StreamDeduplicator.hpp"
#include "platform/FileTypes.hpp"
#include "platform/TemporaryFile.hpp"
#include "platform/UUID.hpp"

#include <fmt/format.h>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace quillet {
namespace fs = std::filesystem;
namespace {


std::string rectangle(const PDFRect& r) {
    return fmt::format("{} {} {} {} re", contentOperand(r.x), contentOperand(r.y), contentOperand(r.width),
                       contentOperand(r.height));
}

std::string imagePageContent(const ImagePlacement& placement, const PageImage& image,
                             const ImageToPDFOptions& options) {
    std::string content;
    if (placement.paintsBackground && options.backgroundColor) {
        const RGBColor& c = *options.backgroundColor;
        content += fmt::format("q {} {} {} rg {} f Q\n", contentOperand(c.red), contentOperand(c.green),
                               contentOperand(c.blue), rectangle(placement.page));
    }
    content += "q\n";
    if (placement.clip) {
        content += rectangle(*placement.clip) + " W n\n";
    }
    const auto m = orientedImageMatrix(placement.drawn, image.orientation());
    content += fmt::format("{} {} {} {} {} {} cm /Im0 Do\nQ\n", contentOperand(m[0]), contentOperand(m[1]),
                           contentOperand(m[2]), contentOperand(m[3]), contentOperand(m[4]), contentOperand(m[5]));
    return content;
}

QPDFObjectHandle imagePage(QPDF& qpdf, const PageImage& image, const ImageToPDFOptions& options) {
    const auto placement =
        ImagePlacement::compute(image.uprightWidth(), image.uprightHeight(), options);
    auto xobject = image.embed(qpdf);
    if (placement.paintsBackground) {
        // Drawn at a size of our choosing, the picture is resampled by the viewer: ask for the
        // smooth kind.
        xobject.getDict().replaceKey("/Interpolate", QPDFObjectHandle::newBool(true));
    }
    auto resources = QPDFObjectHandle::parse("<< /XObject << >> >>");
    resources.getKey("/XObject").replaceKey("/Im0", xobject);
    auto page = QPDFObjectHandle::newDictionary();
    page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    page.replaceKey("/MediaBox",
                    QPDFObjectHandle::parse("[0 0 " + contentOperand(placement.page.width) + " " +
                                            contentOperand(placement.page.height) + "]"));
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", qpdf.newStream(imagePageContent(placement, image, options)));
    return qpdf.makeIndirectObject(page);
}

// Written as a page merge of qpdf's own is: streams compressed (compressed ones copied as they
// are), no object streams. Packing objects into streams would make a text-heavy merge about a
// quarter smaller but take half as long again; `compress -t lossless` does that on request. The
// header version is the highest of the sources', so no feature of theirs is announced too late.
void writeMerged(PDFDocument& merged, const std::vector<PDFDocument>& sources,
                 const fs::path& output) {
    try {
        PDFVersion version(1, 3);
        for (const auto& source : sources) {
            version.updateIfGreater(source.qpdf().getVersionAsPDFVersion());
        }
        // Sources that share fonts or pictures (a series of letters, the same file twice) carry
        // them once.
        try {
            StreamDeduplicator::deduplicate(merged.qpdf());
        } catch (const std::exception&) {
            // A stream that cannot be read is written as it is, duplicates and all.
        }
        auto temporary = TemporaryFile::beside(output);
        // qpdf does not check the final flush of a file it opens itself, so on a full disk it
        // reported success for a cut-off file; the stream is closed and checked here instead.
        std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(temporary.path().c_str(), "wb"),
                                                   &std::fclose);
        if (!file) {
            throw std::runtime_error("cannot open the temporary file");
        }
        QPDFWriter writer(merged.qpdf(), temporary.path().c_str(), file.get(), false);
        writer.setObjectStreamMode(qpdf_o_disable);
        writer.setCompressStreams(true);
        writer.setMinimumPDFVersion(version);
        writer.write();
        const bool flushed = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
        if (std::fclose(file.release()) != 0 || !flushed) {
            throw std::runtime_error("cannot write the temporary file");
        }
        temporary.commit(output);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(output.filename().string());
    }
}

} // namespace

int PDFMergeEngine::merge(const std::vector<fs::path>& inputs, const fs::path& output,
                          const ImageToPDFOptions& imageOptions,
                          const std::function<void(double)>& progress,
                          const std::function<bool()>& isCancelled,
                          std::vector<PDFDocument>* keep) {
    if (inputs.empty()) {
        throw PDFCoreError::invalidInput("No input files.");
    }
    PDFDocument merged = PDFDocument::empty();
    // qpdf reads the streams of copied pages from their sources only while writing.
    std::vector<PDFDocument> sources;
    int pages = 0;
    for (std::size_t k = 0; k < inputs.size(); ++k) {
        if (isCancelled && isCancelled()) {
            throw CancellationError();
        }
        pages += isImage(inputs[k]) ? appendImage(merged, inputs[k], imageOptions)
                                    : appendPDF(merged, inputs[k], sources);
        if (progress) {
            progress(static_cast<double>(k + 1) / static_cast<double>(inputs.size()));
        }
    }
    if (pages < 1) {
        throw PDFCoreError::emptyDocument();
    }
    writeMerged(merged, sources, output);
    if (keep) {
        keep->push_back(std::move(merged));
        std::move(sources.begin(), sources.end(), std::back_inserter(*keep));
    }
    return pages;
}

int PDFMergeEngine::appendImage(PDFDocument& merged, const fs::path& input,
                                const ImageToPDFOptions& options) {
    const auto image = PageImage::load(input);
    if (!image) {
        throw PDFCoreError::invalidInput("Unsupported image: " + input.filename().string());
    }
    makeImagePage(merged, *image, options);
    return 1;
}

int PDFMergeEngine::appendPDF(PDFDocument& merged, const fs::path& input,
                              std::vector<PDFDocument>& sources) {
    std::optional<PDFDocument> source;
    try {
        source = PDFDocument::open(input);
    } catch (const PDFDocumentError& error) {
        if (error.kind() == PDFDocumentError::Kind::refused) {
            throw PDFCoreError::invalidInput(error.what());
        }
        throw PDFCoreError::cannotOpen(input, error.kind() == PDFDocumentError::Kind::cannotOpen
                                                  ? error.detail()
                                                  : std::string());
    }
    if (source->isLocked() && !source->unlock("")) {
        throw PDFCoreError::cannotOpen(input);
    }
    QPDF& from = source->qpdf();
    QPDF& to = merged.qpdf();
    QPDFPageDocumentHelper target(to);
    // Widgets copied without their fields would show but no longer work as a form.
    std::optional<QPDFAcroFormDocumentHelper> fromForms, toForms;
    if (from.getRoot().hasKey("/AcroForm")) {
        fromForms.emplace(from);
        toForms.emplace(to);
    }
    std::vector<QPDFObjectHandle> originals;
    try {
        originals = from.getAllPages();
    } catch (const std::exception&) {
        throw PDFCoreError::cannotOpen(input);
    }
    int appended = 0;
    for (const auto& page : originals) {
        try {
            target.addPage(QPDFPageObjectHelper(page), false);
            if (fromForms) {
                toForms->fixCopiedAnnotations(to.getAllPages().back(), page, *fromForms);
            }
            ++appended;
        } catch (const std::exception&) {
            // A page that cannot be read is left out; the rest of the document still counts.
        }
    }
    sources.push_back(std::move(*source));
    return appended;
}

PDFPage PDFMergeEngine::makeImagePage(PDFDocument& document, const PageImage& image,
                                      const ImageToPDFOptions& options) {
    QPDF& qpdf = document.qpdf();
    try {
        auto page = imagePage(qpdf, image, options);
        QPDFPageDocumentHelper(qpdf).addPage(QPDFPageObjectHelper(page), false);
        return PDFPage(page);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed("image page");
    }
}

fs::path PDFMergeEngine::renderImagePage(const PageImage& image, const ImageToPDFOptions& options) {
    PDFDocument document = PDFDocument::empty();
    makeImagePage(document, image, options);
    fs::path file;
    try {
        file = fs::temp_directory_path() / ("quillet-" + newUUIDString() + ".pdf");
        document.write(file);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed("temp consumer");
    }
    return file;
}

} // namespace quillet
