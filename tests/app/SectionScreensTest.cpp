// The section screens as a person uses them: what each one submits to the real queue (run by
// the real `quillet` program), what it refuses with a message, and a split from the screen to
// the parts on disk.
#include "app/AppTests.hpp"

#include "app/LoadedFilesModel.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "screens/BatchView.hpp"
#include "screens/HistoryView.hpp"
#include "screens/MergeView.hpp"
#include "screens/PrivacyView.hpp"
#include "screens/RedactPageView.hpp"
#include "screens/ScreenParts.hpp"
#include "screens/SplitView.hpp"
#include "screens/StampView.hpp"
#include "tasks/PersistedList.hpp"

#include <QLabel>
#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTreeWidget>
#include <QTest>


using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

/// The application with the screens' shared file list, over a folder of its own.
struct Screens {
    explicit Screens(const TempDir& dir, const QStringList& worker)
        : settings(settingsIn(dir)), app(*settings, dir.path(), worker), files(app.model()) {}

    ScreenContext context() { return {app, files}; }

    /// Cancels what is left, so no worker outlives the test.
    ~Screens() {
        for (const auto& record : app.queue().records()) {
            app.queue().cancel(record.id);
        }
        QTRY_VERIFY(!app.queue().isBusy());
    }

    std::unique_ptr<AppSettings> settings;
    QuilletApp app;
    LoadedFilesModel files;
};

OutputRule resultsIn(const TempDir& dir) {
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "results").string();
    rule.nameTemplate = "{name}-{action}-again";
    return rule;
}

OperationParameters decoded(const std::optional<std::string>& data) {
    return data ? OperationParameters::fromJSON(nlohmann::ordered_json::parse(*data))
                : OperationParameters{};
}

QString message(const QWidget& view) {
    return view.findChild<QLabel*>("message")->text();
}

void click(const QWidget& view, const char* name = "run") {
    QTest::mouseClick(view.findChild<QPushButton*>(name), Qt::LeftButton);
}

} // namespace

class SectionScreensTest : public QObject {
    Q_OBJECT

  private slots:
    void batchSubmitsOneJobPerFile_data();
    void batchSubmitsOneJobPerFile();
    void historyRunsAJobAgainWithItsParameters();
    void splitRangesFromTheScreenToPartsOnDisk();
    void privacyRefusesMismatchedPasswordsAndFollowsSuggestions();
    void redactTabTurnsBoxesAndTickedMatchesIntoAJob();
    void mergeOrderFollowsDragsAndRemovals();
    void stampPreviewIsTheEnginesAndOneJobStampsEveryPDF();
};

void SectionScreensTest::batchSubmitsOneJobPerFile_data() {
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("files");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("jobs");
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("parameters");

    using A = BatchView::BatchAction;
    QTest::newRow("rotate 90° rewrites with every list empty")
        << int(A::rotate90) << 3 << "" << 3 << int(PDFOperationKind::organize)
        << R"({"type":"organize","rotatePages":[],"rotations":[],"deletePages":[],"newOrder":null})";
    QTest::newRow("ten files, ten PNG jobs in list order")
        << int(A::png) << 10 << "" << 10 << int(PDFOperationKind::pdfToImages)
        << R"({"type":"pdfToImages","format":"png","dpi":150,"pages":"","jpegQuality":0.85})";
    QTest::newRow("under 5 MB is binary megabytes")
        << int(A::target5MB) << 2 << "" << 2 << int(PDFOperationKind::targetSize)
        << R"({"type":"targetSize","bytes":5242880})";
    QTest::newRow("known password on every file")
        << int(A::removePassword) << 2 << "secret" << 2 << int(PDFOperationKind::unprotect)
        << R"({"type":"unprotect","password":"secret"})";
    QTest::newRow("no password, no job") << int(A::removePassword) << 2 << "" << 0 << 0 << "";
    QTest::newRow("the tenth action reads scans in English")
        << int(A::makeSearchable) << 2 << "" << 2 << int(PDFOperationKind::ocr)
        << R"({"type":"ocr","languages":"eng"})";
    QTest::newRow("redact takes the words typed, separated by commas")
        << int(A::redact) << 2 << " Jane Roe, ACME " << 2 << int(PDFOperationKind::redact)
        << R"({"type":"redact","patterns":[{"text":"Jane Roe"},{"text":"ACME"}]})";
    QTest::newRow("redact with nothing to look for, no job") << int(A::redact) << 2 << "" << 0 << 0 << "";
    QTest::newRow("page numbers at the bottom center")
        << int(A::pageNumbers) << 2 << "" << 2 << int(PDFOperationKind::stamp)
        << R"({"type":"stamp","marks":[{"kind":"pageNumber"}]})";
    QTest::newRow("a diagonal watermark of the text typed")
        << int(A::watermark) << 2 << " DRAFT " << 2 << int(PDFOperationKind::stamp)
        << R"({"type":"stamp","marks":[{"kind":"text","text":"DRAFT","position":"center",)"
           R"("fontSize":72,"color":"#808080","opacity":0.3,"rotation":45}]})";
    QTest::newRow("watermark without a text, no job") << int(A::watermark) << 2 << "" << 0 << 0 << "";
}

void SectionScreensTest::batchSubmitsOneJobPerFile() {
    QFETCH(int, action);
    QFETCH(int, files);
    QFETCH(QString, password);
    QFETCH(int, jobs);
    QFETCH(int, operation);
    QFETCH(QString, parameters);
    TempDir dir;
    Screens screens(dir, holdingWorker()); // "slow" in every path: the first job holds the rest
    screens.settings->setOutputRule(resultsIn(dir));
    QStringList loaded;
    for (int i = 0; i < files; ++i) {
        loaded << qpath(samplePDF(dir, "slow-" + std::to_string(i) + ".pdf"));
    }
    screens.app.model().setSection(AppModel::Section::batch);
    screens.app.model().setFiles(loaded);
    BatchView view(screens.context());
    view.setAction(static_cast<BatchView::BatchAction>(action));
    view.findChild<QLineEdit*>("password")->setText(password);
    view.findChild<QLineEdit*>("redactWords")->setText(password);
    view.findChild<QLineEdit*>("watermarkText")->setText(password);
    QCOMPARE(view.findChild<QPushButton*>("run")->text(), QStringLiteral("Run on %1 files").arg(files));
    click(view);

    const auto& records = screens.app.queue().records();
    QCOMPARE(static_cast<int>(records.size()), jobs);
    if (jobs == 0) {
        return;
    }
    const auto expected = OperationParameters::fromJSON(
        nlohmann::ordered_json::parse(parameters.toStdString()));
    for (int i = 0; i < jobs; ++i) {
        QCOMPARE(records[i].operation, static_cast<PDFOperationKind>(operation));
        QCOMPARE(records[i].inputURLs, std::vector<std::string>{loaded[i].toStdString()});
        QCOMPARE(decoded(records[i].parametersData), expected);
    }
    // The waiting jobs are kept with the output rule of the moment they were submitted.
    screens.settings->setOutputRule(OutputRule{});
    const auto waiting = PersistedList::load<TaskSpec>(dir / "queue.json");
    QCOMPARE(static_cast<int>(waiting.size()), jobs - 1);
    for (const TaskSpec& spec : waiting) {
        QCOMPARE(spec.outputRule, resultsIn(dir));
    }
    QCOMPARE(records[0].state, TaskState::running);
}

void SectionScreensTest::historyRunsAJobAgainWithItsParameters() {
    TempDir dir;
    Screens screens(dir, holdingWorker());
    screens.settings->setOutputRule(resultsIn(dir));
    const auto input = samplePDF(dir, "slow.pdf", 4);
    const OperationParameters split = OperationParameters::Split{SplitMode::pageRanges, "1-2, 4", 1, 0};
    const OperationParameters protect = OperationParameters::Protect{"open", ""};
    HistoryEntry splitEntry{"A1", TaskClock::now(), PDFOperationKind::split, {"slow.pdf"},
                            {input.string()}, {}, 1000, 900, true, encodedParameters(split)};
    HistoryEntry protectEntry = splitEntry;
    protectEntry.id = "A2";
    protectEntry.operation = PDFOperationKind::protect;
    protectEntry.parametersData = encodedParameters(protect);
    screens.app.history().add(splitEntry);
    screens.app.history().add(protectEntry);
    HistoryView view(screens.context());

    view.selectEntry("A1");
    click(view);
    const auto& records = screens.app.queue().records();
    QCOMPARE(records.size(), 1u);
    QCOMPARE(records[0].operation, PDFOperationKind::split);
    QCOMPARE(records[0].inputURLs, std::vector<std::string>{input.string()});
    QCOMPARE(decoded(records[0].parametersData), split);

    // The history keeps no password: a protect job goes back to the privacy screen with its
    // files, and nothing runs until the password is typed again.
    QSignalSpy offered(&screens.app.model(), &AppModel::suggestionOffered);
    view.selectEntry("A2");
    click(view);
    QCOMPARE(records.size(), 1u);
    QCOMPARE(screens.app.model().section(), AppModel::Section::privacy);
    QCOMPARE(screens.app.model().files(), QStringList{qpath(input)});
    QCOMPARE(offered.count(), 1);
}

void SectionScreensTest::splitRangesFromTheScreenToPartsOnDisk() {
    TempDir dir;
    Screens screens(dir, realWorker());
    screens.settings->setOutputRule(resultsIn(dir));
    const auto input = samplePDF(dir, "report.pdf", 5);
    SplitView view(screens.context());
    view.show();
    screens.app.model().setSection(AppModel::Section::split);
    screens.app.model().acceptDropped(urls({input}));
    view.selectMode(SplitMode::pageRanges);
    QTest::keyClicks(view.findChild<QLineEdit*>("ranges"), "4-5; 1-3");
    // Counted before it runs, once the analysis has the page count.
    QTRY_VERIFY_WITH_TIMEOUT(message(view).startsWith("Makes 2 PDF"), 30000);
    click(view);

    const auto& records = screens.app.queue().records();
    QCOMPARE(records.size(), 1u);
    QTRY_COMPARE_WITH_TIMEOUT(records[0].state, TaskState::completed, 60000);
    QCOMPARE(records[0].outputURLs.size(), 2u);
    const std::vector<int> pages{2, 3}; // in the order the ranges were written
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const fs::path part = records[0].outputURLs[i];
        QCOMPARE(part.parent_path(), dir / "results");
        QCOMPARE(PDFDocumentEngine::openUnlock(part, "").pageCount(), pages[i]);
    }
}

void SectionScreensTest::privacyRefusesMismatchedPasswordsAndFollowsSuggestions() {
    TempDir dir;
    Screens screens(dir, holdingWorker());
    const auto input = samplePDF(dir, "slow.pdf");
    PrivacyView view(screens.context());
    screens.app.model().setFiles({qpath(input)});

    view.selectTask(PrivacyView::Task::protect);
    view.findChild<QLineEdit*>("password")->setText("open sesame");
    view.findChild<QLineEdit*>("repeat")->setText("open sesane");
    QCOMPARE(message(view), QStringLiteral("The two passwords do not match."));
    view.runTask();
    QVERIFY(screens.app.queue().records().empty());
    view.findChild<QLineEdit*>("repeat")->setText("open sesame");
    view.runTask();
    QCOMPARE(screens.app.queue().records().size(), 1u);
    QCOMPARE(decoded(screens.app.queue().records()[0].parametersData),
             OperationParameters(OperationParameters::Protect{"open sesame", ""}));
    QVERIFY(view.findChild<QLineEdit*>("password")->text().isEmpty());

    view.selectTask(PrivacyView::Task::removePassword);
    view.runTask();
    QCOMPARE(message(view), QStringLiteral("Enter the current password."));
    QCOMPARE(screens.app.queue().records().size(), 1u);

    // A recommendation followed from home preselects the task and the preset.
    AppModel& model = screens.app.model();
    model.openWithSuggestion(AppModel::Section::privacy, qpath(input),
                             OperationParameters::Clean{CleanPreset::flattenAndClean});
    QCOMPARE(view.task(), PrivacyView::Task::clean);
    QCOMPARE(view.preset(), CleanPreset::flattenAndClean);
    model.openWithSuggestion(AppModel::Section::privacy, qpath(input),
                             OperationParameters::Unprotect{});
    QCOMPARE(view.task(), PrivacyView::Task::removePassword);
    // The scanned-document recommendation runs at once, in the languages ticked.
    view.findChild<QCheckBox*>("language-chi_sim")->setChecked(true);
    model.openWithSuggestion(AppModel::Section::privacy, qpath(input), OperationParameters::OCR{});
    QCOMPARE(view.task(), PrivacyView::Task::makeSearchable);
    QCOMPARE(screens.app.queue().records().size(), 2u);
    QCOMPARE(decoded(screens.app.queue().records()[1].parametersData),
             OperationParameters(OperationParameters::OCR{"eng+chi_sim"}));
    view.findChild<QCheckBox*>("language-chi_sim")->setChecked(false);
    view.findChild<QCheckBox*>("language-eng")->setChecked(false);
    view.runTask();
    QCOMPARE(message(view), QStringLiteral("Tick at least one language."));
    QCOMPARE(screens.app.queue().records().size(), 2u);
    // A suggestion for another section is not this screen's.
    model.openWithSuggestion(AppModel::Section::compress, qpath(input),
                             OperationParameters::Clean{CleanPreset::safe});
    QCOMPARE(view.task(), PrivacyView::Task::makeSearchable);
}

// The Redact tab: a search lists its matches, an unticked one is kept, a box drawn with the mouse
// is removed, and the job carries the boxes (in points of the page) rather than the words.
void SectionScreensTest::redactTabTurnsBoxesAndTickedMatchesIntoAJob() {
    TempDir dir;
    Screens screens(dir, holdingWorker());
    const auto input = dir.path() / "pages.pdf";
    std::filesystem::copy_file(test::corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"), input);
    PrivacyView view(screens.context());
    view.resize(1000, 800);
    view.show();
    screens.app.model().setFiles({qpath(input)});
    view.selectTask(PrivacyView::Task::redact);
    view.runTask();
    QCOMPARE(message(view), QStringLiteral("Draw a box on the page, or search for words or a preset."));

    view.findChild<QLineEdit*>("redactSearch")->setText("Huardest gefburn");
    QTest::mouseClick(view.findChild<QPushButton*>("redactFind"), Qt::LeftButton);
    auto* matches = view.findChild<QTreeWidget*>("redactMatches");
    QTRY_VERIFY_WITH_TIMEOUT(matches->topLevelItemCount() > 5, 10000);
    const int found = matches->topLevelItemCount();
    matches->topLevelItem(0)->setCheckState(0, Qt::Unchecked);

    auto* page = view.findChild<RedactPageView*>("redactPage");
    const auto pagesRead = [&] {
        for (const auto* label : view.findChildren<QLabel*>()) {
            if (label->text() == QStringLiteral("Page 1 of 4")) {
                return true;
            }
        }
        return false;
    };
    QTRY_VERIFY_WITH_TIMEOUT(pagesRead(), 10000);
    QTest::mousePress(page, Qt::LeftButton, {}, QPoint(page->width() / 2 - 40, page->height() / 2 - 20));
    QTest::mouseMove(page, QPoint(page->width() / 2 + 40, page->height() / 2 + 20));
    QTest::mouseRelease(page, Qt::LeftButton, {}, QPoint(page->width() / 2 + 40, page->height() / 2 + 20));
    QCOMPARE(page->drawn().size(), 1);
    view.runTask();
    QCOMPARE(screens.app.queue().records().size(), 1u);
    const auto queued = decoded(screens.app.queue().records()[0].parametersData);
    const auto* redact = queued.as<OperationParameters::Redact>();
    QVERIFY(redact);
    QVERIFY(redact->patterns.empty());
    QVERIFY(static_cast<int>(redact->areas.size()) >= found); // the drawn box and the ticked matches
    const auto& drawn = redact->areas.front();
    QCOMPARE(drawn.page, 1);
    QVERIFY(drawn.rect[2] > 20 && drawn.rect[2] < 200); // points, not pixels
    QVERIFY(page->drawn().isEmpty()); // what is to go is not kept on screen

    // Taken up again from the history: the boxes and presets come back, the words are asked for.
    OperationParameters::Redact again;
    again.areas = {{2, {72, 72, 100, 40}}};
    again.patterns = {{"", false, false}};
    again.presets = {"date"};
    screens.app.model().openWithSuggestion(AppModel::Section::privacy, qpath(input), again);
    QCOMPARE(view.task(), PrivacyView::Task::redact);
    QVERIFY(view.findChild<QCheckBox*>("redactPreset-date")->isChecked());
    QCOMPARE(page->drawn().value(1).size(), 1);
    QVERIFY(view.findChild<QLineEdit*>("redactSearch")->hasFocus() ||
            view.findChild<QLineEdit*>("redactSearch")->text().isEmpty());
}

void SectionScreensTest::mergeOrderFollowsDragsAndRemovals() {
    TempDir dir;
    Screens screens(dir, realWorker());
    screens.settings->setOutputRule(resultsIn(dir));
    const QString a = qpath(samplePDF(dir, "a.pdf"));
    const QString b = qpath(samplePDF(dir, "b.pdf", 2));
    const QString c = qpath(samplePDF(dir, "c.pdf"));
    AppModel& model = screens.app.model();
    model.setSection(AppModel::Section::merge);
    model.setFiles({a, b, c});
    MergeView view(screens.context());
    auto* list = view.findChild<QListView*>("files");
    QAbstractItemModel* rows = list->model();

    // Dragging the last row to the top, as the list view hands a drop to its model.
    std::unique_ptr<QMimeData> dragged(rows->mimeData({rows->index(2, 0)}));
    QVERIFY(rows->canDropMimeData(dragged.get(), Qt::MoveAction, 0, 0, {}));
    QVERIFY(rows->dropMimeData(dragged.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(model.files(), (QStringList{c, a, b}));
    // Two rows dropped at the end keep their order.
    dragged.reset(rows->mimeData({rows->index(1, 0), rows->index(0, 0)}));
    QVERIFY(rows->dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, {}));
    QCOMPARE(model.files(), (QStringList{b, c, a}));
    // The moved rows stay chosen: Alt+Up takes them up together.
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(model.files(), (QStringList{c, a, b}));

    list->setCurrentIndex(rows->index(1, 0));
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(model.files(), (QStringList{c, b}));

    click(view);
    const auto& records = screens.app.queue().records();
    QCOMPARE(records.size(), 1u);
    QCOMPARE(records[0].inputURLs, (std::vector<std::string>{c.toStdString(), b.toStdString()}));
    QTRY_COMPARE_WITH_TIMEOUT(records[0].state, TaskState::completed, 60000);
    QCOMPARE(PDFDocumentEngine::openUnlock(records[0].outputURLs.at(0), "").pageCount(), 3);
}

static RegisterSuite registered([] { return std::make_unique<SectionScreensTest>(); });

// The preview is drawn from the engine's stamped page: a red watermark shows red; a colour the
// engine refuses is named and nothing runs; then one job takes every loaded PDF, in order.
void SectionScreensTest::stampPreviewIsTheEnginesAndOneJobStampsEveryPDF() {
    TempDir dir;
    Screens screens(dir, holdingWorker());
    screens.settings->setOutputRule(resultsIn(dir));
    const QStringList pdfs{qpath(samplePDF(dir, "slow-a.pdf", 3)), qpath(samplePDF(dir, "b.pdf", 2))};
    screens.app.model().setSection(AppModel::Section::stamp);
    screens.app.model().setFiles(pdfs);
    StampView view(screens.context());
    view.resize(900, 700);
    view.show();
    QSignalSpy previews(&view, &StampView::previewChanged);
    view.removeMark();
    view.addMark("text");
    view.findChild<QLineEdit*>("text")->setText(QStringLiteral("DRAFT"));
    view.findChild<QLineEdit*>("colour")->setText(QStringLiteral("#FF0000"));
    QTRY_VERIFY_WITH_TIMEOUT(!view.preview().isNull(), 20000);
    const QImage page = view.preview().convertToFormat(QImage::Format_RGB32);
    int red = 0;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor c = page.pixelColor(x, y);
            red += c.red() > 200 && c.green() < 200 && c.green() + 30 < c.red();
        }
    }
    QVERIFY2(red > 50, qPrintable(QString::number(red)));

    auto* bar = view.findChild<ActionBar*>();
    view.findChild<QLineEdit*>("colour")->setText(QStringLiteral("red"));
    QTRY_VERIFY_WITH_TIMEOUT(bar->showsProblem(), 20000);
    QVERIFY2(bar->message().text().contains(QStringLiteral("\"red\" is not #RRGGBB")),
             qPrintable(bar->message().text()));
    view.runStamp();
    QCOMPARE(screens.app.queue().records().size(), 0u);

    view.findChild<QLineEdit*>("colour")->setText(QStringLiteral("#FF0000"));
    QTRY_VERIFY_WITH_TIMEOUT(!bar->showsProblem(), 20000);
    view.runStamp();
    const auto& records = screens.app.queue().records();
    QCOMPARE(records.size(), 1u);
    QCOMPARE(records[0].operation, PDFOperationKind::stamp);
    QCOMPARE(records[0].inputURLs, (std::vector<std::string>{pdfs[0].toStdString(), pdfs[1].toStdString()}));
    QCOMPARE(decoded(records[0].parametersData), OperationParameters(view.stamp()));
    QCOMPARE(view.stamp().marks.size(), 1u);
    QCOMPARE(view.stamp().marks[0].text, "DRAFT");
}

#include "SectionScreensTest.moc"
