#include "platform/TextDecoding.hpp"

#include <iconv.h>

#include <cerrno>
#include <memory>
#include <optional>

namespace quillet {
namespace {

// The length of the UTF-8 sequence at `i`, or 0 when it is not a valid one (overlong forms,
// surrogates and code points above U+10FFFF included).
std::size_t sequenceAt(std::string_view bytes, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes[k]); };
    const unsigned char lead = byte(i);
    if (lead < 0x80) {
        return 1;
    }
    std::size_t length = 0;
    char32_t value = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
    } else {
        return 0;
    }
    if (i + length > bytes.size()) {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) {
            return 0;
        }
        value = value << 6 | (byte(i + k) & 0x3F);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (overlong || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF) {
        return 0;
    }
    return length;
}

std::optional<std::string> fromGB18030(std::string_view bytes) {
    iconv_t converter = iconv_open("UTF-8", "GB18030");
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return std::nullopt;
    }
    std::unique_ptr<void, int (*)(iconv_t)> closer(converter, iconv_close);
    std::string input(bytes);
    std::string output(bytes.size() * 4 + 4, '\0');
    char* in = input.data();
    char* out = output.data();
    std::size_t inLeft = input.size();
    std::size_t outLeft = output.size();
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) ||
        inLeft != 0) {
        return std::nullopt;
    }
    output.resize(output.size() - outLeft);
    return output;
}

} // namespace

bool isValidUTF8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto length = sequenceAt(bytes, i);
        if (length == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

std::string validUTF8(std::string_view bytes) {
    if (isValidUTF8(bytes)) {
        return std::string(bytes);
    }
    if (auto decoded = fromGB18030(bytes); decoded && isValidUTF8(*decoded)) {
        return *decoded;
    }
    std::string text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto length = sequenceAt(bytes, i);
        if (length == 0) {
            text += "\xEF\xBF\xBD";
            ++i;
        } else {
            text.append(bytes.substr(i, length));
            i += length;
        }
    }
    return text;
}

} // namespace quillet
