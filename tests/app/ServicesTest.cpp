// File-manager actions: the plan of each word, the files an invocation carries, the entries each
// file manager loads, a `--service` launch handing its action to the running instance, and one
// action routed through the model and the real queue.
#include "app/AppTests.hpp"

#include "app/ApplicationBus.hpp"
#include "app/ServicesProvider.hpp"
#include "app/ServicesRouter.hpp"

#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>

#include <map>
#include <regex>
#include <set>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

const fs::path entriesFolder =
    fs::path(sourceFolder()) / "data" / "filemanager";

const std::map<std::string, std::string> titles{{"compress", "Compress with Quillet"},
                                                {"merge", "Merge with Quillet"},
                                                {"convert", "Convert to PNG with Quillet"},
                                                {"clean", "Remove metadata with Quillet"},
                                                {"images", "Make a PDF with Quillet"},
                                                {"ocr", "Make searchable with Quillet"},
                                                {"pagenumbers", "Add page numbers with Quillet"}};

} // namespace

class ServicesTest : public QObject {
    Q_OBJECT

  private slots:
    void planTable();
    void payloadRules();
    void everyFileManagerOffersEveryAction();
    void serviceLaunchHandsTheActionToTheRunningInstance();
    void anActionRunsThroughTheModelAndQueue();
};

void ServicesTest::planTable() {
    struct Row {
        std::optional<QString> word;
        std::optional<ServicesRouter::Plan> plan;
    };
    using P = OperationParameters;
    const std::vector<Row> rows{
        {"compress", {{PDFOperationKind::compress, P::Compress{CompressionQualityTier::balanced}}}},
        {"merge", {{PDFOperationKind::merge, P::Merge{false}}}},
        {"convert", {{PDFOperationKind::pdfToImages, P::PDFToImages{"png", 150, "", 0.85}}}},
        {"clean", {{PDFOperationKind::clean, P::Clean{CleanPreset::privacy}}}},
        {"images", {{PDFOperationKind::imagesToPDF, P::ImagesToPDF{"original", "fit", 0}}}},
        {"ocr", {{PDFOperationKind::ocr, P::OCR{"eng"}}}},
        {"pagenumbers", {{PDFOperationKind::stamp, P::Stamp{{P::StampMark{}}}}}},
        {"Compress", std::nullopt},
        {"compress ", std::nullopt},
        {"OCR", std::nullopt},
        {"", std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const Row& row : rows) {
        const auto plan = ServicesRouter::plan(row.word);
        const QByteArray what = row.word.value_or("(absent)").toUtf8();
        QVERIFY2(plan.has_value() == row.plan.has_value(), what);
        if (plan) {
            QVERIFY2(plan->operation == row.plan->operation, what);
            QVERIFY2(plan->parameters == row.plan->parameters, what);
        }
    }
}

void ServicesTest::payloadRules() {
    using U = QList<QUrl>;
    const QUrl a = QUrl::fromLocalFile("/home/me/a b.pdf");
    const QUrl b = QUrl::fromLocalFile("/home/me/b.png");
    const std::vector<std::pair<QStringList, U>> rows{
        {{a.toString(QUrl::FullyEncoded), b.toString(QUrl::FullyEncoded)}, {a, b}},
        // file URIs win; everything else beside them is ignored
        {{"https://example.org/x.pdf", b.toString(), "/home/me/c.pdf", a.toString()}, {b, a}},
        {{"/home/me/a b.pdf", "/home/me/b.png"}, {a, b}},
        {{"/home/me/a b.pdf", "notes.pdf"}, {}},
        {{"Please compress the report"}, {}},
        {{"/tmp is where\nthe files are"}, {}},
        {{"https://example.org/x.pdf"}, {}},
        {{}, {}},
    };
    for (const auto& [payload, expected] : rows) {
        QCOMPARE(ServicesRouter::fileURLs(payload), expected);
    }
}

// The entries of each file manager (a folder and a kind of file) run
// `quillet-app --service WORD %F` for the six words, under their English and Chinese titles.
void ServicesTest::everyFileManagerOffersEveryAction() {
    std::map<std::string, std::string> managers;
    for (const auto& item : fs::recursive_directory_iterator(entriesFolder)) {
        const fs::path path = item.path();
        if (item.is_regular_file() && path.filename() != "CMakeLists.txt") {
            managers[fs::relative(path.parent_path(), entriesFolder).string() +
                     path.extension().string()] += readFile(path);
        }
    }
    QCOMPARE(managers.size(), 6u); // Dolphin, Nemo, Nautilus, FM actions, Thunar twice
    // A command line, or the word of a Nautilus entry ("compress", PDF, ...).
    static const std::regex command(
        R"re((?:quillet-app --service ([a-z]+) %F)|\("([a-z]+)", [A-Z])re");
    for (const auto& [manager, text] : managers) {
        std::set<std::string> words;
        for (std::sregex_iterator it(text.begin(), text.end(), command), end; it != end; ++it) {
            words.insert((*it)[1].matched ? (*it)[1].str() : (*it)[2].str());
        }
        QCOMPARE(words.size(), titles.size());
        for (const auto& word : words) {
            QVERIFY2(titles.contains(word) && text.find(titles.at(word)) != std::string::npos,
                     (manager + " " + word).c_str());
            QVERIFY(ServicesRouter::plan(QString::fromStdString(word)).has_value());
        }
        QVERIFY2(text.find("zh_CN") != std::string::npos, manager.c_str());
    }
}

void ServicesTest::serviceLaunchHandsTheActionToTheRunningInstance() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        QSKIP("no session bus");
    }
    TempDir dir;
    const auto pdf = samplePDF(dir, "a.pdf");
    const auto png = dir.write("b.png", "");
    ApplicationBus bus;
    QCOMPARE(bus.claim(), ApplicationBus::Claim::owned);
    QSignalSpy actions(&bus, &ApplicationBus::actionRequested);

    auto launch = [&](const QStringList& arguments) {
        QProcess second;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("XDG_CONFIG_HOME", qpath(dir / "config"));
        environment.insert("XDG_DATA_HOME", qpath(dir / "data"));
        second.setProcessEnvironment(environment);
        second.setWorkingDirectory(qpath(dir.path()));
        second.start(QString::fromUtf8(QUILLET_APP_BINARY), arguments);
        // The bus call of the second process is answered by this thread's event loop.
        QDeadlineTimer deadline(20000);
        while (second.state() != QProcess::NotRunning && !deadline.hasExpired()) {
            QTest::qWait(20);
        }
        return second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
    };
    QCOMPARE(launch({"--service", "Merge", "a.pdf"}), 2);
    QCOMPARE(launch({"--service", "merge", "a.pdf", qpath(png)}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(actions.count(), 1, 5000);
    QCOMPARE(actions[0][0].toString(), QStringLiteral("merge"));
    const auto parameter = actions[0][1].value<QVariantList>();
    QCOMPARE(parameter.size(), 1);
    QCOMPARE(parameter[0].toStringList(),
             (QStringList{QUrl::fromLocalFile(qpath(pdf)).toString(),
                          QUrl::fromLocalFile(qpath(png)).toString()}));
    QVERIFY(!fs::exists(dir / "data"));
}

void ServicesTest::anActionRunsThroughTheModelAndQueue() {
    TempDir dir;
    const auto source = corpus("001-trivial/minimal-document.pdf");
    QVERIFY(fs::exists(source));
    auto settings = settingsIn(dir);
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "out").string();
    settings->setOutputRule(rule);
    QuilletApp app(*settings, dir.path(), realWorker());
    int raised = 0;
    ServicesProvider services(&app.model(), [&raised] { ++raised; });

    // Not one of ours, or nothing to work on: nothing happens.
    QVERIFY(!services.activateAction("rotate", {QStringList{qpath(source)}}));
    QVERIFY(services.activateAction("clean", {QStringLiteral("just some text")}));
    QVERIFY(app.queue().records().empty());
    QCOMPARE(raised, 0);

    const QString uri = QUrl::fromLocalFile(qpath(source)).toString();
    // Clean follows the output rule (converted pages would go beside the corpus file).
    QVERIFY(services.activateAction("clean", {QStringList{uri}}));
    QCOMPARE(app.model().files(), QStringList{qpath(source)});
    QCOMPARE(raised, 1);
    QCOMPARE(app.queue().records().size(), 1u);
    const auto& record = app.queue().records()[0];
    QVERIFY(record.operation == PDFOperationKind::clean);
    QVERIFY(record.parametersData && record.parametersData->find("privacy") != std::string::npos);
    QTRY_VERIFY_WITH_TIMEOUT(app.queue().records()[0].state == TaskState::completed ||
                                 app.queue().records()[0].state == TaskState::failed,
                             60000);
    const auto& done = app.queue().records()[0];
    QVERIFY2(done.state == TaskState::completed, done.error.value_or("").c_str());
    QVERIFY(!done.outputURLs.empty());
    for (const std::string& output : done.outputURLs) {
        const QString path = QString::fromStdString(output);
        QVERIFY2(path.endsWith(".pdf") && path.startsWith(qpath(dir / "out")), qPrintable(path));
        QVERIFY(QFile::exists(path));
    }

    // A launcher's action carries no files: the user chooses them; a cancelled choice runs
    // nothing.
    QList<QUrl> chosen;
    services.chooseFiles = [&chosen] { return chosen; };
    QVERIFY(services.activateAction("compress", {}));
    QCOMPARE(app.queue().records().size(), 1u);
    chosen = {QUrl::fromLocalFile(qpath(source))};
    QVERIFY(services.activateAction("compress", {}));
    QCOMPARE(app.queue().records().size(), 2u);
    QVERIFY(app.queue().records()[1].operation == PDFOperationKind::compress);
    app.queue().cancel(app.queue().records()[1].id);
}

static RegisterSuite registered([] { return std::make_unique<ServicesTest>(); });

#include "ServicesTest.moc"
