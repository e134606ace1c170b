// Any bilevel image codes to a JBIG2 stream that jbig2dec decodes, without a warning, to exactly
// the same bits; anything else stops the run.
//
// The input is the width and the height, two bytes each (little-endian, taken modulo 2000, plus 1),
// then the pixels row after row, packed as BilevelImage holds them. When the bytes run out they
// start again from the first pixel byte, so short inputs make images of repeating rows, which is
// what typical prediction codes; with no pixel bytes at all the image is white.
#include "platform/JBIG2Encoder.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <jbig2.h>
#undef inline // jbig2.h defines the keyword away when it is not a macro, as in every C++ compiler

namespace {

struct ContextFree {
    void operator()(Jbig2Ctx* context) const noexcept { jbig2_ctx_free(context); }
};

int side(const std::uint8_t* bytes) {
    return (bytes[0] | bytes[1] << 8) % 2000 + 1;
}

/// True when jbig2dec gives back exactly `image` and has nothing to complain about.
bool decodesTo(const std::vector<std::uint8_t>& stream, const quillet::BilevelImage& image) {
    bool complained = false;
    const Jbig2ErrorCallback note = [](void* data, const char*, Jbig2Severity severity,
                                       std::uint32_t) {
        if (severity >= JBIG2_SEVERITY_WARNING) {
            *static_cast<bool*>(data) = true;
        }
    };
    std::unique_ptr<Jbig2Ctx, ContextFree> context(
        jbig2_ctx_new(nullptr, JBIG2_OPTIONS_EMBEDDED, nullptr, note, &complained));
    if (!context || jbig2_data_in(context.get(), stream.data(), stream.size()) < 0 ||
        jbig2_complete_page(context.get()) < 0) {
        return false;
    }
    Jbig2Image* page = jbig2_page_out(context.get());
    if (page == nullptr) {
        return false;
    }
    bool same = !complained && page->width == static_cast<std::uint32_t>(image.width()) &&
                page->height == static_cast<std::uint32_t>(image.height());
    if (same) {
        std::vector<std::uint8_t> rows;
        rows.reserve(image.bytes().size());
        for (int y = 0; y < image.height(); ++y) {
            const std::uint8_t* row = page->data + static_cast<std::size_t>(y) * page->stride;
            rows.insert(rows.end(), row, row + image.rowBytes());
        }
        same = quillet::BilevelImage(image.width(), image.height(), std::move(rows)) == image;
    }
    jbig2_release_page(context.get(), page);
    return same;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    quillet::BilevelImage image(side(data), side(data + 2));
    const std::uint8_t* pixels = data + 4;
    const std::size_t count = size - 4;
    if (count > 0) {
        std::uint8_t* to = image.row(0);
        for (std::size_t i = 0; i < image.bytes().size(); ++i) {
            to[i] = pixels[i % count];
        }
    }
    if (!decodesTo(quillet::JBIG2Encoder::encode(image, 300), image)) {
        __builtin_trap();
    }
    return 0;
}
