#include "engines/fonts/FontVerifier.hpp"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <memory>
#include <vector>

namespace quillet::fonts {
namespace {

struct LibraryDeleter {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct FaceDeleter {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Library = std::unique_ptr<FT_LibraryRec_, LibraryDeleter>;
using Face = std::unique_ptr<FT_FaceRec_, FaceDeleter>;

Library openLibrary() {
    FT_Library library = nullptr;
    return Library(FT_Init_FreeType(&library) == 0 ? library : nullptr);
}

Face openFace(FT_Library library, std::span<const std::uint8_t> bytes) {
    FT_Face face = nullptr;
    if (!library || bytes.empty() ||
        FT_New_Memory_Face(library, bytes.data(), static_cast<FT_Long>(bytes.size()), 0, &face)) {
        return nullptr;
    }
    return Face(face);
}

std::string glyphName(FT_Face face, FT_UInt index) {
    char name[256] = {};
    if (FT_Get_Glyph_Name(face, index, name, sizeof name) != 0) {
        return {};
    }
    return name;
}

// One closed contour exactly as drawn: its points from the start point on, and their tags.
struct Contour {
    std::vector<std::pair<FT_Pos, FT_Pos>> points;
    std::vector<int> tags;
    auto operator<=>(const Contour&) const = default;
};

// An unscaled, unhinted outline reduced to what a renderer fills. The contours are compared as
// a set: FreeType draws a Type 1 seac base first and a Type 2 one accent first, and the order
// of closed contours never changes what is filled. Within a contour everything must match.
struct Shape {
    std::vector<Contour> contours;
    FT_Pos advance = 0;
    FT_Fixed linearAdvance = 0;
    bool operator==(const Shape&) const = default;
};

std::optional<Shape> loadShape(FT_Face face, FT_UInt index) {
    if (FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) !=
            0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return std::nullopt;
    }
    const FT_Outline& outline = face->glyph->outline;
    Shape shape;
    int start = 0;
    for (int c = 0; c < outline.n_contours; ++c) {
        Contour contour;
        for (int i = start; i <= outline.contours[c] && i < outline.n_points; ++i) {
            contour.points.emplace_back(outline.points[i].x, outline.points[i].y);
            contour.tags.push_back(FT_CURVE_TAG(outline.tags[i]));
        }
        start = outline.contours[c] + 1;
        shape.contours.push_back(std::move(contour));
    }
    if (start != outline.n_points) {
        return std::nullopt;
    }
    std::sort(shape.contours.begin(), shape.contours.end());
    shape.advance = face->glyph->metrics.horiAdvance;
    shape.linearAdvance = face->glyph->linearHoriAdvance;
    return shape;
}

FT_CharMap adobeCharmap(FT_Face face) {
    for (int i = 0; i < face->num_charmaps; ++i) {
        if (face->charmaps[i]->platform_id == 7) {
            return face->charmaps[i];
        }
    }
    return nullptr;
}

std::optional<std::string> compareEncodings(FT_Face original, FT_Face converted,
                                            const std::set<std::string>& kept) {
    FT_CharMap originalMap = adobeCharmap(original), convertedMap = adobeCharmap(converted);
    if (!originalMap || !convertedMap || FT_Set_Charmap(original, originalMap) != 0 ||
        FT_Set_Charmap(converted, convertedMap) != 0) {
        return originalMap || convertedMap ? std::optional<std::string>("no matching encoding")
                                           : std::nullopt;
    }
    for (FT_ULong code = 0; code < 256; ++code) {
        std::string expected = glyphName(original, FT_Get_Char_Index(original, code));
        if (!kept.count(expected)) {
            expected = ".notdef";
        }
        const std::string actual = glyphName(converted, FT_Get_Char_Index(converted, code));
        if (actual != expected && !(expected == ".notdef" && actual.empty())) {
            return "code " + std::to_string(code) + " reaches " + actual + " instead of " +
                   expected;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> FontVerifier::firstDifference(std::span<const std::uint8_t> original,
                                                         std::span<const std::uint8_t> converted,
                                                         const std::set<std::string>& kept) {
    const Library library = openLibrary();
    const Face before = openFace(library.get(), original);
    const Face after = openFace(library.get(), converted);
    if (!before || !after) {
        return before ? "FreeType cannot open the converted font"
                      : "FreeType cannot open the original font";
    }
    std::set<std::string> present;
    for (FT_Long index = 0; index < after->num_glyphs; ++index) {
        const std::string name = glyphName(after.get(), static_cast<FT_UInt>(index));
        if (!kept.count(name) || !present.insert(name).second) {
            return "unexpected glyph " + name;
        }
        const FT_UInt originalIndex =
            FT_Get_Name_Index(before.get(), const_cast<FT_String*>(name.c_str()));
        if (glyphName(before.get(), originalIndex) != name) {
            return "glyph " + name + " is not in the original";
        }
        const auto shapeBefore = loadShape(before.get(), originalIndex);
        const auto shapeAfter = loadShape(after.get(), static_cast<FT_UInt>(index));
        if (!shapeBefore || !shapeAfter || !(*shapeBefore == *shapeAfter)) {
            return "glyph " + name + " differs";
        }
    }
    if (present.size() != kept.size()) {
        return "kept glyphs are missing";
    }
    return compareEncodings(before.get(), after.get(), kept);
}

std::set<std::string> FontVerifier::glyphNames(std::span<const std::uint8_t> program,
                                               const std::set<unsigned>& indices) {
    const Library library = openLibrary();
    const Face face = openFace(library.get(), program);
    std::set<std::string> names;
    for (const unsigned index : indices) {
        if (face && index < static_cast<unsigned>(face->num_glyphs)) {
            if (std::string name = glyphName(face.get(), index); !name.empty()) {
                names.insert(std::move(name));
            }
        }
    }
    return names;
}

} // namespace quillet::fonts
