#include "engines/StampPlacement.hpp"

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace quillet {

std::optional<StampPosition> stampPosition(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, StampPosition>, 7> names{{
        {"top-left", StampPosition::topLeft},
        {"top-center", StampPosition::topCenter},
        {"top-right", StampPosition::topRight},
        {"center", StampPosition::center},
        {"bottom-left", StampPosition::bottomLeft},
        {"bottom-center", StampPosition::bottomCenter},
        {"bottom-right", StampPosition::bottomRight},
    }};
    for (const auto& [text, position] : names) {
        if (text == name) {
            return position;
        }
    }
    return std::nullopt;
}

ContentMatrix stampMatrix(const VisiblePage& page, const StampBox& box, StampPosition position,
                          double margin, double rotationDegrees, double stacked, double* height) {
    const bool quarter = page.rotation == 90 || page.rotation == 270;
    const double seenWidth = quarter ? page.height : page.width;
    const double seenHeight = quarter ? page.width : page.height;

    const double radians = rotationDegrees * std::numbers::pi / 180;
    const double cosine = std::cos(radians);
    const double sine = std::sin(radians);
    double turnedWidth = std::abs(box.width * cosine) + std::abs(box.height * sine);
    double tall = std::abs(box.width * sine) + std::abs(box.height * cosine);
    double fit = 1;
    const double roomWidth = seenWidth - 2 * margin;
    const double roomHeight = seenHeight - 2 * margin;
    if (roomWidth > 0 && turnedWidth > roomWidth) {
        fit = std::min(fit, roomWidth / turnedWidth);
    }
    if (roomHeight > 0 && tall > roomHeight) {
        fit = std::min(fit, roomHeight / tall);
    }
    turnedWidth *= fit;
    tall *= fit;
    if (height != nullptr) {
        *height = tall;
    }

    double cx = seenWidth / 2;
    double cy = seenHeight / 2;
    switch (position) {
    case StampPosition::topLeft:
    case StampPosition::bottomLeft: cx = margin + turnedWidth / 2; break;
    case StampPosition::topRight:
    case StampPosition::bottomRight: cx = seenWidth - margin - turnedWidth / 2; break;
    default: break;
    }
    switch (position) {
    case StampPosition::topLeft:
    case StampPosition::topCenter:
    case StampPosition::topRight: cy = seenHeight - margin - stacked - tall / 2; break;
    case StampPosition::bottomLeft:
    case StampPosition::bottomCenter:
    case StampPosition::bottomRight: cy = margin + stacked + tall / 2; break;
    default: break;
    }

    // The mark's centre to the origin, turned, to its place on the page as seen...
    const ContentMatrix toCentre{1, 0, 0, 1, -(box.x + box.width / 2), -(box.y + box.height / 2)};
    const ContentMatrix shrink{fit, 0, 0, fit, 0, 0};
    const ContentMatrix turn{cosine, sine, -sine, cosine, 0, 0};
    const ContentMatrix place{1, 0, 0, 1, cx, cy};
    // ...and from the page as seen to the file's coordinates.
    ContentMatrix seenToFile{1, 0, 0, 1, page.x, page.y};
    switch (page.rotation) {
    case 90: seenToFile = {0, 1, -1, 0, page.x + page.width, page.y}; break;
    case 180: seenToFile = {-1, 0, 0, -1, page.x + page.width, page.y + page.height}; break;
    case 270: seenToFile = {0, -1, 1, 0, page.x, page.y + page.height}; break;
    default: break;
    }
    return concatenated(concatenated(concatenated(concatenated(toCentre, shrink), turn), place),
                        seenToFile);
}

} // namespace quillet
