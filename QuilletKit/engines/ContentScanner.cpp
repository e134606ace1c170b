#include "engines/ContentScanner.hpp"

#include "platform/SafetyLimits.hpp"
#include "platform/StreamData.hpp"
#include "platform/TextDecoding.hpp"
#include "platform/UUID.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <algorithm>
#include <cmath>

namespace quillet {
namespace {

constexpr int maximumFormDepth = limits::formDepth;
constexpr std::size_t maximumSavedStates = 1 << 16;

bool filterContains(QPDFObjectHandle filter, const char* fragment) {
    const auto matches = [&](QPDFObjectHandle item) {
        return item.isName() && item.getName().find(fragment) != std::string::npos;
    };
    if (filter.isArray()) {
        for (int i = 0; i < filter.getArrayNItems(); ++i) {
            if (matches(filter.getArrayItem(i))) {
                return true;
            }
        }
        return false;
    }
    return matches(filter);
}

std::string withoutSubsetPrefix(std::string name) {
    if (name.size() > 7 && name[6] == '+' &&
        std::all_of(name.begin(), name.begin() + 6, [](char c) { return c >= 'A' && c <= 'Z'; })) {
        name.erase(0, 7);
    }
    return name;
}

} // namespace

ContentScanner::Matrix ContentScanner::Matrix::concatenated(const Matrix& m) const {
    return {a * m.a + b * m.c,       a * m.b + b * m.d,       c * m.a + d * m.c,
            c * m.b + d * m.d,       e * m.a + f * m.c + m.e, e * m.b + f * m.d + m.f};
}

PDFPageAnalysis ContentScanner::scanPage(QPDFObjectHandle page, int pageIndex) {
    ContentScanner scanner(pageIndex);
    PDFPageAnalysis result;
    result.index = pageIndex;
    try {
        QPDFPageObjectHelper helper(page);
        scanner.resources_.push_back(helper.getAttribute("/Resources", false));
        auto box = helper.getMediaBox(false);
        if (box.isRectangle()) {
            const auto rect = box.getArrayAsRectangle();
            result.widthPoints = std::abs(rect.urx - rect.llx);
            result.heightPoints = std::abs(rect.ury - rect.lly);
        }
        if (const auto content = pageContentData(page)) {
            scanner.scan(*content, 0);
        }
    } catch (const std::exception&) {
        // Whatever was found before the damage stands.
    }
    result.textOperatorCount = scanner.textCount_;
    result.hasText = scanner.textCount_ >= 1;
    result.images = std::move(scanner.images_);
    result.fontNames.assign(scanner.fontNames_.begin(), scanner.fontNames_.end());
    return result;
}

void ContentScanner::scan(const std::string& content, int depth) {
    Buffer buffer(reinterpret_cast<unsigned char*>(const_cast<char*>(content.data())),
                  content.size());
    auto input = std::make_shared<BufferInputSource>("content", &buffer);
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    std::vector<Operand> operands;
    int nesting = 0; // inside arrays or dictionaries, whose items are not operands of their own
    while (true) {
        const auto token = tokenizer.readToken(input, "content", true);
        const auto type = token.getType();
        if (type == QPDFTokenizer::tt_eof) {
            return;
        }
        if (type == QPDFTokenizer::tt_array_open || type == QPDFTokenizer::tt_dict_open) {
            ++nesting;
        } else if (type == QPDFTokenizer::tt_array_close || type == QPDFTokenizer::tt_dict_close) {
            nesting = std::max(0, nesting - 1);
            if (nesting == 0) {
                operands.push_back({});
            }
        } else if (nesting > 0) {
            continue;
        } else if (type == QPDFTokenizer::tt_integer || type == QPDFTokenizer::tt_real) {
            operands.push_back({Operand::number, std::strtod(token.getValue().c_str(), nullptr), {}});
        } else if (type == QPDFTokenizer::tt_name) {
            operands.push_back({Operand::name, 0, token.getValue()});
        } else if (type == QPDFTokenizer::tt_word) {
            const std::string& op = token.getValue();
            if (op == "ID") {
                // Skip the inline image's data up to its EI.
                char separator;
                input->read(&separator, 1);
                tokenizer.expectInlineImage(input);
                tokenizer.readToken(input, "inline image", true);
            } else {
                onOperator(op, operands, depth);
            }
            operands.clear();
        } else if (type == QPDFTokenizer::tt_bad) {
            operands.clear();
        } else {
            operands.push_back({});
        }
    }
}

void ContentScanner::onOperator(const std::string& op, const std::vector<Operand>& operands,
                                int depth) {
    const auto n = operands.size();
    if (op == "q") {
        if (saved_.size() < maximumSavedStates) {
            saved_.push_back(ctm_);
        }
    } else if (op == "Q") {
        if (!saved_.empty()) {
            ctm_ = saved_.back();
            saved_.pop_back();
        }
    } else if (op == "cm") {
        if (n >= 6 && std::all_of(operands.end() - 6, operands.end(),
                                  [](const Operand& o) { return o.kind == Operand::number; })) {
            const auto* m = &operands[n - 6];
            const Matrix matrix{m[0].value, m[1].value, m[2].value,
                                m[3].value, m[4].value, m[5].value};
            ctm_ = matrix.concatenated(ctm_);
        }
    } else if (op == "Tj" || op == "TJ" || op == "'" || op == "\"") {
        ++textCount_;
    } else if (op == "Tf") {
        if (n >= 2 && operands[n - 1].kind == Operand::number &&
            operands[n - 2].kind == Operand::name) {
            fontNames_.insert(fontName(operands[n - 2].text));
        }
    } else if (op == "Do") {
        if (n >= 1 && operands[n - 1].kind == Operand::name) {
            onDo(operands[n - 1].text, depth);
        }
    }
}

QPDFObjectHandle ContentScanner::resource(const std::string& category,
                                          const std::string& name) const {
    for (auto it = resources_.rbegin(); it != resources_.rend(); ++it) {
        QPDFObjectHandle resources = *it;
        if (!resources.isDictionary()) {
            continue;
        }
        auto group = resources.getKey(category);
        if (group.isDictionary() && group.hasKey(name)) {
            return group.getKey(name);
        }
    }
    return QPDFObjectHandle::newNull();
}

std::string ContentScanner::fontName(const std::string& resourceName) const {
    auto font = resource("/Font", resourceName);
    if (font.isDictionary()) {
        auto base = font.getKey("/BaseFont");
        if (base.isName() && base.getName().size() > 1) {
            return validUTF8(withoutSubsetPrefix(base.getName().substr(1)));
        }
    }
    return validUTF8(resourceName.substr(1));
}

void ContentScanner::onDo(const std::string& name, int depth) {
    auto object = resource("/XObject", name);
    if (!object.isStream()) {
        return;
    }
    auto dictionary = object.getDict();
    auto subtype = dictionary.getKey("/Subtype");
    if (subtype.isNameAndEquals("/Form")) {
        onForm(object, depth + 1);
    } else if (subtype.isNameAndEquals("/Image")) {
        onImage(object);
    }
}

void ContentScanner::onForm(QPDFObjectHandle form, int depth) {
    auto own = form.getDict().getKey("/Resources");
    const auto id = form.getObjGen();
    if (!own.isDictionary() || depth > maximumFormDepth ||
        std::find(formPath_.begin(), formPath_.end(), id) != formPath_.end()) {
        return;
    }
    const auto content = decodedStreamData(form);
    if (!content) {
        return;
    }
    const Matrix outer = ctm_;
    const auto savedDepth = saved_.size();
    resources_.push_back(own);
    formPath_.push_back(id);
    scan(*content, depth);
    formPath_.pop_back();
    resources_.pop_back();
    saved_.resize(std::min(saved_.size(), savedDepth));
    ctm_ = outer;
}

void ContentScanner::onImage(QPDFObjectHandle object) {
    auto dictionary = object.getDict();
    auto width = dictionary.getKey("/Width");
    auto height = dictionary.getKey("/Height");
    if (!width.isInteger() || !height.isInteger() || width.getIntValue() < 1 ||
        height.getIntValue() < 1 || width.getIntValue() > INT32_MAX ||
        height.getIntValue() > INT32_MAX) {
        return;
    }
    auto filter = dictionary.getKey("/Filter");
    const bool jpeg = filterContains(filter, "DCTDecode");
    const bool bilevel = filterContains(filter, "CCITTFax") || filterContains(filter, "JBIG2");
    const bool jpx = filterContains(filter, "JPXDecode");
    auto bitsObject = dictionary.getKey("/BitsPerComponent");
    const long long bits = bitsObject.isInteger() ? bitsObject.getIntValue() : 8;

    PDFImageInfo image;
    image.id = newUUIDString();
    image.pageIndex = pageIndex_;
    image.pixelWidth = static_cast<int>(width.getIntValue());
    image.pixelHeight = static_cast<int>(height.getIntValue());
    image.isJPEG = jpeg;
    image.objectNumber = object.getObjGen().getObj();
    image.objectGeneration = object.getObjGen().getGen();
    image.isMonochrome =
        bits == 1 || bilevel || dictionary.getKey("/ColorSpace").isNameAndEquals("/DeviceGray");
    const double pixels = static_cast<double>(image.pixelWidth) * image.pixelHeight;
    const double raw = pixels * 3.0 * (static_cast<double>(bits) * 0.125);
    const double estimate = jpeg ? raw * 0.11 : bilevel ? pixels * 0.125 * 0.9 : jpx ? raw * 0.08 : raw * 0.6;
    image.estimatedBytes = static_cast<std::int64_t>(std::min(estimate, 9.0e18));
    image.effectiveDPI =
        image.pixelWidth * 72.0 / std::max(0.01, std::sqrt(ctm_.a * ctm_.a + ctm_.c * ctm_.c));
    image.acrossDPI =
        image.pixelWidth * 72.0 / std::max(0.01, std::sqrt(ctm_.a * ctm_.a + ctm_.b * ctm_.b));
    image.downDPI =
        image.pixelHeight * 72.0 / std::max(0.01, std::sqrt(ctm_.c * ctm_.c + ctm_.d * ctm_.d));
    images_.push_back(std::move(image));
}

} // namespace quillet
