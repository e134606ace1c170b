// The drawing of a page under redaction areas: the paths that lie wholly under an area are taken
// out of the content, the rest is clipped so nothing shows inside the areas, and the areas are
// painted over in the fill colour.
//
// Areas are in the page's user space (the coordinates its content starts in). The content is
// rewritten token by token: text, images, inline images, forms and marked content pass through
// unchanged, as do paths used to clip (removing one would widen its clip). A path's extent is the
// bounding box of its points under the current transform, widened by half the line width when
// it is stroked; only a path entirely inside one area goes. Damaged content is kept from where it
// stops making sense.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillet {

class RedactedDrawing {
  public:
    struct Area {
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    };
    struct Colour {
        double r = 0, g = 0, b = 0;
    };

    /// `content` without the paths under `areas`; `removed` counts the paths taken out.
    static std::string withoutPathsUnder(const std::string& content, const std::vector<Area>& areas,
                                         int& removed);

    /// What goes before the page's content: a clip that leaves out every area (opened with q).
    static std::string clipBefore(const std::vector<Area>& areas);

    /// What goes after it: the clip closed, and each area painted in `fill` (none: nothing).
    static std::string fillAfter(const std::vector<Area>& areas, const std::optional<Colour>& fill);
};

} // namespace quillet
