#include "support/ScopedEnv.hpp"
#include "support/TempDir.hpp"
#include "tasks/AppDirectories.hpp"
#include "tasks/HistoryStore.hpp"
#include "tasks/PresetStore.hpp"
#include "tasks/StateFile.hpp"
#include "platform/UUID.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

HistoryEntry entry(int n, std::optional<std::string> parameters = std::nullopt) {
    HistoryEntry e;
    e.id = newUUIDString();
    e.date = TaskClock::now();
    e.operation = PDFOperationKind::compress;
    e.inputNames = {"in" + std::to_string(n) + ".pdf"};
    e.inputURLs = {"/tmp/in" + std::to_string(n) + ".pdf"};
    e.succeeded = true;
    e.parametersData = std::move(parameters);
    return e;
}

std::vector<HistoryEntry> fileEntries(const fs::path& file) {
    return HistoryStore(file).entries();
}

// Dates pass through a double of seconds on disk, so values are compared in their written form.
template <typename T> std::string written(const std::vector<T>& values) {
    auto array = nlohmann::ordered_json::array();
    for (const auto& value : values) {
        array.push_back(toJSON(value));
    }
    return array.dump();
}

TEST(HistoryStore, KeepsTheNewest500NewestFirstInMemoryAndOnDisk) {
    TempDir dir;
    HistoryStore store(dir / "history.json");
    int changes = 0;
    store.changed = [&changes] { ++changes; };
    for (int n = 0; n < 501; ++n) {
        store.add(entry(n));
    }
    EXPECT_EQ(changes, 501);
    ASSERT_EQ(store.entries().size(), 500u);
    EXPECT_EQ(store.entries().front().inputNames[0], "in500.pdf");
    EXPECT_EQ(store.entries().back().inputNames[0], "in1.pdf");
    EXPECT_EQ(written(fileEntries(store.file())), written(store.entries()));
    EXPECT_EQ(fs::status(store.file()).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST(HistoryStore, NeverWritesAPassword) {
    TempDir dir;
    HistoryStore store(dir / "history.json");
    store.add(entry(1, encodedParameters(OperationParameters::Protect{"hunter2", "0wner"})));
    store.add(entry(2, std::string("not parameters: hunter2")));
    const auto text = test::readFile(store.file());
    EXPECT_EQ(text.find("aHVudGVyMi"), std::string::npos); // "hunter2" in Base64
    EXPECT_EQ(store.entries()[1].parametersData,
              R"({"type":"protect","userPassword":"","ownerPassword":""})");
    EXPECT_FALSE(store.entries()[0].parametersData);
}

class DamagedHistoryFile : public ::testing::TestWithParam<std::string> {};

TEST_P(DamagedHistoryFile, StartsEmptyKeepsTheFileAsideAndWritesAfresh) {
    TempDir dir;
    const auto file = dir.write("history.json", GetParam());
    HistoryStore store(file);
    EXPECT_TRUE(store.entries().empty());
    EXPECT_EQ(test::readFile(dir / "history.json.bad"), GetParam());
    store.add(entry(1));
    EXPECT_EQ(fileEntries(file).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Contents, DamagedHistoryFile,
    ::testing::Values("", "{}", "[", "[{\"id\":1}]", "\xff\xfe garbage",
                      R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","date":0,)"
                      R"("operation":"merge","inputNames":[],"inputURLs":[],"outputURLs":[],)"
                      R"("originalBytes":0,"resultBytes":0,"succeeded":true}, 5])"));

TEST(HistoryStore, AnUnwritableFolderIsSwallowed) {
    TempDir dir;
    HistoryStore store(dir / "missing" / "history.json");
    store.add(entry(1));
    EXPECT_EQ(store.entries().size(), 1u);
    EXPECT_FALSE(fs::exists(dir / "missing"));
}

struct SummaryRow {
    CompressionQualityTier tier;
    std::optional<std::int64_t> target;
    const char* summary;
};

class PresetSummary : public ::testing::TestWithParam<SummaryRow> {};

TEST_P(PresetSummary, ShowsTheTargetOrTheTierLabel) {
    PresetStore::UserPreset preset{"", "p", GetParam().tier, GetParam().target, TaskClock::now()};
    EXPECT_EQ(preset.summary(), GetParam().summary);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PresetSummary,
    ::testing::Values(SummaryRow{CompressionQualityTier::balanced, 5'000'000, "Max 4.8 MB"},
                      SummaryRow{CompressionQualityTier::balanced, 10'485'759, "Max 10.0 MB"},
                      SummaryRow{CompressionQualityTier::balanced, 10'485'760, "Max 10 MB"},
                      SummaryRow{CompressionQualityTier::smallest, std::nullopt, "Smallest"}));

TEST(PresetStore, KeepsCreationOrderAcrossReloadsAndLeavesAbsentTargetsOut) {
    TempDir dir;
    PresetStore store(dir / "presets.json");
    const auto first = store.add("Email", CompressionQualityTier::smallest, 5'000'000).id;
    store.add("Archive", CompressionQualityTier::lossless, std::nullopt);
    const PresetStore reloaded(store.file());
    ASSERT_EQ(written(reloaded.presets()), written(store.presets()));
    EXPECT_EQ(reloaded.presets()[0].name, "Email");
    const auto json = nlohmann::ordered_json::parse(test::readFile(store.file()));
    EXPECT_FALSE(json[1].contains("targetBytes"));
    store.remove(first);
    EXPECT_EQ(PresetStore(store.file()).presets().size(), 1u);
}

TEST(StateFile, AFailedWriteLeavesTheOldFileAndNoTemporary) {
    TempDir dir;
    const auto file = dir.write("queue.json", "old");
    StateFile::write(file, "new", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(test::readFile(file), "new");
    fs::permissions(dir.path(), fs::perms::owner_read | fs::perms::owner_exec);
    if (::access(dir.path().c_str(), W_OK) != 0) { // root writes anywhere
        EXPECT_THROW(StateFile::write(file, "newer"), fs::filesystem_error);
        EXPECT_EQ(test::readFile(file), "new");
    }
    fs::permissions(dir.path(), fs::perms::owner_all);
    EXPECT_EQ(test::fileNames(dir.path()), std::vector<std::string>{"queue.json"});
}

TEST(AppDirectories, FollowsXDGDataHomeAndCreatesAPrivateFolder) {
    TempDir dir;
    const auto support = [&] {
        test::ScopedEnv data("XDG_DATA_HOME", (dir / "data").string());
        return AppDirectories::support();
    }();
    EXPECT_EQ(support, dir / "data" / "quillet");
    ASSERT_TRUE(fs::is_directory(support));
    EXPECT_EQ(fs::status(support).permissions() & fs::perms::all, fs::perms::owner_all);
}

} // namespace
} // namespace quillet
