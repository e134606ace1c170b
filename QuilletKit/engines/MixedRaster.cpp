#include "engines/MixedRaster.hpp"

#include "engines/ImageCodec.hpp"
#include "platform/AreaResampler.hpp"
#include "platform/JBIG2Encoder.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace quillet {
namespace {

constexpr int block = 32;
// A pixel darker than this share of its paper is ink.
constexpr int inkPercent = 60;
// A mask kept from an earlier pass: its ink shows where the page is darker than this share of
// the lightest non-ink within `surroundReach` pixels; within `keptReach` pixels of it, what the
// threshold finds at this share of the paper or lighter is its own edge.
constexpr int shownPercent = 97;
constexpr int surroundReach = 6;
constexpr int keptReach = 2;
// A tile with more than this share of mid-tones is a photo or a halftone ...
constexpr double photoShare = 0.35;
// ... and less than this share of bare paper.
constexpr double bareShare = 0.3;
// Chroma (max - min of R, G, B) above which a pixel is coloured.
constexpr int colouredChroma = 60;
// Photos are found in tiles of this many pixels a side.
constexpr int tile = 16;
// Photo regions of fewer tiles than this are letters.
constexpr std::size_t smallestPhotoTiles = 64;
// Letters change colour only from word to word: their colours need little resolution.
constexpr int foregroundDpi = 25;
// A cell of ink this far from the main ink's hue is another ink; a page with this many such
// cells (a short word's worth) has more than one.
constexpr int otherInk = 60;
constexpr int otherInkCells = 16;
constexpr double foregroundQuality = 0.7;
// How far ink's soft edge reaches into the paper, in scan pixels: kept out of the background.
constexpr int inkEdge = 2;
// Further out, to this many pixels, a pixel this much darker than its paper is ringing.
constexpr int ringingReach = 8;
constexpr int ringingDepth = 12;

// The luminance of an sRGB pixel (0.30 R + 0.59 G + 0.11 B, in 8-bit fixed point).
int luminanceOf(const std::uint8_t* rgb) {
    return (rgb[0] * 77 + rgb[1] * 150 + rgb[2] * 29) >> 8;
}

int foregroundFactor(int scanDpi) {
    return std::max(1, static_cast<int>(std::lround(static_cast<double>(scanDpi) / foregroundDpi)));
}

struct Pixels {
    const Bitmap& scan;
    int bands;

    std::uint8_t luminance(std::size_t i) const {
        const std::uint8_t* p = scan.data() + i * static_cast<std::size_t>(bands);
        return bands == 1 ? p[0]
                          : static_cast<std::uint8_t>(luminanceOf(p));
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
std::vector<int> paperLevels(const Bitmap& scan, const std::vector<std::uint8_t>& luminance,
                             int columns, int rows) {
    std::vector<int> level(static_cast<std::size_t>(columns) * rows, 255);
    std::vector<int> histogram(256);
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            std::fill(histogram.begin(), histogram.end(), 0);
            int count = 0;
            for (int y = by * block; y < std::min(scan.height(), (by + 1) * block); ++y) {
                for (int x = bx * block; x < std::min(scan.width(), (bx + 1) * block); ++x) {
                    ++histogram[luminance[static_cast<std::size_t>(y) * scan.width() + x]];
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

bool isSet(const BilevelImage& image, int x, int y) {
    return (image.row(y)[x >> 3] & (0x80 >> (x & 7))) != 0;
}

// `candidates` without the pixels that have no set neighbour (noise).
BilevelImage despeckled(const BilevelImage& candidates) {
    const int width = candidates.width();
    const int height = candidates.height();
    BilevelImage image(width, height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = image.row(y);
        const std::uint8_t* from = candidates.row(y);
        for (int x = 0; x < width; ++x) {
            if (from[x >> 3] == 0) {
                x |= 7; // the next seven pixels are paper too
                continue;
            }
            if (!isSet(candidates, x, y)) {
                continue;
            }
            bool neighbour = false;
            for (int dy = -1; dy <= 1 && !neighbour; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx;
                    const int ny = y + dy;
                    if ((dx || dy) && nx >= 0 && ny >= 0 && nx < width && ny < height &&
                        isSet(candidates, nx, ny)) {
                        neighbour = true;
                        break;
                    }
                }
            }
            if (neighbour) {
                row[x >> 3] |= static_cast<std::uint8_t>(0x80 >> (x & 7));
            }
        }
    }
    return image;
}

// Sets `bit` in the byte of every pixel of `out` (one a pixel) within `radius` pixels (a square)
// of any ink in `ink`.
void widenInto(const BilevelImage& ink, int radius, std::vector<std::uint8_t>& out,
               std::uint8_t bit) {
    const int width = ink.width();
    const int height = ink.height();
    out.resize(static_cast<std::size_t>(width) * height, 0);
    // Down the columns with a running count, per column, of the rows in the window that have ink
    // within `radius` across. Each row is widened across once, when it enters the window, and
    // kept in a ring until it leaves; a row without ink costs nothing.
    const int span = 2 * radius + 1;
    std::vector<int> inWindow(static_cast<std::size_t>(width), 0);
    std::vector<std::uint8_t> ring(static_cast<std::size_t>(span) * width);
    std::vector<std::uint8_t> inked(static_cast<std::size_t>(span), 0);
    const std::size_t rowBytes = ink.rowBytes();
    const auto addRow = [&](int y, int sign) {
        if (y < 0 || y >= height) {
            return;
        }
        const auto slot = static_cast<std::size_t>(y % span);
        std::uint8_t* across = ring.data() + slot * width;
        if (sign > 0) {
            const std::uint8_t* row = ink.row(y);
            inked[slot] = std::any_of(row, row + rowBytes, [](std::uint8_t b) { return b != 0; });
            if (!inked[slot]) {
                return;
            }
            // Distance to the nearest ink on the left, then on the right.
            int since = radius + 1;
            for (int x = 0; x < width; ++x) {
                since = (row[x >> 3] & (0x80 >> (x & 7))) ? 0 : since + 1;
                across[x] = since <= radius;
            }
            since = radius + 1;
            for (int x = width - 1; x >= 0; --x) {
                since = (row[x >> 3] & (0x80 >> (x & 7))) ? 0 : since + 1;
                across[x] |= since <= radius;
            }
        } else if (!inked[slot]) {
            return;
        }
        for (int x = 0; x < width; ++x) {
            inWindow[static_cast<std::size_t>(x)] += sign * across[x];
        }
    };
    for (int y = 0; y < radius; ++y) {
        addRow(y, 1);
    }
    for (int y = 0; y < height; ++y) {
        addRow(y + radius, 1);
        std::uint8_t* row = out.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            row[x] |= inWindow[static_cast<std::size_t>(x)] > 0 ? bit : 0;
        }
        addRow(y - radius, -1);
    }
}

// Clears every 8-connected region of set cells in `cells` smaller than `smallest` or covering
// less than 30% of its bounding box, and fills the bounding box of every other: photos are
// solid rectangles, and their dark or flat parts, which look like ink or paper, belong to them.
// Answers those boxes, in cells, right and bottom inclusive.
std::vector<PixelBox> keepPhotoRegions(std::vector<std::uint8_t>& cells, int columns, int rows,
                                       std::size_t smallest) {
    std::vector<std::uint8_t> seen(cells.size(), 0);
    std::vector<std::size_t> region;
    struct Box {
        int left, top, right, bottom;
    };
    std::vector<Box> boxes;
    for (std::size_t start = 0; start < cells.size(); ++start) {
        if (!cells[start] || seen[start]) {
            continue;
        }
        region.clear();
        region.push_back(start);
        seen[start] = 1;
        Box box{columns, rows, -1, -1};
        for (std::size_t next = 0; next < region.size(); ++next) {
            const int x = static_cast<int>(region[next] % columns);
            const int y = static_cast<int>(region[next] / columns);
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                   std::max(box.bottom, y)};
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx;
                    const int ny = y + dy;
                    if (nx < 0 || ny < 0 || nx >= columns || ny >= rows) {
                        continue;
                    }
                    const std::size_t n = static_cast<std::size_t>(ny) * columns + nx;
                    if (cells[n] && !seen[n]) {
                        seen[n] = 1;
                        region.push_back(n);
                    }
                }
            }
        }
        const std::size_t boxed = static_cast<std::size_t>(box.right - box.left + 1) *
                                  static_cast<std::size_t>(box.bottom - box.top + 1);
        if (region.size() < smallest || 10 * region.size() < 3 * boxed) {
            for (const std::size_t cell : region) {
                cells[cell] = 0;
            }
        } else {
            boxes.push_back(box);
        }
    }
    std::vector<PixelBox> kept;
    for (const Box& box : boxes) {
        for (int y = box.top; y <= box.bottom; ++y) {
            std::fill_n(cells.begin() + static_cast<std::ptrdiff_t>(y) * columns + box.left,
                        box.right - box.left + 1, std::uint8_t{1});
        }
        kept.push_back({box.left, box.top, box.right, box.bottom});
    }
    return kept;
}

// Grows each box (in cells, right and bottom inclusive) a strip at a time while more than half
// of the strip just outside it is covered (a photo's dark or flat part, which is no mid-tone,
// still leaves no paper; a line of text does), then merges boxes that overlap.
void grownOverCoveredStrips(std::vector<PixelBox>& boxes, const std::vector<std::uint8_t>& covered,
                            int columns, int rows) {
    const auto coveredStrip = [&](int left, int top, int right, int bottom) {
        int count = 0;
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x) {
                count += covered[static_cast<std::size_t>(y) * columns + x];
            }
        }
        return 2 * count > (right - left + 1) * (bottom - top + 1);
    };
    for (PixelBox& b : boxes) {
        for (bool grew = true; grew;) {
            grew = false;
            if (b.top > 0 && coveredStrip(b.left, b.top - 1, b.right, b.top - 1)) {
                --b.top, grew = true;
            }
            if (b.bottom + 1 < rows && coveredStrip(b.left, b.bottom + 1, b.right, b.bottom + 1)) {
                ++b.bottom, grew = true;
            }
            if (b.left > 0 && coveredStrip(b.left - 1, b.top, b.left - 1, b.bottom)) {
                --b.left, grew = true;
            }
            if (b.right + 1 < columns && coveredStrip(b.right + 1, b.top, b.right + 1, b.bottom)) {
                ++b.right, grew = true;
            }
        }
    }
    // Overlapping or touching boxes become their union, until none do.
    for (bool merged = true; merged;) {
        merged = false;
        for (std::size_t i = 0; i < boxes.size() && !merged; ++i) {
            for (std::size_t j = i + 1; j < boxes.size() && !merged; ++j) {
                PixelBox& a = boxes[i];
                const PixelBox& b = boxes[j];
                if (a.left <= b.right + 1 && b.left <= a.right + 1 && a.top <= b.bottom + 1 &&
                    b.top <= a.bottom + 1) {
                    a = {std::min(a.left, b.left), std::min(a.top, b.top),
                         std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
                    boxes.erase(boxes.begin() + static_cast<std::ptrdiff_t>(j));
                    merged = true;
                }
            }
        }
    }
}

// Cells of a shrunk picture whose value is unknown (`known` 0) take their known neighbours'
// average, round after round, for up to `rounds` rounds; what is left takes the average of the
// cells known at the start (white when none is).
void grow(Bitmap& cells, std::vector<std::uint8_t>& known, int rounds) {
    const int across = cells.width();
    const int down = cells.height();
    const int bands = cells.bands();
    std::uint8_t* values = cells.data();
    std::vector<std::uint64_t> total(static_cast<std::size_t>(bands), 0);
    std::size_t knownCells = 0;
    for (std::size_t cell = 0; cell < known.size(); ++cell) {
        if (known[cell]) {
            for (int c = 0; c < bands; ++c) {
                total[static_cast<std::size_t>(c)] += values[cell * bands + c];
            }
            ++knownCells;
        }
    }
    // Each round takes the unknown cells next to known ones (the frontier), all from the cells
    // known before it; only the frontier is visited, so growing across a page of mostly empty
    // cells costs what the page has cells, not that times the rounds.
    const auto neighbours = [&](std::size_t cell, const auto& visit) {
        const int cx = static_cast<int>(cell % static_cast<std::size_t>(across));
        const int cy = static_cast<int>(cell / static_cast<std::size_t>(across));
        for (const auto& [dx, dy] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}}) {
            const int nx = cx + dx;
            const int ny = cy + dy;
            if (nx >= 0 && ny >= 0 && nx < across && ny < down) {
                visit(static_cast<std::size_t>(ny) * across + nx);
            }
        }
    };
    std::vector<std::uint8_t> queued = known;
    std::vector<std::size_t> frontier;
    for (int cy = 0; cy < down; ++cy) {
        for (int cx = 0; cx < across; ++cx) {
            const std::size_t cell = static_cast<std::size_t>(cy) * across + cx;
            if (!known[cell] &&
                ((cx > 0 && known[cell - 1]) || (cx + 1 < across && known[cell + 1]) ||
                 (cy > 0 && known[cell - across]) || (cy + 1 < down && known[cell + across]))) {
                queued[cell] = 1;
                frontier.push_back(cell);
            }
        }
    }
    for (int round = 0; round < rounds && !frontier.empty(); ++round) {
        for (const std::size_t cell : frontier) {
            std::uint32_t sum[3] = {0, 0, 0};
            unsigned found = 0;
            neighbours(cell, [&](std::size_t n) {
                if (known[n]) {
                    for (int c = 0; c < bands; ++c) {
                        sum[c] += values[n * bands + c];
                    }
                    ++found;
                }
            });
            for (int c = 0; c < bands; ++c) {
                values[cell * bands + c] = static_cast<std::uint8_t>(sum[c] / found);
            }
        }
        std::vector<std::size_t> next;
        for (const std::size_t cell : frontier) {
            known[cell] = 1;
        }
        for (const std::size_t cell : frontier) {
            neighbours(cell, [&](std::size_t n) {
                if (!queued[n]) {
                    queued[n] = 1;
                    next.push_back(n);
                }
            });
        }
        frontier.swap(next);
    }
    for (std::size_t cell = 0; cell < known.size(); ++cell) {
        if (!known[cell]) {
            for (int c = 0; c < bands; ++c) {
                values[cell * bands + c] = static_cast<std::uint8_t>(
                    knownCells ? total[static_cast<std::size_t>(c)] / knownCells : 255);
            }
        }
    }
}

// `scan` shrunk by `factor`: each cell the average of its pixels that `counted` accepts. Cells
// with none grow in from their neighbours for up to `rounds` rounds; what is left takes the
// average of all counted cells.
template <typename Counted>
Bitmap cellAverages(const Bitmap& scan, int factor, int rounds, const Counted& counted) {
    const int width = scan.width();
    const int height = scan.height();
    const int bands = scan.bands();
    const int across = (width + factor - 1) / factor;
    const int down = (height + factor - 1) / factor;
    Bitmap out(across, down, scan.format());
    std::uint8_t* values = out.data();
    std::vector<std::uint8_t> known(static_cast<std::size_t>(across) * down, 0);
    // One row of cells is summed at a time: the sums of a whole page would outweigh the page.
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(across) * bands);
    std::vector<std::uint32_t> counts(static_cast<std::size_t>(across));
    for (int cy = 0; cy < down; ++cy) {
        std::fill(sums.begin(), sums.end(), 0);
        std::fill(counts.begin(), counts.end(), 0);
        for (int y = cy * factor; y < std::min(height, (cy + 1) * factor); ++y) {
            const std::uint8_t* p = scan.data() + static_cast<std::size_t>(y) * width * bands;
            // Cell by cell, the sums kept in registers.
            for (int cx = 0; cx < across; ++cx) {
                const int end = std::min(width, (cx + 1) * factor);
                std::uint32_t sum[3] = {0, 0, 0};
                std::uint32_t count = 0;
                for (int x = cx * factor; x < end; ++x, p += bands) {
                    if (!counted(x, y)) {
                        continue;
                    }
                    sum[0] += p[0];
                    if (bands == 3) {
                        sum[1] += p[1];
                        sum[2] += p[2];
                    }
                    ++count;
                }
                for (int c = 0; c < bands; ++c) {
                    sums[static_cast<std::size_t>(cx) * bands + c] += sum[c];
                }
                counts[static_cast<std::size_t>(cx)] += count;
            }
        }
        for (int cx = 0; cx < across; ++cx) {
            const std::uint32_t count = counts[static_cast<std::size_t>(cx)];
            if (count == 0) {
                continue;
            }
            const std::size_t cell = static_cast<std::size_t>(cy) * across + cx;
            for (int c = 0; c < bands; ++c) {
                values[cell * bands + c] = static_cast<std::uint8_t>(
                    (sums[static_cast<std::size_t>(cx) * bands + c] + count / 2) / count);
            }
            known[cell] = 1;
        }
    }
    grow(out, known, rounds);
    return out;
}

int luminanceOf(const std::array<std::uint8_t, 3>& colour) {
    return luminanceOf(colour.data());
}

// `colour` lighter by `lift` levels in every channel (darker when negative).
std::array<std::uint8_t, 3> lifted(const std::uint8_t* colour, int lift) {
    std::array<std::uint8_t, 3> out{};
    for (int c = 0; c < 3; ++c) {
        out[static_cast<std::size_t>(c)] =
            static_cast<std::uint8_t>(std::clamp(colour[c] + lift, 0, 255));
    }
    return out;
}

// The colour of the ink in each cell of `factor` pixels a side (an RGB `scan`), and whether the
// cell has one: the hue of the darker half of the cell's ink pixels (a letter's soft edge has as
// much of the paper's colour as of the ink's) at the lightness of them all, so painted through
// the mask, a little bolder than the strokes, the cell keeps its darkness. A cell with fewer than
// a sixteenth of its pixels inked (the tip of a descender, the edge of a letter next door) has
// no colour of its own.
struct InkCells {
    Bitmap colours;
    std::vector<std::uint8_t> known;
};

InkCells inkCells(const Bitmap& scan, const BilevelImage& ink,
                  const std::vector<std::uint8_t>& luminance, int factor) {
    const int width = scan.width();
    const int height = scan.height();
    const int across = (width + factor - 1) / factor;
    const int down = (height + factor - 1) / factor;
    InkCells cells{Bitmap(across, down, scan.format()),
                   std::vector<std::uint8_t>(static_cast<std::size_t>(across) * down, 0)};
    const int fewest = std::max(1, factor * factor / 16);
    // The ink of row `y`, eight pixels a byte: most bytes of a page are empty.
    const auto eachInk = [&](int y, const auto& visit) {
        const std::uint8_t* row = ink.row(y);
        for (int byte = 0; byte < (width + 7) / 8; ++byte) {
            if (row[byte] == 0) {
                continue;
            }
            for (int bit = 0; bit < 8; ++bit) {
                const int x = byte * 8 + bit;
                if ((row[byte] & (0x80 >> bit)) && x < width) {
                    visit(x, static_cast<std::size_t>(y) * width + x);
                }
            }
        }
    };
    // One row of cells at a time: a histogram of the ink's luminance per cell, then the sums of
    // the pixels at or below each cell's median.
    std::vector<int> histograms(static_cast<std::size_t>(across) * 256, 0);
    std::vector<int> counts(static_cast<std::size_t>(across));
    std::vector<int> medians(static_cast<std::size_t>(across));
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(across) * 3);
    std::vector<std::uint32_t> darker(static_cast<std::size_t>(across));
    std::vector<std::uint32_t> lightness(static_cast<std::size_t>(across));
    for (int cy = 0; cy < down; ++cy) {
        const int top = cy * factor;
        const int bottom = std::min(height, top + factor);
        std::fill(counts.begin(), counts.end(), 0);
        for (int y = top; y < bottom; ++y) {
            eachInk(y, [&](int x, std::size_t i) {
                const std::size_t cell = static_cast<std::size_t>(x / factor);
                ++histograms[cell * 256 + luminance[i]];
                ++counts[cell];
            });
        }
        for (std::size_t cx = 0; cx < static_cast<std::size_t>(across); ++cx) {
            if (counts[cx] == 0) {
                continue;
            }
            int* histogram = histograms.data() + cx * 256;
            int below = 0;
            medians[cx] = 255;
            for (int v = 0; v < 256; ++v) {
                below += histogram[v];
                if (2 * below >= counts[cx]) {
                    medians[cx] = v;
                    break;
                }
            }
            std::fill_n(histogram, 256, 0);
        }
        std::fill(sums.begin(), sums.end(), 0);
        std::fill(darker.begin(), darker.end(), 0);
        std::fill(lightness.begin(), lightness.end(), 0);
        for (int y = top; y < bottom; ++y) {
            eachInk(y, [&](int x, std::size_t i) {
                const std::size_t cell = static_cast<std::size_t>(x / factor);
                lightness[cell] += luminance[i];
                if (luminance[i] <= medians[cell]) {
                    const std::uint8_t* p = scan.data() + i * 3;
                    for (int c = 0; c < 3; ++c) {
                        sums[cell * 3 + c] += p[c];
                    }
                    ++darker[cell];
                }
            });
        }
        for (int cx = 0; cx < across; ++cx) {
            const std::uint32_t count = darker[static_cast<std::size_t>(cx)];
            if (counts[static_cast<std::size_t>(cx)] < fewest || count == 0) {
                continue;
            }
            const std::size_t cell = static_cast<std::size_t>(cy) * across + cx;
            std::uint8_t core[3];
            for (int c = 0; c < 3; ++c) {
                core[c] = static_cast<std::uint8_t>(
                    (sums[static_cast<std::size_t>(cx) * 3 + c] + count / 2) / count);
            }
            const int inked = counts[static_cast<std::size_t>(cx)];
            const int lift = static_cast<int>(lightness[static_cast<std::size_t>(cx)] / inked) -
                             luminanceOf(core);
            const auto colour = lifted(core, lift);
            std::copy(colour.begin(), colour.end(), cells.colours.data() + cell * 3);
            cells.known[cell] = 1;
        }
    }
    return cells;
}

// The colour most cells have, channel by channel: the main ink's as the cells see it (black
// when no cell has ink enough for a colour of its own).
std::array<std::uint8_t, 3> commonColour(const InkCells& cells) {
    std::array<std::vector<int>, 3> histograms{std::vector<int>(256), std::vector<int>(256),
                                               std::vector<int>(256)};
    int count = 0;
    for (std::size_t cell = 0; cell < cells.known.size(); ++cell) {
        if (cells.known[cell]) {
            for (int c = 0; c < 3; ++c) {
                ++histograms[static_cast<std::size_t>(c)][cells.colours.data()[cell * 3 + c]];
            }
            ++count;
        }
    }
    if (count == 0) {
        return {0, 0, 0};
    }
    return {median(histograms[0], count), median(histograms[1], count),
            median(histograms[2], count)};
}

// How far apart two colours' hues are: the sum over R, G and B of the difference between what
// each adds to its own luminance. Lightness does not count: the soft edge of a black letter is
// grey, and still the same ink.
int hueDistance(const std::uint8_t* a, const std::array<std::uint8_t, 3>& b) {
    const int la = luminanceOf(a);
    const int lb = luminanceOf(b);
    int distance = 0;
    for (int c = 0; c < 3; ++c) {
        distance += std::abs((a[c] - la) - (b[c] - lb));
    }
    return distance;
}

// For each pixel, the lightest luminance within `reach` pixels (a square) among the pixels that
// are not `ink`; 0 where every one is ink. A maximum across, then down.
std::vector<std::uint8_t> lightestAround(const std::vector<std::uint8_t>& luminance,
                                         const BilevelImage& ink, int reach) {
    const int width = ink.width();
    const int height = ink.height();
    std::vector<std::uint8_t> across(luminance.size());
    std::vector<std::uint8_t> row(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        const std::size_t start = static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            row[x] = isSet(ink, x, y) ? 0 : luminance[start + x];
        }
        for (int x = 0; x < width; ++x) {
            const auto first = row.begin() + std::max(0, x - reach);
            const auto last = row.begin() + std::min(width, x + reach + 1);
            across[start + x] = *std::max_element(first, last);
        }
    }
    std::vector<std::uint8_t> out(luminance.size());
    for (int y = 0; y < height; ++y) {
        std::uint8_t* to = out.data() + static_cast<std::size_t>(y) * width;
        for (int from = std::max(0, y - reach); from <= std::min(height - 1, y + reach); ++from) {
            const std::uint8_t* source = across.data() + static_cast<std::size_t>(from) * width;
            for (int x = 0; x < width; ++x) {
                to[x] = std::max(to[x], source[x]);
            }
        }
    }
    return out;
}

// A page with nearly every pixel black or white and nothing coloured, packed; absent as soon as
// enough mid-tones or colours show that it is not one (a gray page is found out in its first rows).
// A word in colour (a heading, a link) is a few thousand pixels: such a page is not bilevel.
std::optional<BilevelImage> asBilevel(const Bitmap& scan) {
    const int width = scan.width();
    const int height = scan.height();
    const Pixels pixels{scan, scan.bands()};
    const std::size_t count = static_cast<std::size_t>(width) * height;
    const std::size_t mostMidTones = count * 3 / 1000;
    const std::size_t mostColoured = count / 20000;
    std::size_t midTones = 0;
    std::size_t coloured = 0;
    BilevelImage image(width, height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = image.row(y);
        const std::size_t start = static_cast<std::size_t>(y) * width;
        if (pixels.bands == 1) {
            // Eight pixels to a byte, without reading back what was written.
            const std::uint8_t* from = scan.data() + start;
            for (int x = 0; x < width; x += 8) {
                const int n = std::min(8, width - x);
                unsigned byte = 0;
                for (int i = 0; i < n; ++i) {
                    const unsigned l = from[x + i];
                    midTones += l - 48u < 160u;
                    byte |= static_cast<unsigned>(l < 128) << (7 - i);
                }
                row[x >> 3] = static_cast<std::uint8_t>(byte);
            }
        } else {
            for (int x = 0; x < width; ++x) {
                const int l = pixels.luminance(start + x);
                midTones += l >= 48 && l < 208;
                if (l < 128) {
                    row[x >> 3] |= static_cast<std::uint8_t>(0x80 >> (x & 7));
                }
            }
        }
        if (pixels.bands > 1) {
            for (int x = 0; x < width; ++x) {
                coloured += pixels.chroma(start + x) > colouredChroma;
            }
        }
        if (midTones > mostMidTones || coloured > mostColoured) {
            return std::nullopt;
        }
    }
    return image;
}

// `luminance` (`width` x `height`) blurred by a binomial filter across and down, edges
// repeated: 1 2 1 when `reach` is 1, 1 4 6 4 1 when it is 2, none when it is 0. Thresholded, it
// gives letters the smooth outlines and whole hairlines that the eye, and a reader of the page,
// take from the grey scan; thresholded raw, a JPEG scan's ringing and grain make ragged edges
// and break thin strokes.
std::vector<std::uint8_t> softened(const std::vector<std::uint8_t>& luminance, int width,
                                   int height, int reach) {
    if (reach == 0) {
        return luminance;
    }
    static constexpr int weights[2][5] = {{1, 2, 1, 0, 0}, {1, 4, 6, 4, 1}};
    const int* weight = weights[reach - 1];
    const int taps = 2 * reach + 1;
    const int shift = 4 * reach; // the weights of both passes sum to 2^shift
    std::vector<std::uint8_t> out(luminance.size());
    // The last `taps` rows filtered across, in a ring.
    std::vector<std::uint16_t> ring(static_cast<std::size_t>(taps) * width);
    const auto across = [&](int y) {
        const std::uint8_t* in = luminance.data() + static_cast<std::size_t>(y) * width;
        std::uint16_t* row = ring.data() + static_cast<std::size_t>(y % taps) * width;
        const auto tap = [&](int x) {
            int sum = 0;
            for (int k = 0; k < taps; ++k) {
                sum += weight[k] * in[std::clamp(x + k - reach, 0, width - 1)];
            }
            row[x] = static_cast<std::uint16_t>(sum);
        };
        for (int x = 0; x < std::min(reach, width); ++x) {
            tap(x);
        }
        if (reach == 1) {
            for (int x = 1; x < width - 1; ++x) {
                row[x] = static_cast<std::uint16_t>(in[x - 1] + 2 * in[x] + in[x + 1]);
            }
        } else {
            for (int x = 2; x < width - 2; ++x) {
                row[x] = static_cast<std::uint16_t>(in[x - 2] + 4 * in[x - 1] + 6 * in[x] +
                                                    4 * in[x + 1] + in[x + 2]);
            }
        }
        for (int x = std::max(reach, width - reach); x < width; ++x) {
            tap(x);
        }
    };
    const auto filtered = [&](int y) {
        return ring.data() + static_cast<std::size_t>(std::clamp(y, 0, height - 1) % taps) * width;
    };
    for (int y = 0; y < std::min(reach, height); ++y) {
        across(y);
    }
    const std::uint32_t half = 1u << (shift - 1);
    for (int y = 0; y < height; ++y) {
        if (y + reach < height) {
            across(y + reach);
        }
        std::uint8_t* row = out.data() + static_cast<std::size_t>(y) * width;
        if (reach == 1) {
            const std::uint16_t* r0 = filtered(y - 1);
            const std::uint16_t* r1 = filtered(y);
            const std::uint16_t* r2 = filtered(y + 1);
            for (int x = 0; x < width; ++x) {
                row[x] = static_cast<std::uint8_t>((r0[x] + 2u * r1[x] + r2[x] + half) >> shift);
            }
        } else {
            const std::uint16_t* r0 = filtered(y - 2);
            const std::uint16_t* r1 = filtered(y - 1);
            const std::uint16_t* r2 = filtered(y);
            const std::uint16_t* r3 = filtered(y + 1);
            const std::uint16_t* r4 = filtered(y + 2);
            for (int x = 0; x < width; ++x) {
                row[x] = static_cast<std::uint8_t>(
                    (r0[x] + 4u * r1[x] + 6u * r2[x] + 4u * r3[x] + r4[x] + half) >> shift);
            }
        }
    }
    return out;
}

} // namespace

ScanReading MixedRaster::read(const Bitmap& scan, int scanDpi, const BilevelImage* ink) {
    ScanReading reading;
    if (ink && (ink->width() != scan.width() || ink->height() != scan.height())) {
        throw std::invalid_argument("MixedRaster::read: the mask and the scan differ in size");
    }
    if (auto bilevel = asBilevel(scan)) {
        reading.kind = ScanReading::Kind::bilevel;
        reading.ink = std::move(*bilevel);
        return reading;
    }
    const int width = scan.width();
    const int height = scan.height();
    const Pixels pixels{scan, scan.bands()};
    const std::size_t count = static_cast<std::size_t>(width) * height;
    reading.luminance.resize(count);
    std::uint8_t* luminance = reading.luminance.data();
    for (std::size_t i = 0; i < count; ++i) {
        luminance[i] = pixels.luminance(i);
    }

    const int columns = (width + block - 1) / block;
    const int rows = (height + block - 1) / block;
    const auto paper = paperLevels(scan, reading.luminance, columns, rows);

    // Photo tiles (16 x 16 pixels, finer than the paper's blocks so a caption under a photo
    // stays text), widened by one tile so a photo's soft edge stays with it.
    const int tileColumns = (width + tile - 1) / tile;
    const int tileRows = (height + tile - 1) / tile;
    std::vector<std::uint8_t> photo(static_cast<std::size_t>(tileColumns) * tileRows, 0);
    std::vector<std::uint8_t> covered(photo.size(), 0); // less than bareShare of the tile is paper
    for (int ty = 0; ty < tileRows; ++ty) {
        for (int tx = 0; tx < tileColumns; ++tx) {
            const int level = paper[static_cast<std::size_t>(ty * tile / block) * columns +
                                    static_cast<std::size_t>(tx * tile / block)];
            int mid = 0;
            int bare = 0;
            int all = 0;
            for (int y = ty * tile; y < std::min(height, (ty + 1) * tile); ++y) {
                for (int x = tx * tile; x < std::min(width, (tx + 1) * tile); ++x) {
                    const int l = luminance[static_cast<std::size_t>(y) * width + x];
                    mid += l * 4 >= level && l * 100 < level * 85;
                    bare += l * 100 >= level * 90;
                    ++all;
                }
            }
            // Text, however light, leaves paper between its letters; a photo covers it.
            covered[static_cast<std::size_t>(ty) * tileColumns + tx] = bare < bareShare * all;
            photo[static_cast<std::size_t>(ty) * tileColumns + tx] =
                mid > photoShare * all && covered[static_cast<std::size_t>(ty) * tileColumns + tx];
        }
    }
    // A thick coloured letter can look like a tile of photo; a photo is many tiles together.
    auto boxes = keepPhotoRegions(photo, tileColumns, tileRows, smallestPhotoTiles);
    grownOverCoveredStrips(boxes, covered, tileColumns, tileRows);
    for (const PixelBox& box : boxes) {
        for (int y = box.top; y <= box.bottom; ++y) {
            std::fill_n(photo.begin() + static_cast<std::ptrdiff_t>(y) * tileColumns + box.left,
                        box.right - box.left + 1, std::uint8_t{1});
        }
        // Widened by a tile, as below.
        reading.photos.push_back({std::max(0, box.left - 1) * tile, std::max(0, box.top - 1) * tile,
                                  std::min(width, (box.right + 2) * tile),
                                  std::min(height, (box.bottom + 2) * tile)});
    }
    std::vector<std::uint8_t> widenedPhoto(photo.size(), 0);
    std::size_t photoBlocks = 0;
    for (int ty = 0; ty < tileRows; ++ty) {
        for (int tx = 0; tx < tileColumns; ++tx) {
            bool any = false;
            for (int dy = -1; dy <= 1 && !any; ++dy) {
                for (int dx = -1; dx <= 1 && !any; ++dx) {
                    const int nx = tx + dx;
                    const int ny = ty + dy;
                    any = nx >= 0 && ny >= 0 && nx < tileColumns && ny < tileRows &&
                          photo[static_cast<std::size_t>(ny) * tileColumns + nx];
                }
            }
            widenedPhoto[static_cast<std::size_t>(ty) * tileColumns + tx] = any;
            photoBlocks += photo[static_cast<std::size_t>(ty) * tileColumns + tx];
        }
    }
    reading.hasPhotos = photoBlocks > 0;
    if (photoBlocks * 2 > photo.size()) {
        reading.kind = ScanReading::Kind::photo;
        return reading;
    }

    // Ink: darker than its paper, outside photos, judged on the softened scan. Soft print never
    // reaches black: the lighter the median of what is surely ink, the further towards the
    // paper its strokes' edges lie (60% of the paper plus half the ink's level), so blurred
    // letters keep their weight. Whether the pixel at (x, y) is outside photos and darker than
    // `inkPercent` of its paper plus `raise` hundredths of a level.
    // A blur of about a tenth of a millimetre: at 150 DPI a wider one fills the letters' counters.
    const int reach = scanDpi >= 200 ? 2 : scanDpi >= 100 ? 1 : 0;
    const std::vector<std::uint8_t> soft = softened(reading.luminance, width, height, reach);
    const auto isInk = [&](int x, int y, int raise) {
        const std::size_t b = static_cast<std::size_t>(y / block) * columns + x / block;
        const std::size_t t = static_cast<std::size_t>(y / tile) * tileColumns + x / tile;
        const std::size_t i = static_cast<std::size_t>(y) * width + x;
        return !widenedPhoto[t] && soft[i] * 100 < paper[b] * inkPercent + raise;
    };
    std::vector<int> surelyInk(256, 0);
    int sure = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (isInk(x, y, 0)) {
                ++surelyInk[soft[static_cast<std::size_t>(y) * width + x]];
                ++sure;
            }
        }
    }
    const int inkLevel = sure > 0 ? median(surelyInk, sure) : 0;
    BilevelImage candidates(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (isInk(x, y, inkLevel * 50)) {
                candidates.row(y)[x >> 3] |= static_cast<std::uint8_t>(0x80 >> (x & 7));
            }
        }
    }
    BilevelImage found = despeckled(candidates);
    if (ink) {
        // A page that is a mask already (compressed before) keeps its letters bit for bit where
        // they still show: darker than the lightest of what is not ink around them (or, inside
        // a stroke too thick to see past, than the paper). Where something drawn since covers
        // them, a box white or black, they do not show, and the threshold decides as on any
        // scan. Next to the letters the threshold finds their edges a pixel wider, pixels the
        // render itself shows as paper: taken, every pass would make the letters bolder. What
        // is dark there (a bar drawn across the text, a stamp's stroke) is taken.
        const std::vector<std::uint8_t> around =
            lightestAround(reading.luminance, *ink, surroundReach);
        std::vector<std::uint8_t> nearKept;
        widenInto(*ink, keptReach, nearKept, 1);
        BilevelImage merged(width, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const std::size_t b = static_cast<std::size_t>(y / block) * columns + x / block;
                const std::size_t i = static_cast<std::size_t>(y) * width + x;
                const int surround = around[i] > 0 ? around[i] : paper[b];
                const bool shown = isSet(*ink, x, y) && luminance[i] * 100 < surround * shownPercent;
                const bool edge = nearKept[i] && luminance[i] * 100 >= paper[b] * shownPercent;
                if (shown || (isSet(found, x, y) && !edge)) {
                    merged.row(y)[x >> 3] |= static_cast<std::uint8_t>(0x80 >> (x & 7));
                }
            }
        }
        found = std::move(merged);
    }
    // The ink's lightness is the mean of every pixel the mask covers (before isolated pixels
    // are dropped), softened edges included: painted in it, a line of text keeps the darkness
    // it had. Its hue is the median's, or on an RGB scan, the one most cells of ink have: a
    // page's coloured links, or the paper's tint in the letters' soft edges, do not tint its
    // text.
    const BilevelImage& coloured = ink ? found : candidates;
    std::vector<int> reds(256), greens(256), blues(256);
    int inked = 0;
    std::uint64_t lightness = 0;
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = coloured.row(y);
        for (int x = 0; x < width; ++x) {
            if (row[x >> 3] == 0) {
                x |= 7; // the next seven pixels have no ink either
                continue;
            }
            if (!isSet(coloured, x, y)) {
                continue;
            }
            const std::size_t i = static_cast<std::size_t>(y) * width + x;
            const std::uint8_t* p = scan.data() + i * static_cast<std::size_t>(pixels.bands);
            ++reds[p[0]];
            ++greens[p[pixels.bands == 1 ? 0 : 1]];
            ++blues[p[pixels.bands == 1 ? 0 : 2]];
            lightness += luminance[i];
            ++inked;
        }
    }
    std::array<std::uint8_t, 3> hue{median(reds, inked), median(greens, inked),
                                    median(blues, inked)};
    // One ink unless a few words' worth of cells (at the foreground's resolution) have inks of
    // another hue: a heading, a stamp, a line of coloured links. Whole cells, not pixels, are
    // weighed: the grain of tinted paper moves each pixel's channels a little, never a cell's.
    if (pixels.bands == 3 && inked > 0) {
        const InkCells cells =
            inkCells(scan, coloured, reading.luminance, foregroundFactor(scanDpi));
        if (std::find(cells.known.begin(), cells.known.end(), 1) != cells.known.end()) {
            hue = commonColour(cells);
            int apart = 0;
            for (std::size_t cell = 0; cell < cells.known.size(); ++cell) {
                apart += cells.known[cell] &&
                         hueDistance(cells.colours.data() + cell * 3, hue) > otherInk;
            }
            reading.oneInk = apart < otherInkCells;
        }
    }
    if (inked > 0) {
        reading.inkColour =
            lifted(hue.data(), static_cast<int>(lightness / inked) - luminanceOf(hue));
    }
    reading.ink = std::move(found);
    reading.paper = paper;
    reading.paperColumns = columns;
    return reading;
}

namespace {

// The one colour of a background whose every cell lies within a few levels of their mean (even
// paper, its grain averaged away), as sRGB; absent when the paper has shades worth a picture,
// however light (pale lettering that is not dark enough for the mask lives there).
std::optional<std::array<std::uint8_t, 3>> flatColour(const Bitmap& background) {
    constexpr int reach = 8;
    const int bands = background.bands();
    std::array<int, 3> low{255, 255, 255};
    std::array<int, 3> high{0, 0, 0};
    std::array<std::int64_t, 3> total{0, 0, 0};
    const std::uint8_t* p = background.data();
    for (std::int64_t i = 0; i < background.pixelCount(); ++i, p += bands) {
        for (int c = 0; c < bands; ++c) {
            low[c] = std::min<int>(low[c], p[c]);
            high[c] = std::max<int>(high[c], p[c]);
            total[c] += p[c];
        }
    }
    std::array<std::uint8_t, 3> colour{};
    for (int c = 0; c < 3; ++c) {
        const int band = std::min(c, bands - 1);
        const int mean = static_cast<int>(total[band] / background.pixelCount());
        if (mean - low[band] > reach || high[band] - mean > reach) {
            return std::nullopt;
        }
        colour[c] = static_cast<std::uint8_t>(mean);
    }
    return colour;
}

// The pixels of `box` at the photo setting's resolution and quality.
std::optional<RasterizedPage::Patch> photoPatch(const Bitmap& scan, const PixelBox& box,
                                                int scanDpi, MixedRaster::Setting photo) {
    const int width = box.right - box.left;
    const int height = box.bottom - box.top;
    const std::size_t stride = static_cast<std::size_t>(scan.width()) * scan.bands();
    const std::size_t offset = static_cast<std::size_t>(box.left) * scan.bands();
    const double scale = std::min(1.0, static_cast<double>(photo.dpi) / scanDpi);
    const Bitmap picture = AreaResampler::resample(
        [&](int y) { return scan.data() + static_cast<std::size_t>(box.top + y) * stride + offset; },
        width, height, scan.format(), std::max(1, static_cast<int>(std::lround(width * scale))),
        std::max(1, static_cast<int>(std::lround(height * scale))));
    auto jpeg = ImageCodec::data(picture, ImageOutputFormat::jpeg, photo.quality);
    if (!jpeg) {
        return std::nullopt;
    }
    return RasterizedPage::Patch{std::move(*jpeg), picture.width(), picture.height(), box};
}

} // namespace

std::optional<RasterizedPage> MixedRaster::split(const Bitmap& scan, const ScanReading& reading,
                                                 int scanDpi, const Settings& settings) {
    try {
        // Photos that fill a tenth of the page or more stay in one background at the photo's
        // resolution, on the page's own grid of pixels: a picture of its own, drawn from a point
        // between two of a render's pixels, is resampled out of step with the page and blurs.
        // Smaller photos and figures get pictures of their own over a background of paper.
        std::size_t photoArea = 0;
        for (const PixelBox& box : reading.photos) {
            photoArea += static_cast<std::size_t>(box.right - box.left) * (box.bottom - box.top);
        }
        const bool photoBackground =
            photoArea * 10 >= static_cast<std::size_t>(scan.width()) * scan.height();
        const std::vector<PixelBox> patched =
            photoBackground ? std::vector<PixelBox>{} : reading.photos;
        const Setting& paper = photoBackground ? settings.photos : settings.background;
        const int backgroundDpi = paper.dpi;
        const double quality = paper.quality;
        const int width = scan.width();
        const int height = scan.height();
        RasterizedPage layers;
        layers.mask = JBIG2Encoder::encode(reading.ink, scanDpi);
        layers.maskWidth = width;
        layers.maskHeight = height;
        layers.ink = reading.inkColour;
        const int factor = std::max(
            1, static_cast<int>(std::lround(static_cast<double>(scanDpi) / backgroundDpi)));

        // The background leaves out the ink, its soft edge and, a little further out, pixels
        // darker than their paper (a JPEG scan's ringing around each letter).
        constexpr std::uint8_t edge = 1;
        constexpr std::uint8_t ringing = 2;
        std::vector<std::uint8_t> near;
        widenInto(reading.ink, inkEdge, near, edge);
        widenInto(reading.ink, ringingReach, near, ringing);
        // Photos have pictures of their own: under them the background is paper, grown in
        // from around.
        std::vector<std::uint8_t> photoRows(static_cast<std::size_t>(height), 0);
        for (const PixelBox& box : patched) {
            std::fill(photoRows.begin() + box.top, photoRows.begin() + box.bottom, 1);
        }
        const auto inPhoto = [&](int x, int y) {
            return photoRows[static_cast<std::size_t>(y)] &&
                   std::any_of(patched.begin(), patched.end(), [&](const PixelBox& b) {
                       return x >= b.left && x < b.right && y >= b.top && y < b.bottom;
                   });
        };
        const Bitmap background = cellAverages(scan, factor, 4, [&](int x, int y) {
            const std::size_t at = static_cast<std::size_t>(y) * width + x;
            if ((near[at] & edge) || inPhoto(x, y)) {
                return false;
            }
            if (!(near[at] & ringing) || reading.paper.empty()) {
                return true;
            }
            const int paper = reading.paper[static_cast<std::size_t>(y / block) *
                                                 reading.paperColumns +
                                             static_cast<std::size_t>(x / block)];
            return reading.luminance[at] + ringingDepth >= paper;
        });
        layers.format = background.format();
        if (const auto flat = flatColour(background)) {
            layers.paper = *flat;
        } else {
            auto encoded = ImageCodec::data(background, ImageOutputFormat::jpeg, quality);
            if (!encoded) {
                return std::nullopt;
            }
            layers.data = std::move(*encoded);
            layers.isJPEG = true;
            layers.width = background.width();
            layers.height = background.height();
        }
        for (const PixelBox& box : patched) {
            auto patch = photoPatch(scan, box, scanDpi, settings.figures);
            if (!patch) {
                return std::nullopt;
            }
            layers.patches.push_back(std::move(*patch));
        }

        if (!reading.oneInk && scan.bands() == 3) {
            // The inks' colours. Cells without a colour of their own grow from their neighbours
            // all the way, so no edge between two colours lies next to a letter, where the
            // JPEG's ringing would show.
            InkCells cells =
                inkCells(scan, reading.ink, reading.luminance, foregroundFactor(scanDpi));
            const auto common = commonColour(cells);
            Bitmap foreground = std::move(cells.colours);
            grow(foreground, cells.known, 1 << 20);
            // Cells of the main ink take its exact colour: flat, they cost the JPEG nothing,
            // and only the other inks' cells are stored.
            const auto& ink = reading.inkColour;
            std::uint8_t* cell = foreground.data();
            for (std::int64_t i = 0; i < foreground.pixelCount(); ++i, cell += 3) {
                if (hueDistance(cell, common) <= otherInk / 2) {
                    std::copy(ink.begin(), ink.end(), cell);
                }
            }
            // A cell is a word's colour: shared by four, a red link next to black text would
            // fade, and fade again each time the page is compressed.
            auto colours = ImageCodec::data(foreground, ImageOutputFormat::jpeg,
                                            std::max(quality, foregroundQuality), true);
            if (!colours) {
                return std::nullopt;
            }
            layers.foreground = std::move(*colours);
            layers.foregroundWidth = foreground.width();
            layers.foregroundHeight = foreground.height();
        }
        return layers;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillet
