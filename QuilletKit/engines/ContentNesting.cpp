#include "engines/ContentNesting.hpp"

#include <cstring>

namespace quillet {
namespace {

bool isWhite(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

bool isDelimiter(char c) {
    return isWhite(c) || std::strchr("()<>[]{}/%", c) != nullptr;
}

} // namespace

ContentNesting ContentNesting::of(std::string_view content) {
    ContentNesting nesting;
    const std::size_t size = content.size();
    std::size_t i = 0;
    while (i < size) {
        const char c = content[i];
        if (isWhite(c)) {
            ++i;
        } else if (c == '%') {
            while (i < size && content[i] != '\n' && content[i] != '\r') {
                ++i;
            }
        } else if (c == '(') {
            int depth = 0;
            for (; i < size; ++i) {
                if (content[i] == '\\') {
                    ++i;
                } else if (content[i] == '(') {
                    ++depth;
                } else if (content[i] == ')' && --depth == 0) {
                    ++i;
                    break;
                }
            }
        } else if (c == '<' && i + 1 < size && content[i + 1] != '<') {
            const auto end = content.find('>', i);
            i = end == std::string_view::npos ? size : end + 1;
        } else if (isDelimiter(c)) {
            ++i;
        } else {
            std::size_t end = i;
            while (end < size && !isDelimiter(content[end])) {
                ++end;
            }
            const std::string_view word = content.substr(i, end - i);
            if (word == "q") {
                ++nesting.openSaves;
            } else if (word == "Q") {
                if (nesting.openSaves > 0) {
                    --nesting.openSaves;
                } else {
                    ++nesting.unmatchedRestores;
                }
            } else if (word == "ID") {
                // Inline image data: binary up to an "EI" standing as a word of its own.
                std::size_t at = end + 1;
                while (at + 1 < size) {
                    const auto found = content.find("EI", at);
                    if (found == std::string_view::npos) {
                        at = size;
                        break;
                    }
                    const bool before = isWhite(content[found - 1]);
                    const bool after = found + 2 >= size || isDelimiter(content[found + 2]);
                    at = found + 2;
                    if (before && after) {
                        break;
                    }
                }
                end = at;
            }
            i = end;
        }
    }
    return nesting;
}

} // namespace quillet
