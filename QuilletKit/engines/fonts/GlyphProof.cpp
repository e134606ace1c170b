#include "engines/fonts/GlyphProof.hpp"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_CID_H

#include <cstring>
#include <map>
#include <memory>
#include <vector>

namespace quillet::fonts {
namespace {

struct LibraryDeleter {
    void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};
using LibraryPtr = std::unique_ptr<std::remove_pointer_t<FT_Library>, LibraryDeleter>;

struct FaceDeleter {
    void operator()(FT_Face face) const noexcept { FT_Done_Face(face); }
};
using FacePtr = std::unique_ptr<std::remove_pointer_t<FT_Face>, FaceDeleter>;

FacePtr load(FT_Library library, std::string_view program) {
    FT_Face face = nullptr;
    if (FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(program.data()),
                           static_cast<FT_Long>(program.size()), 0, &face) != 0) {
        return nullptr;
    }
    return FacePtr(face);
}

struct Outline {
    std::vector<FT_Vector> points;
    std::vector<char> tags;
    std::vector<short> contours;
    FT_Pos advance = 0;

    bool operator==(const Outline& other) const {
        return advance == other.advance && tags == other.tags && contours == other.contours &&
               points.size() == other.points.size() &&
               std::equal(
                   points.begin(), points.end(), other.points.begin(),
                   [](const FT_Vector& a, const FT_Vector& b) { return a.x == b.x && a.y == b.y; });
    }
};

bool outline(FT_Face face, int gid, Outline& out) {
    if (gid < 0 || gid >= face->num_glyphs ||
        FT_Load_Glyph(face, static_cast<FT_UInt>(gid),
                      FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0) {
        return false;
    }
    const FT_GlyphSlot slot = face->glyph;
    out.advance = slot->metrics.horiAdvance;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE) {
        return slot->format == FT_GLYPH_FORMAT_NONE;
    }
    const FT_Outline& o = slot->outline;
    out.points.assign(o.points, o.points + o.n_points);
    out.tags.assign(o.tags, o.tags + o.n_points);
    for (auto& tag : out.tags) {
        tag = static_cast<char>(FT_CURVE_TAG(tag));
    }
    out.contours.assign(o.contours, o.contours + o.n_contours);
    return true;
}

std::string glyphName(FT_Face face, int gid) {
    char name[128] = {};
    if (!FT_HAS_GLYPH_NAMES(face) ||
        FT_Get_Glyph_Name(face, static_cast<FT_UInt>(gid), name, sizeof name) != 0) {
        return {};
    }
    return name;
}

// For each charmap (by platform and encoding), the codes that reach the glyphs of `glyphs`.
std::map<std::pair<int, int>, std::multimap<FT_ULong, FT_UInt>>
charmapCodes(FT_Face face, const std::set<int>& glyphs) {
    std::map<std::pair<int, int>, std::multimap<FT_ULong, FT_UInt>> codes;
    for (int i = 0; i < face->num_charmaps; ++i) {
        FT_CharMap charmap = face->charmaps[i];
        if (FT_Set_Charmap(face, charmap) != 0) {
            continue;
        }
        auto& entry = codes[{charmap->platform_id * 1000 + charmap->encoding_id,
                             static_cast<int>(charmap->encoding)}];
        FT_UInt gid = 0;
        for (FT_ULong code = FT_Get_First_Char(face, &gid); gid != 0;
             code = FT_Get_Next_Char(face, code, &gid)) {
            if (glyphs.count(static_cast<int>(gid))) {
                entry.emplace(code, gid);
            }
        }
    }
    return codes;
}

} // namespace

bool GlyphProof::sameGlyphs(std::string_view original, std::string_view rewritten,
                            const std::set<int>& glyphs, const Checks& checks) {
    FT_Library raw = nullptr;
    if (FT_Init_FreeType(&raw) != 0) {
        return false;
    }
    LibraryPtr library(raw);
    auto before = load(raw, original);
    auto after = load(raw, rewritten);
    if (!before || !after) {
        return false;
    }
    for (const int gid : glyphs) {
        if (gid >= before->num_glyphs) {
            continue; // a glyph the original does not have draws nothing in either
        }
        Outline a;
        Outline b;
        if (!outline(before.get(), gid, a) || !outline(after.get(), gid, b) || !(a == b)) {
            return false;
        }
        if (checks.names && glyphName(before.get(), gid) != glyphName(after.get(), gid)) {
            return false;
        }
        if (checks.cids) {
            FT_UInt cidBefore = 0;
            FT_UInt cidAfter = 0;
            const bool hasBefore = FT_Get_CID_From_Glyph_Index(before.get(), gid, &cidBefore) == 0;
            const bool hasAfter = FT_Get_CID_From_Glyph_Index(after.get(), gid, &cidAfter) == 0;
            if (hasBefore != hasAfter || cidBefore != cidAfter) {
                return false;
            }
        }
    }
    return !checks.charmaps ||
           charmapCodes(before.get(), glyphs) == charmapCodes(after.get(), glyphs);
}

std::set<int> GlyphProof::closedOverCharmaps(std::string_view program,
                                             const std::set<int>& glyphs) {
    FT_Library raw = nullptr;
    if (FT_Init_FreeType(&raw) != 0) {
        return glyphs;
    }
    LibraryPtr library(raw);
    auto face = load(raw, program);
    if (!face) {
        return glyphs;
    }
    // Each charmap's codes (symbol-area codes folded onto their single-byte form).
    std::vector<std::multimap<FT_ULong, int>> charmaps;
    for (int i = 0; i < face->num_charmaps; ++i) {
        if (FT_Set_Charmap(face.get(), face->charmaps[i]) != 0) {
            continue;
        }
        auto& codes = charmaps.emplace_back();
        FT_UInt gid = 0;
        for (FT_ULong code = FT_Get_First_Char(face.get(), &gid); gid != 0;
             code = FT_Get_Next_Char(face.get(), code, &gid)) {
            codes.emplace(code >= 0xF000 && code <= 0xF0FF ? code - 0xF000 : code,
                          static_cast<int>(gid));
        }
    }
    std::set<FT_ULong> reaching;
    for (const auto& codes : charmaps) {
        for (const auto& [code, gid] : codes) {
            if (glyphs.count(gid)) {
                reaching.insert(code);
            }
        }
    }
    std::set<int> closed = glyphs;
    for (const auto& codes : charmaps) {
        for (const auto code : reaching) {
            const auto [first, last] = codes.equal_range(code);
            for (auto it = first; it != last; ++it) {
                closed.insert(it->second);
            }
        }
    }
    return closed;
}

} // namespace quillet::fonts
