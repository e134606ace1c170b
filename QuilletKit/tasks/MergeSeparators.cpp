#include "tasks/MergeSeparators.hpp"

#include "engines/ImagePlacement.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PageImage.hpp"
#include "platform/FileTypes.hpp"
#include "platform/PDFDocument.hpp"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <array>
#include <compare>
#include <map>
#include <optional>

namespace quillet {
namespace fs = std::filesystem;
namespace {

/// llx lly urx ury, as a PDF writes a rectangle.
using Box = std::array<double, 4>;

struct BlankPage {
    Box mediaBox;
    std::optional<Box> cropBox;
    int rotation = 0;

    auto operator<=>(const BlankPage&) const = default;
};

// What viewers assume for a page whose media box cannot be read.
constexpr Box letter{0, 0, 612, 792};

Box corners(const PDFRect& r) {
    return {r.x, r.y, r.x + r.width, r.y + r.height};
}

BlankPage shapedLike(const PDFPage& page) {
    BlankPage blank{letter, std::nullopt, 0};
    try {
        if (const auto media = page.mediaBox(); media.width > 0 && media.height > 0) {
            blank.mediaBox = corners(media);
        }
        blank.rotation = page.rotation();
        // Inherited from the page tree like the media box.
        auto crop = QPDFPageObjectHelper(page.object()).getAttribute("/CropBox", false);
        if (crop.isRectangle()) {
            const auto r = crop.getArrayAsRectangle();
            blank.cropBox = Box{r.llx, r.lly, r.urx, r.ury};
        }
    } catch (const std::exception&) {
        // A damaged page keeps what could be read of it.
    }
    return blank;
}

/// The shape of the last page `input` gives the merge; absent when it gives none or cannot be
/// read (the merge reports that).
std::optional<BlankPage> lastPage(const fs::path& input, const ImageToPDFOptions& options) {
    if (isImage(input)) {
        const auto image = PageImage::load(input);
        if (!image) {
            return std::nullopt;
        }
        const auto placement =
            ImagePlacement::compute(image->uprightWidth(), image->uprightHeight(), options);
        return BlankPage{corners(placement.page), std::nullopt, 0};
    }
    try {
        auto document = PDFDocument::open(input);
        if ((document.isLocked() && !document.unlock("")) || document.pageCount() < 1) {
            return std::nullopt;
        }
        return shapedLike(document.page(document.pageCount() - 1));
    } catch (const PDFDocumentError&) {
        return std::nullopt;
    }
}

QPDFObjectHandle rectangle(const Box& box) {
    return QPDFObjectHandle::newFromRectangle(
        QPDFObjectHandle::Rectangle(box[0], box[1], box[2], box[3]));
}

void writeBlankPDF(const BlankPage& blank, const fs::path& path) {
    try {
        auto qpdf = QPDF::create();
        qpdf->emptyPDF();
        auto page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
        page.replaceKey("/MediaBox", rectangle(blank.mediaBox));
        if (blank.cropBox) {
            page.replaceKey("/CropBox", rectangle(*blank.cropBox));
        }
        if (blank.rotation != 0) {
            page.replaceKey("/Rotate", QPDFObjectHandle::newInteger(blank.rotation));
        }
        // No /Contents: nothing is drawn.
        page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
        QPDFPageDocumentHelper(*qpdf).addPage(QPDFPageObjectHelper(qpdf->makeIndirectObject(page)),
                                              false);
        QPDFWriter writer(*qpdf, path.c_str());
        // Object streams would make this a 1.5 file, and the merge takes the highest version of
        // its sources for its header; without them it stays 1.3 and never raises it.
        writer.setObjectStreamMode(qpdf_o_disable);
        writer.write();
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed("blank page");
    }
}

} // namespace

MergeSeparators::MergeSeparators(const std::vector<fs::path>& inputs,
                                 const ImageToPDFOptions& imageOptions,
                                 const std::function<bool()>& isCancelled) {
    std::map<BlankPage, fs::path> made;
    const auto separator = [&](const BlankPage& blank) {
        if (const auto found = made.find(blank); found != made.end()) {
            return found->second;
        }
        TemporaryFile file = [] {
            try {
                return TemporaryFile::inSystemTemporaryFolder(".pdf");
            } catch (const fs::filesystem_error&) {
                throw PDFCoreError::writeFailed("blank page");
            }
        }();
        writeBlankPDF(blank, file.path());
        files_.push_back(std::move(file));
        return made.emplace(blank, files_.back().path()).first->second;
    };
    // The last page of the latest input that gave pages.
    std::optional<BlankPage> before;
    for (const auto& input : inputs) {
        if (isCancelled && isCancelled()) {
            throw CancellationError();
        }
        const auto last = lastPage(input, imageOptions);
        if (last && before) {
            inputs_.push_back(separator(*before));
        }
        inputs_.push_back(input);
        if (last) {
            before = last;
        }
    }
}

} // namespace quillet
