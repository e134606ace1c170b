#include "engines/RedactedExtras.hpp"

#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
#include <array>
#include <optional>
#include <set>

namespace quillet {
namespace {

using Area = RedactedDrawing::Area;

bool overlaps(QPDFObjectHandle rect, const std::vector<Area>& areas) {
    if (!rect.isArray() || rect.getArrayNItems() != 4) {
        return false;
    }
    std::array<double, 4> v{};
    for (int i = 0; i < 4; ++i) {
        auto item = rect.getArrayItem(i);
        if (!item.isNumber()) {
            return false;
        }
        v[static_cast<std::size_t>(i)] = item.getNumericValue();
    }
    const double x0 = std::min(v[0], v[2]), x1 = std::max(v[0], v[2]);
    const double y0 = std::min(v[1], v[3]), y1 = std::max(v[1], v[3]);
    return std::any_of(areas.begin(), areas.end(), [&](const Area& a) {
        return x0 < a.x1 && a.x0 < x1 && y0 < a.y1 && a.y0 < y1;
    });
}

// Removes `item` (by object identity) from the array `key` of `holder`.
void removeFrom(QPDFObjectHandle holder, const char* key, QPDFObjectHandle item) {
    if (!holder.isDictionary()) {
        return;
    }
    auto array = holder.getKey(key);
    if (!array.isArray()) {
        return;
    }
    for (int i = array.getArrayNItems() - 1; i >= 0; --i) {
        if (array.getArrayItem(i).getObjGen() == item.getObjGen()) {
            array.eraseItem(i);
        }
    }
}

// Walks every place that keeps text of its own, handing each text string to `visit`, which may
// answer a replacement.
class TextPlaces {
  public:
    TextPlaces(QPDF& qpdf, const RedactionFinder& finder, bool erase)
        : qpdf_(qpdf), finder_(finder), erase_(erase) {}

    int run() {
        auto trailer = qpdf_.getTrailer();
        auto root = trailer.getKey("/Root");
        strings(trailer.getKey("/Info"), {});
        metadata(root.getKey("/Metadata"));
        outline(root.getKey("/Outlines").getKey("/First"));
        for (auto& page : QPDFPageDocumentHelper(qpdf_).getAllPages()) {
            auto annots = page.getObjectHandle().getKey("/Annots");
            for (int i = 0; annots.isArray() && i < annots.getArrayNItems(); ++i) {
                auto annot = annots.getArrayItem(i);
                strings(annot, {"/Contents", "/T", "/Subj", "/RC"});
                metadata(annot.getKey("/RC"));
            }
        }
        fields(root.getKey("/AcroForm").getKey("/Fields"), root.getKey("/AcroForm"));
        structure(root.getKey("/StructTreeRoot"), 0);
        names(root.getKey("/Names").getKey("/EmbeddedFiles"), 0);
        return found_;
    }

  private:
    // The text strings of `dictionary` (all of them when `keys` is empty).
    bool strings(QPDFObjectHandle dictionary, std::set<std::string> keys) {
        if (!dictionary.isDictionary()) {
            return false;
        }
        bool changed = false;
        for (const auto& key : dictionary.getKeys()) {
            auto value = dictionary.getKey(key);
            if ((keys.empty() || keys.count(key)) && value.isString()) {
                if (auto replaced = visit(value.getUTF8Value())) {
                    dictionary.replaceKey(key, QPDFObjectHandle::newUnicodeString(*replaced));
                    changed = true;
                }
            }
        }
        return changed;
    }

    void metadata(QPDFObjectHandle stream) {
        if (!stream.isStream() || !seen(stream)) {
            return;
        }
        try {
            auto data = stream.getStreamData(qpdf_dl_generalized);
            const std::string text(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
            if (auto replaced = visit(text)) {
                stream.replaceStreamData(*replaced, QPDFObjectHandle::newNull(),
                                         QPDFObjectHandle::newNull());
            }
        } catch (const std::exception&) {
            // A stream that cannot be decoded holds no text we can read, nor can a reader.
        }
    }

    void outline(QPDFObjectHandle item) {
        for (int guard = 0; item.isDictionary() && guard < 100000 && seen(item); ++guard) {
            strings(item, {"/Title"});
            outline(item.getKey("/First"));
            item = item.getKey("/Next");
        }
    }

    void fields(QPDFObjectHandle kids, QPDFObjectHandle form) {
        for (int i = 0; kids.isArray() && i < kids.getArrayNItems(); ++i) {
            auto field = kids.getArrayItem(i);
            if (!seen(field)) {
                continue;
            }
            strings(field, {"/TU"});
            auto options = field.getKey("/Opt");
            for (int o = 0; options.isArray() && o < options.getArrayNItems(); ++o) {
                auto option = options.getArrayItem(o);
                auto texts = option.isArray() ? option : QPDFObjectHandle::newArray({option});
                for (int t = 0; t < texts.getArrayNItems(); ++t) {
                    if (auto text = texts.getArrayItem(t); text.isString()) {
                        if (auto replaced = visit(text.getUTF8Value())) {
                            (option.isArray() ? option : options)
                                .setArrayItem(option.isArray() ? t : o,
                                              QPDFObjectHandle::newUnicodeString(*replaced));
                        }
                    }
                }
            }
            if (strings(field, {"/V", "/DV"})) {
                // Its widgets' pictures still show the old value: the viewer draws them anew.
                field.removeKey("/AP");
                auto widgets = field.getKey("/Kids");
                for (int k = 0; widgets.isArray() && k < widgets.getArrayNItems(); ++k) {
                    widgets.getArrayItem(k).removeKey("/AP");
                }
                if (form.isDictionary()) {
                    form.replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
                }
            }
            fields(field.getKey("/Kids"), form);
        }
    }

    // The structure tree's alternate, actual and expanded texts.
    void structure(QPDFObjectHandle node, int depth) {
        if (depth > 64 || !(node.isDictionary() || node.isArray()) || !seen(node)) {
            return;
        }
        if (node.isArray()) {
            for (int i = 0; i < node.getArrayNItems(); ++i) {
                structure(node.getArrayItem(i), depth + 1);
            }
            return;
        }
        strings(node, {"/Alt", "/ActualText", "/E", "/T"});
        structure(node.getKey("/K"), depth + 1);
    }

    void names(QPDFObjectHandle node, int depth) {
        if (!node.isDictionary() || depth > 32 || !seen(node)) {
            return;
        }
        auto kids = node.getKey("/Kids");
        for (int i = 0; kids.isArray() && i < kids.getArrayNItems(); ++i) {
            names(kids.getArrayItem(i), depth + 1);
        }
        auto pairs = node.getKey("/Names");
        for (int i = 0; pairs.isArray() && i + 1 < pairs.getArrayNItems(); i += 2) {
            auto key = pairs.getArrayItem(i);
            if (key.isString()) {
                if (auto replaced = visit(key.getUTF8Value())) {
                    pairs.setArrayItem(i, QPDFObjectHandle::newUnicodeString(*replaced));
                }
            }
            strings(pairs.getArrayItem(i + 1), {"/F", "/UF", "/Desc"});
        }
    }

    std::optional<std::string> visit(const std::string& text) {
        int count = 0;
        std::string replaced = finder_.erased(text, count);
        found_ += count;
        if (count == 0 || !erase_) {
            return std::nullopt;
        }
        return replaced;
    }

    // Whether a node of a tree is met for the first time (trees in damaged files may loop).
    bool seen(QPDFObjectHandle object) {
        return !object.isIndirect() || visited_.insert(object.getObjGen()).second;
    }

    QPDF& qpdf_;
    const RedactionFinder& finder_;
    bool erase_;
    int found_ = 0;
    std::set<QPDFObjGen> visited_;
};

} // namespace

int RedactedExtras::removeAnnotationsUnder(QPDF& qpdf, QPDFObjectHandle page,
                                           const std::vector<Area>& areas) {
    auto annots = page.getKey("/Annots");
    if (!annots.isArray() || areas.empty()) {
        return 0;
    }
    auto form = qpdf.getRoot().getKey("/AcroForm");
    std::set<QPDFObjGen> gone;
    int removed = 0;
    for (int i = annots.getArrayNItems() - 1; i >= 0; --i) {
        auto annot = annots.getArrayItem(i);
        if (!annot.isDictionary() || !overlaps(annot.getKey("/Rect"), areas)) {
            continue;
        }
        gone.insert(annot.getObjGen());
        if (annot.getKey("/Subtype").isNameAndEquals("/Widget")) {
            // The field whose widget this is: the widget itself when it is named, else its parent.
            auto field = annot.hasKey("/T") ? annot : annot.getKey("/Parent");
            if (field.isDictionary()) {
                field.removeKey("/V");
                field.removeKey("/DV");
                // Its other widgets (on other pages) would still show the old value.
                auto widgets = field.getKey("/Kids");
                for (int k = 0; widgets.isArray() && k < widgets.getArrayNItems(); ++k) {
                    widgets.getArrayItem(k).removeKey("/AP");
                }
                if (form.isDictionary()) {
                    form.replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
                }
            }
            auto parent = annot.getKey("/Parent");
            removeFrom(parent, "/Kids", annot);
            if (annot.hasKey("/T")) {
                removeFrom(form, "/Fields", annot);
            } else if (parent.isDictionary() && parent.getKey("/Kids").isArray() &&
                       parent.getKey("/Kids").getArrayNItems() == 0) {
                removeFrom(parent.getKey("/Parent"), "/Kids", parent);
                removeFrom(form, "/Fields", parent);
            }
        }
        annots.eraseItem(i);
        ++removed;
    }
    // Pop-ups of the annotations that went go with them.
    for (int i = annots.getArrayNItems() - 1; i >= 0; --i) {
        auto annot = annots.getArrayItem(i);
        if (annot.isDictionary() && annot.getKey("/Subtype").isNameAndEquals("/Popup") &&
            gone.count(annot.getKey("/Parent").getObjGen())) {
            annots.eraseItem(i);
            ++removed;
        }
    }
    return removed;
}

int RedactedExtras::eraseMatches(QPDF& qpdf, const RedactionFinder& finder) {
    return TextPlaces(qpdf, finder, true).run();
}

int RedactedExtras::countMatches(QPDF& qpdf, const RedactionFinder& finder) {
    return TextPlaces(qpdf, finder, false).run();
}

} // namespace quillet
