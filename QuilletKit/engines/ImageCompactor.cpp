#include "engines/ImageCompactor.hpp"

#include "engines/ImageCodec.hpp"
#include "engines/JPEGHeader.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/AreaResampler.hpp"
#include "platform/JPEGOptimizer.hpp"
#include "platform/PNGPredictor.hpp"
#include "platform/StreamData.hpp"

#include <qpdf/Buffer.hh>

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_set>

namespace quillet {
namespace {

// Pictures larger than this are left as they are: decoding one would cost hundreds of megabytes.
constexpr std::int64_t maximumPixels = 64'000'000;

std::string bytesOf(const std::shared_ptr<Buffer>& buffer) {
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

// The single filter of a stream ("" for none); absent for a chain of several.
std::optional<std::string> soleFilter(QPDFObjectHandle dictionary) {
    auto filter = dictionary.getKey("/Filter");
    if (filter.isArray() && filter.getArrayNItems() == 1) {
        filter = filter.getArrayItem(0);
    }
    if (filter.isNull()) {
        return std::string();
    }
    if (filter.isName()) {
        return filter.getName();
    }
    return std::nullopt;
}

// Colour components of an image's colour space, for the spaces whose samples mean the same
// after resampling; 0 for any other.
int resamplableComponents(QPDFObjectHandle space) {
    if (space.isNameAndEquals("/DeviceGray")) {
        return 1;
    }
    if (space.isNameAndEquals("/DeviceRGB")) {
        return 3;
    }
    if (space.isArray() && space.getArrayNItems() == 2 &&
        space.getArrayItem(0).isNameAndEquals("/ICCBased") && space.getArrayItem(1).isStream()) {
        auto n = space.getArrayItem(1).getDict().getKey("/N");
        if (n.isInteger() && (n.getIntValue() == 1 || n.getIntValue() == 3)) {
            return static_cast<int>(n.getIntValue());
        }
    }
    return 0;
}

// Colour components of any colour space a Flate image may have, for its row predictor.
int components(QPDFObjectHandle space) {
    if (const int n = resamplableComponents(space)) {
        return n;
    }
    if (space.isNameAndEquals("/DeviceCMYK")) {
        return 4;
    }
    if (space.isArray() && space.getArrayNItems() >= 1) {
        auto family = space.getArrayItem(0);
        if (family.isNameAndEquals("/Indexed") || family.isNameAndEquals("/CalGray") ||
            family.isNameAndEquals("/Separation")) {
            return 1;
        }
        if (family.isNameAndEquals("/CalRGB") || family.isNameAndEquals("/Lab")) {
            return 3;
        }
        if (family.isNameAndEquals("/ICCBased") && space.getArrayNItems() == 2 &&
            space.getArrayItem(1).isStream()) {
            auto n = space.getArrayItem(1).getDict().getKey("/N");
            return n.isInteger() && n.getIntValue() >= 1 && n.getIntValue() <= 4
                       ? static_cast<int>(n.getIntValue())
                       : 0;
        }
    }
    return 0;
}

struct Geometry {
    int width = 0;
    int height = 0;
    int bits = 0;
};

std::optional<Geometry> geometry(QPDFObjectHandle dictionary) {
    auto width = dictionary.getKey("/Width");
    auto height = dictionary.getKey("/Height");
    auto bits = dictionary.getKey("/BitsPerComponent");
    if (!width.isInteger() || !height.isInteger() || !bits.isInteger() || width.getIntValue() < 1 ||
        height.getIntValue() < 1 || width.getIntValue() > maximumPixels ||
        height.getIntValue() > maximumPixels / width.getIntValue()) {
        return std::nullopt;
    }
    return Geometry{static_cast<int>(width.getIntValue()), static_cast<int>(height.getIntValue()),
                    static_cast<int>(bits.getIntValue())};
}

bool hasDefaultDecode(QPDFObjectHandle dictionary) {
    auto decode = dictionary.getKey("/Decode");
    if (decode.isNull()) {
        return true;
    }
    if (!decode.isArray()) {
        return false;
    }
    for (int i = 0; i < decode.getArrayNItems(); ++i) {
        auto value = decode.getArrayItem(i);
        if (!value.isNumber() || value.getNumericValue() != (i % 2 == 0 ? 0.0 : 1.0)) {
            return false;
        }
    }
    return true;
}

// Whether the picture has enough distinct colours to be a photograph or a scan rather than a
// drawing, a chart or a screenshot, which JPEG would smear. Looks at up to 64K pixels.
bool isContinuousTone(const Bitmap& bitmap) {
    const std::size_t pixels = static_cast<std::size_t>(bitmap.pixelCount());
    const std::size_t stride = std::max<std::size_t>(1, pixels / 65536);
    const int bands = bitmap.bands();
    const std::size_t needed = bands == 1 ? 48 : 512;
    std::unordered_set<std::uint32_t> colours;
    const auto* data = bitmap.data();
    for (std::size_t i = 0; i < pixels && colours.size() <= needed; i += stride) {
        const auto* p = data + i * bands;
        colours.insert(bands == 1 ? p[0] : (p[0] << 16 | p[1] << 8 | p[2]));
    }
    return colours.size() > needed;
}

struct Compactor {
    QPDF& qpdf;
    const std::map<QPDFObjGen, PlacedResolution>& placedDPI;
    const std::optional<ImageSetting>& setting;
    ImageCompaction result;
    std::set<QPDFObjGen> changed;

    void replace(QPDFObjectHandle image, std::string data, QPDFObjectHandle filter,
                 QPDFObjectHandle parameters, std::int64_t before) {
        result.bytesBefore += before;
        result.bytesAfter += static_cast<std::int64_t>(data.size());
        image.replaceStreamData(data, filter, parameters);
        // Already as small as we make it: the writer must not decode and recompress it.
        image.setFilterOnWrite(false);
        changed.insert(image.getObjGen());
    }

    static QPDFObjectHandle flate() { return QPDFObjectHandle::newName("/FlateDecode"); }

    // What /FlateDecode needs to undo PNG row predictors over `width` pixels of `bands` samples.
    static QPDFObjectHandle predictorParameters(int bands, int width) {
        return QPDFObjectHandle::parse("<< /Predictor 15 /Colors " + std::to_string(bands) +
                                       " /BitsPerComponent 8 /Columns " + std::to_string(width) +
                                       " >>");
    }

    // Lossless: Flate samples re-stored with row predictors when smaller than plain Flate.
    void predict(QPDFObjectHandle image, const Geometry& size, int bands, std::int64_t stored) {
        auto dictionary = image.getDict();
        if (size.bits != 8 || bands == 0 || !dictionary.getKey("/DecodeParms").isNull()) {
            return;
        }
        const auto rowBytes =
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bands);
        const auto expected = rowBytes * static_cast<std::size_t>(size.height);
        // Decoding stops one byte past what the dictionary promises: a bomb costs no more.
        const auto samples = decodedStreamData(image, expected + 1);
        if (!samples || samples->size() != expected) {
            return;
        }
        auto predicted = PNGPredictor::predictedAndDeflated(*samples, rowBytes, bands);
        const auto plain = PNGPredictor::deflated(*samples);
        if (predicted.size() >= plain.size() ||
            static_cast<std::int64_t>(predicted.size()) >= stored) {
            return; // the writer's recompression does as well
        }
        replace(image, std::move(predicted), flate(), predictorParameters(bands, size.width),
                stored);
        ++result.predictedFlate;
    }

    // Whether the JPEG's own frame header agrees with the dictionary: libjpeg allocates for the
    // header's size, which nothing else bounds.
    static bool headerAgrees(const std::shared_ptr<Buffer>& raw, const Geometry& size) {
        const auto header = JPEGHeader::read({raw->getBuffer(), raw->getSize()});
        return header && header->width == size.width && header->height == size.height;
    }

    void optimizeJPEG(QPDFObjectHandle image, const std::shared_ptr<Buffer>& raw,
                      const Geometry& size) {
        if (!headerAgrees(raw, size)) {
            return;
        }
        auto smaller = JPEGOptimizer::optimized({raw->getBuffer(), raw->getSize()});
        if (!smaller) {
            return;
        }
        // The filter and its parameters stay exactly as written (an array of one, a
        // /ColorTransform), so the samples are read as before.
        auto dictionary = image.getDict();
        replace(image, std::string(smaller->begin(), smaller->end()), dictionary.getKey("/Filter"),
                dictionary.getKey("/DecodeParms"), static_cast<std::int64_t>(raw->getSize()));
        ++result.optimizedJPEGs;
    }

    std::optional<Bitmap> decoded(QPDFObjectHandle image, const Geometry& size, int bands,
                                  bool jpeg = false) {
        try {
            if (jpeg && !headerAgrees(image.getRawStreamData(), size)) {
                return std::nullopt;
            }
            const auto expected = Bitmap::byteCount(
                size.width, size.height, bands == 1 ? PixelFormat::gray : PixelFormat::rgb);
            if (!expected) {
                return std::nullopt;
            }
            std::string samples;
            if (jpeg) {
                samples = bytesOf(image.getStreamData(qpdf_dl_all));
            } else if (auto bounded = decodedStreamData(image, *expected + 1)) {
                samples = std::move(*bounded);
            }
            if (samples.size() != *expected) {
                return std::nullopt;
            }
            std::vector<std::uint8_t> pixels(samples.begin(), samples.end());
            return Bitmap(size.width, size.height,
                          bands == 1 ? PixelFormat::gray : PixelFormat::rgb, std::move(pixels));
        } catch (const std::exception&) {
            return std::nullopt;
        }
    }

    void resampleMask(QPDFObjectHandle image, int width, int height) {
        auto mask = image.getDict().getKey("/SMask");
        if (!mask.isStream() || changed.count(mask.getObjGen())) {
            return;
        }
        auto dictionary = mask.getDict();
        const auto size = geometry(dictionary);
        if (!size || size->bits != 8 ||
            !dictionary.getKey("/ColorSpace").isNameAndEquals("/DeviceGray") ||
            dictionary.hasKey("/Matte") || !hasDefaultDecode(dictionary) ||
            static_cast<std::int64_t>(size->width) * size->height <=
                static_cast<std::int64_t>(width) * height) {
            return;
        }
        auto pixels = decoded(mask, *size, 1);
        if (!pixels) {
            return;
        }
        const auto smaller = AreaResampler::resample(pixels->data(), size->width, size->height,
                                                     PixelFormat::gray, width, height);
        const std::string_view samples(reinterpret_cast<const char*>(smaller.data()),
                                       smaller.pixels().size());
        const auto stored = static_cast<std::int64_t>(mask.getRawStreamData()->getSize());
        replace(mask, PNGPredictor::deflated(samples), flate(), QPDFObjectHandle::newNull(),
                stored);
        dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
        dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
    }

    // Lossy: resampled above 1.5x the setting's resolution, continuous tone stored as JPEG.
    // Answers whether the image was replaced.
    bool reduce(QPDFObjectHandle image, const Geometry& size, const std::string& filter,
                std::int64_t stored) {
        const auto placed = placedDPI.find(image.getObjGen());
        if (!setting || placed == placedDPI.end() || size.bits != 8) {
            return false;
        }
        auto dictionary = image.getDict();
        const int bands = resamplableComponents(dictionary.getKey("/ColorSpace"));
        const bool decodable = filter.empty() || filter == "/FlateDecode" ||
                               filter == "/DCTDecode" || filter == "/LZWDecode" ||
                               filter == "/RunLengthDecode";
        // A colour key picks exact sample values, which JPEG would not keep; a soft mask
        // overrides it, and then it means nothing.
        const bool colourKey =
            dictionary.getKey("/Mask").isArray() && !dictionary.getKey("/SMask").isStream();
        // A soft mask with /Matte holds premultiplied colour and must keep its image's size.
        const bool matte = dictionary.getKey("/SMask").isStream() &&
                           dictionary.getKey("/SMask").getDict().hasKey("/Matte");
        if (bands == 0 || !decodable || !hasDefaultDecode(dictionary) || colourKey || matte ||
            !dictionary.getKey("/DecodeParms").isNull() ||
            dictionary.getKey("/ImageMask").isBool()) {
            return false;
        }
        const auto [across, down] = placed->second;
        const double limit = 1.5 * setting->dpi;
        const bool resample = std::max(across, down) > limit;
        if (!resample && filter == "/DCTDecode") {
            return false;
        }
        auto pixels = decoded(image, size, bands, filter == "/DCTDecode");
        if (!pixels) {
            return false;
        }
        int width = size.width;
        int height = size.height;
        if (resample) {
            const auto side = [&](int pixels, double dpi) {
                const double scale = dpi > limit ? setting->dpi / dpi : 1.0;
                return std::max(1, static_cast<int>(std::lround(pixels * scale)));
            };
            width = side(size.width, across);
            height = side(size.height, down);
            *pixels = AreaResampler::resample(pixels->data(), size.width, size.height,
                                              pixels->format(), width, height);
        }
        std::string data;
        std::string newFilter;
        if (isContinuousTone(*pixels)) {
            if (auto jpeg = ImageCodec::data(*pixels, ImageOutputFormat::jpeg, setting->quality)) {
                data.assign(jpeg->begin(), jpeg->end());
                newFilter = "/DCTDecode";
            }
        }
        if (newFilter.empty()) {
            if (!resample) {
                return false; // lossless pictures that need no resampling stay lossless
            }
            const std::string_view samples(reinterpret_cast<const char*>(pixels->data()),
                                           pixels->pixels().size());
            data = PNGPredictor::predictedAndDeflated(samples, pixels->rowBytes(), bands);
            newFilter = "/FlateDecode";
        }
        // A picture already stored smaller (a strongly compressed JPEG, say) keeps its pixels.
        if (static_cast<std::int64_t>(data.size()) >= stored) {
            return false;
        }
        const bool jpeg = newFilter == "/DCTDecode";
        auto parameters = jpeg ? QPDFObjectHandle::newNull() : predictorParameters(bands, width);
        replace(image, std::move(data), QPDFObjectHandle::newName(newFilter), parameters, stored);
        dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
        dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
        result.resampled += resample ? 1 : 0;
        result.storedAsJPEG += jpeg ? 1 : 0;
        if (resample) {
            resampleMask(image, width, height);
        }
        return true;
    }

    void visit(QPDFObjectHandle image) {
        if (changed.count(image.getObjGen())) {
            return;
        }
        auto dictionary = image.getDict();
        const auto size = geometry(dictionary);
        const auto filter = soleFilter(dictionary);
        if (!size || !filter) {
            return;
        }
        // Read once: its size is what every step must beat, and the JPEG step rewrites it.
        const auto raw = image.getRawStreamData();
        const auto stored = static_cast<std::int64_t>(raw->getSize());
        if (reduce(image, *size, *filter, stored)) {
            return;
        }
        if (*filter == "/DCTDecode") {
            optimizeJPEG(image, raw, *size);
        } else if (*filter == "/FlateDecode" && !dictionary.getKey("/ImageMask").isBool()) {
            predict(image, *size, components(dictionary.getKey("/ColorSpace")), stored);
        }
    }
};

} // namespace

ImageCompaction ImageCompactor::compact(QPDF& qpdf, const std::vector<QPDFObjectHandle>& images,
                                        const std::map<QPDFObjGen, PlacedResolution>& placedDPI,
                                        const std::optional<ImageSetting>& setting,
                                        const Cancelled& cancelled) {
    Compactor compactor{qpdf, placedDPI, setting, {}, {}};
    for (auto object : images) {
        if (cancelled && cancelled()) {
            throw CancellationError();
        }
        if (!object.isStream() || !object.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
            continue;
        }
        try {
            compactor.visit(object);
        } catch (const CancellationError&) {
            throw;
        } catch (const std::exception&) {
            // An image that cannot be read or rewritten stays as it is.
        }
    }
    return compactor.result;
}

} // namespace quillet
