// How images become pages: the page size, how an image sits on it, the margin and the colour
// behind it. The page dimensions and placement rules live with the merge and images-to-PDF
// engines; this is only the value they are given.
#pragma once

#include "model/RawValue.hpp"

#include <optional>

namespace quillet {

/// An opaque colour, each channel in 0...1.
struct RGBColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const RGBColor&) const = default;
};

struct ImageToPDFOptions {
    enum class PageSize { original, a4, letter, legal };
    enum class Fit { fit, fill };

    PageSize pageSize = PageSize::original;
    Fit fit = Fit::fit;
    /// Margin in PDF points on every side.
    double marginPoints = 0;
    /// Absent: nothing is painted behind the image.
    std::optional<RGBColor> backgroundColor;

    bool operator==(const ImageToPDFOptions&) const = default;
};

template <> struct RawValueNames<ImageToPDFOptions::PageSize> {
    static constexpr std::array<std::string_view, 4> names{"original", "a4", "letter", "legal"};
};
template <> struct RawValueNames<ImageToPDFOptions::Fit> {
    static constexpr std::array<std::string_view, 2> names{"fit", "fill"};
};

} // namespace quillet
