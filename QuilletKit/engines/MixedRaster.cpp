#include "engines/MixedRaster.hpp"

#include "engines/ImageCodec.hpp"
#include "platform/JBIG2Encoder.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quillet {
namespace {

constexpr int block = 32;
// A pixel darker than this share of its paper is ink.
constexpr int inkPercent = 60;
// A block with more than this share of mid-tones is a photo or a halftone.
constexpr double photoShare = 0.35;
// Chroma (max - min of R, G, B) above which a pixel is coloured.
constexpr int colouredChroma = 60;
// How far ink's soft edge reaches into the paper, in scan pixels: kept out of the background.
constexpr int inkEdge = 2;
// Further out, to this many pixels, a pixel this much darker than its paper is ringing.
constexpr int ringingReach = 8;
constexpr int ringingDepth = 12;

struct Pixels {
    const Bitmap& scan;
    int bands;

    std::uint8_t luminance(std::size_t i) const {
        const std::uint8_t* p = scan.data() + i * static_cast<std::size_t>(bands);
        return bands == 1 ? p[0]
                          : static_cast<std::uint8_t>((p[0] * 77 + p[1] * 150 + p[2] * 29) >> 8);
    }
    int chroma(std::size_t i) const {
        if (bands == 1) {
            return 0;
        }
        const std::uint8_t* p = scan.data() + i * 3;
        return std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]});
    }
};

// Each block's paper brightness: the 90th percentile of its luminance, then the brightest of it
// and its eight neighbours (a block mostly covered by ink still lies on paper).
std::vector<int> paperLevels(const Bitmap& scan, const Pixels& pixels, int columns, int rows) {
    std::vector<int> level(static_cast<std::size_t>(columns) * rows, 255);
    std::vector<int> histogram(256);
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            std::fill(histogram.begin(), histogram.end(), 0);
            int count = 0;
            for (int y = by * block; y < std::min(scan.height(), (by + 1) * block); ++y) {
                for (int x = bx * block; x < std::min(scan.width(), (bx + 1) * block); ++x) {
                    ++histogram[pixels.luminance(static_cast<std::size_t>(y) * scan.width() + x)];
                    ++count;
                }
            }
            int below = 0;
            int value = 255;
            for (int v = 0; v < 256; ++v) {
                below += histogram[v];
                if (below * 10 >= count * 9) {
                    value = v;
                    break;
                }
            }
            level[static_cast<std::size_t>(by) * columns + bx] = value;
        }
    }
    std::vector<int> widened(level.size());
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            int best = 0;
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = bx + dx;
                    const int ny = by + dy;
                    if (nx >= 0 && ny >= 0 && nx < columns && ny < rows) {
                        best = std::max(best, level[static_cast<std::size_t>(ny) * columns + nx]);
                    }
                }
            }
            widened[static_cast<std::size_t>(by) * columns + bx] = best;
        }
    }
    return widened;
}

std::uint8_t median(const std::vector<int>& histogram, int count) {
    int below = 0;
    for (int v = 0; v < 256; ++v) {
        below += histogram[v];
        if (2 * below >= count) {
            return static_cast<std::uint8_t>(v);
        }
    }
    return 0;
}

// `bits` (one byte a pixel) with every pixel that has no set neighbour cleared.
void despeckle(std::vector<std::uint8_t>& bits, int width, int height) {
    std::vector<std::uint8_t> kept(bits.size(), 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t i = static_cast<std::size_t>(y) * width + x;
            if (!bits[i]) {
                continue;
            }
            bool neighbour = false;
            for (int dy = -1; dy <= 1 && !neighbour; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx;
                    const int ny = y + dy;
                    if ((dx || dy) && nx >= 0 && ny >= 0 && nx < width && ny < height &&
                        bits[static_cast<std::size_t>(ny) * width + nx]) {
                        neighbour = true;
                        break;
                    }
                }
            }
            kept[i] = neighbour ? 1 : 0;
        }
    }
    bits.swap(kept);
}

// One byte a pixel: set within `radius` pixels (a square) of any ink in `ink`.
std::vector<std::uint8_t> widened(const BilevelImage& ink, int radius) {
    const int width = ink.width();
    const int height = ink.height();
    std::vector<std::uint8_t> across(static_cast<std::size_t>(width) * height, 0);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = ink.row(y);
        std::uint8_t* out = across.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            if (row[x >> 3] & (0x80 >> (x & 7))) {
                std::fill(out + std::max(0, x - radius), out + std::min(width, x + radius + 1), 1);
            }
        }
    }
    std::vector<std::uint8_t> both(across.size(), 0);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = across.data() + static_cast<std::size_t>(y) * width;
        for (int dy = -radius; dy <= radius; ++dy) {
            const int ny = y + dy;
            if (ny < 0 || ny >= height) {
                continue;
            }
            std::uint8_t* out = both.data() + static_cast<std::size_t>(ny) * width;
            for (int x = 0; x < width; ++x) {
                out[x] |= row[x];
            }
        }
    }
    return both;
}

BilevelImage packed(const std::vector<std::uint8_t>& bits, int width, int height) {
    BilevelImage image(width, height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = image.row(y);
        const std::uint8_t* from = bits.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            if (from[x]) {
                row[x >> 3] |= static_cast<std::uint8_t>(0x80 >> (x & 7));
            }
        }
    }
    return image;
}

} // namespace

ScanReading MixedRaster::read(const Bitmap& scan) {
    const int width = scan.width();
    const int height = scan.height();
    const Pixels pixels{scan, scan.bands()};
    const std::size_t count = static_cast<std::size_t>(width) * height;
    ScanReading reading;

    // Bilevel: nearly every pixel black or white, and nothing coloured.
    std::size_t midTones = 0;
    std::size_t coloured = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const int l = pixels.luminance(i);
        midTones += l >= 48 && l < 208;
        coloured += pixels.chroma(i) > colouredChroma;
    }
    if (midTones * 1000 <= count * 3 && coloured * 1000 <= count) {
        std::vector<std::uint8_t> bits(count);
        for (std::size_t i = 0; i < count; ++i) {
            bits[i] = pixels.luminance(i) < 128;
        }
        reading.kind = ScanReading::Kind::bilevel;
        reading.ink = packed(bits, width, height);
        return reading;
    }

    const int columns = (width + block - 1) / block;
    const int rows = (height + block - 1) / block;
    const auto paper = paperLevels(scan, pixels, columns, rows);

    // Photo blocks, widened by one block so a photo's soft edge stays with it.
    std::vector<std::uint8_t> photo(paper.size(), 0);
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            const int level = paper[static_cast<std::size_t>(by) * columns + bx];
            int mid = 0;
            int all = 0;
            for (int y = by * block; y < std::min(height, (by + 1) * block); ++y) {
                for (int x = bx * block; x < std::min(width, (bx + 1) * block); ++x) {
                    const int l = pixels.luminance(static_cast<std::size_t>(y) * width + x);
                    mid += l * 4 >= level && l * 100 < level * 85;
                    ++all;
                }
            }
            photo[static_cast<std::size_t>(by) * columns + bx] = mid > photoShare * all;
        }
    }
    std::vector<std::uint8_t> widenedPhoto(photo.size(), 0);
    std::size_t photoBlocks = 0;
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            bool any = false;
            for (int dy = -1; dy <= 1 && !any; ++dy) {
                for (int dx = -1; dx <= 1 && !any; ++dx) {
                    const int nx = bx + dx;
                    const int ny = by + dy;
                    any = nx >= 0 && ny >= 0 && nx < columns && ny < rows &&
                          photo[static_cast<std::size_t>(ny) * columns + nx];
                }
            }
            widenedPhoto[static_cast<std::size_t>(by) * columns + bx] = any;
            photoBlocks += photo[static_cast<std::size_t>(by) * columns + bx];
        }
    }
    if (photoBlocks * 2 > photo.size()) {
        reading.kind = ScanReading::Kind::photo;
        return reading;
    }

    // Ink: darker than its paper, outside photos.
    std::vector<std::uint8_t> bits(count, 0);
    std::vector<int> reds(256), greens(256), blues(256);
    int inked = 0;
    for (int y = 0; y < height; ++y) {
        const int by = y / block;
        for (int x = 0; x < width; ++x) {
            const std::size_t b = static_cast<std::size_t>(by) * columns + x / block;
            const std::size_t i = static_cast<std::size_t>(y) * width + x;
            if (widenedPhoto[b] || pixels.luminance(i) * 100 >= paper[b] * inkPercent) {
                continue;
            }
            bits[i] = 1;
            const std::uint8_t* p = scan.data() + i * static_cast<std::size_t>(pixels.bands);
            ++reds[p[0]];
            ++greens[p[pixels.bands == 1 ? 0 : 1]];
            ++blues[p[pixels.bands == 1 ? 0 : 2]];
            ++inked;
        }
    }
    if (inked > 0) {
        reading.inkColour = {median(reds, inked), median(greens, inked), median(blues, inked)};
    }
    const auto& ink = reading.inkColour;
    const bool neutralInk = std::max({ink[0], ink[1], ink[2]}) -
                                std::min({ink[0], ink[1], ink[2]}) <=
                            colouredChroma / 2;
    if (neutralInk && pixels.bands == 3) {
        for (std::size_t i = 0; i < count; ++i) {
            if (bits[i] && pixels.chroma(i) > colouredChroma) {
                bits[i] = 0; // coloured: drawn by the background in its own colour
            }
        }
    }
    despeckle(bits, width, height);
    reading.ink = packed(bits, width, height);
    reading.paper = paper;
    reading.paperColumns = columns;
    return reading;
}

std::optional<ScanLayers> MixedRaster::split(const Bitmap& scan, const ScanReading& reading,
                                             int scanDpi, int backgroundDpi, double quality) {
    try {
        const int width = scan.width();
        const int height = scan.height();
        const int bands = scan.bands();
        ScanLayers layers;
        layers.mask = JBIG2Encoder::encode(reading.ink, scanDpi);
        layers.maskWidth = width;
        layers.maskHeight = height;
        layers.ink = reading.inkColour;

        // The background: each cell the average of its pixels away from the ink (its soft
        // edge reaches two pixels out); cells all ink take their neighbours' colour.
        const int factor =
            std::max(1, static_cast<int>(std::lround(static_cast<double>(scanDpi) / backgroundDpi)));
        const int cellsAcross = (width + factor - 1) / factor;
        const int cellsDown = (height + factor - 1) / factor;
        const std::size_t cells = static_cast<std::size_t>(cellsAcross) * cellsDown;
        std::vector<std::uint32_t> sums(cells * static_cast<std::size_t>(bands), 0);
        std::vector<std::uint32_t> counts(cells, 0);
        const std::vector<std::uint8_t> edge = widened(reading.ink, inkEdge);
        const std::vector<std::uint8_t> ringing = widened(reading.ink, ringingReach);
        const Pixels pixels{scan, bands};
        for (int y = 0; y < height; ++y) {
            const std::size_t cellRow = static_cast<std::size_t>(y / factor) * cellsAcross;
            const std::size_t at = static_cast<std::size_t>(y) * width;
            const int* paper = reading.paper.empty()
                                   ? nullptr
                                   : reading.paper.data() +
                                         static_cast<std::size_t>(y / block) * reading.paperColumns;
            const std::uint8_t* p = scan.data() + at * bands;
            for (int x = 0; x < width; ++x, p += bands) {
                if (edge[at + x] || (ringing[at + x] && paper &&
                                     pixels.luminance(at + x) + ringingDepth < paper[x / block])) {
                    continue;
                }
                const std::size_t cell = cellRow + static_cast<std::size_t>(x / factor);
                for (int c = 0; c < bands; ++c) {
                    sums[cell * bands + c] += p[c];
                }
                ++counts[cell];
            }
        }
        Bitmap background(cellsAcross, cellsDown, scan.format());
        std::vector<std::uint8_t> known(cells, 0);
        std::vector<std::uint64_t> total(static_cast<std::size_t>(bands), 0);
        std::size_t knownCells = 0;
        for (std::size_t cell = 0; cell < cells; ++cell) {
            if (counts[cell] == 0) {
                continue;
            }
            for (int c = 0; c < bands; ++c) {
                const std::uint32_t value = (sums[cell * bands + c] + counts[cell] / 2) / counts[cell];
                background.data()[cell * bands + c] = static_cast<std::uint8_t>(value);
                total[static_cast<std::size_t>(c)] += value;
            }
            known[cell] = 1;
            ++knownCells;
        }
        // Holes (cells under solid ink) grow in from their known neighbours for a few rounds;
        // what is left takes the page's average.
        for (int round = 0; round < 4; ++round) {
            std::vector<std::uint8_t> next = known;
            for (int cy = 0; cy < cellsDown; ++cy) {
                for (int cx = 0; cx < cellsAcross; ++cx) {
                    const std::size_t cell = static_cast<std::size_t>(cy) * cellsAcross + cx;
                    if (known[cell]) {
                        continue;
                    }
                    std::uint32_t sum[3] = {0, 0, 0};
                    int found = 0;
                    for (const auto [dx, dy] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}}) {
                        const int nx = cx + dx;
                        const int ny = cy + dy;
                        const std::size_t n = static_cast<std::size_t>(ny) * cellsAcross + nx;
                        if (nx >= 0 && ny >= 0 && nx < cellsAcross && ny < cellsDown && known[n]) {
                            for (int c = 0; c < bands; ++c) {
                                sum[c] += background.data()[n * bands + c];
                            }
                            ++found;
                        }
                    }
                    if (found > 0) {
                        for (int c = 0; c < bands; ++c) {
                            background.data()[cell * bands + c] =
                                static_cast<std::uint8_t>(sum[c] / static_cast<unsigned>(found));
                        }
                        next[cell] = 1;
                    }
                }
            }
            known.swap(next);
        }
        for (std::size_t cell = 0; cell < cells; ++cell) {
            if (!known[cell]) {
                for (int c = 0; c < bands; ++c) {
                    background.data()[cell * bands + c] = static_cast<std::uint8_t>(
                        knownCells ? total[static_cast<std::size_t>(c)] / knownCells : 255);
                }
            }
        }
        auto encoded = ImageCodec::data(background, ImageOutputFormat::jpeg, quality);
        if (!encoded) {
            return std::nullopt;
        }
        layers.background = std::move(*encoded);
        layers.backgroundWidth = cellsAcross;
        layers.backgroundHeight = cellsDown;
        layers.backgroundFormat = scan.format();
        return layers;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillet
