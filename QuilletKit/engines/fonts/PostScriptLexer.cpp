#include "engines/fonts/PostScriptLexer.hpp"

#include "engines/fonts/FontProgramError.hpp"

#include <charconv>
#include <cstdlib>

namespace quillet::fonts {
namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0';
}

bool isDelimiter(char c) {
    return isSpace(c) || c == '(' || c == ')' || c == '<' || c == '>' || c == '[' || c == ']' ||
           c == '{' || c == '}' || c == '/' || c == '%';
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

} // namespace

std::optional<double> parsePostScriptNumber(std::string_view text) {
    if (text.empty()) {
        return std::nullopt;
    }
    if (const auto hash = text.find('#'); hash != std::string_view::npos) {
        int base = 0;
        long long value = 0;
        const auto* baseEnd = text.data() + hash;
        const auto* end = text.data() + text.size();
        if (std::from_chars(text.data(), baseEnd, base).ptr != baseEnd || base < 2 || base > 36 ||
            std::from_chars(baseEnd + 1, end, value, base).ptr != end) {
            return std::nullopt;
        }
        return static_cast<double>(value);
    }
    if (text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ptr != end || result.ec != std::errc()) {
        return std::nullopt;
    }
    return value;
}

void PostScriptLexer::skipSpaceAndComments() {
    while (position_ < data_.size()) {
        if (isSpace(data_[position_])) {
            ++position_;
        } else if (data_[position_] == '%') {
            while (position_ < data_.size() && data_[position_] != '\n' &&
                   data_[position_] != '\r') {
                ++position_;
            }
        } else {
            return;
        }
    }
}

const PostScriptToken& PostScriptLexer::peek() {
    if (!peeked_) {
        peeked_ = next();
    }
    return *peeked_;
}

PostScriptToken PostScriptLexer::next() {
    if (peeked_) {
        PostScriptToken token = std::move(*peeked_);
        peeked_.reset();
        return token;
    }
    skipSpaceAndComments();
    PostScriptToken token;
    if (position_ >= data_.size()) {
        return token;
    }
    const char c = data_[position_];
    using Kind = PostScriptToken::Kind;
    switch (c) {
    case '[':
        ++position_;
        token.kind = Kind::openArray;
        return token;
    case ']':
        ++position_;
        token.kind = Kind::closeArray;
        return token;
    case '{':
        ++position_;
        token.kind = Kind::openProc;
        return token;
    case '}':
        ++position_;
        token.kind = Kind::closeProc;
        return token;
    case '(':
        ++position_;
        token.kind = Kind::string;
        token.text = readString();
        return token;
    case '/': {
        ++position_;
        const std::size_t start = position_;
        while (position_ < data_.size() && !isDelimiter(data_[position_])) {
            ++position_;
        }
        token.kind = Kind::literalName;
        token.text = std::string(data_.substr(start, position_ - start));
        return token;
    }
    case '<':
    case '>':
        if (position_ + 1 < data_.size() && data_[position_ + 1] == c) {
            position_ += 2;
            token.kind = Kind::word;
            token.text = std::string(2, c);
            return token;
        }
        ++position_;
        if (c == '>') {
            token.kind = Kind::word;
            token.text = ">";
            return token;
        }
        token.kind = Kind::string;
        token.text = readHexString();
        return token;
    case ')':
        ++position_;
        token.kind = Kind::word;
        token.text = ")";
        return token;
    default: return readRegular();
    }
}

PostScriptToken PostScriptLexer::readRegular() {
    const std::size_t start = position_;
    while (position_ < data_.size() && !isDelimiter(data_[position_])) {
        ++position_;
    }
    PostScriptToken token;
    token.text = std::string(data_.substr(start, position_ - start));
    if (const auto number = parsePostScriptNumber(token.text)) {
        token.kind = PostScriptToken::Kind::number;
        token.number = *number;
    } else {
        token.kind = PostScriptToken::Kind::word;
    }
    return token;
}

std::string PostScriptLexer::readString() {
    std::string text;
    int depth = 1;
    while (position_ < data_.size()) {
        char c = data_[position_++];
        if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth == 0) {
            return text;
        } else if (c == '\\' && position_ < data_.size()) {
            c = data_[position_++];
            switch (c) {
            case 'n': c = '\n'; break;
            case 'r': c = '\r'; break;
            case 't': c = '\t'; break;
            case 'b': c = '\b'; break;
            case 'f': c = '\f'; break;
            case '\r':
            case '\n': continue; // a line continuation adds nothing
            default:
                if (c >= '0' && c <= '7') {
                    int value = c - '0';
                    for (int digits = 1; digits < 3 && position_ < data_.size() &&
                                         data_[position_] >= '0' && data_[position_] <= '7';
                         ++digits) {
                        value = value * 8 + (data_[position_++] - '0');
                    }
                    c = static_cast<char>(value & 0xff);
                }
            }
        }
        text.push_back(c);
    }
    return text;
}

std::string PostScriptLexer::readHexString() {
    std::string text;
    int high = -1;
    while (position_ < data_.size() && data_[position_] != '>') {
        const int value = hexValue(data_[position_++]);
        if (value < 0) {
            continue;
        }
        if (high < 0) {
            high = value;
        } else {
            text.push_back(static_cast<char>(high * 16 + value));
            high = -1;
        }
    }
    ++position_;
    if (high >= 0) {
        text.push_back(static_cast<char>(high * 16));
    }
    return text;
}

std::string_view PostScriptLexer::takeBinary(long long count) {
    if (peeked_) {
        throw FontProgramError("binary data requested after a look-ahead");
    }
    const std::size_t start = position_ + 1;
    if (count < 0 || start > data_.size() ||
        static_cast<unsigned long long>(count) > data_.size() - start) {
        throw FontProgramError("a binary byte count runs past the end of the font program");
    }
    position_ = start + static_cast<std::size_t>(count);
    return data_.substr(start, static_cast<std::size_t>(count));
}

} // namespace quillet::fonts
