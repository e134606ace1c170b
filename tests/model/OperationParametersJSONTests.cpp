#include "model/JSONDecodingError.hpp"
#include "model/OperationParameters.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using Json = nlohmann::ordered_json;
using P = OperationParameters;

struct EncodingRow {
    P parameters;
    const char* json;
};

class ParametersEncoding : public ::testing::TestWithParam<EncodingRow> {};

TEST_P(ParametersEncoding, WritesTypeFirstThenTheCaseFieldsInOrder) {
    EXPECT_EQ(toJSON(GetParam().parameters).dump(), GetParam().json);
}

TEST_P(ParametersEncoding, ReadsBackEqual) {
    auto decoded = P::fromJSON(Json::parse(GetParam().json));
    EXPECT_EQ(decoded, GetParam().parameters);
    EXPECT_EQ(decoded.kind(), GetParam().parameters.kind());
}

INSTANTIATE_TEST_SUITE_P(
    EveryCase, ParametersEncoding,
    ::testing::Values(
        EncodingRow{P::Compress{CompressionQualityTier::smallest},
                    R"({"type":"compress","tier":"smallest"})"},
        EncodingRow{P::TargetSize{5'000'000'000}, R"({"type":"targetSize","bytes":5000000000})"},
        EncodingRow{P::Merge{true}, R"({"type":"merge","insertBlank":true})"},
        EncodingRow{P::Split{SplitMode::byFileSize, "1-5,6-10", 3, 1024},
                    R"({"type":"split","mode":"byFileSize","ranges":"1-5,6-10","everyN":3,)"
                    R"("maxBytes":1024})"},
        EncodingRow{P::Organize{{1, 3}, {90, -90}, {2}, std::vector<std::int64_t>{3, 1}},
                    R"({"type":"organize","rotatePages":[1,3],"rotations":[90,-90],)"
                    R"("deletePages":[2],"newOrder":[3,1]})"},
        EncodingRow{P::Organize{{}, {}, {}, std::nullopt},
                    R"({"type":"organize","rotatePages":[],"rotations":[],"deletePages":[],)"
                    R"("newOrder":null})"},
        // An empty order is a value of its own, distinct from "keep the order".
        EncodingRow{P::Organize{{}, {}, {}, std::vector<std::int64_t>{}},
                    R"({"type":"organize","rotatePages":[],"rotations":[],"deletePages":[],)"
                    R"("newOrder":[]})"},
        EncodingRow{P::PDFToImages{"heic", 300, "2-4", 0.5},
                    R"({"type":"pdfToImages","format":"heic","dpi":300,"pages":"2-4",)"
                    R"("jpegQuality":0.5,"renderTimeout":30})"},
        EncodingRow{P::ImagesToPDF{"a4", "fill", 18.5},
                    R"({"type":"imagesToPDF","pageSize":"a4","fit":"fill","marginPT":18.5})"},
        EncodingRow{P::Clean{CleanPreset::flattenAndClean},
                    R"({"type":"clean","preset":"flattenAndClean"})"},
        EncodingRow{P::Protect{"u", "o"},
                    R"({"type":"protect","userPassword":"u","ownerPassword":"o"})"},
        EncodingRow{P::Unprotect{"secret"}, R"({"type":"unprotect","password":"secret"})"}));

struct DefaultsRow {
    const char* json;
    P expected;
};

class ParametersDefaults : public ::testing::TestWithParam<DefaultsRow> {};

TEST_P(ParametersDefaults, FillsMissingOptionalKeys) {
    EXPECT_EQ(P::fromJSON(Json::parse(GetParam().json)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    OptionalKeys, ParametersDefaults,
    ::testing::Values(
        DefaultsRow{R"({"type":"pdfToImages"})", P::PDFToImages{"png", 150, "", 0.85}},
        DefaultsRow{R"({"type":"imagesToPDF"})", P::ImagesToPDF{"auto", "fit", 0}},
        DefaultsRow{R"({"type":"split","mode":"everyNPages"})",
                    P::Split{SplitMode::everyNPages, "", 1, 0}},
        DefaultsRow{R"({"type":"merge"})", P::Merge{false}},
        DefaultsRow{R"({"type":"organize"})", P::Organize{{}, {}, {}, std::nullopt}},
        DefaultsRow{R"({"type":"unprotect"})", P::Unprotect{""}},
        DefaultsRow{R"({"type":"protect","userPassword":"u"})", P::Protect{"u", ""}},
        // Null stands for absent in optional keys.
        DefaultsRow{R"({"type":"pdfToImages","dpi":null,"format":"jpeg"})",
                    P::PDFToImages{"jpeg", 150, "", 0.85}},
        // Keys of other cases are ignored; an integral float is an integer.
        DefaultsRow{R"({"type":"targetSize","bytes":2.0,"tier":"nonsense","dpi":"x"})",
                    P::TargetSize{2}},
        DefaultsRow{R"({"type":"imagesToPDF","marginPT":12})", P::ImagesToPDF{"auto", "fit", 12}},
        DefaultsRow{R"({"type":"stamp","marks":[{"kind":"text","text":"DRAFT","opacity":0.3}]})",
                    P::Stamp{{[] {
                        P::StampMark mark;
                        mark.kind = "text";
                        mark.text = "DRAFT";
                        mark.opacity = 0.3;
                        return mark;
                    }()}}}));

struct FailureRow {
    const char* json;
    JSONDecodingError::Kind kind;
    const char* key;
};

class ParametersFailures : public ::testing::TestWithParam<FailureRow> {};

TEST_P(ParametersFailures, FailNamingTheKey) {
    try {
        P::fromJSON(Json::parse(GetParam().json));
        FAIL() << "decoded " << GetParam().json;
    } catch (const JSONDecodingError& error) {
        EXPECT_EQ(error.kind(), GetParam().kind) << error.what();
        EXPECT_EQ(error.key(), GetParam().key);
        if (*GetParam().key != '\0') {
            EXPECT_NE(std::string(error.what()).find(GetParam().key), std::string::npos)
                << error.what();
        }
    }
}

using K = JSONDecodingError::Kind;
INSTANTIATE_TEST_SUITE_P(
    BadInput, ParametersFailures,
    ::testing::Values(
        FailureRow{R"({"type":"protect","ownerPassword":"o"})", K::keyNotFound, "userPassword"},
        FailureRow{R"({"tier":"balanced"})", K::keyNotFound, "type"},
        FailureRow{R"({"type":"compress"})", K::keyNotFound, "tier"},
        FailureRow{R"({"type":"clean","preset":null})", K::valueNotFound, "preset"},
        FailureRow{R"({"type":"compress","tier":"huge"})", K::dataCorrupted, "tier"},
        FailureRow{R"({"type":"targetSize","bytes":"12"})", K::typeMismatch, "bytes"},
        FailureRow{R"({"type":"pdfToImages","dpi":1.5})", K::typeMismatch, "dpi"},
        FailureRow{R"({"type":"merge","insertBlank":1})", K::typeMismatch, "insertBlank"},
        FailureRow{R"({"type":"organize","rotatePages":[1,"2"]})", K::typeMismatch, "rotatePages"},
        FailureRow{R"({"type":"organize","newOrder":[1,null]})", K::typeMismatch, "newOrder"},
        FailureRow{R"({"type":7})", K::typeMismatch, "type"},
        FailureRow{R"({"type":"stamp","marks":[{"text":"x"}]})", K::keyNotFound, "kind"},
        FailureRow{R"(["compress"])", K::typeMismatch, ""}));

TEST(OperationParametersJSON, UnknownTypeIsDataCorruptedWithTheExactText) {
    try {
        P::fromJSON(Json::parse(R"({"type":"rotate"})"));
        FAIL();
    } catch (const JSONDecodingError& error) {
        EXPECT_EQ(error.kind(), JSONDecodingError::Kind::dataCorrupted);
        EXPECT_STREQ(error.what(), "Unknown parameters type rotate");
    }
}

TEST(OperationParametersJSON, SerializerHooksRoundTrip) {
    P original = P::Split{SplitMode::extract, "3", 1, 0};
    Json json = original;
    EXPECT_EQ(json.get<P>(), original);
}

} // namespace
} // namespace quillet
