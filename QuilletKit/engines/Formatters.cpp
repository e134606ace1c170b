#include "engines/Formatters.hpp"

#include <fmt/format.h>

#include <cstdlib>

namespace quillet {

std::string formattedBytes(std::int64_t bytes, int decimals) {
    constexpr std::int64_t kb = 1024;
    constexpr std::int64_t mb = kb * 1024;
    constexpr std::int64_t gb = mb * 1024;
    // The magnitude in unsigned arithmetic, so INT64_MIN has one too.
    const auto magnitude = bytes < 0 ? 0 - static_cast<std::uint64_t>(bytes)
                                     : static_cast<std::uint64_t>(bytes);
    const auto scaled = [&](std::int64_t unit, const char* name) {
        return fmt::format("{:.{}f} {}", static_cast<double>(bytes) / static_cast<double>(unit),
                           decimals, name);
    };
    if (magnitude >= static_cast<std::uint64_t>(gb)) {
        return scaled(gb, "GB");
    }
    if (magnitude >= static_cast<std::uint64_t>(mb)) {
        return scaled(mb, "MB");
    }
    if (magnitude >= static_cast<std::uint64_t>(kb)) {
        return scaled(kb, "KB");
    }
    return fmt::format("{} B", bytes);
}

std::string PercentFormat::string(double fraction, int decimals) {
    return fmt::format("{:.{}f}%", fraction * 100.0, decimals);
}

} // namespace quillet
