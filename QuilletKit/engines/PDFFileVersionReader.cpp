#include "engines/PDFFileVersionReader.hpp"

#include <fstream>
#include <string_view>
#include <vector>

namespace quillet {

namespace {

constexpr std::size_t headerWindow = 1024;
constexpr int maximumSplits = 4;

std::string latin1ToUTF8(std::string_view text) {
    std::string result;
    for (unsigned char c : text) {
        if (c < 0x80) {
            result += static_cast<char>(c);
        } else {
            result += static_cast<char>(0xC0 | (c >> 6));
            result += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return result;
}

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> result;
    for (int splits = 0; splits < maximumSplits; ++splits) {
        const auto end = text.find('\n');
        if (end == std::string_view::npos) {
            break;
        }
        result.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    result.push_back(text);
    return result;
}

} // namespace

std::optional<std::string> PDFFileVersionReader::version(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string head(headerWindow, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    for (auto line : lines(head)) {
        const auto marker = line.find("%PDF-");
        if (marker == std::string_view::npos) {
            continue;
        }
        auto number = line.substr(marker + 5, 3);
        if (!number.empty()) {
            return latin1ToUTF8(number);
        }
    }
    return std::nullopt;
}

} // namespace quillet
