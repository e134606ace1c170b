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

    bool run(const unsigned char* data, unsigned long size, bool progressive) {
        if (setjmp(errors.jump)) {
            return false;
        }
        jpeg_mem_src(&source, data, size);
        // JFIF, ICC and Adobe's colour transform flag can change how a reader takes the samples;
        // EXIF, XMP, Photoshop data and comments cannot, and a PDF does not need them.
        for (const int marker : {JPEG_APP0, JPEG_APP0 + 2, JPEG_APP0 + 14}) {
            jpeg_save_markers(&source, marker, 0xFFFF);
        }
        jpeg_read_header(&source, TRUE);
        if (source.num_components != 1 && source.num_components != 3) {
            return false;
        }
        jvirt_barray_ptr* coefficients = jpeg_read_coefficients(&source);
        jpeg_mem_dest(&destination, &output, &outputSize);
        jpeg_copy_critical_parameters(&source, &destination);
        destination.optimize_coding = TRUE;
        if (progressive) {
            jpeg_simple_progression(&destination);
        }
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

std::optional<std::vector<std::uint8_t>>
JPEGOptimizer::optimized(std::span<const std::uint8_t> jpeg) {
    if (jpeg.size() < 4) {
        return std::nullopt;
    }
    try {
        // Sequential and progressive scans each win on some images: the smaller is kept.
        std::optional<std::vector<std::uint8_t>> best;
        for (const bool progressive : {false, true}) {
            Transcoder transcoder;
            const std::size_t limit = best ? best->size() : jpeg.size();
            if (transcoder.run(jpeg.data(), static_cast<unsigned long>(jpeg.size()), progressive) &&
                transcoder.outputSize > 0 && transcoder.outputSize < limit) {
                best.emplace(transcoder.output, transcoder.output + transcoder.outputSize);
            }
        }
        return best;
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace quillet
