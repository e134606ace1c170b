#include "engines/FullPageImage.hpp"

#include "engines/ContentMatrix.hpp"

#include "platform/StreamData.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace quillet {
namespace {

using Matrix = ContentMatrix;

struct Placement {
    std::string name;
    Matrix ctm{};
};

// The XObjects the content draws, in order, and where; absent when the content cannot be read.
// With `strict`, also absent when it does anything but q, Q, cm and Do; otherwise whatever else
// it does (paths, colours, text) is passed over.
std::optional<std::vector<Placement>> placements(const std::string& content, bool strict) {
    Buffer buffer(reinterpret_cast<unsigned char*>(const_cast<char*>(content.data())), content.size());
    auto input = std::make_shared<BufferInputSource>("content", &buffer);
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    Matrix ctm{1, 0, 0, 1, 0, 0};
    std::vector<Matrix> saved;
    std::vector<QPDFTokenizer::Token> operands;
    std::vector<Placement> found;
    while (true) {
        const auto token = tokenizer.readToken(input, "content", true);
        const auto type = token.getType();
        if (type == QPDFTokenizer::tt_eof) {
            return found;
        }
        const bool plain = type == QPDFTokenizer::tt_integer || type == QPDFTokenizer::tt_real ||
                           type == QPDFTokenizer::tt_name;
        if (type == QPDFTokenizer::tt_bad || (strict && !plain && type != QPDFTokenizer::tt_word)) {
            return std::nullopt;
        }
        if (type != QPDFTokenizer::tt_word) {
            operands.push_back(token);
            continue;
        }
        const auto& op = token.getValue();
        if (op == "q") {
            saved.push_back(ctm);
        } else if (op == "Q" && !saved.empty()) {
            ctm = saved.back();
            saved.pop_back();
        } else if (op == "cm") {
            if (operands.size() != 6) {
                return std::nullopt;
            }
            Matrix m{};
            for (std::size_t i = 0; i < 6; ++i) {
                const auto kind = operands[i].getType();
                if (kind != QPDFTokenizer::tt_integer && kind != QPDFTokenizer::tt_real) {
                    return std::nullopt;
                }
                m[i] = std::strtod(operands[i].getValue().c_str(), nullptr);
            }
            ctm = concatenated(m, ctm);
        } else if (op == "Do" && operands.size() == 1 &&
                   operands[0].getType() == QPDFTokenizer::tt_name) {
            found.push_back(Placement{operands[0].getValue(), ctm});
        } else if (strict) {
            return std::nullopt;
        } else if (op == "ID") {
            tokenizer.expectInlineImage(input);
            if (tokenizer.readToken(input, "content", true).getType() !=
                QPDFTokenizer::tt_inline_image) {
                return std::nullopt;
            }
        }
        operands.clear();
    }
}

// The one XObject the content draws and where, or absent when it does anything else.
std::optional<Placement> onlyPlacement(const std::string& content) {
    auto drawn = placements(content, true);
    if (!drawn || drawn->size() != 1) {
        return std::nullopt;
    }
    return drawn->front();
}

bool plainJPEG(QPDFObjectHandle image) {
    if (!image.isStream()) {
        return false;
    }
    auto dict = image.getDict();
    auto filter = dict.getKey("/Filter");
    if (filter.isArray() && filter.getArrayNItems() == 1) {
        filter = filter.getArrayItem(0);
    }
    auto space = dict.getKey("/ColorSpace");
    return dict.getKey("/Subtype").isNameAndEquals("/Image") && filter.isNameAndEquals("/DCTDecode") &&
           dict.getKey("/BitsPerComponent").isInteger() &&
           dict.getKey("/BitsPerComponent").getIntValue() == 8 &&
           (space.isNameAndEquals("/DeviceRGB") || space.isNameAndEquals("/DeviceGray")) &&
           !dict.hasKey("/SMask") && !dict.hasKey("/Mask") && !dict.hasKey("/Decode") &&
           !dict.hasKey("/DecodeParms") && !dict.getKey("/ImageMask").isBool();
}

bool bilevelImage(QPDFObjectHandle image) {
    if (!image.isStream()) {
        return false;
    }
    auto dict = image.getDict();
    auto bits = dict.getKey("/BitsPerComponent");
    return dict.getKey("/Subtype").isNameAndEquals("/Image") && bits.isInteger() &&
           bits.getIntValue() == 1 && dict.getKey("/ColorSpace").isNameAndEquals("/DeviceGray") &&
           !dict.hasKey("/SMask") && !dict.hasKey("/Mask") &&
           !(dict.getKey("/ImageMask").isBool() && dict.getKey("/ImageMask").getBoolValue());
}

// Whether `m` draws the unit square upright over the whole of `box`, within half a point.
bool coversUpright(const Matrix& m, const PDFRect& box) {
    const auto near = [](double a, double b) { return std::abs(a - b) <= 0.5; };
    return near(m[0], box.width) && near(m[3], box.height) && near(m[1], 0) && near(m[2], 0) &&
           near(m[4], box.x) && near(m[5], box.y);
}

// The image that the page's content alone draws upright over its media box, or absent.
std::optional<QPDFObjectHandle> fullPageImage(const PDFPage& page) {
    auto object = page.object();
    const auto content = pageContentData(object);
    if (!content) {
        return std::nullopt;
    }
    const auto placement = onlyPlacement(*content);
    if (!placement || !coversUpright(placement->ctm, page.mediaBox())) {
        return std::nullopt;
    }
    auto resources = QPDFPageObjectHelper(object).getAttribute("/Resources", false);
    return resources.getKey("/XObject").getKey(placement->name);
}

bool stencilMask(QPDFObjectHandle image) {
    if (!image.isStream() || !image.isIndirect()) {
        return false;
    }
    auto dict = image.getDict();
    auto flag = dict.getKey("/ImageMask");
    auto bits = dict.getKey("/BitsPerComponent");
    return dict.getKey("/Subtype").isNameAndEquals("/Image") && flag.isBool() &&
           flag.getBoolValue() && (bits.isNull() || (bits.isInteger() && bits.getIntValue() == 1));
}

// The object number and size of a 1-bit image, absent when its size cannot be read.
std::optional<FullPageImage::Bilevel> sized(QPDFObjectHandle image) {
    auto dict = image.getDict();
    auto width = dict.getKey("/Width");
    auto height = dict.getKey("/Height");
    if (!width.isInteger() || !height.isInteger() || width.getIntValue() < 1 ||
        height.getIntValue() < 1 || width.getIntValue() > std::numeric_limits<int>::max() ||
        height.getIntValue() > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return FullPageImage::Bilevel{image.getObjectID(), static_cast<int>(width.getIntValue()),
                                  static_cast<int>(height.getIntValue())};
}

} // namespace

std::optional<FullPageImage::Bilevel> FullPageImage::bilevel(const PDFPage& page) {
    try {
        auto image = fullPageImage(page);
        if (!image || !bilevelImage(*image) || !image->isIndirect()) {
            return std::nullopt;
        }
        return sized(*image);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<FullPageImage::Bilevel> FullPageImage::textMask(const PDFPage& page) {
    try {
        auto object = page.object();
        const auto content = pageContentData(object);
        if (!content) {
            return std::nullopt;
        }
        const auto drawn = placements(*content, false);
        if (!drawn) {
            return std::nullopt;
        }
        auto xobjects = QPDFPageObjectHelper(object).getAttribute("/Resources", false).getKey(
            "/XObject");
        // The last image drawn; forms after it (a text layer) are passed over.
        auto last = drawn->rbegin();
        while (last != drawn->rend() &&
               xobjects.getKey(last->name).isStream() &&
               xobjects.getKey(last->name).getDict().getKey("/Subtype").isNameAndEquals("/Form")) {
            ++last;
        }
        if (last == drawn->rend() || !coversUpright(last->ctm, page.mediaBox())) {
            return std::nullopt;
        }
        auto image = xobjects.getKey(last->name);
        if (!image.isStream()) {
            return std::nullopt;
        }
        // A stencil mask painted in one colour, or a picture of the inks seen through one (a
        // soft mask would take the mask's place).
        auto mask = image.getDict().getKey("/Mask");
        if (!stencilMask(image) &&
            !(image.getDict().getKey("/Subtype").isNameAndEquals("/Image") &&
              !image.getDict().hasKey("/SMask") && stencilMask(mask))) {
            return std::nullopt;
        }
        return sized(stencilMask(image) ? image : mask);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<std::string> FullPageImage::jpeg(const PDFPage& page) {
    try {
        auto image = fullPageImage(page);
        if (!image || !plainJPEG(*image)) {
            return std::nullopt;
        }
        auto raw = image->getRawStreamData();
        if (!raw || raw->getSize() == 0) {
            return std::nullopt;
        }
        return std::string(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillet
