#include "engines/AnnotationAppearances.hpp"

#include <qpdf/QPDFPageDocumentHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace quillet {
namespace {

using Numbers = std::vector<double>;

// The numbers of an array; empty when it is not an array of numbers.
Numbers numbers(QPDFObjectHandle array) {
    Numbers result;
    if (!array.isArray()) {
        return result;
    }
    for (auto item : array.aitems()) {
        if (!item.isNumber()) {
            return {};
        }
        result.push_back(item.getNumericValue());
    }
    return result;
}

// Fixed notation: PDF has no exponent syntax, so "1e-05" must never reach a content stream.
std::string n(double value) {
    return fmt::format("{:.3f}", value);
}

// "r g b RG" and the like for a colour array; "" for no colour (absent or empty: nothing painted).
std::string colorOperator(const Numbers& color, bool stroke) {
    switch (color.size()) {
    case 1: return fmt::format("{} {} ", n(color[0]), stroke ? "G" : "g");
    case 3:
        return fmt::format("{} {} {} {} ", n(color[0]), n(color[1]), n(color[2]),
                           stroke ? "RG" : "rg");
    case 4:
        return fmt::format("{} {} {} {} {} ", n(color[0]), n(color[1]), n(color[2]), n(color[3]),
                           stroke ? "K" : "k");
    default: return "";
    }
}

double borderWidth(QPDFObjectHandle annotation) {
    if (auto style = annotation.getKey("/BS"); style.isDictionary()) {
        if (auto width = style.getKey("/W"); width.isNumber()) {
            return std::max(0.0, width.getNumericValue());
        }
    }
    if (auto border = numbers(annotation.getKey("/Border")); border.size() >= 3) {
        return std::max(0.0, border[2]);
    }
    return 1;
}

struct Drawing {
    std::string content;
    double left = std::numeric_limits<double>::max();
    double bottom = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    double top = std::numeric_limits<double>::lowest();
    bool multiply = false;

    void include(double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    }
    bool empty() const { return content.empty() || left > right; }
};

// Each quadrilateral of /QuadPoints: upper left, upper right, lower left, lower right.
std::vector<Numbers> quads(QPDFObjectHandle annotation) {
    const Numbers points = numbers(annotation.getKey("/QuadPoints"));
    std::vector<Numbers> result;
    for (std::size_t i = 0; i + 8 <= points.size(); i += 8) {
        result.emplace_back(points.begin() + static_cast<std::ptrdiff_t>(i),
                            points.begin() + static_cast<std::ptrdiff_t>(i + 8));
    }
    return result;
}

void path(Drawing& drawing, const Numbers& xy, bool close) {
    for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
        drawing.content += fmt::format("{} {} {} ", n(xy[i]), n(xy[i + 1]), i == 0 ? "m" : "l");
        drawing.include(xy[i], xy[i + 1]);
    }
    if (close) {
        drawing.content += "h ";
    }
}

// `color` is never empty here: an explicitly transparent markup is not drawn at all.
Drawing textMarkup(QPDFObjectHandle annotation, const std::string& kind, const Numbers& color) {
    Drawing drawing;
    for (const auto& q : quads(annotation)) {
        if (kind == "/Highlight") {
            path(drawing, {q[0], q[1], q[2], q[3], q[6], q[7], q[4], q[5]}, true);
            continue;
        }
        const double height = std::abs(q[1] - q[5]);
        const double lift = kind == "/StrikeOut" ? height / 2 : height / 12;
        drawing.content += fmt::format("{} w ", n(std::max(0.5, height / 16)));
        path(drawing, {q[4], q[5] + lift, q[6], q[7] + lift}, false);
        drawing.content += "S ";
        drawing.include(q[0], q[1]);
    }
    if (kind == "/Highlight") {
        drawing.content = colorOperator(color, false) + drawing.content + "f";
        drawing.multiply = true;
    } else {
        drawing.content = colorOperator(color, true) + drawing.content;
    }
    return drawing;
}

// Four Bézier quarters approximate the ellipse inscribed in the rectangle.
std::string ellipse(double x0, double y0, double x1, double y1) {
    const double k = 0.5523;
    const double cx = (x0 + x1) / 2, cy = (y0 + y1) / 2, rx = (x1 - x0) / 2, ry = (y1 - y0) / 2;
    return fmt::format("{} {} m {} {} {} {} {} {} c {} {} {} {} {} {} c {} {} {} {} {} {} c "
                       "{} {} {} {} {} {} c h ",
                       n(x1), n(cy), n(x1), n(cy + k * ry), n(cx + k * rx), n(y1), n(cx), n(y1),
                       n(cx - k * rx), n(y1), n(x0), n(cy + k * ry), n(x0), n(cy), n(x0),
                       n(cy - k * ry), n(cx - k * rx), n(y0), n(cx), n(y0), n(cx + k * rx), n(y0),
                       n(x1), n(cy - k * ry), n(x1), n(cy));
}

Drawing shape(QPDFObjectHandle annotation, const std::string& kind, double width) {
    Drawing drawing;
    if (kind == "/Ink") {
        if (auto strokes = annotation.getKey("/InkList"); strokes.isArray()) {
            for (auto stroke : strokes.aitems()) {
                path(drawing, numbers(stroke), false);
            }
        }
    } else if (kind == "/Line") {
        path(drawing, numbers(annotation.getKey("/L")), false);
    } else if (kind == "/Polygon" || kind == "/PolyLine") {
        path(drawing, numbers(annotation.getKey("/Vertices")), kind == "/Polygon");
    } else if (const Numbers r = numbers(annotation.getKey("/Rect")); r.size() == 4) {
        const double x0 = std::min(r[0], r[2]) + width / 2, x1 = std::max(r[0], r[2]) - width / 2;
        const double y0 = std::min(r[1], r[3]) + width / 2, y1 = std::max(r[1], r[3]) - width / 2;
        drawing.content = kind == "/Square"
                              ? fmt::format("{} {} {} {} re ", n(x0), n(y0), n(x1 - x0), n(y1 - y0))
                              : ellipse(x0, y0, x1, y1);
        drawing.include(x0, y0);
        drawing.include(x1, y1);
    }
    return drawing;
}

bool isTextMarkup(const std::string& kind) {
    return kind == "/Highlight" || kind == "/Underline" || kind == "/StrikeOut" ||
           kind == "/Squiggly";
}

bool isShape(const std::string& kind) {
    return kind == "/Ink" || kind == "/Line" || kind == "/Square" || kind == "/Circle" ||
           kind == "/Polygon" || kind == "/PolyLine";
}

Drawing paintedShape(QPDFObjectHandle annotation, const std::string& kind, const Numbers& color) {
    const double width = borderWidth(annotation);
    Drawing drawing = shape(annotation, kind, width);
    const Numbers interior = numbers(annotation.getKey("/IC"));
    const bool fills =
        !interior.empty() && (kind == "/Square" || kind == "/Circle" || kind == "/Polygon");
    const bool strokes = width > 0 && !color.empty();
    const char* paint = fills ? (strokes ? "B" : "f") : (strokes ? "S" : "n");
    drawing.content =
        fmt::format("{} w 1 J 1 j {}{}{}{}", n(width), colorOperator(color, true),
                    fills ? colorOperator(interior, false) : "", drawing.content, paint);
    drawing.left -= width;
    drawing.bottom -= width;
    drawing.right += width;
    drawing.top += width;
    return drawing;
}

std::optional<Drawing> drawingFor(QPDFObjectHandle annotation) {
    auto subtype = annotation.getKey("/Subtype");
    if (!subtype.isName()) {
        return std::nullopt;
    }
    const std::string kind = subtype.getName();
    // Without /C viewers draw highlights yellow and the rest black; an empty /C means no colour.
    const Numbers color = annotation.hasKey("/C") ? numbers(annotation.getKey("/C"))
                          : kind == "/Highlight"  ? Numbers{1, 1, 0}
                                                  : Numbers{0};
    if (isTextMarkup(kind)) {
        return color.empty() ? std::nullopt : std::optional(textMarkup(annotation, kind, color));
    }
    if (isShape(kind)) {
        return paintedShape(annotation, kind, color);
    }
    return std::nullopt;
}

QPDFObjectHandle rectangle(const Drawing& drawing) {
    return QPDFObjectHandle::newArray(
        QPDFObjectHandle::Rectangle(drawing.left, drawing.bottom, drawing.right, drawing.top));
}

void giveAppearance(QPDF& qpdf, QPDFObjectHandle annotation, const Drawing& drawing) {
    auto state = QPDFObjectHandle::newDictionary();
    if (drawing.multiply) {
        state.replaceKey("/BM", QPDFObjectHandle::newName("/Multiply"));
    }
    if (auto opacity = annotation.getKey("/CA"); opacity.isNumber()) {
        state.replaceKey("/CA", opacity);
        state.replaceKey("/ca", opacity);
    }
    auto resources = QPDFObjectHandle::parse("<< /ExtGState << >> >>");
    resources.getKey("/ExtGState").replaceKey("/GS0", state);
    auto stream = qpdf.newStream("/GS0 gs " + drawing.content);
    auto dict = stream.getDict();
    dict.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dict.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    dict.replaceKey("/BBox", rectangle(drawing));
    dict.replaceKey("/Resources", resources);
    auto appearances = annotation.getKey("/AP");
    if (!appearances.isDictionary()) {
        appearances = QPDFObjectHandle::newDictionary();
    }
    appearances.replaceKey("/N", stream);
    annotation.replaceKey("/AP", appearances);
    annotation.replaceKey("/Rect", rectangle(drawing));
}

} // namespace

void AnnotationAppearances::generateMissing(QPDF& qpdf) {
    for (auto& page : QPDFPageDocumentHelper(qpdf).getAllPages()) {
        auto annotations = page.getObjectHandle().getKey("/Annots");
        if (!annotations.isArray()) {
            continue;
        }
        for (auto annotation : annotations.aitems()) {
            if (!annotation.isDictionary()) {
                continue;
            }
            if (auto existing = annotation.getKey("/AP");
                existing.isDictionary() && existing.hasKey("/N")) {
                continue;
            }
            if (auto drawing = drawingFor(annotation); drawing && !drawing->empty()) {
                giveAppearance(qpdf, annotation, *drawing);
            }
        }
    }
}

} // namespace quillet
