#include "platform/JBIG2Encoder.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

#include <jbig2.h>
#undef inline // jbig2.h defines the keyword away when it is not a macro, as in every C++ compiler

namespace quillet {
namespace {

struct Decoded {
    std::optional<BilevelImage> image;
    std::vector<std::string> complaints; // jbig2dec's warnings and errors
};

struct ContextFree {
    void operator()(Jbig2Ctx* context) const noexcept { jbig2_ctx_free(context); }
};

/// Decodes a stream as a PDF reader's JBIG2 filter does.
Decoded decode(const std::vector<std::uint8_t>& stream) {
    Decoded result;
    const Jbig2ErrorCallback collect = [](void* data, const char* message, Jbig2Severity severity,
                                          std::uint32_t) {
        if (severity >= JBIG2_SEVERITY_WARNING) {
            static_cast<std::vector<std::string>*>(data)->emplace_back(message);
        }
    };
    std::unique_ptr<Jbig2Ctx, ContextFree> context(
        jbig2_ctx_new(nullptr, JBIG2_OPTIONS_EMBEDDED, nullptr, collect, &result.complaints));
    if (!context || jbig2_data_in(context.get(), stream.data(), stream.size()) < 0 ||
        jbig2_complete_page(context.get()) < 0) {
        return result;
    }
    if (Jbig2Image* page = jbig2_page_out(context.get())) {
        const std::size_t rowBytes = (page->width + 7) / 8;
        std::vector<std::uint8_t> rows;
        for (std::uint32_t y = 0; y < page->height; ++y) {
            const std::uint8_t* row = page->data + std::size_t{y} * page->stride;
            rows.insert(rows.end(), row, row + rowBytes);
        }
        const auto width = static_cast<int>(page->width);
        const auto height = static_cast<int>(page->height);
        jbig2_release_page(context.get(), page);
        result.image.emplace(width, height, std::move(rows));
    }
    return result;
}

std::uint64_t mix(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

/// Noise with `percent` black, the same at every run.
auto noise(int percent) {
    return [percent](int x, int y) {
        return mix(std::uint64_t(x) << 32 | unsigned(y)) % 100 < unsigned(percent);
    };
}

/// Lines of words of 5 x 7 glyphs drawn with `scale`-pixel dots: the strokes and repeated shapes
/// of a text page, from 26 glyph shapes and a space.
bool textLike(int x, int y, int scale) {
    const int line = y / (11 * scale);
    const int column = x / (6 * scale);
    const int dotX = x % (6 * scale) / scale;
    const int dotY = y % (11 * scale) / scale;
    const std::uint64_t letter = mix(std::uint64_t(line) << 32 | unsigned(column)) % 27;
    return dotX < 5 && dotY < 7 && letter != 26 && (mix(letter + 1000) >> (dotY * 5 + dotX) & 1);
}

BilevelImage draw(int width, int height, const std::function<bool(int, int)>& black) {
    BilevelImage image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, black(x, y));
        }
        // Bits past the width mean nothing and must not reach the code.
        image.row(y)[image.rowBytes() - 1] |= width % 8 == 0 ? 0 : 0xFF >> width % 8;
    }
    return image;
}

struct Case {
    const char* name;
    int width;
    int height;
    std::function<bool(int, int)> black;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.name;
}

class JBIG2RoundTrip : public testing::TestWithParam<Case> {};

TEST_P(JBIG2RoundTrip, DecodesToTheSameBits) {
    const Case& c = GetParam();
    const BilevelImage image = draw(c.width, c.height, c.black);
    const Decoded decoded = decode(JBIG2Encoder::encode(image, 300));
    EXPECT_EQ(decoded.complaints, std::vector<std::string>{});
    ASSERT_TRUE(decoded.image);
    EXPECT_TRUE(*decoded.image == image);
}

INSTANTIATE_TEST_SUITE_P(
    Images, JBIG2RoundTrip,
    testing::Values(
        Case{"AllWhite", 64, 40, [](int, int) { return false; }},
        Case{"AllBlack", 64, 40, [](int, int) { return true; }},
        Case{"OneBlackPixel", 1, 1, [](int, int) { return true; }},
        Case{"Width1", 1, 50, noise(50)}, Case{"Width7", 7, 30, noise(50)},
        Case{"Width9", 9, 30, noise(50)}, Case{"Width33", 33, 30, noise(50)},
        // Blocks of equal rows, white blocks first: typical prediction switching on and off.
        Case{"RepeatedRows", 70, 120,
             [](int x, int y) { return y / 16 % 3 == 1 && (x * 7 + y / 16) % 5 < 2; }},
        Case{"Noise", 203, 151, noise(50)}, Case{"SparseNoise", 500, 100, noise(3)},
        Case{"Checkerboard", 64, 64, [](int x, int y) { return (x + y) % 2 == 1; }},
        Case{"Text", 301, 200, [](int x, int y) { return textLike(x, y, 2); }},
        Case{"TallNarrow", 3, 900, noise(30)}, Case{"WideShort", 1500, 2, noise(50)}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(JBIG2Encoder, CodesATextPageInAFraction) {
    // A 300 dpi Letter page: margins, then text lines.
    const BilevelImage page = draw(2550, 3300, [](int x, int y) {
        return x >= 300 && x < 2250 && y >= 300 && y < 3000 && textLike(x, y, 4);
    });
    const std::vector<std::uint8_t> stream = JBIG2Encoder::encode(page, 300);
    EXPECT_LT(stream.size(), page.bytes().size() / 20);
    const Decoded decoded = decode(stream);
    ASSERT_TRUE(decoded.image);
    EXPECT_TRUE(*decoded.image == page);
}

TEST(JBIG2Encoder, RefusesWhatTheFieldsCannotHold) {
    const BilevelImage image(8, 8);
    EXPECT_THROW(JBIG2Encoder::encode(image, -1), std::invalid_argument);
    EXPECT_THROW(JBIG2Encoder::encode(image, 200'000'000), std::invalid_argument);
    EXPECT_THROW(BilevelImage(0, 5), std::invalid_argument);
    EXPECT_THROW(BilevelImage(9, 2, std::vector<std::uint8_t>(3)), std::invalid_argument);
    EXPECT_EQ(BilevelImage::byteCount(9, 2), 4u);
    EXPECT_EQ(BilevelImage::byteCount(INT64_MAX, INT64_MAX), std::nullopt);
}

} // namespace
} // namespace quillet
