// Flate compression of image samples, plain or with PNG row predictors (PDF's /Predictor 15:
// each row chooses its own filter, the one whose output bytes sum smallest as signed values).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillet {

class PNGPredictor {
  public:
    /// `bytes` compressed with zlib at the best level. Throws std::bad_alloc only.
    static std::string deflated(std::string_view bytes);

    /// Rows of `rowBytes` bytes, `bytesPerPixel` apart for the left neighbour, each prefixed with
    /// its filter type and filtered, then deflated: the stream data that /FlateDecode with
    /// /Predictor 15 decodes back to `samples`. `samples.size()` must be a multiple of `rowBytes`.
    static std::string predictedAndDeflated(std::string_view samples, std::size_t rowBytes,
                                            int bytesPerPixel);
};

} // namespace quillet
