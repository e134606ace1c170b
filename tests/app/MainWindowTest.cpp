// The window as a person uses it: the resume banner's two buttons, a real compression from a
// file manager's drop to output on disk, the application staying alive while jobs run, and a
// second launch handing its file to the first.
#include "app/AppTests.hpp"

#include "app/ApplicationBus.hpp"
#include "app/TaskRecordListModel.hpp"
#include "screens/BeforeAfterView.hpp"
#include "screens/Components.hpp"
#include "screens/CompressView.hpp"
#include "screens/MainWindow.hpp"
#include "screens/QueuePanel.hpp"
#include "screens/ResumeBanner.hpp"
#include "screens/SectionView.hpp"
#include "tasks/PersistedList.hpp"

#include <QAbstractItemModelTester>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QLabel>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

/// Drags `paths` over `target` and drops them there, as a file manager does.
void dropFiles(QWidget& target, const std::vector<fs::path>& paths) {
    QMimeData data;
    data.setUrls(urls(paths));
    const QPoint centre = target.rect().center();
    QDragEnterEvent enter(centre, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(centre), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    QVERIFY(drop.isAccepted());
}

SectionView& sectionView(MainWindow& window, AppModel::Section section) {
    return window.section(static_cast<int>(section));
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

  private slots:
    void resumeBannerButtons_data();
    void resumeBannerButtons();
    void compressFromDropToOutputOnDisk();
    void closingWhileBusyKeepsTheApplicationUntilTheQueueIsIdle();
    void aSecondLaunchHandsItsFilesToTheFirst();
};

void MainWindowTest::resumeBannerButtons_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("submitted");
    QTest::newRow("resume") << "resumeButton" << 2;
    QTest::newRow("discard") << "discardButton" << 0;
}

void MainWindowTest::resumeBannerButtons() {
    QFETCH(QString, button);
    QFETCH(int, submitted);
    TempDir dir;
    const auto slow = samplePDF(dir, "slow.pdf");
    const auto spec = TaskSpec::make(PDFOperationKind::compress, {slow.string()}, OutputRule{},
                                     OperationParameters::Compress{});
    auto other = spec;
    other.id = TaskSpec::make(spec.operation, spec.inputs, {}, spec.parameters).id;
    PersistedList::save(dir / "queue.json", std::vector<TaskSpec>{spec, other});

    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), holdingWorker());
    QVERIFY(!fs::exists(dir / "queue.json"));
    MainWindow window(app, [] {});
    window.show();
    ResumeBanner& banner = window.resumeBanner();
    QVERIFY(banner.isVisible());
    QCOMPARE(banner.findChild<QLabel*>("resumeLine")->text(),
             QStringLiteral("Task interrupted. Resume 2 pending job(s)?"));

    QTest::mouseClick(banner.findChild<QPushButton*>(button), Qt::LeftButton);
    QVERIFY(!banner.isVisible());
    QVERIFY(app.queue().pendingResume().empty());
    QCOMPARE(static_cast<int>(app.queue().records().size()), submitted);
    if (submitted > 0) {
        QCOMPARE(app.queue().records()[0].id, spec.id); // resumed jobs keep their ids
        QCOMPARE(window.queuePanel().model().rowCount(), 2);
    }
    for (const auto& record : app.queue().records()) {
        app.queue().cancel(record.id);
    }
    QTRY_VERIFY(!app.queue().isBusy());
}

void MainWindowTest::compressFromDropToOutputOnDisk() {
    TempDir dir;
    const fs::path input = corpus("003-pdflatex-image/pdflatex-image.pdf");
    auto settings = settingsIn(dir);
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "results").string();
    settings->setOutputRule(rule);
    QuilletApp app(*settings, dir.path(), realWorker());
    MainWindow window(app, [] {});
    window.show();
    QAbstractItemModelTester tester(&window.queuePanel().model());

    app.model().setSection(AppModel::Section::compress);
    SectionView& compress = sectionView(window, AppModel::Section::compress);
    dropFiles(compress.dropZone(), {input});
    auto* run = compress.findChild<QPushButton*>("run");
    QVERIFY(run->isEnabled());
    QTest::mouseClick(run, Qt::LeftButton);

    TaskRecordListModel& rows = window.queuePanel().model();
    QCOMPARE(rows.rowCount(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(rows.record(0).state, TaskState::completed, 120000);
    const auto& record = rows.record(0);
    QCOMPARE(record.inputNames, std::vector<std::string>{"pdflatex-image.pdf"});
    QCOMPARE(record.outputURLs,
             std::vector<std::string>{(dir / "results" / "pdflatex-image-compressed.pdf").string()});
    QVERIFY(fs::file_size(record.outputURLs[0]) > 0);
    QCOMPARE(record.originalBytes, static_cast<std::int64_t>(fs::file_size(input)));
    QVERIFY(rows.data(rows.index(0), TaskRecordListModel::DetailRole).toString().contains("→"));
    QVERIFY(rows.flags(rows.index(0)) & Qt::ItemIsDragEnabled);
    std::unique_ptr<QMimeData> dragged(rows.mimeData({rows.index(0)}));
    QCOMPARE(dragged->urls(), QList<QUrl>{QUrl::fromLocalFile(qpath(record.outputURLs[0]))});
    // One history, on screen and on disk.
    QCOMPARE(app.history().entries().size(), 1u);
    QCOMPARE(PersistedList::load<HistoryEntry>(dir / "history.json").size(), 1u);
    QCOMPARE(rows.doneCount(), 1);
    // The screen that started the job compares its first page before and after.
    auto* view = compress.findChild<CompressView*>();
    QTRY_VERIFY(view->comparison().isComparing());
    QCOMPARE(view->comparison().page(), 0);
}

void MainWindowTest::closingWhileBusyKeepsTheApplicationUntilTheQueueIsIdle() {
    TempDir dir;
    const auto slow = samplePDF(dir, "slow.pdf");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), holdingWorker());
    QSignalSpy quit(&app, &QuilletApp::quitRequested);
    QVERIFY(app.lastWindowClosed()); // idle: quit at once
    app.windowShown();

    const auto id = app.model().run(PDFOperationKind::compress, OperationParameters::Compress{},
                                    QStringList{qpath(slow)});
    QVERIFY(!app.lastWindowClosed());
    QVERIFY(app.isWaitingForQueue());
    app.queue().cancel(*id);
    QTRY_COMPARE(quit.count(), 1);

    // A window shown again in the meantime keeps the application.
    const auto again = app.model().run(PDFOperationKind::compress, OperationParameters::Compress{},
                                       QStringList{qpath(slow)});
    QVERIFY(!app.lastWindowClosed());
    app.windowShown();
    app.queue().cancel(*again);
    QTRY_VERIFY(!app.queue().isBusy());
    QCOMPARE(quit.count(), 1);

    // The real window: closed while a job runs, it hides and the work goes on.
    MainWindow window(app, [] {});
    window.show();
    const auto third = app.model().run(PDFOperationKind::compress, OperationParameters::Compress{},
                                       QStringList{qpath(slow)});
    QVERIFY(!window.close());
    QVERIFY(!window.isVisible());
    QVERIFY(app.isWaitingForQueue());
    window.bringToFront();
    QVERIFY(window.isVisible() && !app.isWaitingForQueue());
    app.queue().cancel(*third);
    QTRY_VERIFY(!app.queue().isBusy());
    QCOMPARE(quit.count(), 1);
}

void MainWindowTest::aSecondLaunchHandsItsFilesToTheFirst() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        QSKIP("no session bus");
    }
    TempDir dir;
    const auto other = samplePDF(dir, "other.pdf");
    ApplicationBus bus;
    QCOMPARE(bus.claim(), ApplicationBus::Claim::owned);
    QSignalSpy opened(&bus, &ApplicationBus::openRequested);
    QSignalSpy activated(&bus, &ApplicationBus::activateRequested);

    QProcess second;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("XDG_CONFIG_HOME", qpath(dir / "config"));
    environment.insert("XDG_DATA_HOME", qpath(dir / "data"));
    second.setProcessEnvironment(environment);
    second.setWorkingDirectory(qpath(dir.path()));
    second.start(QString::fromUtf8(QUILLET_APP_BINARY), {"other.pdf"});
    QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 20000);
    QTRY_COMPARE_WITH_TIMEOUT(second.state(), QProcess::NotRunning, 20000);
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(opened[0][0].value<QList<QUrl>>(), QList<QUrl>{QUrl::fromLocalFile(qpath(other))});
    QCOMPARE(activated.count(), 1);
    // The second instance made no files of its own.
    QVERIFY(!fs::exists(dir / "data"));

    // A relaunch gives the name up first, so the new instance can take it.
    bus.release();
    const auto stillOwned = QDBusConnection::sessionBus().interface()->isServiceRegistered(
        QString::fromLatin1(ApplicationBus::serviceName));
    QVERIFY(!stillOwned.value());
}

static RegisterSuite registered([] { return std::make_unique<MainWindowTest>(); });

#include "MainWindowTest.moc"
