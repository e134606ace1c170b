// Where a mark goes on a page: the matrix that takes a mark drawn in its own box to its place as
// the reader sees the page.
//
// The visible page is the crop box (clipped to the media box) turned by the page's /Rotate:
// "bottom" is the bottom edge of the page on the screen, whatever the file's own coordinates.
// The mark is turned by its own rotation (degrees, counter-clockwise) about its centre, and its
// turned bounding box is set `margin` points inside the named edges. Pure geometry, no state.
#pragma once

#include "engines/ContentMatrix.hpp"

#include <optional>
#include <string_view>

namespace quillet {

enum class StampPosition { topLeft, topCenter, topRight, center, bottomLeft, bottomCenter, bottomRight };

/// "top-left", "top-center", "top-right", "center", "bottom-left", "bottom-center",
/// "bottom-right"; absent for anything else.
std::optional<StampPosition> stampPosition(std::string_view name);

struct StampBox {
    double x = 0, y = 0, width = 0, height = 0; // the mark's own box, in its own space
};

struct VisiblePage {
    double x = 0, y = 0, width = 0, height = 0; // the crop box in the file's coordinates
    int rotation = 0;                           // 0, 90, 180 or 270, clockwise
};

/// The `cm` operands that draw a mark whose own box is `box` at `position`, `stacked` points
/// further in from the named top or bottom edge (past the marks already at that place; ignored
/// in the center). A mark whose turned box is wider or taller than the page inside its margins
/// is scaled down to fit (a long watermark across a narrow page), never up. `height`, when
/// given, receives the height the mark takes as drawn: what it adds to a stack.
ContentMatrix stampMatrix(const VisiblePage& page, const StampBox& box, StampPosition position,
                          double margin, double rotationDegrees, double stacked = 0,
                          double* height = nullptr);

} // namespace quillet
