#include "engines/PDFMetadataInfo.hpp"

#include "model/JSONDecodingError.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace std::chrono;
using json = nlohmann::ordered_json;

TEST(PDFMetadataInfoTest, JSONUsesTheFieldNamesAndReferenceDateSeconds) {
    PDFMetadataInfo info;
    info.title = "Quarterly";
    info.keywords = "";
    info.creationDate = sys_days(2001y / January / 2) + 30min;
    info.modificationDate = sys_days(2000y / December / 31);
    const auto encoded = toJSON(info);
    EXPECT_EQ(encoded.dump(), R"({"title":"Quarterly","keywords":"","creationDate":88200.0,)"
                              R"("modificationDate":-86400.0})");
    EXPECT_EQ(PDFMetadataInfo::fromJSON(encoded), info);
}

TEST(PDFMetadataInfoTest, DecodingTreatsNullAsAbsentAndRejectsWrongTypes) {
    EXPECT_EQ(PDFMetadataInfo::fromJSON(json::parse(R"({"title":null,"other":1})")),
              PDFMetadataInfo{});
    const std::vector<std::pair<const char*, const char*>> wrong = {
        {R"({"author":3})", "author"},
        {R"({"creationDate":"2024-01-31"})", "creationDate"},
        // Out of range for a time point: refused instead of overflowing.
        {R"({"modificationDate":1e300})", "modificationDate"},
        {R"({"creationDate":-9.3e9})", "creationDate"},
        {R"([])", ""},
    };
    for (const auto& [text, key] : wrong) {
        try {
            PDFMetadataInfo::fromJSON(json::parse(text));
            ADD_FAILURE() << text << " decoded";
        } catch (const JSONDecodingError& error) {
            EXPECT_EQ(error.kind(), JSONDecodingError::Kind::typeMismatch) << text;
            EXPECT_EQ(error.key(), key) << text;
        }
    }
}

} // namespace
} // namespace quillet
