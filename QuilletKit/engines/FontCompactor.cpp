#include "engines/FontCompactor.hpp"

#include "engines/AppearanceStreams.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/fonts/SFNTSubsetter.hpp"
#include "engines/fonts/Type1ToCFF.hpp"
#include "platform/ContentDigest.hpp"

#include <qpdf/Buffer.hh>

#include <algorithm>

namespace quillet {
namespace {

enum class ProgramKind { type1, trueType, openType, type1C, cidType0C };

// One embedded program and every font that uses it.
struct Program {
    QPDFObjectHandle stream;
    ProgramKind kind = ProgramKind::type1;
    bool simple = true;  // reached by codes through names or cmap (false: by CID)
    bool inForm = false; // named in the form's default resources or an annotation's appearance
    std::vector<QPDFObjectHandle> descriptors;
    std::vector<QPDFObjectHandle> fonts; // /BaseFont carriers: the font, and a Type0's parent
};

std::optional<std::pair<QPDFObjectHandle, ProgramKind>> programOf(QPDFObjectHandle descriptor) {
    if (!descriptor.isDictionary()) {
        return std::nullopt;
    }
    if (auto file = descriptor.getKey("/FontFile"); file.isStream()) {
        return std::pair{file, ProgramKind::type1};
    }
    if (auto file = descriptor.getKey("/FontFile2"); file.isStream()) {
        return std::pair{file, ProgramKind::trueType};
    }
    if (auto file = descriptor.getKey("/FontFile3"); file.isStream()) {
        auto subtype = file.getDict().getKey("/Subtype");
        if (subtype.isNameAndEquals("/Type1C")) {
            return std::pair{file, ProgramKind::type1C};
        }
        if (subtype.isNameAndEquals("/CIDFontType0C")) {
            return std::pair{file, ProgramKind::cidType0C};
        }
        if (subtype.isNameAndEquals("/OpenType")) {
            return std::pair{file, ProgramKind::openType};
        }
    }
    return std::nullopt;
}

std::string decoded(QPDFObjectHandle stream) {
    const auto buffer = stream.getStreamData(qpdf_dl_generalized);
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

// The program of a font a resource dictionary names: its own descriptor's, or for a Type0 font
// its descendant's.
std::optional<QPDFObjGen> programOfFont(QPDFObjectHandle font) {
    auto descriptor = font.getKey("/FontDescriptor");
    if (font.getKey("/Subtype").isNameAndEquals("/Type0")) {
        descriptor = font.getKey("/DescendantFonts").getArrayItem(0).getKey("/FontDescriptor");
    }
    const auto program = programOf(descriptor);
    return program ? std::optional(program->first.getObjGen()) : std::nullopt;
}

void addFontPrograms(QPDFObjectHandle fonts, std::set<QPDFObjGen>& programs) {
    if (!fonts.isDictionary()) {
        return;
    }
    for (const auto& key : fonts.getKeys()) {
        if (const auto program = programOfFont(fonts.getKey(key))) {
            programs.insert(*program);
        }
    }
}

// The programs of the fonts an appearance stream (and the forms it draws) names.
void appearanceFontPrograms(QPDFObjectHandle stream, int depth, std::set<QPDFObjGen>& seen,
                            std::set<QPDFObjGen>& programs) {
    if (!stream.isStream() || depth > 8 || !seen.insert(stream.getObjGen()).second) {
        return;
    }
    auto resources = stream.getDict().getKey("/Resources");
    addFontPrograms(resources.getKey("/Font"), programs);
    if (auto forms = resources.getKey("/XObject"); forms.isDictionary()) {
        for (const auto& key : forms.getKeys()) {
            appearanceFontPrograms(forms.getKey(key), depth + 1, seen, programs);
        }
    }
}

// Programs kept whole: those of the form's default resources, since a user may still type into
// the form with them, and those of annotation appearances, since an annotation that is hidden or
// shown only in print is not drawn when the pages are run, so its glyphs are not known.
std::set<QPDFObjGen> wholePrograms(QPDF& qpdf) {
    std::set<QPDFObjGen> programs;
    addFontPrograms(qpdf.getRoot().getKey("/AcroForm").getKey("/DR").getKey("/Font"), programs);
    std::set<QPDFObjGen> seen;
    forEachAppearanceStream(qpdf, [&](QPDFObjectHandle appearance) {
        appearanceFontPrograms(appearance, 0, seen, programs);
    });
    return programs;
}

std::map<QPDFObjGen, Program> programsOf(QPDF& qpdf, const std::vector<QPDFObjectHandle>& fonts) {
    const auto inForm = wholePrograms(qpdf);
    std::map<QPDFObjGen, Program> programs;
    for (auto font : fonts) {
        if (!font.isDictionary()) {
            continue;
        }
        std::vector<QPDFObjectHandle> carriers{font};
        auto holder = font;
        bool simple = true;
        if (font.getKey("/Subtype").isNameAndEquals("/Type0")) {
            auto descendants = font.getKey("/DescendantFonts");
            if (!descendants.isArray() || descendants.getArrayNItems() < 1) {
                continue;
            }
            holder = descendants.getArrayItem(0);
            carriers.push_back(holder);
            simple = false;
        }
        auto descriptor = holder.getKey("/FontDescriptor");
        const auto program = programOf(descriptor);
        if (!program) {
            continue;
        }
        auto& entry = programs[program->first.getObjGen()];
        if (entry.descriptors.empty()) {
            entry.stream = program->first;
            entry.kind = program->second;
            entry.simple = simple;
            entry.inForm = inForm.count(program->first.getObjGen()) > 0;
        } else if (entry.simple != simple) {
            entry.simple = true; // used both ways: keep what names and cmaps need
        }
        // Direct descriptors all have the object number 0: compared as objects, not numbers.
        if (std::none_of(entry.descriptors.begin(), entry.descriptors.end(),
                         [&](auto d) { return d.isSameObjectAs(descriptor); })) {
            entry.descriptors.push_back(descriptor);
        }
        entry.fonts.insert(entry.fonts.end(), carriers.begin(), carriers.end());
    }
    return programs;
}

std::optional<std::int64_t> integerKey(QPDFObjectHandle dictionary, const char* key) {
    auto value = dictionary.getKey(key);
    return value.isInteger() ? std::optional(value.getIntValue()) : std::nullopt;
}

// Six capital letters drawn from the new program's bytes: the same subset gets the same tag.
std::string freshTag(const std::string& program) {
    const auto digest = contentDigest(program);
    std::string tag;
    for (std::size_t i = 0; i < 6; ++i) {
        tag.push_back(
            static_cast<char>('A' + std::stoi(digest.substr(8 + 2 * i, 2), nullptr, 16) % 26));
    }
    return tag;
}

std::string retagged(const std::string& name, const std::string& tag) {
    // name is "/ABCDEF+Family" or "/Family"
    std::string family = name.substr(1);
    if (family.size() > 7 && family[6] == '+' &&
        std::all_of(family.begin(), family.begin() + 6,
                    [](char c) { return c >= 'A' && c <= 'Z'; })) {
        family.erase(0, 7);
    }
    return "/" + tag + "+" + family;
}

void retag(Program& program, const std::string& tag) {
    for (auto& font : program.fonts) {
        if (auto name = font.getKey("/BaseFont"); name.isName()) {
            font.replaceKey("/BaseFont", QPDFObjectHandle::newName(retagged(name.getName(), tag)));
        }
    }
    for (auto& descriptor : program.descriptors) {
        if (auto name = descriptor.getKey("/FontName"); name.isName()) {
            descriptor.replaceKey("/FontName",
                                  QPDFObjectHandle::newName(retagged(name.getName(), tag)));
        }
        // These list what the whole program held.
        descriptor.removeKey("/CharSet");
        descriptor.removeKey("/CIDSet");
    }
}

std::optional<std::string> convertType1(Program program, const std::string& bytes,
                                        const std::optional<std::set<int>>& glyphs) {

    const std::span data(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    std::optional<std::set<std::string>> names;
    if (glyphs) {
        std::set<unsigned> indices(glyphs->begin(), glyphs->end());
        names = fonts::Type1ToCFF::glyphNamesForIndices(data, indices);
        if (names->empty()) {
            names.reset();
        }
    }
    auto dictionary = program.stream.getDict();
    auto converted = fonts::Type1ToCFF::convert(data, integerKey(dictionary, "/Length1"),
                                                integerKey(dictionary, "/Length2"), names);
    if (!converted) {
        return std::nullopt;
    }
    return std::move(converted->cff);
}

} // namespace

FontCompaction FontCompactor::compact(QPDF& qpdf, const std::vector<QPDFObjectHandle>& fonts,
                                      const std::optional<GlyphUsage>& usage,
                                      const Cancelled& cancelled) {
    FontCompaction result;
    for (auto& [id, program] : programsOf(qpdf, fonts)) {
        if (cancelled && cancelled()) {
            throw CancellationError();
        }
        try {
            const std::string bytes = decoded(program.stream);
            const auto stored =
                static_cast<std::int64_t>(program.stream.getRawStreamData()->getSize());
            std::optional<std::set<int>> glyphs;
            if (usage && !program.inForm) {
                if (const auto found = usage->find(contentDigest(bytes)); found != usage->end()) {
                    glyphs = found->second;
                }
            }
            std::optional<std::string> smaller;
            if (program.kind == ProgramKind::type1) {
                smaller = convertType1(program, bytes, glyphs);
            } else {
                fonts::SFNTSubsetter::Request request;
                request.format =
                    program.kind == ProgramKind::trueType || program.kind == ProgramKind::openType
                        ? fonts::SFNTSubsetter::Format::trueType
                        : fonts::SFNTSubsetter::Format::bareCFF;
                request.simple = program.simple;
                request.glyphs = glyphs;
                // A bare CFF program has no tables to drop: it is only ever cut to its glyphs.
                // CID-keyed CFF (bare, or inside an OpenType program of a CID font) cut by the
                // subsetter reads the same in FreeType but loses glyphs in Poppler, so those
                // programs keep every glyph.
                const bool cidCFF = program.kind == ProgramKind::cidType0C ||
                                    (program.kind == ProgramKind::openType && !program.simple);
                if (cidCFF) {
                    request.glyphs.reset();
                }
                if (request.glyphs || request.format == fonts::SFNTSubsetter::Format::trueType) {
                    smaller = fonts::SFNTSubsetter::subset(bytes, request);
                }
            }
            if (!smaller) {
                continue;
            }
            auto dictionary = program.stream.getDict();
            result.bytesBefore += stored;
            program.stream.replaceStreamData(*smaller, QPDFObjectHandle::newNull(),
                                             QPDFObjectHandle::newNull());
            if (program.kind == ProgramKind::type1) {
                for (const char* key : {"/Length1", "/Length2", "/Length3"}) {
                    dictionary.removeKey(key);
                }
                dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Type1C"));
                for (auto& descriptor : program.descriptors) {
                    descriptor.removeKey("/FontFile");
                    descriptor.replaceKey("/FontFile3", program.stream);
                }
                ++result.converted;
            } else if (program.kind == ProgramKind::trueType) {
                dictionary.replaceKey("/Length1", QPDFObjectHandle::newInteger(
                                                      static_cast<long long>(smaller->size())));
            }
            if (glyphs && !(program.kind == ProgramKind::cidType0C ||
                            (program.kind == ProgramKind::openType && !program.simple))) {
                retag(program, freshTag(*smaller));
                ++result.subset;
            } else if (program.kind != ProgramKind::type1) {
                ++result.trimmed;
            }
            result.bytesAfter += static_cast<std::int64_t>(smaller->size());
        } catch (const CancellationError&) {
            throw;
        } catch (const std::exception&) {
            // A program that cannot be read or rewritten stays as it is.
        }
    }
    return result;
}

} // namespace quillet
