#include "cli/Usage.hpp"

namespace quillet {

const std::string& usageText() {
    static const std::string text = "quillet " + std::string(quilletVersion) + R"( — the fast, private PDF toolkit for your desktop

USAGE:
    quillet <command> [options]

COMMANDS:
    compress <file...>   Compress PDFs (-t high|balanced|smallest|lossless, --under 10MB)
    merge <file...>      Merge PDFs and images (-o out.pdf)
    split <file>         Split (--every N | --ranges "1-5,6-10" | --extract "1,3" | --by-size 25MB)
    convert <file...>    PDF → images (--format png|jpeg|tiff|heic, --dpi 150, --pages 1-5)
    images <file...>     Images → PDF (--page-size original|a4|letter|legal, --fit fit|fill, --margin 24)
    clean <file...>      Remove metadata (--preset safe|privacy|flatten)
    protect <file...>    Encrypt (--password secret)
    unprotect <file...>  Remove password (--password secret)
    info <file...>       Analyze a PDF (pages, images, DPI, fonts, metadata)

GLOBAL OPTIONS:
    -o <path>            Output file (or folder, for split/convert)
    --replace            Overwrite the input file (off by default, PRD §57)
)";
    return text;
}

} // namespace quillet
