#include "platform/StreamData.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

// The quick scan that decides whether opening a document pays for the full bomb check: it must
// never miss a stream that could stack expanding filters, and should pass ordinary files.
TEST(StreamData, QuickScanFlagsOnlyPossibleStackedFilters) {
    const struct {
        const char* bytes;
        bool suspect;
    } cases[] = {
        {"<< /Length 10 /Filter /FlateDecode >>", false},
        {"<< /Filter [/FlateDecode] >>", false},
        {"<< /Filter [ /ASCII85Decode /FlateDecode ] >>", false},
        {"<< /Filter [/FlateDecode /FlateDecode] >>", true},
        {"<< /Filter[/Fl/LZW] >>", true},
        {"<< /Filter\n[ /RunLengthDecode\n/FlateDecode ] >>", true},
        {"<< /Filter 12 0 R >>", true},
        {"<< /Fil#74er [/FlateDecode /FlateDecode] >>", true},
        {"(http://example.org/a#b) /URI", false},
        {"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(mayStackFilters(std::string_view(c.bytes)), c.suspect) << c.bytes;
    }
    EXPECT_TRUE(mayStackFilters(std::filesystem::path("/nonexistent/x.pdf")));
}

} // namespace
} // namespace quillet
