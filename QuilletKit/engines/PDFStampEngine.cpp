#include "engines/PDFStampEngine.hpp"

#include "engines/ContentOperand.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFSplitEngine.hpp"
#include "engines/ImagePlacement.hpp"
#include "engines/PageImage.hpp"
#include "engines/ContentNesting.hpp"
#include "engines/StampFonts.hpp"
#include "engines/StampPlacement.hpp"
#include "engines/ValidatedWrite.hpp"
#include "platform/ImageIO.hpp"
#include "platform/PNGPredictor.hpp"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>
#include <limits>
#include <map>
#include <set>

namespace quillet {
namespace fs = std::filesystem;
namespace {

using Mark = OperationParameters::StampMark;
using Stamp = OperationParameters::Stamp;

constexpr std::array<std::string_view, 4> kinds{"pageNumber", "bates", "text", "picture"};

struct Colour {
    double red = 0, green = 0, blue = 0;
};

std::optional<Colour> parseColour(std::string_view text) {
    if (text.size() != 7 || text[0] != '#') {
        return std::nullopt;
    }
    unsigned value = 0;
    for (char c : text.substr(1)) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (digit < 0) {
            return std::nullopt;
        }
        value = value << 4 | static_cast<unsigned>(digit);
    }
    return Colour{(value >> 16) / 255.0, (value >> 8 & 0xFF) / 255.0, (value & 0xFF) / 255.0};
}


std::string replaced(std::string text, std::string_view token, std::string_view value) {
    for (auto at = text.find(token); at != std::string::npos; at = text.find(token, at + value.size())) {
        text.replace(at, token.size(), value);
    }
    return text;
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[16];
    return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d", &local));
}

std::string batesNumber(const Mark& mark, std::int64_t value) {
    return mark.prefix + fmt::format("{:0{}}", value, static_cast<int>(mark.digits)) + mark.suffix;
}

bool startsLikeJPEG(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    char start[3] = {};
    return in.read(start, 3) && start[0] == '\xFF' && start[1] == '\xD8' && start[2] == '\xFF';
}

} // namespace

/// A picture ready to embed: a JPEG's own bytes (turned upright as its EXIF orientation asks
/// when drawn), or pixels with their transparency, shrunk to about 300 pixels per inch of the
/// width they are drawn at.
class StampPicture {
  public:
    static std::optional<StampPicture> load(const fs::path& path, double widthPoints) {
        if (startsLikeJPEG(path)) {
            if (auto image = PageImage::load(path); image && image->keepsJPEGBytes()) {
                return StampPicture(std::move(*image), std::nullopt);
            }
        }
        const int enough = static_cast<int>(std::clamp(widthPoints / 72 * 300, 16.0, 20000.0));
        auto decoded = ImageIO::decodeKeepingAlpha(path, enough);
        if (!decoded) {
            return std::nullopt;
        }
        return StampPicture(PageImage::fromBitmap(std::move(decoded->colour)), std::move(decoded->alpha));
    }

    /// Height over width as the picture is seen.
    double aspect() const {
        return static_cast<double>(image_.uprightHeight()) / image_.uprightWidth();
    }
    /// The `cm` operands that draw the stored picture upright in a `width` x `height` box.
    std::string placement(double width, double height) const {
        const auto m = orientedImageMatrix(PDFRect{0, 0, width, height}, image_.orientation());
        return fmt::format("{} {} {} {} {} {}", contentOperand(m[0]), contentOperand(m[1]), contentOperand(m[2]),
                           contentOperand(m[3]), contentOperand(m[4]), contentOperand(m[5]));
    }

    QPDFObjectHandle embed(QPDF& qpdf) const {
        auto object = image_.embed(qpdf);
        if (alpha_) {
            auto mask = qpdf.newStream();
            mask.replaceDict(QPDFObjectHandle::parse(fmt::format(
                "<< /Type /XObject /Subtype /Image /Width {} /Height {} /ColorSpace /DeviceGray "
                "/BitsPerComponent 8 >>",
                alpha_->width(), alpha_->height())));
            const std::string_view samples(reinterpret_cast<const char*>(alpha_->data()),
                                           static_cast<std::size_t>(alpha_->width()) * alpha_->height());
            mask.replaceStreamData(
                PNGPredictor::predictedAndDeflated(samples, static_cast<std::size_t>(alpha_->width()), 1),
                QPDFObjectHandle::newName("/FlateDecode"),
                QPDFObjectHandle::parse(fmt::format(
                    "<< /Predictor 12 /Colors 1 /BitsPerComponent 8 /Columns {} >>", alpha_->width())));
            object.getDict().replaceKey("/SMask", mask);
        }
        return object;
    }

  private:
    StampPicture(PageImage image, std::optional<Bitmap> alpha)
        : image_(std::move(image)), alpha_(std::move(alpha)) {}

    PageImage image_;
    std::optional<Bitmap> alpha_;
};

/// The pictures of a job's marks, by mark index: read once for all its files.
struct StampPictures {
    std::map<std::size_t, StampPicture> byMark;
};

namespace {

[[noreturn]] void refuse(std::size_t index, const std::string& text) {
    throw PDFCoreError::invalidInput(fmt::format("Mark {}: {}", index + 1, text));
}

/// The zero-based pages a mark goes on, in page order.
std::vector<int> markedPages(const Mark& mark, int pageCount) {
    std::set<int> pages;
    if (mark.pages.find_first_not_of(" \t,;") == std::string::npos) {
        for (int page = 0; page < pageCount; ++page) {
            pages.insert(page);
        }
    } else {
        // Read against no end, so a page beyond this file's last is left out, not clamped to it.
        for (const auto& range : PDFSplitEngine::parseRanges(mark.pages, std::numeric_limits<int>::max())) {
            for (int page = range.lower; page <= range.upper && page <= pageCount; ++page) {
                pages.insert(page - 1);
            }
        }
    }
    std::vector<int> ordered(pages.begin(), pages.end());
    if (mark.skipFirst && !ordered.empty()) {
        ordered.erase(ordered.begin());
    }
    return ordered;
}

/// One mark on one page: what it shows.
struct Placed {
    std::size_t mark = 0;
    std::string text; // empty for a picture
};

/// The visible page: the crop box within the media box, and the rotation.
VisiblePage visiblePage(QPDFObjectHandle page) {
    QPDFPageObjectHelper helper(page);
    const auto rectangle = [](QPDFObjectHandle box) {
        auto r = box.isArray() ? box.getArrayAsRectangle() : QPDFObjectHandle::Rectangle();
        return QPDFObjectHandle::Rectangle(std::min(r.llx, r.urx), std::min(r.lly, r.ury),
                                           std::max(r.llx, r.urx), std::max(r.lly, r.ury));
    };
    const auto media = rectangle(helper.getMediaBox());
    auto crop = rectangle(helper.getCropBox());
    crop.llx = std::max(crop.llx, media.llx);
    crop.lly = std::max(crop.lly, media.lly);
    crop.urx = std::min(crop.urx, media.urx);
    crop.ury = std::min(crop.ury, media.ury);
    if (crop.urx <= crop.llx || crop.ury <= crop.lly) {
        crop = media;
    }
    int rotation = 0;
    if (auto rotate = helper.getAttribute("/Rotate", false); rotate.isInteger()) {
        rotation = static_cast<int>(((rotate.getIntValue() % 360) + 360) % 360);
        if (rotation % 90 != 0) {
            rotation = 0;
        }
    }
    return {crop.llx, crop.lly, crop.urx - crop.llx, crop.ury - crop.lly, rotation};
}

/// Stamps the pages of `document` (all of them, or `onlyPage`) in memory.
class Stamper {
  public:
    Stamper(PDFDocument& document, const Stamp& stamp, StampContext& context, std::string fileName)
        : document_(document), stamp_(stamp), context_(context), fileName_(std::move(fileName)) {}

    StampOutcome run(std::optional<int> onlyPage, const PDFStampEngine::Progress& progress,
                     const PDFStampEngine::Cancelled& cancelled) {
        QPDF& qpdf = document_.qpdf();
        QPDFPageDocumentHelper(qpdf).pushInheritedAttributesToPage();
        const int pageCount = document_.pageCount();
        if (context_.nextBates.size() < stamp_.marks.size()) {
            for (std::size_t i = context_.nextBates.size(); i < stamp_.marks.size(); ++i) {
                context_.nextBates.push_back(stamp_.marks[i].start);
            }
        }
        if (context_.date.empty()) {
            context_.date = today();
        }

        // What each page shows, mark by mark; texts are shaped once each.
        StampOutcome outcome;
        std::map<int, std::vector<Placed>> placed;
        for (std::size_t m = 0; m < stamp_.marks.size(); ++m) {
            const Mark& mark = stamp_.marks[m];
            const auto pages = markedPages(mark, pageCount);
            const std::int64_t first = mark.kind == "bates" ? context_.nextBates[m] : mark.start;
            const std::int64_t last = first + static_cast<std::int64_t>(pages.size()) - 1;
            for (std::size_t k = 0; k < pages.size(); ++k) {
                if (onlyPage && pages[k] != *onlyPage) {
                    continue;
                }
                placed[pages[k]].push_back({m, content(mark, first + static_cast<std::int64_t>(k), last)});
            }
            if (mark.kind == "bates" && !pages.empty()) {
                if (!outcome.bates) {
                    outcome.bates.emplace(batesNumber(mark, first), batesNumber(mark, last));
                }
                context_.nextBates[m] = last + 1;
            }
        }
        for (auto& [page, marks] : placed) {
            for (const auto& mark : marks) {
                if (stamp_.marks[mark.mark].kind != "picture" && !shaped_.contains(mark.text)) {
                    try {
                        shaped_.emplace(mark.text, fonts_.shape(mark.text));
                    } catch (const PDFCoreError& error) {
                        refuse(mark.mark, error.text());
                    }
                }
            }
        }
        fonts_.embed(qpdf);

        std::size_t done = 0;
        for (const auto& [index, marks] : placed) {
            if (cancelled && cancelled()) {
                throw CancellationError();
            }
            stampPage(qpdf, document_.page(index).object(), marks);
            ++outcome.pagesStamped;
            if (progress) {
                progress(0.5 * static_cast<double>(++done) / static_cast<double>(placed.size()));
            }
        }
        return outcome;
    }

  private:
    std::string content(const Mark& mark, std::int64_t n, std::int64_t total) const {
        if (mark.kind == "bates") {
            return batesNumber(mark, n);
        }
        if (mark.kind == "picture") {
            return {};
        }
        std::string text = mark.kind == "pageNumber" ? mark.format : mark.text;
        text = replaced(std::move(text), "{n}", std::to_string(n));
        text = replaced(std::move(text), "{total}", std::to_string(total));
        text = replaced(std::move(text), "{date}", context_.date);
        return replaced(std::move(text), "{name}", fileName_);
    }

    /// The mark's XObject and its own box; the same mark with the same text is made once.
    std::pair<QPDFObjectHandle, StampBox> form(QPDF& qpdf, const Placed& placed) {
        const auto key = std::make_pair(placed.mark, placed.text);
        if (auto found = forms_.find(key); found != forms_.end()) {
            return found->second;
        }
        const Mark& mark = stamp_.marks[placed.mark];
        const auto colour = parseColour(mark.color).value_or(Colour{});
        auto resources = QPDFObjectHandle::newDictionary();
        std::string ops = "q\n";
        if (mark.opacity < 1) {
            resources.replaceKey("/ExtGState", QPDFObjectHandle::parse(fmt::format(
                                                   "<< /G0 << /Type /ExtGState /ca {0} /CA {0} >> >>",
                                                   contentOperand(mark.opacity))));
            ops += "/G0 gs\n";
        }
        StampBox box;
        StampBox drawn; // what the form may draw: the box, and any ink beyond it
        if (mark.kind == "picture") {
            const StampPicture& picture = context_.pictures->byMark.at(placed.mark);
            if (!pictureObjects_.contains(placed.mark)) {
                pictureObjects_.emplace(placed.mark, picture.embed(qpdf));
            }
            box = {0, 0, mark.width, mark.width * picture.aspect()};
            resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary(
                                                 {{"/I0", pictureObjects_.at(placed.mark)}}));
            ops += picture.placement(box.width, box.height) + " cm /I0 Do\n";
            drawn = box;
        } else {
            const ShapedText& text = shaped_.at(placed.text);
            const double scale = mark.fontSize / 1000;
            box = {0, text.descent * scale, text.width * scale, (text.ascent - text.descent) * scale};
            const double left = std::min(0.0, text.inkLeft) * scale;
            const double bottom = std::min(text.descent, text.inkBottom) * scale;
            drawn = {left, bottom, std::max(text.width, text.inkRight) * scale - left,
                     std::max(text.ascent, text.inkTop) * scale - bottom};
            auto fonts = QPDFObjectHandle::newDictionary();
            for (const auto& [name, font] : fonts_.resources(text)) {
                fonts.replaceKey(name, font);
            }
            resources.replaceKey("/Font", fonts);
            // The text state is the form's own, whatever the page left behind.
            ops += fmt::format("{} {} {} rg\nBT\n0 Tc 0 Tw 100 Tz 0 Ts 0 Tr\n{}ET\n",
                               contentOperand(colour.red), contentOperand(colour.green),
                               contentOperand(colour.blue), fonts_.show(text, mark.fontSize));
        }
        ops += "Q\n";
        auto stream = QPDFObjectHandle::newStream(&qpdf, ops);
        auto dict = stream.getDict();
        dict.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
        dict.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
        dict.replaceKey("/BBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(
                                     drawn.x, drawn.y, drawn.x + drawn.width, drawn.y + drawn.height)));
        dict.replaceKey("/Resources", resources);
        return forms_.emplace(key, std::make_pair(stream, box)).first->second;
    }

    void stampPage(QPDF& qpdf, QPDFObjectHandle page, const std::vector<Placed>& marks) {
        // The page's own resources, copied so that pages sharing them do not share our names.
        auto resources = page.getKey("/Resources");
        resources = resources.isDictionary() ? resources.shallowCopy() : QPDFObjectHandle::newDictionary();
        auto xobjects = resources.getKey("/XObject");
        xobjects = xobjects.isDictionary() ? xobjects.shallowCopy() : QPDFObjectHandle::newDictionary();
        const VisiblePage visible = visiblePage(page);
        std::string under;
        std::string over;
        int next = 0;
        std::map<std::pair<std::string, double>, double> stacked;
        for (const auto& placed : marks) {
            const Mark& mark = stamp_.marks[placed.mark];
            auto [object, box] = form(qpdf, placed);
            std::string name;
            do {
                name = "/QStamp" + std::to_string(next++);
            } while (xobjects.hasKey(name));
            xobjects.replaceKey(name, object);
            // Marks at one place stack outwards from the edge, in the order given, rather than
            // lie over each other: a page number under a footer text.
            double& stack = stacked[{mark.position, mark.margin}];
            double height = 0;
            const auto m = stampMatrix(visible, box, *stampPosition(mark.position), mark.margin,
                                       mark.rotation, stack, &height);
            stack += height + mark.fontSize * 0.25;
            (mark.layer == "under" ? under : over) +=
                fmt::format("q {} {} {} {} {} {} cm {} Do Q\n", contentOperand(m[0]), contentOperand(m[1]),
                            contentOperand(m[2]), contentOperand(m[3]), contentOperand(m[4]), contentOperand(m[5]), name);
        }
        resources.replaceKey("/XObject", xobjects);
        page.replaceKey("/Resources", resources);
        QPDFPageObjectHelper helper(page);
        // The page's content inside q/Q, so whatever state it leaves cannot move the marks: one
        // more q for each Q it has too many, one more Q for each q it leaves open.
        const auto nesting = ContentNesting::of(contentOf(helper));
        std::string before = under;
        for (int i = 0; i <= nesting.unmatchedRestores; ++i) {
            before += "q\n";
        }
        std::string after = "\n";
        for (int i = 0; i <= nesting.openSaves; ++i) {
            after += "Q\n";
        }
        // Streams of their own: an editor that changes one page's content in place must not
        // change another's.
        helper.addPageContents(QPDFObjectHandle::newStream(&qpdf, before), true);
        helper.addPageContents(QPDFObjectHandle::newStream(&qpdf, after + over), false);
    }

    /// The page's content streams, decoded and joined; what cannot be decoded is left out.
    static std::string contentOf(QPDFPageObjectHelper& page) {
        std::string content;
        for (auto& stream : page.getPageContents()) {
            try {
                const auto data = stream.getStreamData(qpdf_dl_generalized);
                content.append(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
                content += '\n';
            } catch (const std::exception&) {
            }
        }
        return content;
    }

  private:
    PDFDocument& document_;
    const Stamp& stamp_;
    StampContext& context_;
    std::string fileName_;
    StampFonts fonts_;
    std::map<std::string, ShapedText> shaped_;
    std::map<std::pair<std::size_t, std::string>, std::pair<QPDFObjectHandle, StampBox>> forms_;
    std::map<std::size_t, QPDFObjectHandle> pictureObjects_;
};

/// The pictures of the marks, read once per job; a picture that cannot be read refuses.
void loadPictures(const Stamp& stamp, StampContext& context) {
    if (!context.pictures) {
        context.pictures = std::make_shared<StampPictures>();
    }
    for (std::size_t m = 0; m < stamp.marks.size(); ++m) {
        const Mark& mark = stamp.marks[m];
        if (mark.kind == "picture" && !context.pictures->byMark.contains(m)) {
            auto picture = StampPicture::load(mark.image, mark.width);
            if (!picture) {
                refuse(m, fmt::format("the picture {} cannot be read.",
                                      fs::path(mark.image).filename().string()));
            }
            context.pictures->byMark.emplace(m, std::move(*picture));
        }
    }
}

StampOutcome stampInMemory(PDFDocument& document, const Stamp& stamp, StampContext& context,
                           const fs::path& input, std::optional<int> onlyPage,
                           const PDFStampEngine::Progress& progress,
                           const PDFStampEngine::Cancelled& cancelled) {
    loadPictures(stamp, context);
    Stamper stamper(document, stamp, context, input.filename().string());
    try {
        return stamper.run(onlyPage, progress, cancelled);
    } catch (const PDFCoreError&) {
        throw;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception& error) {
        throw PDFCoreError::cannotOpen(input, error.what());
    }
}

/// The input, unlocked; a locked one is named.
PDFDocument openForStamping(const fs::path& input) {
    try {
        return PDFDocumentEngine::openUnlock(input, "");
    } catch (const PDFCoreError& error) {
        if (error.errorCase() == PDFCoreError::Case::wrongPassword) {
            throw PDFCoreError::cannotOpen(input, "it is locked with a password; remove the password first");
        }
        throw;
    }
}

} // namespace

/// The first control character of `text` (a mark is one line of printable text), or absent.
static std::optional<char32_t> controlCharacter(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) {
            return byte;
        }
        // U+0080...U+009F: C2 80...C2 9F in UTF-8.
        if (byte == 0xC2 && i + 1 < text.size()) {
            const auto next = static_cast<unsigned char>(text[i + 1]);
            if (next >= 0x80 && next <= 0x9F) {
                return next;
            }
        }
    }
    return std::nullopt;
}

void PDFStampEngine::validate(const Stamp& stamp, bool readPictures) {
    if (stamp.marks.empty()) {
        throw PDFCoreError::invalidInput("Nothing to stamp: add a page number, a Bates number, a text or a picture.");
    }
    for (std::size_t m = 0; m < stamp.marks.size(); ++m) {
        const Mark& mark = stamp.marks[m];
        if (std::find(kinds.begin(), kinds.end(), mark.kind) == kinds.end()) {
            refuse(m, fmt::format("unknown kind \"{}\" (pageNumber, bates, text or picture).", mark.kind));
        }
        const auto blank = [](const std::string& text) {
            return text.find_first_not_of(" \t\r\n") == std::string::npos;
        };
        if (mark.kind == "pageNumber" && blank(mark.format)) {
            refuse(m, "the page number format is empty.");
        }
        if (mark.kind == "text" && blank(mark.text)) {
            refuse(m, "the text is empty.");
        }
        if (mark.kind == "bates" && (mark.digits < 1 || mark.digits > 18)) {
            refuse(m, fmt::format("{} digits: a Bates number has 1 to 18.", mark.digits));
        }
        if (mark.start < 0 || mark.start > 999'999'999'999'999'999) {
            refuse(m, fmt::format("the first number {} is out of range.", mark.start));
        }
        if (mark.kind == "picture" && mark.image.empty()) {
            refuse(m, "no picture file is given.");
        }
        if (mark.kind == "picture" && !(mark.width > 0 && mark.width <= 14400)) {
            refuse(m, fmt::format("the width {} is not between 0 and 14400 points.", contentOperand(mark.width)));
        }
        if (!stampPosition(mark.position)) {
            refuse(m, fmt::format("unknown position \"{}\" (top-left, top-center, top-right, center, "
                                  "bottom-left, bottom-center or bottom-right).",
                                  mark.position));
        }
        if (mark.layer != "over" && mark.layer != "under") {
            refuse(m, fmt::format("unknown layer \"{}\" (over or under).", mark.layer));
        }
        if (!parseColour(mark.color)) {
            refuse(m, fmt::format("the colour \"{}\" is not #RRGGBB.", mark.color));
        }
        if (!(mark.opacity >= 0 && mark.opacity <= 1)) {
            refuse(m, fmt::format("the opacity {} is not between 0 and 1.", contentOperand(mark.opacity)));
        }
        if (mark.kind != "picture" && !(mark.fontSize > 0 && mark.fontSize <= 1000)) {
            refuse(m, fmt::format("the font size {} is not between 0 and 1000.", contentOperand(mark.fontSize)));
        }
        if (!(mark.margin >= 0 && mark.margin <= 14400)) {
            refuse(m, fmt::format("the margin {} is out of range.", contentOperand(mark.margin)));
        }
        if (!std::isfinite(mark.rotation)) {
            refuse(m, "the rotation is not a number.");
        }
        if (mark.pages.find_first_not_of(" \t,;") != std::string::npos &&
            PDFSplitEngine::parseRanges(mark.pages, 1).empty()) {
            refuse(m, fmt::format("the pages \"{}\" name no page.", mark.pages));
        }
        for (const std::string* text : {&mark.format, &mark.text, &mark.prefix, &mark.suffix}) {
            if (const auto control = controlCharacter(*text)) {
                refuse(m, fmt::format("the text holds the control character U+{:04X}; a mark is one "
                                      "line of printable text.",
                                      static_cast<unsigned>(*control)));
            }
        }
        if (mark.kind == "picture" && readPictures) {
            // The header alone: the pixels are read once, when the job stamps.
            const auto name = fs::path(mark.image).filename().string();
            const auto size = ImageIO::probe(mark.image);
            if (!size) {
                refuse(m, fmt::format("the picture {} cannot be read.", name));
            }
            const double megapixels = static_cast<double>(size->first) * size->second / 1e6;
            if (megapixels > static_cast<double>(ImageIO::maxDecodePixels) / 1e6) {
                refuse(m, fmt::format("the picture {} is too large ({:.0f} megapixels).", name, megapixels));
            }
        }
    }
}

StampOutcome PDFStampEngine::stamp(const fs::path& input, const fs::path& output,
                                   const Stamp& stamp, StampContext& context,
                                   const Progress& progress, const Cancelled& cancelled) {
    validate(stamp);
    PDFDocument document = openForStamping(input);
    const int pageCount = document.pageCount();
    if (pageCount == 0) {
        throw PDFCoreError::emptyDocument();
    }
    auto outcome = stampInMemory(document, stamp, context, input, std::nullopt, progress, cancelled);
    if (cancelled && cancelled()) {
        throw CancellationError();
    }
    writeValidated(document, output, pageCount);
    if (progress) {
        progress(1);
    }
    return outcome;
}

void PDFStampEngine::preview(const fs::path& input, int pageIndex, const Stamp& stamp,
                             const fs::path& output) {
    PDFDocument document = openForStamping(input);
    if (pageIndex < 0 || pageIndex >= document.pageCount()) {
        throw PDFCoreError::invalidInput(fmt::format("{} has no page {}.", input.filename().string(), pageIndex + 1));
    }
    StampContext context;
    stampInMemory(document, stamp, context, input, pageIndex, {}, {});
    PDFDocument single = PDFDocument::empty();
    single.insertPageCopy(document, pageIndex, 0);
    try {
        single.write(output);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(output.filename().string());
    }
}

} // namespace quillet
