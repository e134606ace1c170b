#include "platform/ScaledJPEGDecoder.hpp"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>

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

} // namespace

// The codec's state at a fixed address: its error manager is pointed to from inside it. Every
// call into the codec sits in a function whose setjmp catches the codec's longjmp, with no
// object that has a destructor between the two.
struct ScaledJPEGDecoder::Codec {
    jpeg_decompress_struct codec{};
    ErrorManager errors{};
    bool failed = false;

    Codec() {
        codec.err = jpeg_std_error(&errors.base);
        errors.base.error_exit = onFatal;
        errors.base.emit_message = onMessage;
        jpeg_create_decompress(&codec);
    }
    ~Codec() { jpeg_destroy_decompress(&codec); }
    Codec(const Codec&) = delete;
    Codec& operator=(const Codec&) = delete;

    // Reads the header and picks the scale; false when the codec fails or the image is not one
    // we handle.
    bool start(const unsigned char* data, unsigned long size, int minWidth, int minHeight,
               bool gray) {
        if (setjmp(errors.jump)) {
            failed = true;
            return false;
        }
        jpeg_mem_src(&codec, data, size);
        jpeg_read_header(&codec, TRUE);
        if (codec.num_components != 1 && codec.num_components != 3) {
            failed = true;
            return false;
        }
        codec.out_color_space = gray ? JCS_GRAYSCALE : JCS_RGB;
        // 1/8, 2/8 and 4/8 have fast paths in the codec; the sizes in between decode slower
        // than the full image does, so they are not used.
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
        return true;
    }

    bool read(unsigned char* row) {
        if (failed || codec.output_scanline >= codec.output_height) {
            return false;
        }
        if (setjmp(errors.jump)) {
            failed = true;
            return false;
        }
        JSAMPROW line = row;
        return jpeg_read_scanlines(&codec, &line, 1) == 1;
    }
};

ScaledJPEGDecoder::ScaledJPEGDecoder(std::unique_ptr<Codec> codec) : codec_(std::move(codec)) {}
ScaledJPEGDecoder::~ScaledJPEGDecoder() = default;

std::unique_ptr<ScaledJPEGDecoder> ScaledJPEGDecoder::open(std::span<const std::uint8_t> jpeg,
                                                           int minWidth, int minHeight,
                                                           bool gray) noexcept {
    if (jpeg.size() < 4 || minWidth < 1 || minHeight < 1) {
        return nullptr;
    }
    try {
        auto codec = std::make_unique<Codec>();
        if (!codec->start(jpeg.data(), static_cast<unsigned long>(jpeg.size()), minWidth,
                          minHeight, gray)) {
            return nullptr;
        }
        return std::unique_ptr<ScaledJPEGDecoder>(new ScaledJPEGDecoder(std::move(codec)));
    } catch (const std::exception&) {
        return nullptr;
    }
}

int ScaledJPEGDecoder::width() const { return static_cast<int>(codec_->codec.output_width); }
int ScaledJPEGDecoder::height() const { return static_cast<int>(codec_->codec.output_height); }
int ScaledJPEGDecoder::bands() const { return codec_->codec.output_components; }

bool ScaledJPEGDecoder::readRow(std::uint8_t* row) noexcept { return codec_->read(row); }

void DecodedJPEG::Free::operator()(std::uint8_t* pixels) const noexcept { std::free(pixels); }

std::optional<DecodedJPEG> ScaledJPEGDecoder::decode(std::span<const std::uint8_t> jpeg,
                                                     int minWidth, int minHeight,
                                                     bool gray) noexcept {
    const auto decoder = open(jpeg, minWidth, minHeight, gray);
    if (!decoder) {
        return std::nullopt;
    }
    const auto row = static_cast<std::size_t>(decoder->width()) * decoder->bands();
    DecodedJPEG decoded{decoder->width(), decoder->height(), decoder->bands(),
                        std::unique_ptr<std::uint8_t[], DecodedJPEG::Free>(static_cast<std::uint8_t*>(
                            std::malloc(row * static_cast<std::size_t>(decoder->height()))))};
    if (!decoded.pixels) {
        return std::nullopt;
    }
    for (int y = 0; y < decoded.height; ++y) {
        if (!decoder->readRow(decoded.pixels.get() + static_cast<std::size_t>(y) * row)) {
            return std::nullopt;
        }
    }
    return decoded;
}

} // namespace quillet
