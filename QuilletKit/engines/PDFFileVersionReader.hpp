// The version number written in a PDF file's header ("%PDF-1.7" gives "1.7").
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace quillet {

struct PDFFileVersionReader {
    /// Looks for "%PDF-" in the first 1024 bytes only, line by line (split at line feeds, at most
    /// four times, so the fifth piece is the rest of those bytes), and answers up to three
    /// characters after the first marker that has any, read as ISO Latin-1 and returned as
    /// UTF-8. Absent when the file cannot be read or no marker with characters after it lies
    /// within those bytes. Never throws for I/O problems.
    static std::optional<std::string> version(const std::filesystem::path& path);
};

} // namespace quillet
