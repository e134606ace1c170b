#include "platform/PDFPage.hpp"

#include "platform/QPDFErrorTranslation.hpp"

#include <qpdf/QPDFAnnotationObjectHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace quillet {

namespace {

int normalisedDegrees(long long degrees) {
    return static_cast<int>(((degrees % 360) + 360) % 360);
}

// The file a Launch or GoToR action names: a plain string, or the /UF or /F of a file dictionary.
std::optional<std::string> fileOf(QPDFObjectHandle target) {
    if (target.isString()) {
        return target.getUTF8Value();
    }
    if (target.isDictionary()) {
        for (const char* key : {"/UF", "/F"}) {
            if (auto name = target.getKey(key); name.isString()) {
                return name.getUTF8Value();
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> urlOf(QPDFObjectHandle annotation) {
    auto action = annotation.getKey("/A");
    if (!action.isDictionary()) {
        return std::nullopt;
    }
    auto kind = action.getKey("/S");
    if (kind.isNameAndEquals("/URI")) {
        auto uri = action.getKey("/URI");
        return uri.isString() ? std::optional(uri.getStringValue()) : std::nullopt;
    }
    if (kind.isNameAndEquals("/Launch") || kind.isNameAndEquals("/GoToR")) {
        if (auto file = fileOf(action.getKey("/F"))) {
            return "file:" + *file;
        }
    }
    return std::nullopt;
}

// A widget of a signature field: /FT /Sig on the widget or inherited from a parent field.
bool isSignatureWidget(QPDFObjectHandle annotation) {
    auto node = annotation;
    for (int depth = 0; depth < 32 && node.isDictionary(); ++depth) {
        auto type = node.getKey("/FT");
        if (type.isName()) {
            return type.isNameAndEquals("/Sig");
        }
        node = node.getKey("/Parent");
    }
    return false;
}

} // namespace

PDFPage::PDFPage(QPDFObjectHandle page) : page_(std::move(page)) {
}

PDFRect PDFPage::mediaBox() const {
    return detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged, [&] { return box(); });
}

int PDFPage::rotation() const {
    return detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged,
                                         [&] { return rotationValue(); });
}

std::vector<PDFAnnotation> PDFPage::annotations() const {
    return detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged,
                                         [&] { return annotationList(); });
}

PDFRect PDFPage::box() const {
    QPDFPageObjectHelper helper(page_);
    auto box = helper.getMediaBox();
    if (!box.isRectangle()) {
        return {};
    }
    const auto r = box.getArrayAsRectangle();
    return {std::min(r.llx, r.urx), std::min(r.lly, r.ury), std::fabs(r.urx - r.llx),
            std::fabs(r.ury - r.lly)};
}

int PDFPage::rotationValue() const {
    QPDFPageObjectHelper helper(page_);
    auto value = helper.getAttribute("/Rotate", false);
    if (!value.isNumber()) {
        return 0;
    }
    const double degrees = value.getNumericValue();
    if (!std::isfinite(degrees) || std::fabs(degrees) > 1e9 || std::fmod(degrees, 90.0) != 0.0) {
        return 0;
    }
    return normalisedDegrees(static_cast<long long>(degrees));
}

void PDFPage::setRotation(int degrees) {
    if (degrees % 90 != 0) {
        throw std::invalid_argument("page rotation must be a multiple of 90 degrees, not " +
                                    std::to_string(degrees));
    }
    detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged, [&] {
        page_.replaceKey("/Rotate", QPDFObjectHandle::newInteger(normalisedDegrees(degrees)));
    });
}

std::vector<PDFAnnotation> PDFPage::annotationList() const {
    std::vector<PDFAnnotation> result;
    auto page = page_;
    auto annots = page.getKey("/Annots");
    if (!annots.isArray()) {
        return result;
    }
    for (auto annotation : annots.aitems()) {
        if (!annotation.isDictionary()) {
            continue;
        }
        auto subtype = annotation.getKey("/Subtype");
        std::string type = subtype.isName() ? subtype.getName().substr(1) : std::string();
        if (type == "Widget" && isSignatureWidget(annotation)) {
            type = "Signature";
        }
        result.push_back({std::move(type), urlOf(annotation)});
    }
    return result;
}

} // namespace quillet
