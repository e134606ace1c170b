#include "engines/fonts/SFNTSubsetter.hpp"

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

// The CharStrings count of a bare CFF font: the INDEX at the offset its Top DICT gives (operator
// 17). Zero when the font cannot be read that far.
unsigned cffGlyphCount(std::string_view cff) {
    const auto byte = [&](std::size_t at) -> unsigned {
        return at < cff.size() ? static_cast<unsigned char>(cff[at]) : 0u;
    };
    const auto skipIndex = [&](std::size_t at, std::size_t* firstData, std::size_t* count) {
        *count = byte(at) << 8 | byte(at + 1);
        if (*count == 0) {
            return at + 2;
        }
        const unsigned offSize = byte(at + 2);
        if (offSize < 1 || offSize > 4) {
            return cff.size();
        }
        const auto offset = [&](std::size_t i) {
            std::size_t value = 0;
            for (unsigned k = 0; k < offSize; ++k) {
                value = value << 8 | byte(at + 3 + i * offSize + k);
            }
            return value;
        };
        *firstData = at + 3 + (*count + 1) * offSize - 1;
        return *firstData + offset(*count);
    };
    std::size_t count = 0;
    std::size_t data = 0;
    std::size_t at = skipIndex(byte(2), &data, &count); // Name INDEX
    std::size_t topData = 0;
    const std::size_t topEnd = skipIndex(at, &topData, &count);
    if (count < 1 || topEnd > cff.size()) {
        return 0;
    }
    // Top DICT of the first font: operands, then operator 17 takes the last one.
    std::size_t p = topData + 1; // offsets are 1-based
    long last = 0;
    while (p < topEnd) {
        const unsigned b0 = byte(p);
        if (b0 == 28) {
            last = static_cast<short>(byte(p + 1) << 8 | byte(p + 2));
            p += 3;
        } else if (b0 == 29) {
            last = static_cast<long>(byte(p + 1) << 24 | byte(p + 2) << 16 | byte(p + 3) << 8 |
                                     byte(p + 4));
            p += 5;
        } else if (b0 == 30) {
            while (p < topEnd && (byte(p) & 0x0f) != 0x0f && (byte(p) >> 4) != 0x0f) {
                ++p;
            }
            ++p;
        } else if (b0 >= 32 && b0 <= 246) {
            last = static_cast<long>(b0) - 139;
            ++p;
        } else if (b0 >= 247 && b0 <= 250) {
            last = (static_cast<long>(b0) - 247) * 256 + byte(p + 1) + 108;
            p += 2;
        } else if (b0 >= 251 && b0 <= 254) {
            last = -(static_cast<long>(b0) - 251) * 256 - byte(p + 1) - 108;
            p += 2;
        } else if (b0 == 17) {
            if (last <= 0 || static_cast<std::size_t>(last) + 2 > cff.size()) {
                return 0;
            }
            return byte(static_cast<std::size_t>(last)) << 8 |
                   byte(static_cast<std::size_t>(last) + 1);
        } else {
            p += b0 == 12 ? 2 : 1;
        }
    }
    return 0;
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
