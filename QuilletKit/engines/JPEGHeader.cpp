#include "engines/JPEGHeader.hpp"

#include <cstring>

namespace quillet {
namespace {

using Bytes = std::span<const std::uint8_t>;

unsigned bigEndian16(Bytes bytes, std::size_t at) {
    return static_cast<unsigned>(bytes[at] << 8 | bytes[at + 1]);
}

// Readers of the TIFF structure inside EXIF, which may be in either byte order.
struct TIFFReader {
    Bytes tiff;
    bool little = false;

    std::optional<unsigned> u16(std::size_t at) const {
        if (at + 2 > tiff.size()) {
            return std::nullopt;
        }
        return little ? unsigned(tiff[at] | tiff[at + 1] << 8)
                      : unsigned(tiff[at] << 8 | tiff[at + 1]);
    }
    std::optional<std::uint32_t> u32(std::size_t at) const {
        const auto high = u16(at + (little ? 2 : 0));
        const auto low = u16(at + (little ? 0 : 2));
        if (!high || !low) {
            return std::nullopt;
        }
        return std::uint32_t(*high) << 16 | *low;
    }
};

// SOF0...SOF15 carry the frame size, except the three codes in that range that mean something
// else (Huffman tables, the reserved JPG extension, arithmetic-coding conditioning).
bool isFrameHeader(std::uint8_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool hasEndMarker(Bytes bytes, std::size_t scanStart) {
    // Encoders may leave padding after the end marker, so look for the last one, not the last
    // two bytes.
    for (std::size_t at = bytes.size(); at >= scanStart + 2; --at) {
        if (bytes[at - 2] == 0xFF && bytes[at - 1] == 0xD9) {
            return true;
        }
    }
    return false;
}

bool readFrame(Bytes segment, JPEGHeader& header) {
    if (segment.size() < 6) {
        return false;
    }
    header.precision = segment[0];
    header.height = static_cast<int>(bigEndian16(segment, 1));
    header.width = static_cast<int>(bigEndian16(segment, 3));
    header.components = segment[5];
    return true;
}

// Only the first EXIF segment counts, as viewers read it; editors that add one in front of an
// older one mean theirs.
void readApplicationSegment(std::uint8_t marker, Bytes segment, JPEGHeader& header, bool& sawExif) {
    if (marker == 0xE1 && !sawExif) {
        if (const auto orientation = exifOrientation(segment)) {
            header.orientation = *orientation;
            sawExif = true;
        }
    } else if (marker == 0xEE && segment.size() >= 5 &&
               std::memcmp(segment.data(), "Adobe", 5) == 0) {
        header.adobe = true;
    }
}

} // namespace

std::optional<int> exifOrientation(Bytes app1) noexcept {
    if (app1.size() < 14 || std::memcmp(app1.data(), "Exif\0\0", 6) != 0) {
        return std::nullopt;
    }
    TIFFReader reader{app1.subspan(6)};
    if (reader.tiff[0] == 'I' && reader.tiff[1] == 'I') {
        reader.little = true;
    } else if (reader.tiff[0] != 'M' || reader.tiff[1] != 'M') {
        return std::nullopt;
    }
    const auto ifd = reader.u32(4);
    const auto count = ifd ? reader.u16(*ifd) : std::nullopt;
    if (!count) {
        return std::nullopt;
    }
    for (unsigned k = 0; k < *count; ++k) {
        const std::size_t entry = *ifd + 2 + std::size_t(k) * 12;
        const auto tag = reader.u16(entry);
        if (!tag) {
            return std::nullopt;
        }
        if (*tag == 0x0112) {
            const auto value = reader.u16(entry + 8);
            if (!value || *value < 1 || *value > 8) {
                return std::nullopt;
            }
            return static_cast<int>(*value);
        }
    }
    return std::nullopt;
}

std::optional<JPEGHeader> JPEGHeader::read(Bytes bytes) noexcept {
    if (bytes.size() < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8) {
        return std::nullopt;
    }
    JPEGHeader header;
    bool sawFrame = false;
    bool sawExif = false;
    std::size_t at = 2;
    while (at + 1 < bytes.size()) {
        if (bytes[at] != 0xFF) {
            return std::nullopt;
        }
        const std::uint8_t marker = bytes[at + 1];
        at += 2;
        if (marker == 0xFF || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {
            at -= marker == 0xFF ? 1 : 0; // fill bytes before a marker; standalone markers
            continue;
        }
        if (at + 2 > bytes.size()) {
            return std::nullopt;
        }
        const std::size_t length = bigEndian16(bytes, at);
        if (length < 2 || at + length > bytes.size()) {
            return std::nullopt;
        }
        const Bytes segment = bytes.subspan(at + 2, length - 2);
        if (marker == 0xDA) {
            if (!sawFrame) {
                return std::nullopt;
            }
            header.complete = hasEndMarker(bytes, at + length);
            const bool carriable =
                header.width > 0 && header.height > 0 &&
                (header.components == 1 || header.components == 3 || header.components == 4);
            return carriable ? std::optional(header) : std::nullopt;
        }
        if (isFrameHeader(marker) && !sawFrame) {
            sawFrame = readFrame(segment, header);
        } else {
            readApplicationSegment(marker, segment, header, sawExif);
        }
        at += length;
    }
    return std::nullopt;
}

} // namespace quillet
