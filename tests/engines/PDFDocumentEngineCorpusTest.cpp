// Every PDF of the shared real-world corpus against the expectations recorded in files.json.
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFFileVersionReader.hpp"

#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <map>

namespace quillet {
namespace {

// The recorded count of this file (4) is the /N of its linearization dictionary; the file holds
// three page objects and no page tree that leads to them, and those three are what a repair finds.
const std::map<std::string, int> recordedCountOverrides = {
    {"017-unreadable-meta-data/unreadablemetadata.pdf", 3},
};

int expectedPages(const nlohmann::json& entry) {
    auto found = recordedCountOverrides.find(entry.at("path").get<std::string>());
    return found != recordedCountOverrides.end() ? found->second : entry.at("pages").get<int>();
}

nlohmann::json corpusEntries() {
    std::ifstream file(test::corpus("files.json"));
    return nlohmann::json::parse(file).at("data");
}

std::map<std::string, int> annotationCounts(const PDFDocument& document) {
    std::map<std::string, int> counts;
    for (int i = 0; i < document.pageCount(); ++i) {
        for (const auto& annotation : document.page(i).annotations()) {
            ++counts[annotation.type];
        }
    }
    return counts;
}

TEST(PDFDocumentEngineCorpusTest, EveryFileOpensWithItsRecordedPagesAndAnnotations) {
    const auto entries = corpusEntries();
    int checked = 0;
    for (const auto& entry : entries) {
        const auto relative = entry.at("path").get<std::string>();
        SCOPED_TRACE(relative);
        const auto path = test::corpus(relative);
        // The collection lists a few files that the shared copy leaves out (size).
        if (!std::filesystem::exists(path)) {
            continue;
        }
        ++checked;
        const bool encrypted = entry.at("encrypted").get<bool>();
        auto document = PDFDocumentEngine::openCG(path, encrypted ? "openpassword" : "");
        EXPECT_EQ(document.isEncrypted(), encrypted);
        EXPECT_EQ(document.pageCount(), expectedPages(entry));
        using Counts = std::map<std::string, int>;
        EXPECT_EQ(annotationCounts(document), entry.at("annotations").get<Counts>());
        EXPECT_TRUE(PDFFileVersionReader::version(path).has_value());
        if (!encrypted) {
            // The one file whose cross-reference data needs repair would not pass as a fresh
            // output; every other file would.
            const bool damaged = relative.starts_with("017-");
            const auto result = PDFDocumentEngine::validateOutput(path, document.pageCount());
            EXPECT_EQ(result.ok, !damaged) << result.message;
            EXPECT_TRUE(PDFDocumentEngine::open(path).has_value());
        } else {
            EXPECT_FALSE(PDFDocumentEngine::open(path).has_value());
        }
    }
    EXPECT_GE(checked, 30);
}

TEST(PDFDocumentEngineCorpusTest, ProducersMatchTheRecordedOnes) {
    for (const auto& entry : corpusEntries()) {
        if (entry.at("encrypted").get<bool>() || !entry.contains("producer")) {
            continue;
        }
        const auto relative = entry.at("path").get<std::string>();
        if (!std::filesystem::exists(test::corpus(relative))) {
            continue;
        }
        const auto info = PDFDocumentEngine::readMetadata(test::corpus(relative));
        if (info.producer) {
            EXPECT_EQ(*info.producer, entry.at("producer").get<std::string>()) << relative;
        }
    }
}

} // namespace
} // namespace quillet
