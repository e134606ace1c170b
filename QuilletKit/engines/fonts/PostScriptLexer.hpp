// The tokens of the PostScript subset that font programs are written in: numbers, names, strings,
// brackets and braces. Binary data (charstrings after RD) is taken by byte count through
// `takeBinary`, since it cannot be tokenized.
//
// Works on a caller-owned buffer that must outlive the lexer; never throws except from
// `takeBinary`, which throws FontProgramError when the count runs past the end of the data.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillet::fonts {

struct PostScriptToken {
    enum class Kind {
        end,
        number,
        literalName,
        word,
        string,
        openArray,
        closeArray,
        openProc,
        closeProc
    };
    Kind kind = Kind::end;
    /// The name without its slash, the word, the decoded string, or the number as written.
    std::string text;
    double number = 0;

    bool isWord(std::string_view name) const { return kind == Kind::word && text == name; }
};

class PostScriptLexer {
  public:
    explicit PostScriptLexer(std::string_view data) : data_(data) {}

    PostScriptToken next();
    const PostScriptToken& peek();
    /// The `count` bytes that follow the single whitespace byte after the last token.
    std::string_view takeBinary(long long count);
    std::size_t position() const { return position_; }

  private:
    void skipSpaceAndComments();
    std::string readString();
    std::string readHexString();
    PostScriptToken readRegular();

    std::string_view data_;
    std::size_t position_ = 0;
    std::optional<PostScriptToken> peeked_;
};

/// The value of a PostScript number token (integer, real, or radix form such as 8#777).
std::optional<double> parsePostScriptNumber(std::string_view text);

} // namespace quillet::fonts
