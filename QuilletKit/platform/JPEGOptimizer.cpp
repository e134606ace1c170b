#include "platform/JPEGOptimizer.hpp"

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

extern "C" void onTranscodeFatal(j_common_ptr codec) {
    std::longjmp(reinterpret_cast<ErrorManager*>(codec->err)->jump, 1);
}

// A corrupt-data warning means the coefficients are not what the file says: leave it alone.
extern "C" void onTranscodeMessage(j_common_ptr codec, int level) {
    if (level < 0) {
        std::longjmp(reinterpret_cast<ErrorManager*>(codec->err)->jump, 1);
    }
}

// Both codecs at fixed addresses; the one function that calls into them holds nothing with a
// destructor between its setjmp and the codec's longjmp. The output buffer is malloc'ed by
// libjpeg and freed here.
struct Transcoder {
    jpeg_decompress_struct source{};
    jpeg_compress_struct destination{};
    ErrorManager errors{}; // shared: one setjmp catches either codec's failure
    unsigned char* output = nullptr;
    unsigned long outputSize = 0;

    Transcoder() {
        source.err = jpeg_std_error(&errors.base);
        errors.base.error_exit = onTranscodeFatal;
        errors.base.emit_message = onTranscodeMessage;
        destination.err = &errors.base;
        jpeg_create_decompress(&source);
        jpeg_create_compress(&destination);
    }
    ~Transcoder() {
        jpeg_destroy_compress(&destination);
        jpeg_destroy_decompress(&source);
        std::free(output);
    }
    Transcoder(const Transcoder&) = delete;
    Transcoder& operator=(const Transcoder&) = delete;

    bool run(const unsigned char* data, unsigned long size) {
        if (setjmp(errors.jump)) {
            return false;
        }
        jpeg_mem_src(&source, data, size);
        for (int marker = 0; marker < 16; ++marker) {
            jpeg_save_markers(&source, JPEG_APP0 + marker, 0xFFFF);
        }
        jpeg_save_markers(&source, JPEG_COM, 0xFFFF);
        jpeg_read_header(&source, TRUE);
        if (source.num_components != 1 && source.num_components != 3) {
            return false;
        }
        jvirt_barray_ptr* coefficients = jpeg_read_coefficients(&source);
        jpeg_mem_dest(&destination, &output, &outputSize);
        jpeg_copy_critical_parameters(&source, &destination);
        destination.optimize_coding = TRUE;
        // The source's own JFIF and Adobe markers are copied below, as they were.
        destination.write_JFIF_header = FALSE;
        destination.write_Adobe_marker = FALSE;
        jpeg_write_coefficients(&destination, coefficients);
        for (jpeg_saved_marker_ptr marker = source.marker_list; marker; marker = marker->next) {
            jpeg_write_marker(&destination, marker->marker, marker->data, marker->data_length);
        }
        jpeg_finish_compress(&destination);
        jpeg_finish_decompress(&source);
        return true;
    }
};

} // namespace

std::optional<std::vector<std::uint8_t>> JPEGOptimizer::optimized(std::span<const std::uint8_t> jpeg) {
    if (jpeg.size() < 4) {
        return std::nullopt;
    }
    try {
        Transcoder transcoder;
        if (!transcoder.run(jpeg.data(), static_cast<unsigned long>(jpeg.size())) ||
            transcoder.outputSize == 0 || transcoder.outputSize >= jpeg.size()) {
            return std::nullopt;
        }
        return std::vector<std::uint8_t>(transcoder.output, transcoder.output + transcoder.outputSize);
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace quillet
