// A number as a content stream or a PDF dictionary writes it: fixed notation (PDF has no
// exponents), four decimals, finer than any device resolution, and no trailing zeros, which only
// cost bytes.
#pragma once

#include <fmt/format.h>

#include <string>

namespace quillet {

inline std::string contentOperand(double value) {
    std::string text = fmt::format("{:.4f}", value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

} // namespace quillet
