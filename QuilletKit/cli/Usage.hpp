// The command line's version and usage text.
#pragma once

#include <string>
#include <string_view>

namespace quillet {

inline constexpr std::string_view quilletVersion = "0.2.0";

/// The whole usage text, ending in a line break.
const std::string& usageText();

} // namespace quillet
