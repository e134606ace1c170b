#include "platform/FileTypes.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace quillet {

namespace {

// Order matters only within a kind: the first extension is the customary one.
constexpr std::array<std::pair<std::string_view, FileKind>, 13> kExtensions{{
    {"pdf", FileKind::pdf},
    {"png", FileKind::png},
    {"jpg", FileKind::jpeg},
    {"jpeg", FileKind::jpeg},
    {"jpe", FileKind::jpeg},
    {"tif", FileKind::tiff},
    {"tiff", FileKind::tiff},
    {"heic", FileKind::heic},
    {"heif", FileKind::heic},
    {"avif", FileKind::avif},
    {"webp", FileKind::webp},
    {"gif", FileKind::gif},
    {"jfif", FileKind::jpeg},
}};

} // namespace

std::optional<FileKind> fileKindForExtension(std::string_view extension) {
    std::string lower(extension);
    // ASCII only: a locale-dependent lower-casing could map a foreign letter onto "i".
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) {
        return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : char(c);
    });
    for (const auto& [name, kind] : kExtensions) {
        if (name == lower) {
            return kind;
        }
    }
    return std::nullopt;
}

std::optional<FileKind> fileKind(const std::filesystem::path& path) {
    const std::string extension = path.extension().string();
    if (extension.size() < 2) {
        return std::nullopt;
    }
    return fileKindForExtension(std::string_view(extension).substr(1));
}

bool isPDF(const std::filesystem::path& path) {
    return fileKind(path) == FileKind::pdf;
}

bool isImage(const std::filesystem::path& path) {
    auto kind = fileKind(path);
    return kind && isImage(*kind);
}

std::vector<std::string_view> extensions(FileKind kind) {
    std::vector<std::string_view> names;
    for (const auto& [name, candidate] : kExtensions) {
        if (candidate == kind) {
            names.push_back(name);
        }
    }
    return names;
}

} // namespace quillet
