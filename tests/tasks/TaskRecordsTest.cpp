#include "tasks/TaskRecords.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using Json = nlohmann::ordered_json;

const std::string lowerID = "e621e1f8-c36c-495a-93fc-0c247a3e6e5f";
const std::string upperID = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";

Json specJSON() {
    return Json::parse(R"({"id":")" + lowerID + R"(","operation":"compress",
        "inputs":["/tmp/a.pdf","/tmp/b c.pdf"],
        "outputRule":{"location":"sameFolder","subfolderName":"Processed","customFolder":"",
                      "nameTemplate":"{name}-{action}","replaceOriginal":false},
        "parameters":{"type":"compress","tier":"smallest"},"unknown":1})");
}

TaskRecord sampleRecord() {
    auto spec = TaskSpec::fromJSON(specJSON());
    auto record = TaskRecord::fromSpec(spec, TaskTime{} + std::chrono::seconds(1'000'000'000));
    return record;
}

TEST(TaskSpecJSON, LowerCaseIdentityIsReadAndWrittenBackUpperCase) {
    const auto spec = TaskSpec::fromJSON(specJSON());
    EXPECT_EQ(spec.id, upperID);
    EXPECT_EQ(spec.inputs, (std::vector<std::string>{"/tmp/a.pdf", "/tmp/b c.pdf"}));
    EXPECT_EQ(toJSON(spec)["id"], upperID);
    EXPECT_EQ(TaskSpec::fromJSON(toJSON(spec)), spec);
}

TEST(TaskSpecJSON, EveryKeyIsRequiredAndOneBadSpecSpoilsAList) {
    for (const char* key : {"id", "operation", "inputs", "outputRule", "parameters"}) {
        auto json = specJSON();
        json.erase(key);
        EXPECT_THROW(TaskSpec::fromJSON(json), JSONDecodingError) << key;
        EXPECT_THROW(TaskSpec::listFromJSON(Json::array({specJSON(), json})), JSONDecodingError)
            << key;
    }
    EXPECT_EQ(TaskSpec::listFromJSON(Json::array({specJSON(), specJSON()})).size(), 2u);
    EXPECT_THROW(TaskSpec::listFromJSON(specJSON()), JSONDecodingError);
}

struct BadValue {
    const char* key;
    Json value;
};

class TaskSpecBadValue : public ::testing::TestWithParam<BadValue> {};

TEST_P(TaskSpecBadValue, FailsToDecode) {
    auto json = specJSON();
    json[GetParam().key] = GetParam().value;
    EXPECT_THROW(TaskSpec::fromJSON(json), JSONDecodingError);
}

INSTANTIATE_TEST_SUITE_P(
    Values, TaskSpecBadValue,
    ::testing::Values(BadValue{"id", "E621E1F8C36C495A93FC0C247A3E6E5F"}, BadValue{"id", 7},
                      BadValue{"operation", "shrink"}, BadValue{"inputs", Json::array({1})},
                      BadValue{"parameters", Json::object()}, BadValue{"outputRule", nullptr}));

TEST(TaskRecordJSON, AbsentOptionalFieldsLeaveElevenKeysAndReadBackAbsent) {
    auto record = sampleRecord();
    record.parametersData.reset();
    const auto json = toJSON(record);
    EXPECT_EQ(json.size(), 10u);
    record.parametersData = "{}";
    EXPECT_EQ(toJSON(record).size(), 11u);
    const auto decoded = TaskRecord::fromJSON(toJSON(record));
    EXPECT_FALSE(decoded.message);
    EXPECT_FALSE(decoded.error);
    EXPECT_EQ(decoded, record);
}

TEST(TaskRecordJSON, NullOptionalsReadAsAbsentAndBadStateFails) {
    auto json = toJSON(sampleRecord());
    json["message"] = nullptr;
    json["error"] = nullptr;
    json["parametersData"] = nullptr;
    const auto decoded = TaskRecord::fromJSON(json);
    EXPECT_FALSE(decoded.message || decoded.error || decoded.parametersData);
    json["state"] = "paused";
    EXPECT_THROW(TaskRecord::fromJSON(json), JSONDecodingError);
    json["state"] = "cancelled";
    EXPECT_EQ(TaskRecord::fromJSON(json).state, TaskState::cancelled);
}

TEST(TaskRecordJSON, FromSpecCopiesNamesAndEncodesTheParameters) {
    const auto record = sampleRecord();
    EXPECT_EQ(record.id, upperID);
    EXPECT_EQ(record.state, TaskState::queued);
    EXPECT_EQ(record.inputNames, (std::vector<std::string>{"a.pdf", "b c.pdf"}));
    ASSERT_TRUE(record.parametersData);
    EXPECT_EQ(*record.parametersData, R"({"type":"compress","tier":"smallest"})");
    // Base64 in the file, the plain JSON text in memory.
    EXPECT_EQ(toJSON(record)["parametersData"], "eyJ0eXBlIjoiY29tcHJlc3MiLCJ0aWVyIjoic21hbGxlc3QifQ==");
}

TEST(HistoryEntryJSON, DatesCountFrom2001AndParametersAreOptional) {
    auto json = Json::parse(R"({"id":")" + upperID + R"(","date":0,"operation":"merge",
        "inputNames":[],"inputURLs":[],"outputURLs":["/o.pdf"],"originalBytes":5,
        "resultBytes":4,"succeeded":true})");
    const auto entry = HistoryEntry::fromJSON(json);
    EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(entry.date.time_since_epoch()).count(),
              978307200);
    EXPECT_FALSE(entry.parametersData);
    EXPECT_FALSE(toJSON(entry).contains("parametersData"));
    EXPECT_EQ(HistoryEntry::fromJSON(toJSON(entry)), entry);

    json["date"] = 1e300;
    EXPECT_THROW(HistoryEntry::fromJSON(json), JSONDecodingError);
    json["date"] = -0.5;
    EXPECT_NO_THROW(HistoryEntry::fromJSON(json));
    json["parametersData"] = "not base64!";
    EXPECT_THROW(HistoryEntry::fromJSON(json), JSONDecodingError);
    json.erase("succeeded");
    EXPECT_THROW(HistoryEntry::fromJSON(json), JSONDecodingError);
}

TEST(Base64, RoundTripsEveryPaddingLengthAndRejectsMalformedText) {
    for (const std::string& bytes :
         std::vector<std::string>{"", "f", "fo", "foo", "foob", std::string("\0\xff\x10", 3)}) {
        EXPECT_EQ(persisted::base64Decoded(persisted::base64Encoded(bytes)), bytes);
    }
    EXPECT_EQ(persisted::base64Encoded("fo"), "Zm8=");
    for (const char* bad : {"Zm8", "Z=m8", "Zm=8", "====", "Zm8=Zm8=", "Zm\n8"}) {
        EXPECT_FALSE(persisted::base64Decoded(bad)) << bad;
    }
}

TEST(ParametersData, PasswordsAreEmptiedAndUndecodableTextIsDropped) {
    const auto protect = parametersDataWithoutPasswords(
        encodedParameters(OperationParameters::Protect{"secret", "0wner"}));
    ASSERT_TRUE(protect);
    EXPECT_EQ(protect->find("secret"), std::string::npos);
    EXPECT_EQ(protect->find("0wner"), std::string::npos);
    const auto unprotect =
        parametersDataWithoutPasswords(encodedParameters(OperationParameters::Unprotect{"pw"}));
    EXPECT_EQ(*unprotect, R"({"type":"unprotect","password":""})");
    // What a user wants gone is not kept either: the words go, areas and presets stay.
    OperationParameters::Redact redact;
    redact.areas = {{2, {72, 90, 200, 14}}};
    redact.patterns = {{"Jane Roe", false, true}};
    redact.presets = {"iban"};
    redact.password = "pw";
    const auto kept = parametersDataWithoutPasswords(encodedParameters(redact));
    ASSERT_TRUE(kept);
    EXPECT_EQ(*kept, R"({"type":"redact","areas":[{"page":2,"rect":[72.0,90.0,200.0,14.0]}],)"
                     R"("patterns":[{"text":"","regex":false,"matchCase":true}],)"
                     R"("presets":["iban"],"fill":"black","password":""})");
    EXPECT_FALSE(parametersDataWithoutPasswords("{\"password\":\"x\"}"));
}

} // namespace
} // namespace quillet
