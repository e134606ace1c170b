#include "platform/JBIG2Encoder.hpp"

#include "platform/MQEncoder.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace quillet::JBIG2Encoder {
namespace {

constexpr std::uint8_t pageInformationType = 48;
constexpr std::uint8_t immediateLosslessGenericRegionType = 39;
constexpr std::uint32_t pageInformationLength = 19;
// Region segment information (17 bytes), generic region flags (1), adaptive pixels (8).
constexpr std::uint32_t regionHeaderLength = 26;

constexpr std::size_t templateZeroContexts = 1u << 16;
// 6.2.5.7: the context of SLTP, the bit that flips LTP ("this row is a copy of the one above")
// whenever a row's answer differs from the previous row's.
constexpr std::size_t typicalPredictionContext = 0x9B25;

void appendBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value) {
    out.push_back(static_cast<std::uint8_t>(value >> 24));
    out.push_back(static_cast<std::uint8_t>(value >> 16));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

/// 7.2: a segment of page 1 that refers to no other segment and is not retained.
void appendSegmentHeader(std::vector<std::uint8_t>& out, std::uint32_t number, std::uint8_t type,
                         std::uint32_t dataLength) {
    appendBigEndian(out, number);
    out.push_back(type); // flags: page association in one byte, not deferred
    out.push_back(0);    // no referred-to segments, not retained
    out.push_back(1);    // page association
    appendBigEndian(out, dataLength);
}

std::uint32_t pixelsPerMetre(int dpi) {
    const std::int64_t perMetre = (static_cast<std::int64_t>(dpi) * 10'000 + 127) / 254;
    if (dpi < 0 || perMetre > std::numeric_limits<std::uint32_t>::max()) {
        throw std::invalid_argument(fmt::format("{} dpi cannot be recorded in JBIG2", dpi));
    }
    return static_cast<std::uint32_t>(perMetre);
}

/// Codes one row with template 0 (6.2.5.3), nominal adaptive pixels A1 = (3, -1),
/// A2 = (-3, -1), A3 = (2, -2), A4 = (-2, -2). Those make the 16-bit context three runs of
/// neighbours, each in reading order from its high bit: row y-2 from x-2 to x+2 in bits 15-11,
/// row y-1 from x-3 to x+3 in bits 10-4, row y from x-4 to x-1 in bits 3-0. Moving right shifts
/// every run one bit and brings in one pixel per row; the mask drops what leaves each run.
/// Every row holds a zero byte past its end and no bits past the width: pixels outside are 0.
void encodeRow(MQEncoder& coder, const std::uint8_t* row, const std::uint8_t* above,
               const std::uint8_t* twoAbove, int width) {
    std::uint32_t context = static_cast<std::uint32_t>(twoAbove[0] >> 5) << 11 |
                            static_cast<std::uint32_t>(above[0] >> 4) << 4;
    for (int x = 0, byte = 0; x < width; x += 8, ++byte) {
        // Pixels 8 * byte + i at bit 15 - i; this byte needs up to x+11 above and x+10 two above.
        const std::uint32_t next1 = static_cast<std::uint32_t>(above[byte]) << 8 | above[byte + 1];
        const std::uint32_t next2 =
            static_cast<std::uint32_t>(twoAbove[byte]) << 8 | twoAbove[byte + 1];
        const std::uint32_t pixels = row[byte];
        const int count = std::min(8, width - x);
        for (int i = 0; i < count; ++i) {
            const std::uint32_t bit = (pixels >> (7 - i)) & 1;
            coder.encode(context, bit != 0);
            context = (context << 1 & 0xF7EE) | ((next2 >> (12 - i)) & 1) << 11 |
                      ((next1 >> (11 - i)) & 1) << 4 | bit;
        }
    }
}

/// The arithmetic-coded data of the generic region (6.2.5.7 with TPGDON = 1).
std::vector<std::uint8_t> codeRegion(const BilevelImage& image) {
    const std::size_t rowBytes = image.rowBytes();
    const std::size_t stride = rowBytes + 1;
    const auto lastMask = static_cast<std::uint8_t>(0xFFu << (8 - image.width() % 8) % 8);
    // Three rows, rotated: the row being coded and the two above, all 0 above the image.
    std::vector<std::uint8_t> rows(3 * stride, 0);
    std::uint8_t* twoAbove = rows.data();
    std::uint8_t* above = twoAbove + stride;
    std::uint8_t* current = above + stride;

    MQEncoder coder(templateZeroContexts);
    bool typical = false; // LTP, the state the decoder toggles with each coded SLTP
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(current, image.row(y), rowBytes);
        current[rowBytes - 1] &= lastMask;
        const bool sameAsAbove = std::memcmp(current, above, rowBytes) == 0;
        coder.encode(typicalPredictionContext, sameAsAbove != typical);
        typical = sameAsAbove;
        if (!sameAsAbove) {
            encodeRow(coder, current, above, twoAbove, image.width());
        }
        std::swap(twoAbove, above);
        std::swap(above, current);
    }
    return coder.finish();
}

} // namespace

std::vector<std::uint8_t> encode(const BilevelImage& image, int dpi) {
    const std::uint32_t resolution = pixelsPerMetre(dpi);
    const std::vector<std::uint8_t> coded = codeRegion(image);
    if (coded.size() > std::numeric_limits<std::uint32_t>::max() - regionHeaderLength) {
        throw std::length_error("the JBIG2 region is too large for its segment length field");
    }
    const auto width = static_cast<std::uint32_t>(image.width());
    const auto height = static_cast<std::uint32_t>(image.height());

    std::vector<std::uint8_t> out;
    out.reserve(2 * 11 + pageInformationLength + regionHeaderLength + coded.size());
    appendSegmentHeader(out, 0, pageInformationType, pageInformationLength);
    appendBigEndian(out, width);
    appendBigEndian(out, height);
    appendBigEndian(out, resolution);
    appendBigEndian(out, resolution);
    // Eventually lossless, default pixel 0 (white), default combination OR, no refinement, no
    // auxiliary buffers; not striped (the height is known).
    out.insert(out.end(), {0x01, 0x00, 0x00});

    appendSegmentHeader(out, 1, immediateLosslessGenericRegionType,
                        static_cast<std::uint32_t>(regionHeaderLength + coded.size()));
    appendBigEndian(out, width);
    appendBigEndian(out, height);
    appendBigEndian(out, 0); // x
    appendBigEndian(out, 0); // y
    out.push_back(0);        // external combination OR
    out.push_back(0x08);     // arithmetic coding, template 0, TPGDON
    for (const int at : {3, -1, -3, -1, 2, -2, -2, -2}) {
        out.push_back(static_cast<std::uint8_t>(at));
    }
    out.insert(out.end(), coded.begin(), coded.end());
    return out;
}

} // namespace quillet::JBIG2Encoder
