#include "platform/AreaResampler.hpp"

#include <algorithm>
#include <cstring>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace quillet {
namespace {

constexpr int weightBits = 14;
constexpr int weightOne = 1 << weightBits;

// For each output position, the first input index it covers and the weights of the inputs from
// there on (summing to weightOne).
struct Taps {
    std::vector<int> first;
    std::vector<int> count;
    std::vector<std::uint16_t> weights; // `stride` entries per output position
    int stride = 0;
};

Taps areaTaps(int in, int out) {
    Taps taps;
    const double scale = static_cast<double>(in) / out;
    taps.stride = static_cast<int>(std::ceil(scale)) + 1;
    taps.first.resize(static_cast<std::size_t>(out));
    taps.count.resize(static_cast<std::size_t>(out));
    taps.weights.assign(static_cast<std::size_t>(out) * taps.stride, 0);
    for (int o = 0; o < out; ++o) {
        double start = o * scale;
        double end = std::min<double>(in, (o + 1) * scale);
        if (scale < 1.0) { // enlarging: the nearest input pixel
            start = std::min<double>(in - 1, std::floor((o + 0.5) * scale));
            end = start + 1;
        }
        const int first = static_cast<int>(std::floor(start));
        const int last = std::min(in - 1, static_cast<int>(std::ceil(end)) - 1);
        int total = 0;
        int n = 0;
        for (int i = first; i <= last && n < taps.stride; ++i, ++n) {
            const double covered = std::min<double>(end, i + 1) - std::max<double>(start, i);
            const int w = static_cast<int>(std::lround(covered / (end - start) * weightOne));
            taps.weights[static_cast<std::size_t>(o) * taps.stride + n] = static_cast<std::uint16_t>(w);
            total += w;
        }
        // Rounding leftovers go to the largest tap so every output keeps full weight.
        auto* row = &taps.weights[static_cast<std::size_t>(o) * taps.stride];
        *std::max_element(row, row + n) += static_cast<std::uint16_t>(weightOne - total);
        taps.first[static_cast<std::size_t>(o)] = first;
        taps.count[static_cast<std::size_t>(o)] = n;
    }
    return taps;
}

template <int Bands>
void shrinkRow(const std::uint8_t* src, std::uint8_t* dst, int outWidth, const Taps& taps) {
    for (int x = 0; x < outWidth; ++x) {
        const auto* w = &taps.weights[static_cast<std::size_t>(x) * taps.stride];
        const std::uint8_t* p = src + static_cast<std::size_t>(taps.first[x]) * Bands;
        std::uint32_t sum[Bands];
        for (int c = 0; c < Bands; ++c) {
            sum[c] = weightOne / 2;
        }
        const int count = taps.count[x];
        for (int k = 0; k < count; ++k, p += Bands) {
            for (int c = 0; c < Bands; ++c) {
                sum[c] += w[k] * p[c];
            }
        }
        for (int c = 0; c < Bands; ++c) {
            dst[x * Bands + c] = static_cast<std::uint8_t>(sum[c] >> weightBits);
        }
    }
}

} // namespace

Bitmap AreaResampler::resample(const std::uint8_t* pixels, int width, int height,
                               PixelFormat format, int outWidth, int outHeight) {
    const auto rowBytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(format);
    return resample([&](int y) { return pixels + static_cast<std::size_t>(y) * rowBytes; }, width,
                    height, format, outWidth, outHeight);
}

Bitmap AreaResampler::resample(const RowSource& rows, int width, int height, PixelFormat format,
                               int outWidth, int outHeight) {
    if (width < 1 || height < 1 || outWidth < 1 || outHeight < 1) {
        throw std::invalid_argument("resampling needs non-empty sizes");
    }
    const int bands = static_cast<int>(format);
    const std::size_t outRow = static_cast<std::size_t>(outWidth) * bands;
    if (width == outWidth && height == outHeight) {
        // Nothing to average: the rows as they come.
        Bitmap out(outWidth, outHeight, format);
        for (int y = 0; y < height; ++y) {
            std::memcpy(out.data() + static_cast<std::size_t>(y) * outRow, rows(y), outRow);
        }
        return out;
    }
    const Taps across = areaTaps(width, outWidth);
    const Taps down = areaTaps(height, outHeight);

    // Horizontal pass on demand: an input row is shrunk to the output width when an output row
    // first needs it and kept in a ring of as many rows as one output row reads (each output row
    // reads consecutive input rows, and the first of them never moves back), instead of holding
    // every input row shrunk at once.
    const int ringRows = down.stride;
    std::vector<std::uint8_t> ring(outRow * static_cast<std::size_t>(ringRows));
    std::vector<int> held(static_cast<std::size_t>(ringRows), -1);
    const auto narrowRow = [&](int y) -> const std::uint8_t* {
        const auto slot = static_cast<std::size_t>(y % ringRows);
        std::uint8_t* dst = ring.data() + slot * outRow;
        if (held[slot] != y) {
            const std::uint8_t* src = rows(y);
            if (bands == 3) {
                shrinkRow<3>(src, dst, outWidth, across);
            } else {
                shrinkRow<1>(src, dst, outWidth, across);
            }
            held[slot] = y;
        }
        return dst;
    };

    // Vertical pass, row by row over contiguous bytes.
    Bitmap out(outWidth, outHeight, format);
    std::vector<std::uint32_t> sums(outRow);
    for (int y = 0; y < outHeight; ++y) {
        std::fill(sums.begin(), sums.end(), weightOne / 2);
        const auto* w = &down.weights[static_cast<std::size_t>(y) * down.stride];
        for (int k = 0; k < down.count[y]; ++k) {
            const std::uint8_t* row = narrowRow(down.first[y] + k);
            const std::uint32_t weight = w[k];
            for (std::size_t i = 0; i < outRow; ++i) {
                sums[i] += weight * row[i];
            }
        }
        std::uint8_t* dst = out.data() + static_cast<std::size_t>(y) * outRow;
        for (std::size_t i = 0; i < outRow; ++i) {
            dst[i] = static_cast<std::uint8_t>(sums[i] >> weightBits);
        }
    }
    return out;
}

} // namespace quillet
