#include "engines/fonts/CFFWriter.hpp"

#include "engines/fonts/CFFStandardStrings.hpp"
#include "engines/fonts/FontProgramError.hpp"
#include "engines/fonts/Subroutinizer.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>

namespace quillet::fonts {
namespace {

void putCard(std::string& out, std::uint32_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>((value >> shift) & 0xff));
    }
}

std::string index(const std::vector<std::string>& items) {
    std::string out;
    if (items.size() > 0xffff) {
        throw FontProgramError("too many entries for a CFF INDEX");
    }
    putCard(out, static_cast<std::uint32_t>(items.size()), 2);
    if (items.empty()) {
        return out;
    }
    std::uint64_t total = 1;
    for (const auto& item : items) {
        total += item.size();
    }
    const int offSize = total <= 0xff ? 1 : total <= 0xffff ? 2 : total <= 0xffffff ? 3 : 4;
    out.push_back(static_cast<char>(offSize));
    std::uint32_t offset = 1;
    putCard(out, offset, offSize);
    for (const auto& item : items) {
        offset += static_cast<std::uint32_t>(item.size());
        putCard(out, offset, offSize);
    }
    for (const auto& item : items) {
        out += item;
    }
    return out;
}

class Dict {
  public:
    std::string bytes;

    void integer(std::int64_t n) {
        if (n >= -107 && n <= 107) {
            putCard(bytes, static_cast<std::uint32_t>(n + 139), 1);
        } else if (n >= 108 && n <= 1131) {
            putCard(bytes, static_cast<std::uint32_t>(((n - 108) >> 8) + 247), 1);
            putCard(bytes, static_cast<std::uint32_t>((n - 108) & 0xff), 1);
        } else if (n >= -1131 && n <= -108) {
            putCard(bytes, static_cast<std::uint32_t>(((-n - 108) >> 8) + 251), 1);
            putCard(bytes, static_cast<std::uint32_t>((-n - 108) & 0xff), 1);
        } else if (n >= -32768 && n <= 32767) {
            bytes.push_back(28);
            putCard(bytes, static_cast<std::uint32_t>(n), 2);
        } else {
            offset(n);
        }
    }

    /// Always five bytes, so that offsets can be filled in without moving anything.
    void offset(std::int64_t n) {
        bytes.push_back(29);
        putCard(bytes, static_cast<std::uint32_t>(n), 4);
    }

    void number(double value) {
        if (value == std::floor(value) && std::fabs(value) < 2147483647.0) {
            integer(static_cast<std::int64_t>(value));
            return;
        }
        // The shortest decimal that reads back as the same double, in nibbles.
        char text[40];
        const auto end = std::to_chars(text, text + sizeof text, value).ptr;
        std::string nibbles;
        for (const char* c = text; c < end; ++c) {
            if (*c >= '0' && *c <= '9') {
                nibbles.push_back(static_cast<char>(*c - '0'));
            } else if (*c == '.') {
                nibbles.push_back(0xa);
            } else if (*c == '-') {
                nibbles.push_back(0xe);
            } else if (*c == 'e') {
                const bool negative = c + 1 < end && c[1] == '-';
                nibbles.push_back(negative ? 0xc : 0xb);
                c += (c + 1 < end && (c[1] == '-' || c[1] == '+')) ? 1 : 0;
            }
        }
        nibbles.push_back(0xf);
        if (nibbles.size() % 2 != 0) {
            nibbles.push_back(0xf);
        }
        bytes.push_back(30);
        for (std::size_t i = 0; i < nibbles.size(); i += 2) {
            bytes.push_back(static_cast<char>(nibbles[i] << 4 | nibbles[i + 1]));
        }
    }

    void op(int code) {
        if (code >= 1200) {
            bytes.push_back(12);
            code -= 1200;
        }
        bytes.push_back(static_cast<char>(code));
    }

    void numbers(const std::vector<double>& values, int code, bool delta = false) {
        if (values.empty()) {
            return;
        }
        double previous = 0;
        for (const double value : values) {
            number(delta ? value - previous : value);
            previous = value;
        }
        op(code);
    }

    void optional(const std::optional<double>& value, double defaultValue, int code) {
        if (value && *value != defaultValue) {
            number(*value);
            op(code);
        }
    }
};

class Strings {
  public:
    int sid(const std::string& text) {
        if (const auto standard = standardStringID(text)) {
            return *standard;
        }
        const auto [found, added] = custom_.emplace(text, standardStringCount + list_.size());
        if (added) {
            list_.push_back(text);
        }
        return found->second;
    }
    std::string indexBytes() const { return index(list_); }

  private:
    std::map<std::string, int> custom_;
    std::vector<std::string> list_;
};

// Widths most glyphs share cost nothing (defaultWidthX); the rest are written against the
// nominalWidthX that makes their sum of encoded sizes smallest.
std::pair<Fixed, Fixed> chooseWidths(const std::vector<Fixed>& widths) {
    std::map<Fixed, int> counts;
    for (const Fixed width : widths) {
        if (width % fixedOne == 0) {
            ++counts[width];
        }
    }
    if (counts.empty()) {
        return {0, 0};
    }
    const Fixed defaultWidth =
        std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) {
            return a.second < b.second;
        })->first;
    const auto cost = [&](Fixed nominal) {
        std::size_t bytes = 0;
        for (const Fixed width : widths) {
            if (width != defaultWidth) {
                std::string encoded;
                appendType2Number(encoded, width - nominal);
                bytes += encoded.size();
            }
        }
        return bytes;
    };
    Fixed bestNominal = 0;
    std::size_t bestCost = cost(0);
    for (const auto& [width, count] : counts) {
        for (const Fixed nominal : {width, width - 107 * fixedOne, width + 107 * fixedOne}) {
            if (const std::size_t c = cost(nominal); c < bestCost) {
                bestCost = c;
                bestNominal = nominal;
            }
        }
    }
    return {defaultWidth, bestNominal};
}

std::string charset(const std::vector<int>& sids) {
    std::string format0(1, '\0'), format1(1, '\1'), format2(1, '\2');
    for (std::size_t i = 1; i < sids.size(); ++i) {
        putCard(format0, static_cast<std::uint32_t>(sids[i]), 2);
    }
    for (const int maxLeft : {0xff, 0xffff}) {
        std::string& out = maxLeft == 0xff ? format1 : format2;
        for (std::size_t i = 1; i < sids.size();) {
            std::size_t run = 1;
            while (i + run < sids.size() && sids[i + run] == sids[i] + int(run) &&
                   run <= std::size_t(maxLeft)) {
                ++run;
            }
            putCard(out, static_cast<std::uint32_t>(sids[i]), 2);
            putCard(out, static_cast<std::uint32_t>(run - 1), maxLeft == 0xff ? 1 : 2);
            i += run;
        }
    }
    return std::min({format0, format1, format2},
                    [](const auto& a, const auto& b) { return a.size() < b.size(); });
}

// codes[gid]: the codes of each glyph, in glyph order (gid 0 never encoded).
std::string encoding(const std::vector<std::vector<int>>& codes, const std::vector<int>& sids) {
    std::vector<int> primary;
    std::vector<std::pair<int, int>> supplements;
    for (std::size_t gid = 1; gid < codes.size() && !codes[gid].empty(); ++gid) {
        std::size_t first = 0;
        if (primary.size() < 255) {
            primary.push_back(codes[gid][0]);
            first = 1;
        }
        for (std::size_t i = first; i < codes[gid].size(); ++i) {
            supplements.emplace_back(codes[gid][i], sids[gid]);
        }
    }
    std::string format0(1, '\0'), format1(1, '\1');
    putCard(format0, static_cast<std::uint32_t>(primary.size()), 1);
    for (const int code : primary) {
        putCard(format0, static_cast<std::uint32_t>(code), 1);
    }
    std::string ranges;
    int rangeCount = 0;
    for (std::size_t i = 0; i < primary.size();) {
        std::size_t run = 1;
        while (i + run < primary.size() && primary[i + run] == primary[i] + int(run)) {
            ++run;
        }
        putCard(ranges, static_cast<std::uint32_t>(primary[i]), 1);
        putCard(ranges, static_cast<std::uint32_t>(run - 1), 1);
        ++rangeCount;
        i += run;
    }
    putCard(format1, static_cast<std::uint32_t>(rangeCount), 1);
    format1 += ranges;
    std::string out = format1.size() < format0.size() ? format1 : format0;
    if (!supplements.empty()) {
        out[0] = static_cast<char>(out[0] | 0x80);
        putCard(out, static_cast<std::uint32_t>(supplements.size()), 1);
        for (const auto& [code, sid] : supplements) {
            putCard(out, static_cast<std::uint32_t>(code), 1);
            putCard(out, static_cast<std::uint32_t>(sid), 2);
        }
    }
    return out;
}

std::string privateDict(const Type1Private& p, Fixed defaultWidth, Fixed nominalWidth) {
    Dict dict;
    dict.numbers(p.blueValues, 6, true);
    dict.numbers(p.otherBlues, 7, true);
    dict.numbers(p.familyBlues, 8, true);
    dict.numbers(p.familyOtherBlues, 9, true);
    dict.optional(p.stdHW, std::nan(""), 10);
    dict.optional(p.stdVW, std::nan(""), 11);
    dict.optional(p.blueScale, 0.039625, 1209);
    dict.optional(p.blueShift, 7, 1210);
    dict.optional(p.blueFuzz, 1, 1211);
    dict.numbers(p.stemSnapH, 1212, true);
    dict.numbers(p.stemSnapV, 1213, true);
    if (p.forceBold) {
        dict.integer(1);
        dict.op(1214);
    }
    dict.optional(double(p.languageGroup), 0, 1217);
    dict.optional(p.expansionFactor, 0.06, 1218);
    dict.optional(double(defaultWidth) / fixedOne, 0, 20);
    if (nominalWidth != 0 || dict.bytes.empty()) {
        dict.integer(nominalWidth / fixedOne);
        dict.op(21);
    }
    return dict.bytes;
}

} // namespace

std::string CFFWriter::write(const Type1Font& font,
                             const std::vector<std::pair<std::string, Type2Glyph>>& glyphs) {
    // Which codes reach each glyph: the predefined StandardEncoding or the font's own array.
    std::map<std::string, std::vector<int>> codesOf;
    for (int code = 0; code < 256; ++code) {
        if (font.standardEncoding) {
            if (const auto name = standardEncodingName(code)) {
                codesOf[std::string(*name)].push_back(code);
            }
        } else if (const auto found = font.encoding.find(code); found != font.encoding.end()) {
            codesOf[found->second].push_back(code);
        }
    }
    std::vector<const std::pair<std::string, Type2Glyph>*> order;
    for (const auto& glyph : glyphs) {
        order.push_back(&glyph);
    }
    const auto firstCode = [&](const std::string& name) {
        if (name == ".notdef") {
            return -1;
        }
        const auto found = codesOf.find(name);
        return found == codesOf.end() ? 256 : found->second.front();
    };
    std::stable_sort(order.begin(), order.end(), [&](const auto* a, const auto* b) {
        return firstCode(a->first) < firstCode(b->first);
    });
    if (order.empty() || order.front()->first != ".notdef") {
        throw FontProgramError("a font without .notdef");
    }

    Strings strings;
    Dict top;
    const auto stringEntry = [&](const std::optional<std::string>& text, int code) {
        if (text) {
            top.integer(strings.sid(*text));
            top.op(code);
        }
    };
    stringEntry(font.version, 0);
    stringEntry(font.notice, 1);
    stringEntry(font.fullName, 2);
    stringEntry(font.familyName, 3);
    stringEntry(font.weight, 4);
    if (font.isFixedPitch) {
        top.integer(1);
        top.op(1201);
    }
    top.optional(font.italicAngle, 0, 1202);
    top.optional(font.underlinePosition, -100, 1203);
    top.optional(font.underlineThickness, 50, 1204);
    top.optional(double(font.paintType), 0, 1205);
    top.optional(font.strokeWidth, 0, 1208);
    if (font.fontMatrix != std::array<double, 6>{0.001, 0, 0, 0.001, 0, 0}) {
        top.numbers({font.fontMatrix.begin(), font.fontMatrix.end()}, 1207);
    }
    if (font.fontBBox != std::array<double, 4>{0, 0, 0, 0}) {
        top.numbers({font.fontBBox.begin(), font.fontBBox.end()}, 5);
    }

    std::vector<int> sids;
    std::vector<std::vector<int>> codes;
    std::vector<Fixed> widths;
    std::set<std::string> seen;
    for (const auto* glyph : order) {
        if (!seen.insert(glyph->first).second) {
            throw FontProgramError("two glyphs named " + glyph->first);
        }
        sids.push_back(strings.sid(glyph->first));
        const auto found = codesOf.find(glyph->first);
        codes.push_back(found == codesOf.end() || glyph->first == ".notdef" ? std::vector<int>()
                                                                            : found->second);
        widths.push_back(glyph->second.width);
    }
    const auto [defaultWidth, nominalWidth] = chooseWidths(widths);
    std::vector<std::string> charstrings;
    for (const auto* glyph : order) {
        std::string charstring;
        if (glyph->second.width != defaultWidth) {
            appendType2Number(charstring, glyph->second.width - nominalWidth);
        }
        charstrings.push_back(charstring + glyph->second.body);
    }

    const std::string charsetBytes = charset(sids);
    const std::string encodingBytes = font.standardEncoding ? "" : encoding(codes, sids);
    const Subroutinized shared = subroutinize(charstrings);
    const std::string charstringsIndex = index(shared.charstrings);
    std::string privateBytes = privateDict(font.privateDict, defaultWidth, nominalWidth);
    std::string localSubrs;
    if (!shared.subrs.empty()) {
        // The local subroutines follow the Private DICT; their offset counts from its start.
        Dict subrsEntry;
        subrsEntry.offset(std::int64_t(privateBytes.size()) + 6);
        subrsEntry.op(19);
        privateBytes += subrsEntry.bytes;
        localSubrs = index(shared.subrs);
    }
    const std::string header{1, 0, 4, 4};
    const std::string names = index({font.fontName.empty() ? "Untitled" : font.fontName});
    const std::string stringIndex = strings.indexBytes();
    const std::string globalSubrs = index({});

    // Offsets take five bytes each, so the Top DICT's size is known before they are.
    const auto offsets = [&](std::int64_t at) {
        Dict dict;
        dict.offset(at);
        dict.op(15);
        at += std::int64_t(charsetBytes.size());
        if (!font.standardEncoding) {
            dict.offset(at);
            dict.op(16);
            at += std::int64_t(encodingBytes.size());
        }
        dict.offset(at);
        dict.op(17);
        at += std::int64_t(charstringsIndex.size());
        dict.offset(std::int64_t(privateBytes.size()));
        dict.offset(at);
        dict.op(18);
        return top.bytes + dict.bytes;
    };
    const std::size_t topSize = index({offsets(0)}).size();
    const std::string topIndex = index({offsets(std::int64_t(
        header.size() + names.size() + topSize + stringIndex.size() + globalSubrs.size()))});
    return header + names + topIndex + stringIndex + globalSubrs + charsetBytes + encodingBytes +
           charstringsIndex + privateBytes + localSubrs;
}

} // namespace quillet::fonts
