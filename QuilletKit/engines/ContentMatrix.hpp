// The transformation matrices of page content: [a b c d e f], as `cm` takes them.
#pragma once

#include <array>
#include <utility>

namespace quillet {

using ContentMatrix = std::array<double, 6>;

/// `m` applied before `ctm`: the current transform after `m cm` when it was `ctm`.
inline ContentMatrix concatenated(const ContentMatrix& m, const ContentMatrix& ctm) {
    return {m[0] * ctm[0] + m[1] * ctm[2],          m[0] * ctm[1] + m[1] * ctm[3],
            m[2] * ctm[0] + m[3] * ctm[2],          m[2] * ctm[1] + m[3] * ctm[3],
            m[4] * ctm[0] + m[5] * ctm[2] + ctm[4], m[4] * ctm[1] + m[5] * ctm[3] + ctm[5]};
}

/// The point (x, y) through `m`.
inline std::pair<double, double> transformed(double x, double y, const ContentMatrix& m) {
    return {x * m[0] + y * m[2] + m[4], x * m[1] + y * m[3] + m[5]};
}

} // namespace quillet
