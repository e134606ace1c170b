// The document information fields of PDFDocument.
#include "platform/PDFDocument.hpp"

#include "platform/QPDFErrorTranslation.hpp"

#include <array>
#include <utility>

namespace quillet {

namespace {

using TextField = std::optional<std::string> PDFDocumentAttributes::*;

constexpr std::array<std::pair<const char*, TextField>, 6> textKeys{{
    {"/Title", &PDFDocumentAttributes::title},
    {"/Author", &PDFDocumentAttributes::author},
    {"/Subject", &PDFDocumentAttributes::subject},
    {"/Keywords", &PDFDocumentAttributes::keywords},
    {"/Creator", &PDFDocumentAttributes::creator},
    {"/Producer", &PDFDocumentAttributes::producer},
}};

// Dates stay raw: their reading (time zone rules included) belongs to the caller.
constexpr std::array<std::pair<const char*, TextField>, 2> dateKeys{{
    {"/CreationDate", &PDFDocumentAttributes::creationDate},
    {"/ModDate", &PDFDocumentAttributes::modificationDate},
}};

} // namespace

PDFDocumentAttributes PDFDocument::attributes() const {
    PDFDocumentAttributes result;
    if (locked_) {
        return result;
    }
    return detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged, [&] {
        auto info = storage_->qpdf->getTrailer().getKey("/Info");
        if (!info.isDictionary()) {
            return result;
        }
        for (const auto& [key, field] : textKeys) {
            auto value = info.getKey(key);
            if (value.isString()) {
                result.*field = value.getUTF8Value();
            }
        }
        for (const auto& [key, field] : dateKeys) {
            auto value = info.getKey(key);
            if (value.isString()) {
                result.*field = value.getStringValue();
            }
        }
        return result;
    });
}

void PDFDocument::setAttributes(const PDFDocumentAttributes& attributes) {
    requireUnlocked();
    detail::translatingQPDFErrors(PDFDocumentError::Kind::damaged, [&] {
        auto info = QPDFObjectHandle::newDictionary();
        for (const auto& [key, field] : textKeys) {
            if (const auto& text = attributes.*field) {
                info.replaceKey(key, QPDFObjectHandle::newUnicodeString(*text));
            }
        }
        for (const auto& [key, field] : dateKeys) {
            if (const auto& text = attributes.*field) {
                info.replaceKey(key, QPDFObjectHandle::newString(*text));
            }
        }
        auto trailer = storage_->qpdf->getTrailer();
        if (info.getKeys().empty()) {
            trailer.removeKey("/Info");
        } else {
            trailer.replaceKey("/Info", storage_->qpdf->makeIndirectObject(info));
        }
    });
}

} // namespace quillet
