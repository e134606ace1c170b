#include "engines/fonts/CFFCharset.hpp"

#include <algorithm>

namespace quillet::fonts {
namespace {

unsigned byteAt(std::string_view cff, std::size_t at) {
    return at < cff.size() ? static_cast<unsigned char>(cff[at]) : 0u;
}

/// The end of the INDEX at `at`; `firstData` gets the position before its first data byte (the
/// INDEX's offsets are 1-based) and `count` its entry count. cff.size() when malformed.
std::size_t skipIndex(std::string_view cff, std::size_t at, std::size_t* firstData, std::size_t* count) {
    *count = byteAt(cff, at) << 8 | byteAt(cff, at + 1);
    if (*count == 0) {
        return at + 2;
    }
    const unsigned offSize = byteAt(cff, at + 2);
    if (offSize < 1 || offSize > 4) {
        return cff.size();
    }
    std::size_t last = 0;
    for (unsigned k = 0; k < offSize; ++k) {
        last = last << 8 | byteAt(cff, at + 3 + *count * offSize + k);
    }
    *firstData = at + 3 + (*count + 1) * offSize - 1;
    return *firstData + last;
}

} // namespace

std::optional<long> cffTopDictOperand(std::string_view cff, int op) {
    std::size_t count = 0;
    std::size_t data = 0;
    const std::size_t at = skipIndex(cff, byteAt(cff, 2), &data, &count); // Name INDEX
    std::size_t topData = 0;
    const std::size_t topEnd = skipIndex(cff, at, &topData, &count);
    if (count < 1 || topEnd > cff.size()) {
        return std::nullopt;
    }
    std::size_t p = topData + 1;
    long last = 0;
    while (p < topEnd) {
        const unsigned b0 = byteAt(cff, p);
        if (b0 == 28) {
            last = static_cast<short>(byteAt(cff, p + 1) << 8 | byteAt(cff, p + 2));
            p += 3;
        } else if (b0 == 29) {
            last = static_cast<long>(byteAt(cff, p + 1) << 24 | byteAt(cff, p + 2) << 16 |
                                     byteAt(cff, p + 3) << 8 | byteAt(cff, p + 4));
            p += 5;
        } else if (b0 == 30) {
            while (p < topEnd && (byteAt(cff, p) & 0x0f) != 0x0f && (byteAt(cff, p) >> 4) != 0x0f) {
                ++p;
            }
            ++p;
        } else if (b0 >= 32 && b0 <= 246) {
            last = static_cast<long>(b0) - 139;
            ++p;
        } else if (b0 >= 247 && b0 <= 250) {
            last = (static_cast<long>(b0) - 247) * 256 + byteAt(cff, p + 1) + 108;
            p += 2;
        } else if (b0 >= 251 && b0 <= 254) {
            last = -(static_cast<long>(b0) - 251) * 256 - byteAt(cff, p + 1) - 108;
            p += 2;
        } else if (b0 == 12) {
            // ROS (12 30) is what makes a font CID-keyed; report it as operator 30 + 100.
            if (op == 130 && byteAt(cff, p + 1) == 30) {
                return last;
            }
            p += 2;
        } else if (static_cast<int>(b0) == op) {
            return last;
        } else {
            ++p;
        }
    }
    return std::nullopt;
}

unsigned cffGlyphCount(std::string_view cff) {
    const auto offset = cffTopDictOperand(cff, 17);
    if (!offset || *offset <= 0 || static_cast<std::size_t>(*offset) + 2 > cff.size()) {
        return 0;
    }
    return byteAt(cff, static_cast<std::size_t>(*offset)) << 8 |
           byteAt(cff, static_cast<std::size_t>(*offset) + 1);
}

bool makeCIDsGlyphIndices(std::string& cff) {
    const unsigned glyphs = cffGlyphCount(cff);
    const auto charset = cffTopDictOperand(cff, 15);
    if (glyphs < 2 || !charset || *charset <= 0 || !cffTopDictOperand(cff, 130)) {
        return false;
    }
    const auto start = static_cast<std::size_t>(*charset);
    const unsigned format = byteAt(cff, start);
    const std::size_t covered = glyphs - 1; // .notdef has no entry
    // The length of the charset there now.
    std::size_t length = 0;
    if (format == 0) {
        length = 1 + 2 * covered;
    } else if (format == 1 || format == 2) {
        const std::size_t leftBytes = format == 1 ? 1 : 2;
        std::size_t p = start + 1;
        std::size_t seen = 0;
        while (seen < covered && p + 2 + leftBytes <= cff.size()) {
            const std::size_t left = leftBytes == 1 ? byteAt(cff, p + 2)
                                                    : byteAt(cff, p + 2) << 8 | byteAt(cff, p + 3);
            seen += left + 1;
            p += 2 + leftBytes;
        }
        length = p - start;
    } else {
        return false;
    }
    if (start + length > cff.size()) {
        return false;
    }
    // The identity: one format 2 range when it fits, else format 1 ranges of 256, else format 0.
    std::string identity;
    if (length >= 5 && covered <= 65536) {
        identity = {'\x02', '\x00', '\x01', static_cast<char>((covered - 1) >> 8),
                    static_cast<char>((covered - 1) & 0xFF)};
    } else if (1 + 3 * ((covered + 255) / 256) <= length) {
        identity = "\x01";
        for (std::size_t first = 1; first <= covered; first += 256) {
            const std::size_t left = std::min<std::size_t>(255, covered - first);
            identity += {static_cast<char>(first >> 8), static_cast<char>(first & 0xFF),
                         static_cast<char>(left)};
        }
    } else {
        identity = std::string(1, '\x00');
        for (std::size_t cid = 1; cid <= covered; ++cid) {
            identity += {static_cast<char>(cid >> 8), static_cast<char>(cid & 0xFF)};
        }
    }
    if (identity.size() > length) {
        return false;
    }
    cff.replace(start, identity.size(), identity);
    return true;
}

} // namespace quillet::fonts
