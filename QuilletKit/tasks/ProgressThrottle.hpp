// Thins out a job's progress reports before they reach the user interface.
//
// For steadily rising progress at most about a hundred reports pass per job: a report passes
// when it is the first, when it is 1, or when it is at least 0.01 away from the last one that
// passed. Reports are clamped into [0, 1] first (-0.5 passes as 0). One throttle per running job.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

namespace quillet {

class ProgressThrottle {
  public:
    /// The value to show, or nothing when the report is to be dropped.
    std::optional<double> pass(double fraction) {
        const double p = std::isnan(fraction) ? 0.0 : std::clamp(fraction, 0.0, 1.0);
        if (p < 1.0 && lastReported_ >= 0 && std::fabs(p - lastReported_) < 0.01) {
            return std::nullopt;
        }
        lastReported_ = p;
        return p;
    }

    double lastReported() const { return lastReported_; }

  private:
    double lastReported_ = -1.0; ///< negative: nothing reported yet
};

} // namespace quillet
