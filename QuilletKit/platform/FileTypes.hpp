// What a file is, judged by its extension alone (case-insensitive), as the front doors sort
// dropped and listed files. Nothing here opens a file: content is checked by whoever opens it.
//
// Images are the formats the image decoder (ImageIO) loads with its untrusted loaders blocked:
// JPEG, PNG, TIFF, HEIC/HEIF, AVIF, WebP and GIF.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace quillet {

enum class FileKind { pdf, png, jpeg, tiff, heic, avif, webp, gif };

/// The kind of `path` from its last extension ("Scan.JPG" is jpeg; "notes.txt", "archive.tar.gz"
/// and a file without an extension have none).
std::optional<FileKind> fileKind(const std::filesystem::path& path);

/// The kind for a bare extension without the dot ("tif", "HEIF").
std::optional<FileKind> fileKindForExtension(std::string_view extension);

constexpr bool isImage(FileKind kind) {
    return kind != FileKind::pdf;
}

bool isPDF(const std::filesystem::path& path);
bool isImage(const std::filesystem::path& path);

/// The extensions that map to `kind`, lower-case, the customary one first ("jpg" for jpeg).
std::vector<std::string_view> extensions(FileKind kind);

} // namespace quillet
