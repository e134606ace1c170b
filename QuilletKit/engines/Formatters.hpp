// Byte counts and fractions as the user reads them.
#pragma once

#include <cstdint>
#include <string>

namespace quillet {

/// "1.50 MB", "512 B": binary multiples (1024), the unit chosen by the absolute value, the
/// quotient written with `decimals` decimals; below 1 KB the plain integer and " B".
std::string formattedBytes(std::int64_t bytes, int decimals);

/// Percentages: a fraction times 100 with `decimals` decimals and "%" (0.4567, 1 gives "45.7%").
struct PercentFormat {
    static std::string string(double fraction, int decimals);
};

} // namespace quillet
