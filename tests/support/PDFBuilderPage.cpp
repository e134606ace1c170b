#include <algorithm>
// The page half of PDFBuilder: content, resources, annotations and fields of one page.
#include "support/PDFBuilder.hpp"

#include <fmt/format.h>

namespace quillet::test {

namespace {

QPDFObjectHandle name(const std::string& text) {
    return QPDFObjectHandle::newName("/" + text);
}

int components(ImageSpec::Color color) {
    switch (color) {
    case ImageSpec::Color::gray: return 1;
    case ImageSpec::Color::rgb: return 3;
    case ImageSpec::Color::cmyk: return 4;
    }
    return 3;
}

const char* colorSpace(ImageSpec::Color color) {
    switch (color) {
    case ImageSpec::Color::gray: return "DeviceGray";
    case ImageSpec::Color::rgb: return "DeviceRGB";
    case ImageSpec::Color::cmyk: return "DeviceCMYK";
    }
    return "DeviceRGB";
}

// A diagonal gradient, so that a rendered or re-encoded image is not a flat colour. With grain,
// it behaves like a photograph or a scan: Flate gains little on it, JPEG a lot.
std::string gradient(int width, int height, int channels, int grain) {
    std::string pixels;
    pixels.reserve(static_cast<std::size_t>(width) * height * channels);
    std::uint32_t state = 12345;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < channels; ++c) {
                int value = (x * 255 / std::max(1, width - 1) + c * 85 + y) % 256;
                if (grain > 0) {
                    state = state * 1664525u + 1013904223u;
                    value = std::clamp(value + static_cast<int>(state >> 24) % (2 * grain + 1) - grain, 0, 255);
                }
                pixels += static_cast<char>(value);
            }
        }
    }
    return pixels;
}

QPDFObjectHandle imageXObject(QPDF& qpdf, const ImageSpec& spec) {
    auto dict = QPDFObjectHandle::newDictionary();
    dict.replaceKey("/Type", name("XObject"));
    dict.replaceKey("/Subtype", name("Image"));
    dict.replaceKey("/Width", QPDFObjectHandle::newInteger(spec.width));
    dict.replaceKey("/Height", QPDFObjectHandle::newInteger(spec.height));
    dict.replaceKey("/ColorSpace", name(colorSpace(spec.color)));
    dict.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    auto stream = qpdf.newStream();
    stream.replaceDict(dict);
    if (spec.jpeg.empty()) {
        stream.replaceStreamData(gradient(spec.width, spec.height, components(spec.color), spec.grain),
                                 QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    } else {
        stream.replaceStreamData(spec.jpeg, name("DCTDecode"), QPDFObjectHandle::newNull());
    }
    return stream;
}

QPDFObjectHandle formXObject(QPDF& qpdf, const std::string& operators) {
    auto stream = qpdf.newStream(operators);
    auto dict = stream.getDict();
    dict.replaceKey("/Type", name("XObject"));
    dict.replaceKey("/Subtype", name("Form"));
    dict.replaceKey("/BBox",
                    QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(0, 0, 100, 100)));
    dict.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    return stream;
}

QPDFObjectHandle standardFont(const std::string& baseFont) {
    auto font = QPDFObjectHandle::newDictionary();
    font.replaceKey("/Type", name("Font"));
    font.replaceKey("/Subtype", name("Type1"));
    font.replaceKey("/BaseFont", name(baseFont));
    font.replaceKey("/Encoding", name("WinAnsiEncoding"));
    return font;
}

QPDFObjectHandle dictionaryIn(QPDFObjectHandle holder, const std::string& key) {
    auto dict = holder.getKey(key);
    if (!dict.isDictionary()) {
        dict = QPDFObjectHandle::newDictionary();
        holder.replaceKey(key, dict);
    }
    return holder.getKey(key);
}

} // namespace

std::string pdfLiteral(const std::string& text) {
    std::string result = "(";
    for (char c : text) {
        if (c == '(' || c == ')' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + ")";
}

PDFBuilder::Page::Page(QPDF& qpdf, QPDFObjectHandle page)
    : qpdf_(qpdf), page_(page), contents_(page.getKey("/Contents")) {
}

PDFBuilder::Page& PDFBuilder::Page::rotate(int degrees) {
    page_.replaceKey("/Rotate", QPDFObjectHandle::newInteger(degrees));
    return *this;
}

PDFBuilder::Page& PDFBuilder::Page::mediaBox(double llx, double lly, double urx, double ury) {
    page_.replaceKey("/MediaBox",
                     QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(llx, lly, urx, ury)));
    return *this;
}

PDFBuilder::Page& PDFBuilder::Page::content(const std::string& operators) {
    operators_ += operators + "\n";
    contents_.replaceStreamData(operators_, QPDFObjectHandle::newNull(),
                                QPDFObjectHandle::newNull());
    return *this;
}

// Adds `value` under a fresh name in /Resources /`category` and answers "/Name".
QPDFObjectHandle PDFBuilder::Page::resource(const std::string& category, const std::string& prefix,
                                            QPDFObjectHandle value) {
    auto resources = dictionaryIn(page_, "/Resources");
    auto group = dictionaryIn(resources, "/" + category);
    const auto key = fmt::format("/{}{}", prefix, group.getKeys().size() + 1);
    group.replaceKey(key, value);
    return QPDFObjectHandle::newName(key);
}

std::string PDFBuilder::Page::fontResource(const std::string& baseFont) {
    auto found = fonts_.find(baseFont);
    if (found == fonts_.end()) {
        auto font = qpdf_.makeIndirectObject(standardFont(baseFont));
        found = fonts_.emplace(baseFont, resource("Font", "F", font).getName()).first;
    }
    return found->second;
}

PDFBuilder::Page& PDFBuilder::Page::text(const std::string& text, double x, double y, double size,
                                         const std::string& baseFont) {
    return content(fmt::format("BT {} {} Tf {} {} Td {} Tj ET", fontResource(baseFont), size, x, y,
                               pdfLiteral(text)));
}

PDFBuilder::Page& PDFBuilder::Page::image(const ImageSpec& spec, double x, double y, double width,
                                          double height) {
    auto key = resource("XObject", "Im", imageXObject(qpdf_, spec));
    return content(fmt::format("q {} 0 0 {} {} {} cm {} Do Q", width, height, x, y, key.getName()));
}

PDFBuilder::Page& PDFBuilder::Page::inlineImage(int width, int height, ImageSpec::Color color,
                                                double x, double y, double drawnWidth,
                                                double drawnHeight) {
    static constexpr const char* shortNames[] = {"G", "RGB", "CMYK"};
    const int channels = components(color);
    const std::string pixels(static_cast<std::size_t>(width) * height * channels, '\x80');
    return content(fmt::format("q {} 0 0 {} {} {} cm\nBI /W {} /H {} /CS /{} /BPC 8 ID\n{}\nEI Q",
                               drawnWidth, drawnHeight, x, y, width, height,
                               shortNames[static_cast<int>(color)], pixels));
}

PDFBuilder::Page& PDFBuilder::Page::formChain(int depth, const std::optional<ImageSpec>& innermost,
                                              double x, double y, double width, double height) {
    QPDFObjectHandle inner;
    for (int level = depth; level >= 1; --level) {
        QPDFObjectHandle form;
        if (!inner.isInitialized()) {
            form = formXObject(qpdf_, innermost ? "q 100 0 0 100 0 0 cm /Im1 Do Q"
                                                : "0.5 g 0 0 100 100 re f");
            if (innermost) {
                dictionaryIn(form.getDict().getKey("/Resources"), "/XObject")
                    .replaceKey("/Im1", imageXObject(qpdf_, *innermost));
            }
        } else {
            form = formXObject(qpdf_, "/Fm1 Do");
            dictionaryIn(form.getDict().getKey("/Resources"), "/XObject").replaceKey("/Fm1", inner);
        }
        inner = form;
    }
    auto key = resource("XObject", "Fm", inner);
    return content(fmt::format("q {} 0 0 {} {} {} cm {} Do Q", width / 100, height / 100, x, y,
                               key.getName()));
}

PDFBuilder::Page& PDFBuilder::Page::cyclicForms(int length) {
    std::vector<QPDFObjectHandle> forms;
    for (int i = 0; i < length; ++i) {
        forms.push_back(formXObject(qpdf_, "0 0 10 10 re f /Fm1 Do"));
    }
    for (int i = 0; i < length; ++i) {
        dictionaryIn(forms[i].getDict().getKey("/Resources"), "/XObject")
            .replaceKey("/Fm1", forms[(i + 1) % length]);
    }
    auto key = resource("XObject", "Fm", forms.front());
    return content(fmt::format("{} Do", key.getName()));
}

PDFBuilder::Page& PDFBuilder::Page::formFanOut(int depth, int fanOut) {
    QPDFObjectHandle inner = formXObject(qpdf_, "0 0 10 10 re f");
    for (int level = 1; level < depth; ++level) {
        std::string operators;
        for (int i = 0; i < fanOut; ++i) {
            operators += "/Fm1 Do ";
        }
        auto form = formXObject(qpdf_, operators);
        dictionaryIn(form.getDict().getKey("/Resources"), "/XObject").replaceKey("/Fm1", inner);
        inner = form;
    }
    auto key = resource("XObject", "Fm", inner);
    return content(fmt::format("{} Do", key.getName()));
}

} // namespace quillet::test

namespace quillet::test {

// Annotations go down the left margin so they do not overlap one another.
QPDFObjectHandle PDFBuilder::Page::addAnnotation(QPDFObjectHandle annotation) {
    const double top = 760 - 40.0 * annotationCount_++;
    annotation.replaceKey("/Type", name("Annot"));
    annotation.replaceKey(
        "/Rect", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(36, top - 30, 236, top)));
    annotation.replaceKey("/P", page_);
    annotation = qpdf_.makeIndirectObject(annotation);
    auto annots = page_.getKey("/Annots");
    if (!annots.isArray()) {
        page_.replaceKey("/Annots", QPDFObjectHandle::newArray());
        annots = page_.getKey("/Annots");
    }
    annots.appendItem(annotation);
    return annotation;
}

PDFBuilder::Page& PDFBuilder::Page::textNote(const std::string& contents) {
    auto note = QPDFObjectHandle::newDictionary();
    note.replaceKey("/Subtype", name("Text"));
    note.replaceKey("/Contents", QPDFObjectHandle::newUnicodeString(contents));
    addAnnotation(note);
    return *this;
}

PDFBuilder::Page& PDFBuilder::Page::link(const std::string& uri) {
    auto action = QPDFObjectHandle::newDictionary();
    action.replaceKey("/S", name("URI"));
    action.replaceKey("/URI", QPDFObjectHandle::newString(uri));
    auto link = QPDFObjectHandle::newDictionary();
    link.replaceKey("/Subtype", name("Link"));
    link.replaceKey("/A", action);
    addAnnotation(link);
    return *this;
}

PDFBuilder::Page& PDFBuilder::Page::launch(const std::string& file) {
    auto action = QPDFObjectHandle::newDictionary();
    action.replaceKey("/S", name("Launch"));
    action.replaceKey("/F", QPDFObjectHandle::newString(file));
    auto link = QPDFObjectHandle::newDictionary();
    link.replaceKey("/Subtype", name("Link"));
    link.replaceKey("/A", action);
    addAnnotation(link);
    return *this;
}

namespace {

// The catalog's /AcroForm, made on first use; `field` is listed in its /Fields.
QPDFObjectHandle registerField(QPDF& qpdf, QPDFObjectHandle field) {
    auto root = qpdf.getRoot();
    auto form = root.getKey("/AcroForm");
    if (!form.isDictionary()) {
        form = qpdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
        form.replaceKey("/Fields", QPDFObjectHandle::newArray());
        root.replaceKey("/AcroForm", form);
    }
    form.getKey("/Fields").appendItem(field);
    return form;
}

QPDFObjectHandle textAppearance(QPDF& qpdf, const std::string& value) {
    auto appearance = qpdf.newStream(
        fmt::format("/Tx BMC BT /Helv 12 Tf 2 10 Td {} Tj ET EMC", pdfLiteral(value)));
    auto dict = appearance.getDict();
    dict.replaceKey("/Type", name("XObject"));
    dict.replaceKey("/Subtype", name("Form"));
    dict.replaceKey("/BBox",
                    QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(0, 0, 200, 30)));
    auto fonts = QPDFObjectHandle::newDictionary();
    fonts.replaceKey("/Helv", standardFont("Helvetica"));
    auto resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", fonts);
    dict.replaceKey("/Resources", resources);
    return appearance;
}

} // namespace

PDFBuilder::Page& PDFBuilder::Page::textField(const std::string& fieldName,
                                              const std::string& value) {
    auto field = QPDFObjectHandle::newDictionary();
    field.replaceKey("/Subtype", name("Widget"));
    field.replaceKey("/FT", name("Tx"));
    field.replaceKey("/T", QPDFObjectHandle::newUnicodeString(fieldName));
    field.replaceKey("/V", QPDFObjectHandle::newUnicodeString(value));
    field.replaceKey("/DA", QPDFObjectHandle::newString("/Helv 12 Tf 0 g"));
    field.replaceKey("/F", QPDFObjectHandle::newInteger(4));
    auto appearances = QPDFObjectHandle::newDictionary();
    appearances.replaceKey("/N", textAppearance(qpdf_, value));
    field.replaceKey("/AP", appearances);
    registerField(qpdf_, addAnnotation(field));
    return *this;
}

PDFBuilder::Page& PDFBuilder::Page::signatureField(const std::string& fieldName,
                                                   bool withSignature) {
    auto field = QPDFObjectHandle::newDictionary();
    field.replaceKey("/Subtype", name("Widget"));
    field.replaceKey("/FT", name("Sig"));
    field.replaceKey("/T", QPDFObjectHandle::newUnicodeString(fieldName));
    field.replaceKey("/F", QPDFObjectHandle::newInteger(4));
    if (withSignature) {
        auto signature = QPDFObjectHandle::newDictionary();
        signature.replaceKey("/Type", name("Sig"));
        signature.replaceKey("/Filter", name("Adobe.PPKLite"));
        signature.replaceKey("/SubFilter", name("adbe.pkcs7.detached"));
        signature.replaceKey("/ByteRange", QPDFObjectHandle::parse("[0 0 0 0]"));
        signature.replaceKey("/Contents", QPDFObjectHandle::newString(std::string(64, '\0')));
        field.replaceKey("/V", qpdf_.makeIndirectObject(signature));
    }
    auto form = registerField(qpdf_, addAnnotation(field));
    form.replaceKey("/SigFlags", QPDFObjectHandle::newInteger(3));
    return *this;
}

} // namespace quillet::test
