// Looking at written PDFs the way other programs do, so that a test does not grade our output
// with our own reader: the command-line tools (qpdf, pdfinfo, exiftool, pdftoppm) run as child
// processes, and an object-graph walk written straight against qpdf.
#pragma once

#include "support/Process.hpp"

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillet::test {

/// Runs a tool found on PATH ("qpdf", "exiftool", ...). A tool that is not installed gives status
/// 127 and says so on standard error.
ProcessResult runTool(const std::string& tool, const std::vector<std::string>& arguments);

/// What the object graph reachable from the trailer holds (each object once).
struct ObjectGraph {
    /// Every dictionary key met, in any dictionary or stream dictionary ("/Metadata", ...).
    std::set<std::string> keys;
    /// Values of /S (action types) and /Subtype met ("/JavaScript", "/FileAttachment", ...).
    std::set<std::string> kinds;
    /// /Type values of streams ("/EmbeddedFile", "/Metadata", ...).
    std::set<std::string> streamTypes;
    bool trailerHasInfo = false;
    /// The two strings of the trailer's /ID, hex-encoded; empty when absent.
    std::vector<std::string> documentID;
};

ObjectGraph inspectObjectGraph(const std::filesystem::path& file, const std::string& password = "");

/// Whether `qpdf --check` (with `password`) finds the file sound.
bool qpdfChecks(const std::filesystem::path& file, const std::string& password = "");

/// The width of every page's media box, in page order, read straight through qpdf.
std::vector<int> pageWidths(const std::filesystem::path& file);

/// The decoded content streams of a page, joined as a viewer reads them.
std::string pageContents(QPDFObjectHandle page);

/// Pages `first` to `last` of the corpus's thesis as a scanner stores them, one JPEG at `dpi`
/// filling each page (pdftoppm, then bench/make-scan.py), written to `pdf`. Fails the calling
/// test when a tool fails.
std::filesystem::path scannedThesis(const std::filesystem::path& pdf, int first, int last, int dpi,
                                    std::optional<int> jpegQuality = std::nullopt);

/// A page rendered by pdftoppm to 8-bit gray (or RGB, three bytes a pixel, from `renderRGB`).
struct GrayPage {
    int width = 0;
    int height = 0;
    int bands = 1;
    std::vector<std::uint8_t> pixels;

    /// The bands of the pixel at (`x`, `y`).
    std::vector<int> at(int x, int y) const;

    /// Pixels darker than `threshold` in the rectangle given in PDF points from the page's
    /// top-left corner, at the rendering's `dpi`.
    int darkPixels(double left, double top, double right, double bottom, double dpi,
                   int threshold = 128) const;
};

/// Renders page `page` (1-based) of `file` at `dpi`. Fails the calling test (and answers an
/// empty page) when pdftoppm fails.
GrayPage renderGray(const std::filesystem::path& file, int page = 1, int dpi = 72);
GrayPage renderRGB(const std::filesystem::path& file, int page = 1, int dpi = 72);

} // namespace quillet::test
