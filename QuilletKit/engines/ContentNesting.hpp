// How a page's content leaves the graphics state stack: how many `Q` it has with no `q` before
// them, and how many `q` it leaves open. Content that appends drawing to a page wraps the page
// in that many more `q` and closes what it left open, so its own state is the page's first one.
//
// A byte scan, not a full parse: strings (literal, with nesting and escapes, and hexadecimal),
// comments and inline image data are stepped over, and `q` and `Q` count only as whole words.
// Pure function of the bytes; never throws.
#pragma once

#include <string_view>

namespace quillet {

struct ContentNesting {
    int unmatchedRestores = 0; // `Q` with nothing saved
    int openSaves = 0;         // `q` never restored

    static ContentNesting of(std::string_view content);
};

} // namespace quillet
