// Finds what a redaction removes in a page's text: words and regular expressions the user gives,
// and the presets (e-mail addresses, phone numbers, IBANs, payment card numbers, dates).
//
// A page's lines are read as one text: lines join with a space, so a name broken over two lines
// is found, and a word hyphenated at a line's end joins without its hyphen (the hyphen goes with
// the match). Words match only as whole words (never inside a longer one), a space in them matching
// any run of white space; without `matchCase` both they and expressions ignore case. Expressions are
// ECMAScript's. IBANs must pass their mod-97 check and card numbers Luhn's, so a long number that
// is neither is left alone; phone numbers have 7 to 15 digits.
#pragma once

#include "platform/MuPDFEditor.hpp"

#include <memory>
#include <string>
#include <vector>

namespace quillet {

struct RedactionPattern {
    std::string text;
    bool regex = false;
    bool matchCase = false;
};

struct RedactionMatch {
    /// The pattern's text, or the preset's name ("email", "phone", "iban", "card", "date").
    std::string label;
    /// What matched, UTF-8, white space as it reads.
    std::string text;
    /// One box per line the match covers, in the page as seen.
    std::vector<MuPDFEditor::Box> boxes;
};

class RedactionFinder {
  public:
    /// The preset names, in the order above.
    static const std::vector<std::string>& presetNames();

    /// Throws PDFCoreError (invalidInput) naming the pattern or preset when a pattern is
    /// empty, an expression does not compile or a preset is unknown.
    RedactionFinder(const std::vector<RedactionPattern>& patterns,
                    const std::vector<std::string>& presets);
    RedactionFinder(RedactionFinder&&) noexcept;
    ~RedactionFinder();

    bool empty() const noexcept;

    /// Every match on a page, in reading order; overlapping matches are all kept.
    std::vector<RedactionMatch> find(const std::vector<MuPDFEditor::Line>& lines) const;

    /// `text` (UTF-8: a title, a bookmark, a field's value) with every match taken out; `found`
    /// counts the matches.
    std::string erased(const std::string& text, int& found) const;

    struct Matcher; // one pattern or preset; defined where it is used

  private:
    std::vector<std::unique_ptr<Matcher>> matchers_;
};

} // namespace quillet
