#include "platform/ScaledJPEGDecoder.hpp"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <jpeglib.h>

namespace quillet {
namespace {

struct ErrorManager {
    jpeg_error_mgr base;
    std::jmp_buf jump;
};

extern "C" void onFatal(j_common_ptr codec) {
    std::longjmp(reinterpret_cast<ErrorManager*>(codec->err)->jump, 1);
}

// Warnings (level -1) mean damaged data that the codec would paper over with gray: refuse them.
extern "C" void onMessage(j_common_ptr codec, int level) {
    if (level < 0) {
        std::longjmp(reinterpret_cast<ErrorManager*>(codec->err)->jump, 1);
    }
}

struct Raw {
    unsigned char* pixels;
    int width;
    int height;
    int bands;
};

// C-style on purpose: longjmp must not cross a frame with destructors to run. Owns nothing on
// return except `raw.pixels` (malloc'd) on success.
bool decodeRaw(const unsigned char* data, unsigned long size, int minWidth, int minHeight,
               bool gray, Raw* raw) {
    jpeg_decompress_struct codec;
    ErrorManager errors;
    unsigned char* volatile pixels = nullptr;
    codec.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = onFatal;
    errors.base.emit_message = onMessage;
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&codec);
        std::free(pixels);
        return false;
    }
    jpeg_create_decompress(&codec);
    jpeg_mem_src(&codec, data, size);
    jpeg_read_header(&codec, TRUE);
    if (codec.num_components != 1 && codec.num_components != 3) {
        jpeg_destroy_decompress(&codec);
        return false;
    }
    codec.out_color_space = gray ? JCS_GRAYSCALE : JCS_RGB;
    // 1/8, 2/8 and 4/8 have fast paths in the codec; the sizes in between decode slower than
    // the full image does, so they are not used.
    codec.scale_denom = 8;
    for (unsigned int n = 1; n <= 8; n *= 2) {
        codec.scale_num = n;
        jpeg_calc_output_dimensions(&codec);
        if (static_cast<int>(codec.output_width) >= minWidth &&
            static_cast<int>(codec.output_height) >= minHeight) {
            break;
        }
    }
    jpeg_start_decompress(&codec);
    const std::size_t row = static_cast<std::size_t>(codec.output_width) * codec.output_components;
    pixels = static_cast<unsigned char*>(std::malloc(row * codec.output_height));
    if (pixels == nullptr) {
        jpeg_destroy_decompress(&codec);
        return false;
    }
    while (codec.output_scanline < codec.output_height) {
        JSAMPROW line = pixels + static_cast<std::size_t>(codec.output_scanline) * row;
        jpeg_read_scanlines(&codec, &line, 1);
    }
    jpeg_finish_decompress(&codec);
    *raw = {pixels, static_cast<int>(codec.output_width), static_cast<int>(codec.output_height),
            codec.output_components};
    jpeg_destroy_decompress(&codec);
    return true;
}

} // namespace

void DecodedJPEG::Free::operator()(std::uint8_t* pixels) const noexcept { std::free(pixels); }

std::optional<DecodedJPEG> ScaledJPEGDecoder::decode(std::span<const std::uint8_t> jpeg,
                                                     int minWidth, int minHeight,
                                                     bool gray) noexcept {
    if (jpeg.size() < 4 || minWidth < 1 || minHeight < 1) {
        return std::nullopt;
    }
    Raw raw{};
    if (!decodeRaw(jpeg.data(), static_cast<unsigned long>(jpeg.size()), minWidth, minHeight, gray,
                   &raw)) {
        return std::nullopt;
    }
    return DecodedJPEG{raw.width, raw.height, raw.bands,
                       std::unique_ptr<std::uint8_t[], DecodedJPEG::Free>(raw.pixels)};
}

} // namespace quillet
