#include "platform/PDFPage.hpp"

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

std::optional<std::string> uriOf(QPDFObjectHandle annotation) {
    auto action = annotation.getKey("/A");
    if (!action.isDictionary() || !action.getKey("/S").isNameAndEquals("/URI")) {
        return std::nullopt;
    }
    auto uri = action.getKey("/URI");
    if (!uri.isString()) {
        return std::nullopt;
    }
    return uri.getStringValue();
}

} // namespace

PDFPage::PDFPage(QPDFObjectHandle page) : page_(std::move(page)) {
}

PDFRect PDFPage::mediaBox() const {
    QPDFPageObjectHelper helper(page_);
    auto box = helper.getMediaBox();
    if (!box.isRectangle()) {
        return {};
    }
    const auto r = box.getArrayAsRectangle();
    return {std::min(r.llx, r.urx), std::min(r.lly, r.ury), std::fabs(r.urx - r.llx),
            std::fabs(r.ury - r.lly)};
}

int PDFPage::rotation() const {
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
    page_.replaceKey("/Rotate", QPDFObjectHandle::newInteger(normalisedDegrees(degrees)));
}

std::vector<PDFAnnotation> PDFPage::annotations() const {
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
        result.push_back({std::move(type), uriOf(annotation)});
    }
    return result;
}

} // namespace quillet
