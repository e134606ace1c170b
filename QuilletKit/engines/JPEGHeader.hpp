// What a PDF needs to know about a JPEG file to embed its bytes unchanged: the size of the stored
// picture, its colour layout and how a viewer would turn it.
//
// Only the markers in front of the first scan are read; the compressed data itself is never
// decoded, so a picture of any size is read in microseconds. Pure parsing of caller-supplied
// bytes: no state, no allocation beyond the answer, safe on any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace quillet {

struct JPEGHeader {
    /// Stored size in pixels, before any EXIF orientation.
    int width = 0;
    int height = 0;
    /// 1 (gray), 3 (YCbCr or RGB) or 4 (CMYK or YCCK).
    int components = 0;
    /// Bits per sample of the frame: 8 for nearly every file; 12-bit JPEGs exist but most PDF
    /// readers cannot show them.
    int precision = 8;
    /// An Adobe APP14 marker is present. Adobe's four-component JPEGs store inverted CMYK, which
    /// is why a PDF must flip them back with a /Decode array.
    bool adobe = false;
    /// The EXIF orientation, 1...8 (1 when there is none or it is out of range): how the stored
    /// pixels must be turned and mirrored to appear upright.
    int orientation = 1;
    /// The end-of-image marker follows the scan data (the file was not cut short).
    bool complete = false;

    /// The header of `bytes`, or absent when they do not start like a JPEG, reach no frame header
    /// and scan, or describe a frame a PDF cannot carry (a zero size, a component count other than
    /// 1, 3 or 4). A file cut short after the first scan starts still answers, with `complete`
    /// false. Never throws.
    static std::optional<JPEGHeader> read(std::span<const std::uint8_t> bytes) noexcept;

    /// Whether the orientation swaps width and height (the quarter turns, 5...8).
    bool swapsSides() const noexcept { return orientation >= 5; }
};

/// The EXIF orientation held in an APP1 payload ("Exif\0\0" and a TIFF structure), or absent
/// when there is none. Exposed for tests of odd byte orders and offsets.
std::optional<int> exifOrientation(std::span<const std::uint8_t> app1) noexcept;

} // namespace quillet
