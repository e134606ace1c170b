#include "engines/PageImage.hpp"

#include "platform/ImageIO.hpp"
#include "platform/SafetyLimits.hpp"

#include <qpdf/Pipeline.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace quillet {
namespace fs = std::filesystem;
namespace {

std::optional<std::string> readWhole(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string bytes;
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (!error) {
        bytes.resize(size);
        file.read(bytes.data(), static_cast<std::streamsize>(size));
        bytes.resize(static_cast<std::size_t>(file.gcount()));
    }
    return file.bad() ? std::nullopt : std::optional(std::move(bytes));
}

// Streams the JPEG file into the PDF at write time, so a thousand photos are never all in memory.
class JPEGFileProvider : public QPDFObjectHandle::StreamDataProvider {
  public:
    JPEGFileProvider(fs::path path, std::uintmax_t size) : path_(std::move(path)), size_(size) {}

    void provideStreamData(QPDFObjGen const&, Pipeline* pipeline) override {
        std::ifstream file(path_, std::ios::binary);
        std::string chunk(1 << 20, '\0');
        std::uintmax_t total = 0;
        while (file) {
            file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
            const auto count = static_cast<std::size_t>(file.gcount());
            total += count;
            if (count == 0 || total > size_) {
                break;
            }
            pipeline->write(reinterpret_cast<const unsigned char*>(chunk.data()), count);
        }
        if (total != size_) {
            throw std::runtime_error(path_.string() + " changed while the PDF was being written");
        }
        pipeline->finish();
    }

  private:
    fs::path path_;
    std::uintmax_t size_;
};

std::string deviceSpace(int components) {
    return components == 1 ? "/DeviceGray" : components == 4 ? "/DeviceCMYK" : "/DeviceRGB";
}

// The "up" predictor makes photographs and gradients compress markedly better than plain Flate.
std::string predictedFlate(const Bitmap& bitmap) {
    std::string compressed;
    Pl_String sink("image pixels", nullptr, compressed);
    Pl_Flate flate("image pixels", &sink, Pl_Flate::a_deflate);
    const std::size_t rowBytes = bitmap.rowBytes();
    std::vector<unsigned char> row(rowBytes + 1);
    row[0] = 2;
    const std::uint8_t* previous = nullptr;
    for (int y = 0; y < bitmap.height(); ++y) {
        const std::uint8_t* current = bitmap.data() + static_cast<std::size_t>(y) * rowBytes;
        for (std::size_t k = 0; k < rowBytes; ++k) {
            row[k + 1] = static_cast<unsigned char>(current[k] - (previous ? previous[k] : 0));
        }
        flate.write(row.data(), row.size());
        previous = current;
    }
    flate.finish();
    return compressed;
}

QPDFObjectHandle imageDictionary(int width, int height, int components) {
    auto dictionary = QPDFObjectHandle::newDictionary();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
    dictionary.replaceKey("/ColorSpace", QPDFObjectHandle::newName(deviceSpace(components)));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    return dictionary;
}

} // namespace

std::optional<PageImage> PageImage::load(const fs::path& path) {
    const auto bytes = readWhole(path);
    if (!bytes) {
        return std::nullopt;
    }
    const std::span data(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size());
    const auto header = JPEGHeader::read(data);
    PageImage image;
    // A header is embedded unchanged only within the size a decoded image may have: it can claim
    // gigapixels that no reader of the PDF could then decode.
    if (header && header->complete && header->precision == 8 &&
        std::int64_t{header->width} * header->height <= limits::imageDecodePixels) {
        image.jpeg_ = JPEGFile{path, bytes->size(), *header};
        image.orientation_ = header->orientation;
        return image;
    }
    auto bitmap = ImageIO::decode(data);
    if (!bitmap) {
        return std::nullopt;
    }
    return fromBitmap(std::move(*bitmap), header ? header->orientation : 1);
}

PageImage PageImage::fromBitmap(Bitmap bitmap, int orientation) {
    PageImage image;
    image.bitmap_ = std::make_shared<const Bitmap>(std::move(bitmap));
    image.orientation_ = orientation >= 1 && orientation <= 8 ? orientation : 1;
    return image;
}

int PageImage::width() const {
    return jpeg_ ? jpeg_->header.width : bitmap_->width();
}

int PageImage::height() const {
    return jpeg_ ? jpeg_->header.height : bitmap_->height();
}

QPDFObjectHandle PageImage::embed(QPDF& qpdf) const {
    return jpeg_ ? embedJPEG(qpdf, *jpeg_) : embedPixels(qpdf, *bitmap_);
}

QPDFObjectHandle PageImage::embedJPEG(QPDF& qpdf, const JPEGFile& file) const {
    const JPEGHeader& header = file.header;
    auto dictionary = imageDictionary(header.width, header.height, header.components);
    if (header.components == 4 && header.adobe) {
        dictionary.replaceKey("/Decode", QPDFObjectHandle::parse("[1 0 1 0 1 0 1 0]"));
    }
    auto stream = qpdf.newStream();
    stream.replaceDict(dictionary);
    stream.replaceStreamData(std::make_shared<JPEGFileProvider>(file.path, file.size),
                             QPDFObjectHandle::newName("/DCTDecode"), QPDFObjectHandle::newNull());
    return stream;
}

QPDFObjectHandle PageImage::embedPixels(QPDF& qpdf, const Bitmap& bitmap) const {
    auto dictionary = imageDictionary(bitmap.width(), bitmap.height(), bitmap.bands());
    auto parameters = QPDFObjectHandle::newDictionary();
    parameters.replaceKey("/Predictor", QPDFObjectHandle::newInteger(12));
    parameters.replaceKey("/Colors", QPDFObjectHandle::newInteger(bitmap.bands()));
    parameters.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    parameters.replaceKey("/Columns", QPDFObjectHandle::newInteger(bitmap.width()));
    auto stream = qpdf.newStream();
    stream.replaceDict(dictionary);
    stream.replaceStreamData(predictedFlate(bitmap), QPDFObjectHandle::newName("/FlateDecode"),
                             parameters);
    return stream;
}

} // namespace quillet
