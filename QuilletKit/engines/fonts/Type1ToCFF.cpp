#include "engines/fonts/Type1ToCFF.hpp"

#include "engines/fonts/CFFWriter.hpp"
#include "engines/fonts/CharstringConverter.hpp"
#include "engines/fonts/FontVerifier.hpp"
#include "engines/fonts/Type1Reader.hpp"

#include <map>
#include <vector>

namespace quillet::fonts {

std::optional<ConvertedFont>
Type1ToCFF::convert(std::span<const std::uint8_t> program, std::optional<std::int64_t> length1,
                    std::optional<std::int64_t> length2,
                    const std::optional<std::set<std::string>>& keepGlyphs) {
    const Type1Font font = Type1Reader::read(program, length1, length2);
    const CharstringConverter converter(font);
    if (!converter.contains(".notdef")) {
        return std::nullopt;
    }
    std::vector<std::string> pending{".notdef"};
    for (const auto& [name, charstring] : font.charStrings) {
        if (!keepGlyphs || keepGlyphs->count(name)) {
            pending.push_back(name);
        }
    }
    // Accented characters drawn with seac pull in their base and accent.
    std::map<std::string, Type2Glyph> converted;
    while (!pending.empty()) {
        const std::string name = std::move(pending.back());
        pending.pop_back();
        if (converted.count(name)) {
            continue;
        }
        Type2Glyph glyph = converter.convert(name);
        pending.insert(pending.end(), glyph.components.begin(), glyph.components.end());
        converted.emplace(name, std::move(glyph));
    }
    std::vector<std::pair<std::string, Type2Glyph>> glyphs;
    std::set<std::string> kept;
    for (const auto& [name, charstring] : font.charStrings) {
        if (const auto found = converted.find(name);
            found != converted.end() && kept.insert(name).second) {
            glyphs.emplace_back(name, std::move(found->second));
        }
    }
    ConvertedFont result{CFFWriter::write(font, glyphs), font.fontName};
    const auto bytes =
        std::span(reinterpret_cast<const std::uint8_t*>(result.cff.data()), result.cff.size());
    if (!FontVerifier::sameGlyphs(program, bytes, kept)) {
        return std::nullopt;
    }
    return result;
}

std::set<std::string> Type1ToCFF::glyphNamesForIndices(std::span<const std::uint8_t> program,
                                                       const std::set<unsigned>& freetypeIndices) {
    return FontVerifier::glyphNames(program, freetypeIndices);
}

} // namespace quillet::fonts
