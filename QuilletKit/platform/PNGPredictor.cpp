#include "platform/PNGPredictor.hpp"

#include <zlib.h>

#include <array>
#include <cstdlib>
#include <new>
#include <vector>

namespace quillet {
namespace {

std::uint8_t paeth(int left, int up, int upLeft) {
    const int estimate = left + up - upLeft;
    const int toLeft = std::abs(estimate - left);
    const int toUp = std::abs(estimate - up);
    const int toUpLeft = std::abs(estimate - upLeft);
    if (toLeft <= toUp && toLeft <= toUpLeft) {
        return static_cast<std::uint8_t>(left);
    }
    return static_cast<std::uint8_t>(toUp <= toUpLeft ? up : upLeft);
}

// Filters one row with filter `type` (0 none, 1 sub, 2 up, 3 average, 4 paeth) into `out`.
void filterRow(int type, const std::uint8_t* row, const std::uint8_t* above, std::size_t length,
               std::size_t step, std::uint8_t* out) {
    for (std::size_t i = 0; i < length; ++i) {
        const int left = i >= step ? row[i - step] : 0;
        const int up = above ? above[i] : 0;
        const int upLeft = above && i >= step ? above[i - step] : 0;
        int predicted = 0;
        switch (type) {
        case 1: predicted = left; break;
        case 2: predicted = up; break;
        case 3: predicted = (left + up) / 2; break;
        case 4: predicted = paeth(left, up, upLeft); break;
        default: break;
        }
        out[i] = static_cast<std::uint8_t>(row[i] - predicted);
    }
}

std::uint64_t cost(const std::uint8_t* bytes, std::size_t length) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < length; ++i) {
        sum += static_cast<std::uint64_t>(
            std::abs(static_cast<int>(static_cast<std::int8_t>(bytes[i]))));
    }
    return sum;
}

} // namespace

std::string PNGPredictor::deflated(std::string_view bytes) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    std::string out(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int result = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        throw std::bad_alloc();
    }
    return out;
}

std::string PNGPredictor::predictedAndDeflated(std::string_view samples, std::size_t rowBytes,
                                               int bytesPerPixel) {
    if (rowBytes == 0) {
        return deflated({});
    }
    const std::size_t rows = samples.size() / rowBytes;
    const auto step = static_cast<std::size_t>(std::max(1, bytesPerPixel));
    std::string filtered;
    filtered.reserve(rows * (rowBytes + 1));
    std::array<std::vector<std::uint8_t>, 5> trial;
    for (auto& buffer : trial) {
        buffer.resize(rowBytes);
    }
    const auto* data = reinterpret_cast<const std::uint8_t*>(samples.data());
    for (std::size_t y = 0; y < rows; ++y) {
        const std::uint8_t* row = data + y * rowBytes;
        const std::uint8_t* above = y > 0 ? row - rowBytes : nullptr;
        int best = 0;
        std::uint64_t bestCost = UINT64_MAX;
        for (int type = 0; type < 5; ++type) {
            filterRow(type, row, above, rowBytes, step, trial[type].data());
            const auto rowCost = cost(trial[type].data(), rowBytes);
            if (rowCost < bestCost) {
                bestCost = rowCost;
                best = type;
            }
        }
        filtered.push_back(static_cast<char>(best));
        filtered.append(reinterpret_cast<const char*>(trial[best].data()), rowBytes);
    }
    return deflated(filtered);
}

} // namespace quillet
