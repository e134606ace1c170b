// The model: which dropped items load and in what order, where drops append or replace, what
// `run` submits, and analyses in worker processes that can fail without harming anything else.
#include "app/AppTests.hpp"

#include "app/LoadedFilesModel.hpp"
#include "tasks/PersistedList.hpp"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <fstream>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

void touch(const fs::path& path) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "x";
}

QStringList names(const QStringList& paths) {
    QStringList list;
    for (const QString& path : paths) {
        list << QFileInfo(path).fileName();
    }
    return list;
}

} // namespace

class AppModelTest : public QObject {
    Q_OBJECT

  private slots:
    void foldersAreReadOffTheMainThreadSortedByPath();
    void mergeAppendsAndOtherSectionsReplace();
    void runSubmitsOnlyAcceptedFilesWithTheRuleOfThatMoment();
    void analysesRunInWorkersAndFailuresLeaveNoEntry();
    void aCrashingAnalysisCostsOnlyItsFile();
    void analysesWaitBeyondTheLimit();
};

void AppModelTest::foldersAreReadOffTheMainThreadSortedByPath() {
    TempDir dir;
    for (const char* name : {"b.pdf", "a.png", "notes.txt", "sub/c.JPG", ".hidden/d.pdf", ".e.pdf",
                             "sub/deeper/f.tiff"}) {
        touch(dir / "in" / name);
    }
    fs::create_directory_symlink(dir / "in" / "sub", dir / "in" / "link");
    QCOMPARE(names(AppModel::expandFolder(qpath(dir / "in"))),
             (QStringList{"a.png", "b.pdf", "c.JPG", "f.tiff"}));

    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    AppModel& model = app.model();
    model.setSection(AppModel::Section::compress);
    model.acceptDropped(urls({dir / "in", dir / "in" / "notes.txt", dir / "in" / "b.pdf"}));
    QVERIFY(model.isReadingFolders()); // the window goes on; the files arrive once it is read
    QVERIFY(model.files().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!model.isReadingFolders(), 10000);
    QCOMPARE(names(model.files()), (QStringList{"b.pdf", "a.png", "c.JPG", "f.tiff"}));

    // A cancelled reading loads nothing, and a drop while reading replaces the reading.
    for (int i = 0; i < 3000; ++i) {
        touch(dir / "many" / ("p" + std::to_string(i) + ".pdf"));
    }
    model.acceptDropped(urls({dir / "many"}));
    model.cancelFolderReading();
    QVERIFY(!model.isReadingFolders());
    model.acceptDropped(urls({dir / "many"}));
    model.acceptDropped(urls({dir / "in" / "sub"}));
    QTRY_VERIFY_WITH_TIMEOUT(!model.isReadingFolders(), 10000);
    QTest::qWait(200);
    QCOMPARE(names(model.files()), (QStringList{"c.JPG", "f.tiff"}));
}

void AppModelTest::mergeAppendsAndOtherSectionsReplace() {
    TempDir dir;
    for (const char* name : {"a.pdf", "b.pdf", "c.png"}) {
        touch(dir / name);
    }
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    AppModel& model = app.model();
    LoadedFilesModel list(model);
    QAbstractItemModelTester tester(&list);
    QSignalSpy changed(&model, &AppModel::filesChanged);

    model.setSection(AppModel::Section::merge);
    model.acceptDropped(urls({dir / "a.pdf", dir / "b.pdf", dir / "a.pdf"}));
    model.acceptDropped(urls({dir / "b.pdf", dir / "c.png"}));
    QCOMPARE(names(model.files()), (QStringList{"a.pdf", "b.pdf", "c.png"}));
    QCOMPARE(list.rowCount(), 3);

    model.setSection(AppModel::Section::compress);
    model.acceptDropped(urls({dir / "b.pdf"}));
    QCOMPARE(names(model.files()), QStringList{"b.pdf"});
    // Nothing acceptable in a drop leaves the selection as it was.
    model.acceptDropped(urls({dir / "missing.txt"}));
    model.acceptDropped({QUrl("https://example.org/remote.pdf")});
    QCOMPARE(names(model.files()), QStringList{"b.pdf"});
    QCOMPARE(changed.count(), 3);
    // Only the home section analyses what is dropped.
    QVERIFY(!model.isAnalyzing(model.files().front()));
}

void AppModelTest::runSubmitsOnlyAcceptedFilesWithTheRuleOfThatMoment() {
    TempDir dir;
    touch(dir / "notes.txt");
    const auto pdf = samplePDF(dir, "slow.pdf");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), holdingWorker());
    AppModel& model = app.model();

    model.setFiles({qpath(dir / "notes.txt")});
    QVERIFY(!model.run(PDFOperationKind::compress, OperationParameters::Compress{}));
    QVERIFY(!model.run(PDFOperationKind::compress, OperationParameters::Compress{}, QStringList{}));
    QVERIFY(app.queue().records().empty());

    model.setFiles({qpath(dir / "notes.txt"), qpath(pdf)});
    OutputRule first;
    first.location = OutputRule::Location::subfolder;
    first.subfolderName = "First";
    settings->setOutputRule(first);
    const auto running = model.run(PDFOperationKind::compress, OperationParameters::Compress{});
    const auto waiting = model.run(PDFOperationKind::clean, OperationParameters::Clean{});
    settings->setOutputRule(OutputRule{}); // later changes do not reach submitted jobs
    QVERIFY(running && waiting);

    const auto queued = PersistedList::load<TaskSpec>(dir / "queue.json");
    QCOMPARE(queued.size(), 1u);
    QCOMPARE(queued[0].id, *waiting);
    QCOMPARE(queued[0].outputRule, first);
    QCOMPARE(queued[0].inputs, std::vector<std::string>{pdf.string()});
    QCOMPARE(queued[0].operation, PDFOperationKind::clean);
    app.queue().cancel(*waiting);
    app.queue().cancel(*running);
    QTRY_VERIFY(!app.queue().isBusy());
}

void AppModelTest::analysesRunInWorkersAndFailuresLeaveNoEntry() {
    TempDir dir;
    const auto good = samplePDF(dir, "four.pdf", 4);
    const auto damaged = dir.write("damaged.pdf", "%PDF-1.7\nnot a document\n");
    touch(dir / "picture.png");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    AppModel& model = app.model();
    LoadedFilesModel list(model);
    QAbstractItemModelTester tester(&list);

    model.setSection(AppModel::Section::home);
    model.acceptDropped(urls({good, damaged, dir / "picture.png"}));
    QVERIFY(model.isAnalyzing(qpath(good)));
    QVERIFY(!model.isAnalyzing(qpath(dir / "picture.png"))); // not a PDF: nothing to analyse
    QCOMPARE(list.data(list.index(0), LoadedFilesModel::SummaryRole).toString(),
             QStringLiteral("Analysing…"));
    QTRY_VERIFY_WITH_TIMEOUT(!model.isAnalyzing(qpath(good)) && !model.isAnalyzing(qpath(damaged)),
                             30000);

    const PDFAnalysis* analysis = model.analysis(qpath(good));
    QVERIFY(analysis != nullptr);
    QCOMPARE(analysis->pageCount, 4);
    QCOMPARE(analysis->fileSize, static_cast<std::int64_t>(fs::file_size(good)));
    QVERIFY(analysis->pages.front().hasText);
    QVERIFY(
        list.data(list.index(0), LoadedFilesModel::SummaryRole).toString().startsWith("4 pages"));

    QVERIFY(model.analysis(qpath(damaged)) == nullptr);
    QVERIFY(model.analysisError(qpath(damaged)).contains("damaged.pdf"));
    QVERIFY(list.data(list.index(1), LoadedFilesModel::SummaryRole)
                .toString()
                .startsWith("could not be read: "));
    // A failed file can be tried again; an analysed one is not analysed twice.
    model.ensureAnalyses();
    QVERIFY(model.isAnalyzing(qpath(damaged)));
    QVERIFY(!model.isAnalyzing(qpath(good)));
    QTRY_VERIFY_WITH_TIMEOUT(!model.isAnalyzing(qpath(damaged)), 30000);
}

void AppModelTest::aCrashingAnalysisCostsOnlyItsFile() {
    TempDir dir;
    const auto pdf = samplePDF(dir, "crash.pdf");
    AnalysisService service({"/bin/sh", "-c", "kill -SEGV $$"}, 1);
    QSignalSpy finished(&service, &AnalysisService::finished);
    service.analyze(qpath(pdf));
    service.analyze(qpath(pdf)); // waits for the one place, and gets it after the crash
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 2, 10000);
    for (const auto& answer : finished) {
        QVERIFY(!answer[1].value<std::optional<PDFAnalysis>>().has_value());
        QCOMPARE(answer[2].toString(), QStringLiteral("the analysis stopped unexpectedly"));
    }
}

void AppModelTest::analysesWaitBeyondTheLimit() {
    TempDir dir;
    AnalysisService service({"/bin/sh", "-c", "sleep 0.3"}, 2);
    QSignalSpy finished(&service, &AnalysisService::finished);
    int mostAtOnce = 0;
    connect(&service, &AnalysisService::finished, this,
            [&] { mostAtOnce = std::max(mostAtOnce, service.runningCount() + 1); });
    for (int i = 0; i < 5; ++i) {
        service.analyze(qpath(dir / ("f" + std::to_string(i) + ".pdf")));
    }
    QCOMPARE(service.runningCount(), 2);
    QCOMPARE(service.waitingCount(), 3);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 5, 20000);
    QCOMPARE(mostAtOnce, 2);
    QCOMPARE(service.runningCount(), 0);
}

static RegisterSuite registered([] { return std::make_unique<AppModelTest>(); });

#include "AppModelTest.moc"
