#include "engines/RedactionFinder.hpp"

#include "engines/PDFCoreError.hpp"

#include <algorithm>
#include <cwctype>
#include <map>
#include <regex>

namespace quillet {
namespace {

std::wstring decodeUTF8(const std::string& text) {
    std::wstring out;
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        int extra = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
        char32_t c = extra == 3 ? byte & 0x07 : extra == 2 ? byte & 0x0F : extra == 1 ? byte & 0x1F : byte;
        ++i;
        for (; extra > 0 && i < text.size(); --extra, ++i) {
            c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
        }
        out.push_back(static_cast<wchar_t>(c));
    }
    return out;
}

std::string encodeUTF8(const std::wstring& text) {
    std::string out;
    for (const wchar_t w : text) {
        const auto c = static_cast<char32_t>(w);
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | c >> 6));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | c >> 12));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | c >> 18));
            out.push_back(static_cast<char>(0x80 | (c >> 12 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

// Letters and digits of scripts that separate words with spaces: a word is found only where it
// is not part of a longer one. Punctuation, symbols and the ideographs of Chinese and Japanese
// (written without spaces) are no word characters, so words next to them are found.
bool isWordCharacter(wchar_t c) {
    if (c < 0x80) {
        return std::iswalnum(static_cast<wint_t>(c)) || c == L'_';
    }
    const auto in = [c](wchar_t low, wchar_t high) { return c >= low && c <= high; };
    return !(in(0x00A0, 0x00BF) || c == 0x00D7 || c == 0x00F7 || in(0x2000, 0x2BFF) ||
             in(0x2E80, 0x9FFF) || in(0xF900, 0xFAFF) || in(0xFE30, 0xFE4F) ||
             in(0xFF00, 0xFF20) || in(0xFF3B, 0xFF40) || in(0xFF5B, 0xFF65));
}

std::wstring digitsOf(const std::wstring& text) {
    std::wstring digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
                 [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    return digits;
}

bool luhn(const std::wstring& digits) {
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        int d = digits[digits.size() - 1 - i] - L'0';
        if (i % 2 == 1) {
            d = d * 2 > 9 ? d * 2 - 9 : d * 2;
        }
        sum += d;
    }
    return sum % 10 == 0;
}

// ISO 13616: the country and check digits moved to the end, letters as 10-35, mod 97 is 1.
bool ibanChecks(const std::wstring& text) {
    std::wstring compact;
    for (const wchar_t c : text) {
        if (c != L' ') {
            compact.push_back(static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))));
        }
    }
    if (compact.size() < 15 || compact.size() > 34) {
        return false;
    }
    const std::wstring moved = compact.substr(4) + compact.substr(0, 4);
    int remainder = 0;
    for (const wchar_t c : moved) {
        if (c >= L'0' && c <= L'9') {
            remainder = (remainder * 10 + (c - L'0')) % 97;
        } else if (c >= L'A' && c <= L'Z') {
            remainder = (remainder * 100 + (c - L'A' + 10)) % 97;
        } else {
            return false;
        }
    }
    return remainder == 1;
}

} // namespace

// One pattern or preset: an expression, whether matches must stand as whole words, and a check
// that a candidate must pass (trying shorter and shorter candidates, as a greedy expression may
// take a following group of digits or letters along).
struct RedactionFinder::Matcher {
    std::string label;
    std::wregex expression;
    bool wholeWords = false;
    bool (*accepts)(const std::wstring&) = nullptr;
    // Text without any of these characters cannot match (empty: no such shortcut). Running an
    // expression over a page costs far more than looking for one character.
    std::wstring needs;

    // [start, end) pairs in `text`.
    std::vector<std::pair<std::size_t, std::size_t>> matches(const std::wstring& text) const {
        std::vector<std::pair<std::size_t, std::size_t>> found;
        if (!needs.empty() && text.find_first_of(needs) == std::wstring::npos) {
            return found;
        }
        // By hand rather than with an iterator: a greedy candidate cut back to pass its check
        // (a number run into the next word) resumes the search where it ended, and a candidate
        // refused resumes one character on, so the number after it is still found.
        const auto edge = [&](std::size_t at) { return at < text.size() && isWordCharacter(text[at]); };
        std::size_t from = 0;
        std::wsmatch match;
        while (from < text.size()) {
            const auto flags = from > 0 ? std::regex_constants::match_prev_avail
                                        : std::regex_constants::match_default;
            if (!std::regex_search(text.cbegin() + static_cast<std::ptrdiff_t>(from), text.cend(),
                                   match, expression, flags)) {
                break;
            }
            const std::size_t start = from + static_cast<std::size_t>(match.position(0));
            std::size_t end = start + static_cast<std::size_t>(match.length(0));
            from = start + 1;
            if (end == start || (wholeWords && start > 0 && isWordCharacter(text[start - 1]))) {
                continue;
            }
            if (accepts) {
                while (end > start && (!accepts(text.substr(start, end - start)) ||
                                       (wholeWords && edge(end)))) {
                    --end;
                }
                // A shorter candidate must still end on a digit or letter.
                if (end == start || !std::iswalnum(static_cast<wint_t>(text[end - 1]))) {
                    continue;
                }
            } else if (wholeWords && edge(end)) {
                continue;
            }
            found.emplace_back(start, end);
            from = end;
        }
        return found;
    }
};

namespace {

using Matcher = std::unique_ptr<RedactionFinder::Matcher>;

std::wstring escaped(const std::wstring& words) {
    static const std::wstring special = L"\\^$.|?*+()[]{}-/";
    std::wstring out;
    bool inSpace = false;
    for (const wchar_t c : words) {
        if (std::iswspace(static_cast<wint_t>(c))) {
            if (!inSpace && !out.empty()) {
                out += L"\\s+";
            }
            inSpace = true;
            continue;
        }
        inSpace = false;
        if (special.find(c) != std::wstring::npos) {
            out.push_back(L'\\');
        }
        out.push_back(c);
    }
    if (inSpace && out.size() >= 3) {
        out.resize(out.size() - 3);
    }
    return out;
}

Matcher preset(const std::string& name) {
    using std::regex_constants::ECMAScript;
    using std::regex_constants::icase;
    auto m = std::make_unique<RedactionFinder::Matcher>();
    m->label = name;
    m->wholeWords = true;
    m->needs = name == "email" ? L"@" : L"0123456789";
    if (name == "email") {
        m->expression = std::wregex(
            LR"([A-Za-z0-9._%+-]+@[A-Za-z0-9-]+(?:\.[A-Za-z0-9-]+)*\.[A-Za-z]{2,})", ECMAScript);
    } else if (name == "phone") {
        m->expression = std::wregex(LR"(\+?\(?\d[\d ().\-/]{5,}\d)", ECMAScript);
        m->accepts = [](const std::wstring& text) {
            const auto digits = digitsOf(text).size();
            return digits >= 7 && digits <= 15;
        };
    } else if (name == "iban") {
        m->expression = std::wregex(LR"([A-Z]{2}\d{2}(?: ?[A-Z0-9]){11,32})", ECMAScript | icase);
        m->accepts = ibanChecks;
    } else if (name == "card") {
        m->expression = std::wregex(LR"(\d(?:[ -]?\d){12,18})", ECMAScript);
        m->accepts = [](const std::wstring& text) {
            const auto digits = digitsOf(text);
            return digits.size() >= 13 && digits.size() <= 19 && luhn(digits);
        };
    } else if (name == "date") {
        const std::wstring month =
            LR"((?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)[a-z]*\.?)";
        m->expression = std::wregex(
            LR"(\d{4}-\d{1,2}-\d{1,2}|\d{1,2}[./-]\d{1,2}[./-](?:\d{4}|\d{2}))"
            LR"(|\d{1,2}\.? )" + month + LR"( \d{4}|)" + month + LR"( \d{1,2},? \d{4})",
            ECMAScript | icase);
    } else {
        throw PDFCoreError::invalidInput("Unknown redaction preset \"" + name +
                                             "\" (email, phone, iban, card or date).");
    }
    return m;
}

Matcher pattern(const RedactionPattern& given) {
    if (given.text.empty()) {
        throw PDFCoreError::invalidInput("A redaction pattern is empty.");
    }
    auto m = std::make_unique<RedactionFinder::Matcher>();
    m->label = given.text;
    auto flags = std::regex_constants::ECMAScript;
    if (!given.matchCase) {
        flags |= std::regex_constants::icase;
    }
    try {
        m->expression = std::wregex(given.regex ? decodeUTF8(given.text) : escaped(decodeUTF8(given.text)),
                                    flags);
    } catch (const std::regex_error& error) {
        throw PDFCoreError::invalidInput("Invalid regular expression \"" + given.text +
                                             "\": " + error.what());
    }
    m->wholeWords = !given.regex;
    if (!given.regex) {
        // Words need their first letter, in either case.
        const std::wstring words = decodeUTF8(given.text);
        const auto first = words.find_first_not_of(L" \t\r\n");
        if (first != std::wstring::npos) {
            const auto c = static_cast<wint_t>(words[first]);
            m->needs = {static_cast<wchar_t>(std::towlower(c)), static_cast<wchar_t>(std::towupper(c))};
        }
    }
    return m;
}

} // namespace

const std::vector<std::string>& RedactionFinder::presetNames() {
    static const std::vector<std::string> names{"email", "phone", "iban", "card", "date"};
    return names;
}

RedactionFinder::RedactionFinder(const std::vector<RedactionPattern>& patterns,
                                 const std::vector<std::string>& presets) {
    for (const auto& given : patterns) {
        matchers_.push_back(pattern(given));
    }
    for (const auto& name : presets) {
        matchers_.push_back(preset(name));
    }
}

RedactionFinder::RedactionFinder(RedactionFinder&&) noexcept = default;
RedactionFinder::~RedactionFinder() = default;

bool RedactionFinder::empty() const noexcept {
    return matchers_.empty();
}

std::vector<RedactionMatch> RedactionFinder::find(const std::vector<MuPDFEditor::Line>& lines) const {
    // The page as one text; `where` names the glyph of each character (line, index), or -1 for
    // the space that joins two lines. A hyphen dropped at a join is kept in `hyphens`, by the
    // position of the first character after it.
    std::wstring text;
    std::vector<std::pair<int, int>> where;
    std::map<std::size_t, std::pair<int, int>> hyphens;
    for (std::size_t l = 0; l < lines.size(); ++l) {
        const auto& line = lines[l];
        int count = static_cast<int>(line.size());
        if (l > 0) {
            const wchar_t last = text.empty() ? L' ' : text.back();
            const wchar_t next = line.empty() ? L' ' : static_cast<wchar_t>(line.front().c);
            if ((last == L'-' || last == 0xAD) && std::iswlower(static_cast<wint_t>(next))) {
                const auto hyphen = where.back();
                text.pop_back();
                where.pop_back();
                hyphens[text.size()] = hyphen;
            } else {
                text.push_back(L' ');
                where.emplace_back(-1, -1);
            }
        }
        for (int i = 0; i < count; ++i) {
            text.push_back(static_cast<wchar_t>(line[static_cast<std::size_t>(i)].c));
            where.emplace_back(static_cast<int>(l), i);
        }
    }

    std::vector<RedactionMatch> found;
    for (const auto& matcher : matchers_) {
        for (const auto& [start, end] : matcher->matches(text)) {
            RedactionMatch match{matcher->label, encodeUTF8(text.substr(start, end - start)), {}};
            std::map<int, MuPDFEditor::Box> byLine;
            const auto cover = [&](std::pair<int, int> at) {
                if (at.first < 0) {
                    return;
                }
                const auto& box = lines[static_cast<std::size_t>(at.first)]
                                       [static_cast<std::size_t>(at.second)].box;
                auto [it, fresh] = byLine.emplace(at.first, box);
                if (!fresh) {
                    it->second = {std::min(it->second.x0, box.x0), std::min(it->second.y0, box.y0),
                                  std::max(it->second.x1, box.x1), std::max(it->second.y1, box.y1)};
                }
            };
            for (std::size_t i = start; i < end; ++i) {
                cover(where[i]);
                // A match across a hyphenated join takes the hyphen along.
                if (auto hyphen = hyphens.find(i); i > start && hyphen != hyphens.end()) {
                    cover(hyphen->second);
                }
            }
            for (const auto& [line, box] : byLine) {
                match.boxes.push_back(box);
            }
            if (!match.boxes.empty()) { // an expression may match only the space between lines
                found.push_back(std::move(match));
            }
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return std::make_pair(a.boxes.front().y0, a.boxes.front().x0) <
               std::make_pair(b.boxes.front().y0, b.boxes.front().x0);
    });
    return found;
}

std::string RedactionFinder::erased(const std::string& utf8, int& found) const {
    std::wstring text = decodeUTF8(utf8);
    for (const auto& matcher : matchers_) {
        auto matches = matcher->matches(text);
        found += static_cast<int>(matches.size());
        for (auto it = matches.rbegin(); it != matches.rend(); ++it) {
            text.erase(it->first, it->second - it->first);
        }
    }
    return encodeUTF8(text);
}

} // namespace quillet
