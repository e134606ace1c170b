#include "engines/fonts/SFNTSubsetter.hpp"

#include "engines/fonts/CFFCharset.hpp"
#include "engines/fonts/GlyphProof.hpp"

#include <hb-subset.h>
#include <hb.h>

#include <array>
#include <memory>

namespace quillet::fonts {
namespace {

struct BlobDeleter {
    void operator()(hb_blob_t* blob) const noexcept { hb_blob_destroy(blob); }
};
using BlobPtr = std::unique_ptr<hb_blob_t, BlobDeleter>;

struct FaceDeleter {
    void operator()(hb_face_t* face) const noexcept { hb_face_destroy(face); }
};
using FacePtr = std::unique_ptr<hb_face_t, FaceDeleter>;

struct InputDeleter {
    void operator()(hb_subset_input_t* input) const noexcept { hb_subset_input_destroy(input); }
};
using InputPtr = std::unique_ptr<hb_subset_input_t, InputDeleter>;

constexpr hb_tag_t cffTag = HB_TAG('C', 'F', 'F', ' ');

BlobPtr blobOf(std::string_view bytes) {
    return BlobPtr(hb_blob_create(bytes.data(), static_cast<unsigned>(bytes.size()),
                                  HB_MEMORY_MODE_READONLY, nullptr, nullptr));
}

std::string bytesOf(hb_blob_t* blob) {
    unsigned length = 0;
    const char* data = hb_blob_get_data(blob, &length);
    return data ? std::string(data, length) : std::string();
}

// A bare CFF font in the smallest OpenType wrapper the subsetter reads: the CFF table and a maxp
// that states the glyph count.
FacePtr wrapped(std::string_view cff) {
    const unsigned glyphs = cffGlyphCount(cff);
    if (glyphs == 0) {
        return nullptr;
    }
    const std::array<char, 6> maxp{
        0, 0, 0x50, 0, static_cast<char>(glyphs >> 8), static_cast<char>(glyphs & 0xff)};
    FacePtr builder(hb_face_builder_create());
    auto cffBlob = blobOf(cff);
    auto maxpBlob = BlobPtr(
        hb_blob_create(maxp.data(), maxp.size(), HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr));
    hb_face_builder_add_table(builder.get(), cffTag, cffBlob.get());
    hb_face_builder_add_table(builder.get(), HB_TAG('m', 'a', 'x', 'p'), maxpBlob.get());
    BlobPtr font(hb_face_reference_blob(builder.get()));
    return FacePtr(hb_face_create(font.get(), 0));
}

void dropTables(hb_subset_input_t* input, bool simple) {
    hb_set_t* drop = hb_subset_input_set(input, HB_SUBSET_SETS_DROP_TABLE_TAG);
    static constexpr std::array<const char*, 31> unread{
        "name", "OS/2", "GSUB", "GPOS", "GDEF", "kern", "DSIG", "BASE", "JSTF", "MATH", "hdmx",
        "LTSH", "VDMX", "vhea", "vmtx", "gasp", "VORG", "COLR", "CPAL", "SVG ", "sbix", "CBDT",
        "CBLC", "EBDT", "EBLC", "EBSC", "meta", "morx", "feat", "PCLT", "STAT"};
    for (const char* tag : unread) {
        hb_set_add(drop, hb_tag_from_string(tag, 4));
    }
    if (!simple) {
        hb_set_add(drop, HB_TAG('c', 'm', 'a', 'p'));
        hb_set_add(drop, HB_TAG('p', 'o', 's', 't'));
    } else {
        // Codes reach glyphs through the whole cmap; its subtables stay exactly as they are.
        hb_set_add(hb_subset_input_set(input, HB_SUBSET_SETS_NO_SUBSET_TABLE_TAG),
                   HB_TAG('c', 'm', 'a', 'p'));
    }
}

} // namespace

std::optional<std::string> SFNTSubsetter::subset(std::string_view program, const Request& request) {
    if (program.size() < 12 || program.size() > (1u << 30)) {
        return std::nullopt;
    }
    const bool cff = request.format == Format::bareCFF;
    auto blob = blobOf(program);
    FacePtr face = cff ? wrapped(program) : FacePtr(hb_face_create(blob.get(), 0));
    if (!face) {
        return std::nullopt;
    }
    const unsigned glyphCount = hb_face_get_glyph_count(face.get());
    if (glyphCount == 0) {
        return std::nullopt;
    }
    InputPtr input(hb_subset_input_create_or_fail());
    if (!input) {
        return std::nullopt;
    }
    unsigned flags = HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NOTDEF_OUTLINE;
    if (request.simple) {
        flags |= HB_SUBSET_FLAGS_GLYPH_NAMES;
    }
    hb_subset_input_set_flags(input.get(), flags);
    std::set<int> kept;
    hb_set_t* glyphs = hb_subset_input_glyph_set(input.get());
    hb_set_add(glyphs, 0);
    kept.insert(0);
    if (request.glyphs) {
        // A simple font's codes may reach glyphs through several subtables; a viewer may pick
        // another than the renderer that found these glyphs did.
        const auto wanted = request.simple && !cff
                                ? GlyphProof::closedOverCharmaps(program, *request.glyphs)
                                : *request.glyphs;
        for (const int gid : wanted) {
            if (gid > 0 && static_cast<unsigned>(gid) < glyphCount) {
                hb_set_add(glyphs, static_cast<hb_codepoint_t>(gid));
                kept.insert(gid);
            }
        }
    } else {
        hb_set_add_range(glyphs, 0, glyphCount - 1);
        for (unsigned gid = 0; gid < glyphCount; ++gid) {
            kept.insert(static_cast<int>(gid));
        }
    }
    if (!cff) {
        dropTables(input.get(), request.simple);
    }
    FacePtr result(hb_subset_or_fail(face.get(), input.get()));
    if (!result) {
        return std::nullopt;
    }
    BlobPtr out(cff ? hb_face_reference_table(result.get(), cffTag)
                    : hb_face_reference_blob(result.get()));
    std::string bytes = bytesOf(out.get());
    if (bytes.empty() || bytes.size() >= program.size()) {
        return std::nullopt;
    }
    GlyphProof::Checks checks;
    checks.names = request.simple;
    checks.charmaps = request.simple;
    checks.cids = cff && !request.simple;
    if (!GlyphProof::sameGlyphs(program, bytes, kept, checks)) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace quillet::fonts
