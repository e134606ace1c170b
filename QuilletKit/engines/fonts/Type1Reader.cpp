#include "engines/fonts/Type1Reader.hpp"

#include "engines/fonts/FontProgramError.hpp"
#include "engines/fonts/PostScriptLexer.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

namespace quillet::fonts {
namespace {

using Kind = PostScriptToken::Kind;

// Beyond these the program is hostile: no real font has 64k subroutines or a 64 KiB charstring
// key, and lenIV is 4 in practice.
constexpr long long maxSubrs = 65536;
constexpr int maxLenIV = 255;

struct Parts {
    std::string clear;
    std::string encrypted;
};

bool isSpace(std::uint8_t c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool isHex(std::uint8_t c) {
    return std::isxdigit(c) != 0;
}

// A PFB is a series of segments: 0x80, type (1 text, 2 binary, 3 end), 32-bit little-endian size.
std::optional<Parts> unwrapPFB(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 6 || bytes[0] != 0x80 || bytes[1] != 0x01) {
        return std::nullopt;
    }
    Parts parts;
    std::size_t at = 0;
    while (at + 2 <= bytes.size() && bytes[at] == 0x80 && bytes[at + 1] != 3) {
        if (at + 6 > bytes.size()) {
            throw FontProgramError("a PFB segment header is cut short");
        }
        const std::uint32_t size = bytes[at + 2] | (bytes[at + 3] << 8) | (bytes[at + 4] << 16) |
                                   (std::uint32_t(bytes[at + 5]) << 24);
        const std::uint8_t type = bytes[at + 1];
        at += 6;
        if (size > bytes.size() - at) {
            throw FontProgramError("a PFB segment runs past the end of the program");
        }
        const std::string_view segment(reinterpret_cast<const char*>(bytes.data()) + at, size);
        if (type == 2) {
            parts.encrypted += segment;
        } else if (parts.encrypted.empty()) {
            parts.clear += segment;
        }
        at += size;
    }
    return parts;
}

std::size_t findEexec(std::string_view data) {
    for (std::size_t at = data.find("eexec"); at != std::string_view::npos;
         at = data.find("eexec", at + 1)) {
        const bool startsToken = at == 0 || isSpace(data[at - 1]);
        const bool endsToken = at + 5 == data.size() || isSpace(data[at + 5]);
        if (startsToken && endsToken) {
            return at;
        }
    }
    throw FontProgramError("no eexec section in the font program");
}

Parts splitAtEexec(std::span<const std::uint8_t> bytes, std::optional<std::int64_t> length1) {
    const std::string_view data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t eexec = findEexec(data);
    const std::size_t afterWord = eexec + 5;
    std::size_t start = afterWord;
    while (start < data.size() && isSpace(data[start])) {
        ++start;
    }
    // /Length1 settles where the binary starts when the first cipher byte looks like whitespace.
    if (length1 && *length1 >= std::int64_t(afterWord) && *length1 < std::int64_t(start)) {
        start = static_cast<std::size_t>(*length1);
    }
    return Parts{std::string(data.substr(0, afterWord)), std::string(data.substr(start))};
}

std::string decrypt(std::string_view cipher, std::uint16_t r, std::size_t skip) {
    std::string plain;
    plain.reserve(cipher.size());
    for (const char c : cipher) {
        const auto byte = static_cast<std::uint8_t>(c);
        plain.push_back(static_cast<char>(byte ^ (r >> 8)));
        r = static_cast<std::uint16_t>((byte + r) * 52845u + 22719u);
    }
    return plain.size() >= skip ? plain.substr(skip) : std::string();
}

std::string decryptEexec(const std::string& encrypted) {
    const bool hex = encrypted.size() >= 4 && std::all_of(encrypted.begin(), encrypted.begin() + 4,
                                                          [](char c) { return isHex(c); });
    if (!hex) {
        return decrypt(encrypted, 55665, 4);
    }
    std::string binary;
    int high = -1;
    for (const char c : encrypted) {
        if (isSpace(c)) {
            continue;
        }
        if (!isHex(c)) {
            break;
        }
        const int value =
            std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (c | 0x20) - 'a' + 10;
        if (high < 0) {
            high = value;
        } else {
            binary.push_back(static_cast<char>(high * 16 + value));
            high = -1;
        }
    }
    return decrypt(binary, 55665, 4);
}

class Parser {
  public:
    explicit Parser(Type1Font& font) : font_(font) {}

    void parse(std::string_view text) {
        PostScriptLexer lexer(text);
        for (PostScriptToken token = lexer.next(); token.kind != Kind::end; token = lexer.next()) {
            if (token.isWord("closefile")) {
                return;
            }
            if (token.kind == Kind::literalName) {
                readKey(lexer, token.text);
            }
        }
    }

    std::vector<std::pair<std::string, std::string>> encryptedCharStrings;
    std::vector<std::string> encryptedSubrs;

  private:
    static std::optional<double> number(PostScriptLexer& lexer) {
        if (lexer.peek().kind != Kind::number) {
            return std::nullopt;
        }
        return lexer.next().number;
    }

    static std::optional<std::string> string(PostScriptLexer& lexer) {
        if (lexer.peek().kind != Kind::string) {
            return std::nullopt;
        }
        return lexer.next().text;
    }

    static std::vector<double> numbers(PostScriptLexer& lexer) {
        std::vector<double> values;
        const Kind open = lexer.peek().kind;
        if (open != Kind::openArray && open != Kind::openProc) {
            return values;
        }
        lexer.next();
        while (lexer.peek().kind == Kind::number && values.size() < 96) {
            values.push_back(lexer.next().number);
        }
        return values;
    }

    void readKey(PostScriptLexer& lexer, const std::string& key) {
        auto& priv = font_.privateDict;
        if (key == "FontName" && lexer.peek().kind == Kind::literalName) {
            font_.fontName = lexer.next().text;
        } else if (key == "version") {
            font_.version = string(lexer);
        } else if (key == "Notice") {
            font_.notice = string(lexer);
        } else if (key == "FullName") {
            font_.fullName = string(lexer);
        } else if (key == "FamilyName") {
            font_.familyName = string(lexer);
        } else if (key == "Weight") {
            font_.weight = string(lexer);
        } else if (key == "ItalicAngle") {
            font_.italicAngle = number(lexer).value_or(0);
        } else if (key == "isFixedPitch") {
            font_.isFixedPitch = lexer.next().isWord("true");
        } else if (key == "UnderlinePosition") {
            font_.underlinePosition = number(lexer);
        } else if (key == "UnderlineThickness") {
            font_.underlineThickness = number(lexer);
        } else if (key == "PaintType") {
            font_.paintType = static_cast<int>(number(lexer).value_or(0));
        } else if (key == "StrokeWidth") {
            font_.strokeWidth = number(lexer);
        } else if (key == "FontMatrix") {
            const auto values = numbers(lexer);
            if (values.size() == 6) {
                std::copy(values.begin(), values.end(), font_.fontMatrix.begin());
            }
        } else if (key == "FontBBox") {
            const auto values = numbers(lexer);
            if (values.size() == 4) {
                std::copy(values.begin(), values.end(), font_.fontBBox.begin());
            }
        } else if (key == "Encoding") {
            readEncoding(lexer);
        } else if (key == "BlueValues") {
            priv.blueValues = numbers(lexer);
        } else if (key == "OtherBlues") {
            priv.otherBlues = numbers(lexer);
        } else if (key == "FamilyBlues") {
            priv.familyBlues = numbers(lexer);
        } else if (key == "FamilyOtherBlues") {
            priv.familyOtherBlues = numbers(lexer);
        } else if (key == "StemSnapH") {
            priv.stemSnapH = numbers(lexer);
        } else if (key == "StemSnapV") {
            priv.stemSnapV = numbers(lexer);
        } else if (key == "StdHW" || key == "StdVW") {
            const auto values = numbers(lexer);
            (key == "StdHW" ? priv.stdHW : priv.stdVW) =
                values.empty() ? std::nullopt : std::optional<double>(values.front());
        } else if (key == "BlueScale") {
            priv.blueScale = number(lexer);
        } else if (key == "BlueShift") {
            priv.blueShift = number(lexer);
        } else if (key == "BlueFuzz") {
            priv.blueFuzz = number(lexer);
        } else if (key == "ExpansionFactor") {
            priv.expansionFactor = number(lexer);
        } else if (key == "LanguageGroup") {
            priv.languageGroup = static_cast<int>(number(lexer).value_or(0));
        } else if (key == "ForceBold") {
            priv.forceBold = lexer.next().isWord("true");
        } else if (key == "lenIV") {
            const double lenIV = number(lexer).value_or(4);
            if (lenIV < -1 || lenIV > maxLenIV || lenIV != std::floor(lenIV)) {
                throw FontProgramError("lenIV out of range");
            }
            priv.lenIV = static_cast<int>(lenIV);
        } else if (key == "Subrs") {
            readSubrs(lexer);
        } else if (key == "CharStrings") {
            readCharStrings(lexer);
        }
    }

    void readEncoding(PostScriptLexer& lexer) {
        const PostScriptToken first = lexer.next();
        if (first.isWord("StandardEncoding")) {
            font_.standardEncoding = true;
            return;
        }
        if (first.kind == Kind::openArray) {
            for (int code = 0; lexer.peek().kind == Kind::literalName; ++code) {
                setCode(code, lexer.next().text);
            }
            return;
        }
        if (first.kind != Kind::number) {
            throw FontProgramError("an encoding other than StandardEncoding or an array");
        }
        // `dup code /name put` entries, after the loop that fills the array with .notdef.
        int depth = 0;
        for (;;) {
            const PostScriptToken& token = lexer.peek();
            if (token.kind == Kind::end ||
                (depth == 0 && (token.isWord("def") || token.kind == Kind::literalName))) {
                return;
            }
            PostScriptToken taken = lexer.next();
            depth += taken.kind == Kind::openProc ? 1 : taken.kind == Kind::closeProc ? -1 : 0;
            if (depth == 0 && taken.isWord("dup") && lexer.peek().kind == Kind::number) {
                const double code = lexer.next().number;
                if (lexer.peek().kind == Kind::literalName) {
                    std::string name = lexer.next().text;
                    if (lexer.peek().isWord("put")) {
                        lexer.next();
                        setCode(code, std::move(name));
                    }
                }
            }
        }
    }

    void setCode(double code, std::string name) {
        if (code < 0 || code > 255 || code != std::floor(code)) {
            return;
        }
        if (name == ".notdef") {
            font_.encoding.erase(static_cast<int>(code));
        } else {
            font_.encoding[static_cast<int>(code)] = std::move(name);
        }
    }

    // After an entry's binary data comes its closing procedure (NP, |, noaccess put, ...) under
    // whatever names the font chose; skip words up to the next entry.
    static void skipEntryEnd(PostScriptLexer& lexer, std::string_view stopWord) {
        while (lexer.peek().kind == Kind::word && !lexer.peek().isWord(stopWord) &&
               !lexer.peek().isWord("closefile") && !lexer.peek().isWord("end")) {
            lexer.next();
        }
    }

    static std::string binaryEntry(PostScriptLexer& lexer) {
        const auto count = number(lexer);
        if (!count || lexer.peek().kind != Kind::word) {
            throw FontProgramError("a charstring without its byte count");
        }
        lexer.next();
        return std::string(lexer.takeBinary(static_cast<long long>(*count)));
    }

    void readSubrs(PostScriptLexer& lexer) {
        const auto declared = number(lexer);
        if (!declared || *declared < 0 || *declared > maxSubrs) {
            return; // `/Subrs` used as a plain name, e.g. inside OtherSubrs code
        }
        while (lexer.peek().isWord("dup") || lexer.peek().isWord("array")) {
            if (lexer.next().isWord("array")) {
                continue;
            }
            const auto index = number(lexer);
            if (!index || *index < 0 || *index >= *declared) {
                throw FontProgramError("a subroutine number outside the Subrs array");
            }
            const auto at = static_cast<std::size_t>(*index);
            if (encryptedSubrs.size() <= at) {
                encryptedSubrs.resize(at + 1);
            }
            encryptedSubrs[at] = binaryEntry(lexer);
            skipEntryEnd(lexer, "dup");
        }
    }

    void readCharStrings(PostScriptLexer& lexer) {
        for (int tokens = 0; !lexer.peek().isWord("begin"); ++tokens) {
            if (tokens == 4 || lexer.peek().kind == Kind::end) {
                return;
            }
            lexer.next();
        }
        lexer.next();
        while (lexer.peek().kind == Kind::literalName) {
            std::string name = lexer.next().text;
            encryptedCharStrings.emplace_back(std::move(name), binaryEntry(lexer));
            skipEntryEnd(lexer, "");
        }
    }

    Type1Font& font_;
};

std::string decryptCharstring(const std::string& cipher, int lenIV) {
    if (lenIV < 0) {
        return cipher;
    }
    if (cipher.size() < static_cast<std::size_t>(lenIV)) {
        throw FontProgramError("a charstring shorter than its lenIV prefix");
    }
    return decrypt(cipher, 4330, static_cast<std::size_t>(lenIV));
}

} // namespace

Type1Font Type1Reader::read(std::span<const std::uint8_t> program,
                            std::optional<std::int64_t> length1,
                            [[maybe_unused]] std::optional<std::int64_t> length2) {
    if (program.empty()) {
        throw FontProgramError("an empty font program");
    }
    auto pfb = unwrapPFB(program);
    Parts parts =
        pfb && !pfb->encrypted.empty() ? std::move(*pfb)
        : pfb ? splitAtEexec(std::span(reinterpret_cast<const std::uint8_t*>(pfb->clear.data()),
                                       pfb->clear.size()),
                             std::nullopt)
              : splitAtEexec(program, length1);
    Type1Font font;
    Parser parser(font);
    parser.parse(parts.clear);
    parser.parse(decryptEexec(parts.encrypted));
    if (parser.encryptedCharStrings.empty()) {
        throw FontProgramError("no CharStrings in the font program");
    }
    const int lenIV = font.privateDict.lenIV;
    for (const auto& subr : parser.encryptedSubrs) {
        font.subrs.push_back(subr.empty() ? std::string() : decryptCharstring(subr, lenIV));
    }
    for (const auto& [name, cipher] : parser.encryptedCharStrings) {
        font.charStrings.emplace_back(name, decryptCharstring(cipher, lenIV));
    }
    return font;
}

} // namespace quillet::fonts
