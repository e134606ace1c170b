// The organize screen's page model on real documents. Page k of "report.pdf" is 100 + 10k
// points wide, so the cells read as a list of widths; written files are read with qpdf directly.
#include "tasks/OrganizeModel.hpp"

#include "engines/PDFCoreError.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"
#include "tasks/HistoryStore.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>


namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::TempDir;
using Widths = std::vector<int>;

fs::path pagesFile(const TempDir& dir, const std::string& name, const Widths& widths,
                   bool signedFile = false) {
    test::PDFBuilder builder;
    for (const int width : widths) {
        builder.addPage(width, 200);
    }
    if (signedFile) {
        builder.page(0).signatureField("Approval");
    }
    return builder.write(dir / name);
}

Widths widths(const OrganizeModel& model) {
    Widths result;
    for (const auto& cell : model.cells()) {
        result.push_back(static_cast<int>(cell.page.mediaBox().width));
    }
    return result;
}

class OrganizeModelTest : public testing::Test {
  protected:
    OrganizeModelTest() : history(state / "history.json"), model(&history) { model.load(source); }

    // Selects the cells at these positions.
    void selectAt(std::initializer_list<int> positions) {
        std::set<PageID> ids;
        for (const int position : positions) {
            ids.insert(model.cells().at(static_cast<std::size_t>(position)).id);
        }
        model.setSelection(ids);
    }

    TempDir dir;
    TempDir state;
    fs::path source = pagesFile(dir, "report.pdf", {100, 110, 120, 130});
    HistoryStore history;
    OrganizeModel model;
};

struct TurnCase {
    std::vector<int> turns;
    int expected;
};

class OrganizeModelTurns : public OrganizeModelTest,
                           public testing::WithParamInterface<TurnCase> {};

TEST_P(OrganizeModelTurns, ShowsTheSumWithinAFullTurn) {
    selectAt({0});
    for (const int degrees : GetParam().turns) {
        model.rotateSelection(degrees);
    }
    EXPECT_EQ(model.cells()[0].displayRotation, GetParam().expected);
    EXPECT_EQ(model.cells()[1].displayRotation, 0) << "an unselected page turned";
}

// Four right turns, a left turn from 0, four left turns, more than a turn, the int extremes.
INSTANTIATE_TEST_SUITE_P(Turns, OrganizeModelTurns,
                         testing::Values(TurnCase{{90, 90, 90, 90}, 0}, TurnCase{{-90}, 270},
                                         TurnCase{{-90, -90, -90, -90}, 0}, TurnCase{{450}, 90},
                                         TurnCase{{2147483610}, 90}, TurnCase{{-2147483610}, 270}));

TEST_F(OrganizeModelTest, DuplicatesAreOwnPagesRightAfterTheirOriginals) {
    int announced = 0;
    model.changed = [&] { ++announced; };
    selectAt({1, 2});
    model.duplicateSelection();
    EXPECT_EQ(widths(model), (Widths{100, 110, 110, 120, 120, 130}));
    selectAt({2});
    model.rotateSelection(90);
    EXPECT_EQ(model.cells()[1].displayRotation, 0) << "the original turned with its copy";
    EXPECT_EQ(model.cells()[2].displayRotation, 90);
    EXPECT_EQ(announced, 4);
}

TEST_F(OrganizeModelTest, DeleteAllThenUndoRestoresEverything) {
    selectAt({2});
    model.rotateSelection(90);
    model.selectAll();
    model.deleteSelection();
    EXPECT_EQ(model.statusLine(), "0 pages · 0 selected");
    ASSERT_TRUE(model.undo());
    EXPECT_EQ(widths(model), (Widths{100, 110, 120, 130}));
    EXPECT_EQ(model.cells()[2].displayRotation, 90);
    EXPECT_EQ(model.selection().size(), 4u) << "what the delete acted on is selected again";
    ASSERT_TRUE(model.undo());
    EXPECT_EQ(model.cells()[2].displayRotation, 0);
    EXPECT_EQ(model.selection(), std::set<PageID>{model.cells()[2].id});
    EXPECT_FALSE(model.undo());
}

struct MoveCase {
    int from;
    int to;
    Widths expected; // empty: no move
};

class OrganizeModelMoves : public OrganizeModelTest,
                           public testing::WithParamInterface<MoveCase> {};

TEST_P(OrganizeModelMoves, PutsTheDraggedPageOnTheTargetCell) {
    const auto& c = GetParam();
    const bool moves = !c.expected.empty();
    EXPECT_EQ(model.movePage(c.from, c.to), moves);
    EXPECT_EQ(widths(model), moves ? c.expected : (Widths{100, 110, 120, 130}));
    EXPECT_EQ(model.canUndo(), moves);
}

INSTANTIATE_TEST_SUITE_P(Moves, OrganizeModelMoves,
                         testing::Values(MoveCase{0, 2, {110, 120, 100, 130}},
                                         MoveCase{1, 3, {100, 120, 130, 110}},
                                         MoveCase{3, 0, {130, 100, 110, 120}}, MoveCase{2, 2, {}},
                                         MoveCase{0, 4, {}}, MoveCase{-1, 0, {}}));

TEST_F(OrganizeModelTest, AMovedPageStaysSelected) {
    selectAt({0});
    const auto moved = model.cells()[0].id;
    model.movePage(0, 3);
    EXPECT_EQ(model.cells()[3].id, moved);
    EXPECT_EQ(model.selection(), std::set<PageID>{moved});
    EXPECT_EQ(OrganizeModel::dragIndex("+2"), 2);
    for (const char* text : {"", "x", "3 ", "2.0", "99999999999"}) {
        EXPECT_EQ(OrganizeModel::dragIndex(text), std::nullopt) << '"' << text << '"';
    }
}

TEST_F(OrganizeModelTest, InsertAppendsEachFileInTurnOrNothing) {
    const auto first = pagesFile(dir, "first.pdf", {200, 210});
    const auto second = pagesFile(dir, "second.pdf", {300});
    EXPECT_EQ(test::caughtCase([&] {
                  model.insertFromFiles({first, dir / "gone.pdf"});
              }),
              PDFCoreError::Case::fileNotFound);
    EXPECT_FALSE(model.canUndo());
    model.insertFromFiles({first, second});
    EXPECT_EQ(widths(model), (Widths{100, 110, 120, 130, 200, 210, 300}));
}

TEST_F(OrganizeModelTest, SaveWritesBesideTheSourceAndRecordsIt) {
    const auto before = test::readFile(source);
    model.movePage(3, 0);
    ASSERT_EQ(model.save(false, OutputRule{}), OrganizeModel::SaveOutcome::saved);
    ASSERT_EQ(model.lastOutput(), dir / "report-organized.pdf");
    EXPECT_EQ(test::pageWidths(*model.lastOutput()), (Widths{130, 100, 110, 120}));
    EXPECT_TRUE(test::qpdfChecks(*model.lastOutput()));
    EXPECT_EQ(test::readFile(source), before) << "the source was modified";
    ASSERT_EQ(history.entries().size(), 1u);
    const auto& entry = history.entries()[0];
    EXPECT_EQ(entry.operation, PDFOperationKind::organize);
    EXPECT_EQ(entry.inputURLs, std::vector<std::string>{source.string()});
    EXPECT_EQ(entry.outputURLs, std::vector<std::string>{model.lastOutput()->string()});
    EXPECT_EQ(entry.originalBytes, static_cast<std::int64_t>(before.size()));
    EXPECT_EQ(entry.resultBytes, static_cast<std::int64_t>(fs::file_size(*model.lastOutput())));
}

TEST(OrganizeModel, ADeletedPageLeavesNothingOfItselfInTheSavedFile) {
    TempDir dir;
    test::PDFBuilder builder;
    builder.addPage(100, 200);
    builder.addPage(110, 200).textField("Confidential", "salary 123456");
    const auto source = builder.write(dir / "form.pdf");
    OrganizeModel model;
    model.load(source);
    model.setSelection({model.cells().at(1).id});
    model.deleteSelection();
    ASSERT_EQ(model.save(false, OutputRule{}), OrganizeModel::SaveOutcome::saved);
    QPDF written;
    written.processFile(model.lastOutput()->c_str());
    for (auto& object : written.getAllObjects()) {
        if (object.isDictionary() && object.getKey("/Type").isNameAndEquals("/Page")) {
            EXPECT_EQ(object.getKey("/MediaBox").getArrayItem(2).getNumericValue(), 100);
        }
        EXPECT_FALSE(object.isString() && object.getUTF8Value() == "salary 123456");
    }
}

TEST_F(OrganizeModelTest, SaveFailuresLeaveNoTraces) {
    const auto blocker = dir.write("blocker", "a file where the folder should be");
    const OutputRule rule{.location = OutputRule::Location::custom,
                          .customFolder = (blocker / "out").string()};
    EXPECT_EQ(test::caughtCase([&] { model.save(false, rule); }), PDFCoreError::Case::writeFailed);
    model.selectAll();
    model.deleteSelection();
    EXPECT_EQ(test::caughtCase([&] { model.save(true, {}); }), PDFCoreError::Case::emptyDocument);
    EXPECT_EQ(model.lastOutput(), std::nullopt);
    EXPECT_TRUE(history.entries().empty());
    EXPECT_EQ(test::fileNames(dir.path()), (std::vector<std::string>{"blocker", "report.pdf"}));
}

TEST(OrganizeModel, SignaturesAskOnEverySaveUntilSkipped) {
    TempDir dir;
    OrganizeModel model;
    model.load(pagesFile(dir, "signed.pdf", {100, 110}, true));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(model.save(false, {}), OrganizeModel::SaveOutcome::needsConfirmation);
        EXPECT_TRUE(model.showSignatureWarning());
        model.dismissSignatureWarning();
    }
    EXPECT_FALSE(fs::exists(dir / "signed-organized.pdf"));
    EXPECT_EQ(model.save(true, {}), OrganizeModel::SaveOutcome::saved);
    EXPECT_TRUE(fs::exists(dir / "signed-organized.pdf"));
    EXPECT_EQ(model.save(false, {}), OrganizeModel::SaveOutcome::needsConfirmation);
}

TEST_F(OrganizeModelTest, ExtractWritesTheSelectionInDocumentOrder) {
    EXPECT_EQ(model.suggestedExtractName(), "report-extracted.pdf");
    EXPECT_EQ(OrganizeModel().suggestedExtractName(), "pages-extracted.pdf");
    EXPECT_EQ(test::caughtCase([&] { model.extractSelection(dir / "none.pdf"); }),
              PDFCoreError::Case::emptyDocument);
    selectAt({3, 1});
    model.extractSelection(dir / "picked.pdf");
    EXPECT_EQ(test::pageWidths(dir / "picked.pdf"), (Widths{110, 130}));
    EXPECT_EQ(widths(model), (Widths{100, 110, 120, 130}));
    EXPECT_FALSE(fs::exists(dir / "none.pdf"));
    ASSERT_EQ(history.entries().size(), 1u);
    EXPECT_EQ(history.entries()[0].outputURLs,
              std::vector<std::string>{(dir / "picked.pdf").string()});
}

} // namespace
} // namespace quillet
