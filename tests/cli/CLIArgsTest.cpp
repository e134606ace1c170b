#include "cli/CLIArgs.hpp"
#include "cli/CLIError.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace quillet {
namespace {

struct ParseCase {
    const char* name;
    std::vector<std::string> arguments;
    std::vector<std::string> positional;
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
};

class CLIArgsParse : public testing::TestWithParam<ParseCase> {};

TEST_P(CLIArgsParse, SplitsPositionalFlagsAndValues) {
    const auto& c = GetParam();
    const CLIArgs args = CLIArgs::parse(c.arguments);
    EXPECT_EQ(args.positional, c.positional);
    EXPECT_EQ(args.flags, c.flags);
    EXPECT_EQ(args.values, c.values);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CLIArgsParse,
    testing::Values(
        ParseCase{"TierAndReplace", {"a.pdf", "-t", "smallest", "--replace"}, {"a.pdf"}, {"replace"},
                  {{"t", "smallest"}}},
        ParseCase{"FlagWhileValuePending", {"-o", "--replace", "out.pdf", "a.pdf"}, {"a.pdf"},
                  {"replace"}, {{"o", "out.pdf"}}},
        ParseCase{"LastValueWins", {"--dpi", "72", "--dpi", "300"}, {}, {}, {{"dpi", "300"}}},
        ParseCase{"NoEndOfOptionsMarker", {"--", "-x.pdf"}, {"-x.pdf"}, {""}, {}},
        ParseCase{"NoNameEqualsValueForm", {"--dpi=300", "a.pdf"}, {"a.pdf"}, {"dpi=300"}, {}},
        ParseCase{"LongSingleDashWordIsPlain", {"-abc", "--pages", "1-5"}, {"-abc"}, {},
                  {{"pages", "1-5"}}},
        ParseCase{"NegativeNumberReadAsOption", {"--margin", "-5", "a.pdf"}, {}, {"5"},
                  {{"margin", "a.pdf"}}},
        ParseCase{"PendingOptionReplacedByNext", {"--dpi", "--format", "jpeg"}, {}, {},
                  {{"format", "jpeg"}}}),
    [](const auto& info) { return std::string(info.param.name); });

struct SizeCase {
    const char* text;
    std::int64_t bytes;
};

class ParseSizeValid : public testing::TestWithParam<SizeCase> {};

TEST_P(ParseSizeValid, ConvertsToBinaryMultiples) {
    EXPECT_EQ(parseSize(GetParam().text), GetParam().bytes) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Cases, ParseSizeValid,
                         testing::Values(SizeCase{"10MB", 10485760}, SizeCase{"1.5k", 1536},
                                         SizeCase{"  2 gb  ", 2147483648LL}, SizeCase{"1.3KB", 1331},
                                         SizeCase{"500b", 500}, SizeCase{".5m", 524288}));

TEST(ParseSize, RejectsTextWithoutNumberOrKnownUnit) {
    for (const char* text : {"abc", "10XB", "", "   ", "MB", "1.2.3MB", "10 MB extra", "-5MB",
                             "1e3MB", "10TB", "99999999999999GB"}) {
        try {
            parseSize(text);
            ADD_FAILURE() << "accepted " << text;
        } catch (const CLIError& error) {
            EXPECT_NE(error.message.find(std::string("\"") + text + "\""), std::string::npos)
                << error.message;
        }
    }
}

} // namespace
} // namespace quillet
