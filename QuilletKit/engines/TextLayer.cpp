#include "engines/TextLayer.hpp"

#include "platform/StreamData.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <memory>
#include <set>
#include <vector>

namespace quillet {
namespace {

constexpr int maximumFormDepth = 32;

// What stays of the content: the text, and what places it.
const std::set<std::string> keptOperators{
    "q", "Q", "cm",                                      // saved states and transforms
    "BT", "ET",                                          // text objects
    "Tc", "Tw", "Tz", "TL", "Tf", "Ts",                  // text state (Tr is replaced)
    "Td", "TD", "Tm", "T*",                              // text position
    "Tj", "TJ", "'", "\"",                               // text shown
    "BMC", "BDC", "EMC",                                 // marked content
};
const std::set<std::string> showingOperators{"Tj", "TJ", "'", "\""};

QPDFObjectHandle dictionaryOrEmpty(QPDFObjectHandle holder, const std::string& key) {
    if (holder.isDictionary()) {
        auto value = holder.getKey(key);
        if (value.isDictionary()) {
            return value.shallowCopy();
        }
    }
    return QPDFObjectHandle::newDictionary();
}

} // namespace

std::optional<TextLayer::Layer> TextLayer::of(QPDFObjectHandle page) {
    try {
        const auto content = pageContentData(page);
        if (!content) {
            return std::nullopt;
        }
        auto resources = page.getKey("/Resources");
        Filtered filtered = filter(*content, resources, 0);
        if (!filtered.hasText) {
            return std::nullopt;
        }
        return Layer{std::move(filtered.content), dictionaryOrEmpty(resources, "/Font"),
                     filtered.forms, dictionaryOrEmpty(resources, "/Properties")};
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

TextLayer::Filtered TextLayer::filter(const std::string& content, QPDFObjectHandle resources,
                                      int depth) {
    Filtered out;
    out.forms = QPDFObjectHandle::newDictionary();
    Buffer buffer(reinterpret_cast<unsigned char*>(const_cast<char*>(content.data())),
                  content.size());
    auto input = std::make_shared<BufferInputSource>("content", &buffer);
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    std::vector<std::string> operands;
    std::string composite; // an array or dictionary operand being read
    int nesting = 0;
    int saved = 0; // q without its Q so far: closed at the end, so the layer stays balanced
    try {
        while (true) {
            const auto token = tokenizer.readToken(input, "content", true);
            const auto type = token.getType();
            if (type == QPDFTokenizer::tt_eof || type == QPDFTokenizer::tt_bad) {
                break;
            }
            if (type == QPDFTokenizer::tt_space || type == QPDFTokenizer::tt_comment) {
                continue;
            }
            if (type == QPDFTokenizer::tt_array_open || type == QPDFTokenizer::tt_dict_open) {
                ++nesting;
                composite += token.getRawValue() + " ";
                continue;
            }
            if (nesting > 0) {
                composite += token.getRawValue() + " ";
                if (type == QPDFTokenizer::tt_array_close ||
                    type == QPDFTokenizer::tt_dict_close) {
                    if (--nesting == 0) {
                        operands.push_back(std::move(composite));
                        composite.clear();
                    }
                }
                continue;
            }
            if (type != QPDFTokenizer::tt_word) {
                operands.push_back(token.getRawValue());
                continue;
            }
            const std::string op = token.getValue();
            if (op == "ID") {
                // An inline image: its data is skipped up to and with its EI.
                char separator;
                input->read(&separator, 1);
                tokenizer.expectInlineImage(input);
                tokenizer.readToken(input, "inline image", true);
            } else if (op == "Do" && !operands.empty()) {
                const std::string name = operands.back();
                auto xobjects = resources.isDictionary() ? resources.getKey("/XObject")
                                                         : QPDFObjectHandle::newNull();
                auto form = xobjects.isDictionary() ? xobjects.getKey(name)
                                                    : QPDFObjectHandle::newNull();
                if (auto copy = textOnlyForm(form, depth); !copy.isNull()) {
                    out.forms.replaceKey(name, copy);
                    out.content += name + " Do\n";
                    out.hasText = true;
                }
            } else if (op == "q") {
                ++saved;
                out.content += "q\n";
            } else if (op == "Q") {
                if (saved > 0) { // a stray Q would undo the states around the layer
                    --saved;
                    out.content += "Q\n";
                }
            } else if (keptOperators.count(op)) {
                for (const auto& operand : operands) {
                    out.content += operand;
                    out.content += ' ';
                }
                out.content += op;
                out.content += op == "BT" ? "\n3 Tr\n" : "\n";
                out.hasText = out.hasText || showingOperators.count(op) != 0;
            }
            operands.clear();
        }
    } catch (const std::exception&) {
        // Damaged content: the layer ends where it stopped making sense.
    }
    for (; saved > 0; --saved) {
        out.content += "Q\n";
    }
    return out;
}

QPDFObjectHandle TextLayer::textOnlyForm(QPDFObjectHandle form, int depth) {
    if (!form.isStream() || !form.isIndirect() || depth >= maximumFormDepth) {
        return QPDFObjectHandle::newNull();
    }
    auto dictionary = form.getDict();
    if (!dictionary.getKey("/Subtype").isNameAndEquals("/Form")) {
        return QPDFObjectHandle::newNull();
    }
    const QPDFObjGen id = form.getObjGen();
    if (const auto made = forms_.find(id); made != forms_.end()) {
        return made->second;
    }
    if (open_.count(id)) {
        return QPDFObjectHandle::newNull(); // a form that draws itself
    }
    open_[id] = true;
    QPDFObjectHandle copy = QPDFObjectHandle::newNull();
    if (const auto content = decodedStreamData(form)) {
        auto resources = dictionary.getKey("/Resources");
        Filtered filtered = filter(*content, resources, depth + 1);
        if (filtered.hasText) {
            copy = QPDFObjectHandle::newStream(&qpdf_, filtered.content);
            auto copied = copy.getDict();
            copied.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
            copied.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
            for (const char* key : {"/BBox", "/Matrix"}) {
                if (dictionary.hasKey(key)) {
                    copied.replaceKey(key, dictionary.getKey(key));
                }
            }
            auto kept = QPDFObjectHandle::newDictionary();
            kept.replaceKey("/Font", dictionaryOrEmpty(resources, "/Font"));
            kept.replaceKey("/Properties", dictionaryOrEmpty(resources, "/Properties"));
            kept.replaceKey("/XObject", filtered.forms);
            copied.replaceKey("/Resources", kept);
        }
    }
    open_.erase(id);
    forms_[id] = copy;
    return copy;
}

} // namespace quillet
