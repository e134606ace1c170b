#include "engines/StampFonts.hpp"

#include "engines/ContentOperand.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/fonts/CFFCharset.hpp"
#include "platform/TextDecoding.hpp"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include <hb-subset.h>
#include <hb.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace quillet {
using fonts::cffTopDictOperand;
using fonts::makeCIDsGlyphIndices;
namespace {

template <typename T, void (*Destroy)(T*)> struct Deleter {
    void operator()(T* handle) const noexcept { Destroy(handle); }
};
using Blob = std::unique_ptr<hb_blob_t, Deleter<hb_blob_t, hb_blob_destroy>>;
using HBFace = std::unique_ptr<hb_face_t, Deleter<hb_face_t, hb_face_destroy>>;
using HBFont = std::unique_ptr<hb_font_t, Deleter<hb_font_t, hb_font_destroy>>;
using Buffer = std::unique_ptr<hb_buffer_t, Deleter<hb_buffer_t, hb_buffer_destroy>>;
using SubsetInput = std::unique_ptr<hb_subset_input_t, Deleter<hb_subset_input_t, hb_subset_input_destroy>>;
using SubsetPlan = std::unique_ptr<hb_subset_plan_t, Deleter<hb_subset_plan_t, hb_subset_plan_destroy>>;
using FcPatternPtr = std::unique_ptr<FcPattern, Deleter<FcPattern, FcPatternDestroy>>;

struct FTLibraryDeleter {
    void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};
struct FTFaceDeleter {
    void operator()(FT_Face face) const noexcept { FT_Done_Face(face); }
};

struct FaceSpec {
    const char* family;
    const char* language;
};
constexpr std::array<FaceSpec, 2> faceSpecs{{{"DejaVu Sans", "en"}, {"Noto Sans CJK SC", "zh-cn"}}};

/// The file and face index of `spec`'s family, or an empty path when fontconfig offers only
/// another family in its place.
std::pair<std::string, int> locate(const FaceSpec& spec) {
    if (!FcInit()) {
        return {};
    }
    FcPatternPtr pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(spec.family));
    FcPatternAddString(pattern.get(), FC_LANG, reinterpret_cast<const FcChar8*>(spec.language));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    FcPatternPtr match(FcFontMatch(nullptr, pattern.get(), &result));
    if (!match) {
        return {};
    }
    bool sameFamily = false;
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(match.get(), FC_FAMILY, i, &family) == FcResultMatch; ++i) {
        sameFamily = sameFamily || FcStrCmpIgnoreCase(family, reinterpret_cast<const FcChar8*>(spec.family)) == 0;
    }
    FcChar8* file = nullptr;
    int index = 0;
    if (!sameFamily || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch) {
        return {};
    }
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &index);
    return {reinterpret_cast<const char*>(file), index};
}

std::string utf16Hex(std::string_view utf8) {
    std::string hex;
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const int length = byte < 0x80 ? 1 : byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
        std::uint32_t cp = length == 1 ? byte : byte & (0x3F >> (length - 1));
        for (int k = 1; k < length && i + k < utf8.size(); ++k) {
            cp = cp << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        }
        i += length;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            hex += fmt::format("{:04X}{:04X}", 0xD800 + (cp >> 10), 0xDC00 + (cp & 0x3FF));
        } else {
            hex += fmt::format("{:04X}", cp);
        }
    }
    return hex;
}


std::string toUnicodeCMap(const std::map<unsigned, std::string>& texts) {
    std::string cmap =
        "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
        "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
        "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
        "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    std::vector<std::pair<unsigned, std::string>> entries;
    for (const auto& [code, text] : texts) {
        if (!text.empty()) {
            entries.emplace_back(code, utf16Hex(text));
        }
    }
    for (std::size_t at = 0; at < entries.size(); at += 100) {
        const auto end = std::min(entries.size(), at + 100);
        cmap += fmt::format("{} beginbfchar\n", end - at);
        for (auto i = at; i < end; ++i) {
            cmap += fmt::format("<{:04X}> <{}>\n", entries[i].first, entries[i].second);
        }
        cmap += "endbfchar\n";
    }
    cmap += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    return cmap;
}

} // namespace

struct StampFonts::Face {
    const FaceSpec* spec = nullptr;
    Blob blob;
    HBFace face;
    HBFont font;
    double unitsPerEm = 1000;
    std::map<unsigned, std::string> used; // original glyph → the characters it first stood for
    std::map<unsigned, unsigned> codes;   // original glyph → code in the embedded font
    QPDFObjectHandle object;

    double thousandths(hb_position_t units) const { return units * 1000.0 / unitsPerEm; }
    bool has(hb_codepoint_t character) const {
        hb_codepoint_t glyph = 0;
        return hb_font_get_nominal_glyph(font.get(), character, &glyph);
    }
};

StampFonts::StampFonts() {
    for (const auto& spec : faceSpecs) {
        faces_.push_back(std::make_unique<Face>());
        faces_.back()->spec = &spec;
    }
}

StampFonts::~StampFonts() = default;

StampFonts::Face& StampFonts::face(int index) {
    Face& face = *faces_.at(static_cast<std::size_t>(index));
    if (!face.font) {
        const auto [file, faceIndex] = locate(*face.spec);
        Blob blob(file.empty() ? nullptr : hb_blob_create_from_file_or_fail(file.c_str()));
        if (!blob) {
            throw PDFCoreError::invalidInput(
                fmt::format("The font {} is not installed.", face.spec->family));
        }
        face.face.reset(hb_face_create(blob.get(), static_cast<unsigned>(faceIndex)));
        face.unitsPerEm = std::max(1u, hb_face_get_upem(face.face.get()));
        face.font.reset(hb_font_create(face.face.get()));
        face.blob = std::move(blob);
    }
    return face;
}

ShapedText StampFonts::shape(std::string_view input) {
    const std::string text = validUTF8(input);
    // The characters and where each starts, before shaping.
    Buffer probe(hb_buffer_create());
    hb_buffer_add_utf8(probe.get(), text.data(), static_cast<int>(text.size()), 0,
                       static_cast<int>(text.size()));
    unsigned count = 0;
    const hb_glyph_info_t* chars = hb_buffer_get_glyph_infos(probe.get(), &count);
    const auto covers = [&](int index) {
        Face& candidate = face(index);
        return std::all_of(chars, chars + count, [&](const hb_glyph_info_t& c) {
            return c.codepoint < 0x20 || candidate.has(c.codepoint);
        });
    };
    // One face for the whole text where one will do.
    std::vector<int> faceOf(count, -1);
    for (int index = 0; index < static_cast<int>(faces_.size()); ++index) {
        if (covers(index)) {
            std::fill(faceOf.begin(), faceOf.end(), index);
            break;
        }
    }
    for (unsigned i = 0; i < count; ++i) {
        for (int index = 0; faceOf[i] < 0 && index < static_cast<int>(faces_.size()); ++index) {
            if (face(index).has(chars[i].codepoint)) {
                faceOf[i] = index;
            }
        }
        if (faceOf[i] < 0) {
            const auto at = chars[i].cluster;
            const auto next = i + 1 < count ? chars[i + 1].cluster : static_cast<unsigned>(text.size());
            throw PDFCoreError::invalidInput(
                fmt::format("no installed font has the character \"{}\" (U+{:04X}).",
                            text.substr(at, next - at), chars[i].codepoint));
        }
    }

    ShapedText shaped;
    for (unsigned begin = 0; begin < count;) {
        unsigned end = begin;
        while (end < count && faceOf[end] == faceOf[begin]) {
            ++end;
        }
        const auto from = chars[begin].cluster;
        const auto to = end < count ? chars[end].cluster : static_cast<unsigned>(text.size());
        const std::string piece = text.substr(from, to - from);
        Face& runFace = face(faceOf[begin]);
        Buffer buffer(hb_buffer_create());
        hb_buffer_add_utf8(buffer.get(), piece.data(), static_cast<int>(piece.size()), 0,
                           static_cast<int>(piece.size()));
        hb_buffer_guess_segment_properties(buffer.get());
        hb_shape(runFace.font.get(), buffer.get(), nullptr, 0);
        unsigned glyphs = 0;
        const auto* infos = hb_buffer_get_glyph_infos(buffer.get(), &glyphs);
        const auto* positions = hb_buffer_get_glyph_positions(buffer.get(), &glyphs);
        std::set<unsigned> starts;
        for (unsigned g = 0; g < glyphs; ++g) {
            starts.insert(infos[g].cluster);
        }
        ShapedRun run;
        run.face = faceOf[begin];
        std::set<unsigned> named;
        for (unsigned g = 0; g < glyphs; ++g) {
            ShapedRun::Glyph glyph;
            glyph.gid = infos[g].codepoint;
            glyph.advance = runFace.thousandths(positions[g].x_advance);
            const unsigned cluster = infos[g].cluster;
            if (named.insert(cluster).second) {
                const auto next = starts.upper_bound(cluster);
                const unsigned stop = next == starts.end() ? static_cast<unsigned>(piece.size()) : *next;
                glyph.text = piece.substr(cluster, stop - cluster);
            }
            runFace.used.emplace(glyph.gid, glyph.text);
            if (!glyph.text.empty() && runFace.used[glyph.gid].empty()) {
                runFace.used[glyph.gid] = glyph.text;
            }
            hb_glyph_extents_t ink{};
            if (hb_font_get_glyph_extents(runFace.font.get(), glyph.gid, &ink) && ink.width != 0) {
                const double x = shaped.width + runFace.thousandths(positions[g].x_offset);
                const double y = runFace.thousandths(positions[g].y_offset);
                const double left = x + runFace.thousandths(ink.x_bearing);
                const double top = y + runFace.thousandths(ink.y_bearing);
                shaped.inkLeft = std::min(shaped.inkLeft, left);
                shaped.inkRight = std::max(shaped.inkRight, left + runFace.thousandths(ink.width));
                shaped.inkTop = std::max(shaped.inkTop, top);
                shaped.inkBottom = std::min(shaped.inkBottom, top + runFace.thousandths(ink.height));
            }
            shaped.width += glyph.advance;
            run.glyphs.push_back(std::move(glyph));
        }
        hb_font_extents_t extents{};
        hb_font_get_h_extents(runFace.font.get(), &extents);
        shaped.ascent = std::max(shaped.ascent, runFace.thousandths(extents.ascender));
        shaped.descent = std::min(shaped.descent, runFace.thousandths(extents.descender));
        shaped.runs.push_back(std::move(run));
        begin = end;
    }
    if (shaped.runs.empty()) {
        shaped.ascent = 800;
        shaped.descent = -200;
    }
    return shaped;
}

void StampFonts::embed(QPDF& qpdf) {
    std::unique_ptr<FT_LibraryRec_, FTLibraryDeleter> library;
    {
        FT_Library handle = nullptr;
        if (FT_Init_FreeType(&handle) != 0) {
            throw PDFCoreError::invalidInput("The font library could not start.");
        }
        library.reset(handle);
    }
    for (auto& owned : faces_) {
        Face& face = *owned;
        if (!face.font || face.used.empty()) {
            continue;
        }
        const auto failed = [&] {
            return PDFCoreError::invalidInput(
                fmt::format("The font {} could not be embedded.", face.spec->family));
        };
        SubsetInput input(hb_subset_input_create_or_fail());
        if (!input) {
            throw failed();
        }
        hb_set_t* glyphs = hb_subset_input_glyph_set(input.get());
        hb_set_add(glyphs, 0);
        for (const auto& [gid, text] : face.used) {
            hb_set_add(glyphs, gid);
        }
        // Shaping is done: the layout tables and the rest that a PDF reader never reads go.
        hb_set_t* drop = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
        for (const char* tag : {"GSUB", "GPOS", "GDEF", "BASE", "JSTF", "MATH", "kern", "DSIG",
                                "vhea", "vmtx", "VORG", "hdmx", "LTSH", "VDMX", "gasp", "COLR",
                                "CPAL", "SVG ", "sbix", "CBDT", "CBLC", "EBDT", "EBLC", "EBSC",
                                "meta", "morx", "feat", "STAT", "PCLT"}) {
            hb_set_add(drop, hb_tag_from_string(tag, 4));
        }
        hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
        SubsetPlan plan(hb_subset_plan_create_or_fail(face.face.get(), input.get()));
        HBFace subset(plan ? hb_subset_plan_execute_or_fail(plan.get()) : nullptr);
        if (!subset) {
            throw failed();
        }
        const hb_map_t* renumbered = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
        Blob bytesBlob(hb_face_reference_blob(subset.get()));
        unsigned length = 0;
        const char* data = hb_blob_get_data(bytesBlob.get(), &length);
        const std::string program(data ? data : "", data ? length : 0);
        Blob cffTable(hb_face_reference_table(subset.get(), HB_TAG('C', 'F', 'F', ' ')));
        const bool cff = hb_blob_get_length(cffTable.get()) > 0;

        FT_Face ftHandle = nullptr;
        if (program.empty() ||
            FT_New_Memory_Face(library.get(), reinterpret_cast<const FT_Byte*>(program.data()),
                               static_cast<FT_Long>(program.size()), 0, &ftHandle) != 0) {
            throw failed();
        }
        std::unique_ptr<FT_FaceRec_, FTFaceDeleter> ftFace(ftHandle);
        // A CFF program goes in bare, its CIDs made its glyph indices: the code of a glyph is its
        // index in the subset for every reader, for TrueType and CFF alike.
        std::string cffProgram;
        if (cff) {
            unsigned cffLength = 0;
            const char* cffData = hb_blob_get_data(cffTable.get(), &cffLength);
            cffProgram.assign(cffData, cffLength);
            if (cffTopDictOperand(cffProgram, 130) && !makeCIDsGlyphIndices(cffProgram)) {
                throw failed();
            }
        }
        std::map<unsigned, std::string> texts;
        std::string widths;
        for (const auto& [gid, text] : face.used) {
            const hb_codepoint_t newGid = hb_map_get(renumbered, gid);
            if (newGid == HB_MAP_VALUE_INVALID) {
                throw failed();
            }
            const unsigned code = newGid;
            face.codes[gid] = code;
            if (gid != 0) { // the missing glyph stands for no character
                texts[code] = text;
            }
            widths += fmt::format("{} [{}] ", code,
                                  contentOperand(face.thousandths(hb_font_get_glyph_h_advance(face.font.get(), gid))));
        }

        // A subset's name carries a tag of six capitals, the same for the same glyphs.
        std::uint32_t hash = 2166136261u;
        for (const auto& [gid, text] : face.used) {
            hash = (hash ^ gid) * 16777619u;
        }
        std::string tag;
        for (int i = 0; i < 6; ++i, hash /= 26) {
            tag += static_cast<char>('A' + hash % 26);
        }
        const char* postscript = FT_Get_Postscript_Name(ftFace.get());
        std::string baseName = tag + "+" + (postscript ? postscript : "Font");
        std::erase_if(baseName, [](char c) { return c == ' ' || c == '/' || c == '(' || c == ')'; });

        const double scale = 1000.0 / std::max<FT_UShort>(ftFace->units_per_EM, 1);
        auto program_stream = QPDFObjectHandle::newStream(&qpdf, cff ? cffProgram : program);
        if (cff) {
            program_stream.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/CIDFontType0C"));
        } else {
            program_stream.getDict().replaceKey("/Length1", QPDFObjectHandle::newInteger(program.size()));
        }
        hb_font_extents_t extents{};
        hb_font_get_h_extents(face.font.get(), &extents);
        auto descriptor = QPDFObjectHandle::parse(fmt::format(
            "<< /Type /FontDescriptor /Flags 4 /FontBBox [{} {} {} {}] /ItalicAngle 0 /Ascent {} "
            "/Descent {} /CapHeight {} /StemV 80 >>",
            contentOperand(ftFace->bbox.xMin * scale), contentOperand(ftFace->bbox.yMin * scale),
            contentOperand(ftFace->bbox.xMax * scale), contentOperand(ftFace->bbox.yMax * scale),
            contentOperand(face.thousandths(extents.ascender)), contentOperand(face.thousandths(extents.descender)),
            contentOperand(face.thousandths(extents.ascender))));
        descriptor.replaceKey("/FontName", QPDFObjectHandle::newName("/" + baseName));
        descriptor.replaceKey(cff ? "/FontFile3" : "/FontFile2", program_stream);

        auto cidFont = QPDFObjectHandle::parse(fmt::format(
            "<< /Type /Font /Subtype /{} /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) "
            "/Supplement 0 >> /DW 1000 /W [{}] >>",
            cff ? "CIDFontType0" : "CIDFontType2", widths));
        cidFont.replaceKey("/BaseFont", QPDFObjectHandle::newName("/" + baseName));
        cidFont.replaceKey("/FontDescriptor", qpdf.makeIndirectObject(descriptor));
        if (!cff) {
            cidFont.replaceKey("/CIDToGIDMap", QPDFObjectHandle::newName("/Identity"));
        }
        auto font = QPDFObjectHandle::parse("<< /Type /Font /Subtype /Type0 /Encoding /Identity-H >>");
        font.replaceKey("/BaseFont", QPDFObjectHandle::newName("/" + baseName));
        font.replaceKey("/DescendantFonts",
                        QPDFObjectHandle::newArray({qpdf.makeIndirectObject(cidFont)}));
        font.replaceKey("/ToUnicode", QPDFObjectHandle::newStream(&qpdf, toUnicodeCMap(texts)));
        face.object = qpdf.makeIndirectObject(font);
    }
}

std::map<std::string, QPDFObjectHandle> StampFonts::resources(const ShapedText& text) const {
    std::map<std::string, QPDFObjectHandle> fonts;
    for (const auto& run : text.runs) {
        fonts.emplace("/F" + std::to_string(run.face), faces_.at(run.face)->object);
    }
    return fonts;
}

std::string StampFonts::show(const ShapedText& text, double size) const {
    std::string ops;
    for (const auto& run : text.runs) {
        const Face& face = *faces_.at(run.face);
        ops += fmt::format("/F{} {} Tf [<", run.face, contentOperand(size));
        for (const auto& glyph : run.glyphs) {
            const auto code = face.codes.find(glyph.gid);
            ops += fmt::format("{:04X}", code == face.codes.end() ? 0u : code->second);
            // The width a reader advances by is the glyph's own; kerning is the difference.
            const double own = face.thousandths(hb_font_get_glyph_h_advance(face.font.get(), glyph.gid));
            if (std::abs(own - glyph.advance) > 0.01) {
                ops += fmt::format("> {} <", contentOperand(own - glyph.advance));
            }
        }
        ops += ">] TJ\n";
    }
    return ops;
}

} // namespace quillet
