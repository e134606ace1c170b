#include "engines/Formatters.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace quillet {
namespace {

struct BytesCase {
    std::int64_t bytes;
    int decimals;
    const char* text;
};

class FormattedBytes : public testing::TestWithParam<BytesCase> {};

TEST_P(FormattedBytes, PicksTheUnitByMagnitude) {
    EXPECT_EQ(formattedBytes(GetParam().bytes, GetParam().decimals), GetParam().text);
}

constexpr std::int64_t KB = 1024;
constexpr std::int64_t MB = 1024 * KB;
constexpr std::int64_t GB = 1024 * MB;

INSTANTIATE_TEST_SUITE_P(
    FormattersTest, FormattedBytes,
    testing::Values(BytesCase{0, 2, "0 B"}, BytesCase{1, 2, "1 B"}, BytesCase{1023, 2, "1023 B"},
                    BytesCase{1023, 0, "1023 B"}, BytesCase{KB, 2, "1.00 KB"},
                    BytesCase{1536, 1, "1.5 KB"}, BytesCase{MB - 1, 2, "1024.00 KB"},
                    BytesCase{MB, 2, "1.00 MB"}, BytesCase{5 * MB, 2, "5.00 MB"},
                    BytesCase{1363149, 1, "1.3 MB"}, BytesCase{GB - 1, 2, "1024.00 MB"},
                    BytesCase{GB, 2, "1.00 GB"}, BytesCase{3 * GB + GB / 4, 2, "3.25 GB"},
                    BytesCase{2048 * GB, 0, "2048 GB"}, BytesCase{-1, 2, "-1 B"},
                    BytesCase{-1023, 2, "-1023 B"}, BytesCase{-KB, 2, "-1.00 KB"},
                    BytesCase{-5 * MB, 2, "-5.00 MB"}, BytesCase{-2 * GB, 1, "-2.0 GB"},
                    BytesCase{std::numeric_limits<std::int64_t>::min(), 2, "-8589934592.00 GB"}));

struct PercentCase {
    double fraction;
    int decimals;
    const char* text;
};

class PercentFormatting : public testing::TestWithParam<PercentCase> {};

TEST_P(PercentFormatting, ScalesByAHundred) {
    EXPECT_EQ(PercentFormat::string(GetParam().fraction, GetParam().decimals), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(FormattersTest, PercentFormatting,
                         testing::Values(PercentCase{0.4567, 1, "45.7%"}, PercentCase{0, 0, "0%"},
                                         PercentCase{1, 2, "100.00%"}, PercentCase{0.123, 0, "12%"},
                                         PercentCase{-0.25, 1, "-25.0%"},
                                         PercentCase{1.5, 0, "150%"}));

} // namespace
} // namespace quillet
