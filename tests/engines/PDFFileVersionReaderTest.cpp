#include "engines/PDFFileVersionReader.hpp"

#include "support/TempDir.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

struct HeaderCase {
    const char* name;
    std::string bytes;
    std::optional<std::string> version;
};

class HeaderVersion : public testing::TestWithParam<HeaderCase> {};

TEST_P(HeaderVersion, IsFoundOnlyInTheFirstKilobyte) {
    test::TempDir dir;
    const auto path = dir.write("file.pdf", GetParam().bytes);
    EXPECT_EQ(PDFFileVersionReader::version(path), GetParam().version);
}

std::string padding(std::size_t size) {
    return std::string(size, ' ');
}

INSTANTIATE_TEST_SUITE_P(
    PDFFileVersionReaderTest, HeaderVersion,
    testing::Values(HeaderCase{"plain", "%PDF-1.7\n%\xe2\xe3\xcf\xd3\n1 0 obj", "1.7"},
                    HeaderCase{"thirdLine", "\n\n%PDF-2.0\nrest", "2.0"},
                    HeaderCase{"afterText", "junk %PDF-1.4 more", "1.4"},
                    HeaderCase{"emptyThenNext", "%PDF-\n%PDF-1.5\n", "1.5"},
                    HeaderCase{"latin1", "%PDF-\xe9\xe9\n", "\xc3\xa9\xc3\xa9"},
                    HeaderCase{"lastFullVersion", padding(1016) + "%PDF-1.4", "1.4"},
                    HeaderCase{"cutVersion", padding(1017) + "%PDF-1.4", "1."},
                    HeaderCase{"markerWithoutVersion", padding(1019) + "%PDF-1.4", std::nullopt},
                    HeaderCase{"beyondTheKilobyte", padding(1100) + "%PDF-1.4", std::nullopt},
                    HeaderCase{"noHeader", "just text\n", std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PDFFileVersionReaderTest, UnreadableFilesAnswerAbsent) {
    test::TempDir dir;
    EXPECT_EQ(PDFFileVersionReader::version(dir / "missing.pdf"), std::nullopt);
    EXPECT_EQ(PDFFileVersionReader::version(dir.path()), std::nullopt);
}

} // namespace
} // namespace quillet
