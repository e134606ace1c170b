#include "model/JSONDecodingError.hpp"
#include "output/OutputRule.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using Json = nlohmann::ordered_json;

TEST(OutputRule, DefaultRuleEncodesEveryKeyInOrder) {
    EXPECT_EQ(toJSON(OutputRule{}).dump(),
              R"({"location":"sameFolder","subfolderName":"Processed","customFolder":"",)"
              R"("nameTemplate":"{name}-{action}","replaceOriginal":false})");
}

TEST(OutputRule, RoundTrips) {
    OutputRule rule{OutputRule::Location::custom, "Out", "/srv/pdf", "{date}_{name}", true};
    Json json = rule;
    EXPECT_EQ(json.get<OutputRule>(), rule);
}

TEST(OutputRule, EveryKeyIsRequired) {
    for (const char* key :
         {"location", "subfolderName", "customFolder", "nameTemplate", "replaceOriginal"}) {
        auto json = toJSON(OutputRule{});
        json.erase(key);
        try {
            OutputRule::fromJSON(json);
            ADD_FAILURE() << "decoded without " << key;
        } catch (const JSONDecodingError& error) {
            EXPECT_EQ(error.kind(), JSONDecodingError::Kind::keyNotFound);
            EXPECT_EQ(error.key(), key);
        }
    }
}

TEST(OutputRule, RejectsUnknownLocationAndWrongTypes) {
    const std::pair<const char*, JSONDecodingError::Kind> table[] = {
        {"location", JSONDecodingError::Kind::dataCorrupted},
        {"replaceOriginal", JSONDecodingError::Kind::typeMismatch}};
    for (auto [key, kind] : table) {
        auto json = toJSON(OutputRule{});
        json[key] = "desktop";
        try {
            OutputRule::fromJSON(json);
            ADD_FAILURE() << "decoded " << json.dump();
        } catch (const JSONDecodingError& error) {
            EXPECT_EQ(error.kind(), kind) << error.what();
            EXPECT_EQ(error.key(), key);
        }
    }
}

} // namespace
} // namespace quillet
