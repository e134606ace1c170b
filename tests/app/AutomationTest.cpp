// Automation actions: real calls over the session bus, each in a private work folder, answered
// with the "out-" files or with the error, and the lifetime of an instance started only for them.
#include "app/AppTests.hpp"

#include "app/AutomationBus.hpp"
#include "app/BackgroundLifetime.hpp"
#include "app/IntentRunner.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

constexpr int longCallMilliseconds = 10 * 60 * 1000;
const QString path = QStringLiteral("/org/quillet/Quillet");
const QString interface = QString::fromLatin1(AutomationBus::interfaceName);

/// Calls the interface this process exports, through the daemon as another program does: no
/// introspection first, which this process's own thread would have to answer.
struct Caller {
    QDBusConnection client;
    QDBusPendingCall operator()(const QString& method, const QVariantList& arguments) const {
        auto call = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
                                                   path, interface, method);
        call.setArguments(arguments);
        return client.asyncCall(call, longCallMilliseconds);
    }
};

/// The interface exported on the test's session bus over a real runner, and a second
/// connection that calls it as another program does. Unexported when it goes.
struct ExportedIntents {
    explicit ExportedIntents(const TempDir& dir)
        : runner(realWorker(), dir.path()), automation(&exported, runner),
          registered(QDBusConnection::sessionBus().registerObject(path, &exported,
                                                                  QDBusConnection::ExportAdaptors)),
          call{QDBusConnection::connectToBus(QDBusConnection::SessionBus, "automation-client")} {}
    ~ExportedIntents() {
        QDBusConnection::sessionBus().unregisterObject(path);
        QDBusConnection::disconnectFromBus("automation-client");
    }

    IntentRunner runner;
    QObject exported;
    AutomationBus automation;
    bool registered;
    Caller call;
};

} // namespace

class AutomationTest : public QObject {
    Q_OBJECT

  private slots:
    void callsOverTheBusAnswerTheOutFiles();
    void errorsAnswerTheFailedError();
    void backgroundInstanceQuitsWhenIdle();
};

void AutomationTest::callsOverTheBusAnswerTheOutFiles() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        QSKIP("no session bus: run under dbus-run-session for the calls over D-Bus");
    }
    TempDir dir;
    // Through the daemon, as another program calls, from a connection of its own.
    ExportedIntents bus(dir);
    QVERIFY(bus.registered);
    const Caller& intents = bus.call;

    const QString four = qpath(corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"));
    const QString one = qpath(corpus("001-trivial/minimal-document.pdf"));
    struct Call {
        QString method;
        QVariantList arguments;
        QString word;
        QString names; ///< a pattern for the answered names, joined by ","
    };
    const std::vector<Call> calls{
        {"CleanPDF", {QStringList{one}}, "clean", "out-minimal-document-clean\\.pdf"},
        {"SplitPDF",
         {four, 2},
         "split",
         "out-pdflatex-4-pages-part-part1\\.pdf,out-pdflatex-4-pages-part-part2\\.pdf"},
        {"MergePDFs", {QStringList{one, four}}, "merge", "out-merged-[0-9-]+\\.pdf"},
        {"ConvertPDFToImages", {one, 72}, "convert", "out-minimal-document-.*1\\.png"},
        {"RedactPDF",
         {QStringList{four}, QStringList{"Huardest gefburn", "preset:email"}},
         "redact",
         "out-pdflatex-4-pages-redacted\\.pdf"},
        {"StampPDF",
         {QStringList{one, four}, QString(R"([{"kind":"bates","prefix":"X-"}])")},
         "stamp",
         "out-minimal-document-stamped\\.pdf,out-pdflatex-4-pages-stamped\\.pdf"},
    };
    // All sent at once: the runner queues them and answers each.
    std::vector<QDBusPendingCall> pending;
    for (const Call& call : calls) {
        pending.push_back(intents(call.method, call.arguments));
    }
    for (std::size_t i = 0; i < calls.size(); ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(pending[i].isFinished(), 120000);
        QDBusPendingReply<QStringList> reply = pending[i];
        QVERIFY2(!reply.isError(), qPrintable(calls[i].method + ": " + reply.error().message()));
        QStringList names;
        for (const QString& output : reply.value()) {
            const fs::path file(output.toStdString());
            QVERIFY(file.is_absolute() && fs::file_size(file) > 0);
            QVERIFY(file.parent_path().filename().string().starts_with(
                "quillet-intent-" + calls[i].word.toStdString() + "-"));
            QCOMPARE(file.parent_path().parent_path(), dir.path());
            names << QString::fromStdString(file.filename().string());
        }
        QVERIFY2(QRegularExpression("^" + calls[i].names + "$").match(names.join(',')).hasMatch(),
                 qPrintable(names.join(',')));
    }
}

void AutomationTest::errorsAnswerTheFailedError() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        QSKIP("no session bus: run under dbus-run-session for the calls over D-Bus");
    }
    TempDir dir;
    ExportedIntents bus(dir);
    QVERIFY(bus.registered);
    const Caller& intents = bus.call;
    const QString missing = qpath(dir / "missing.pdf");
    const QString one = qpath(corpus("001-trivial/minimal-document.pdf"));
    const std::vector<std::pair<QDBusPendingCall, QString>> cases{
        {intents("CompressPDF", {QStringList{missing}, QString(), 0}), "missing.pdf"},
        {intents("CompressPDF", {QStringList{one}, QString("Balanced"), 0}),
         "use highQuality, balanced, smallest or lossless"},
        {intents("CleanPDF", {QStringList{"relative.pdf"}}), "not an absolute path"},
        {intents("MakePDFSearchable", {QStringList{one}, QString("eng+xyz")}),
         "tesseract-ocr-xyz"},
        {intents("RedactPDF", {QStringList{one}, QStringList{"regex:(open"}}), "(open"},
        {intents("StampPDF", {QStringList{one}, QString(R"([{"kind":"text","color":"red"}])")}),
         "Mark 1: the text is empty."},
    };
    for (const auto& [call, text] : cases) {
        QTRY_VERIFY_WITH_TIMEOUT(call.isFinished(), 60000);
        QVERIFY(call.isError());
        QCOMPARE(call.error().name(), QString::fromLatin1(AutomationBus::errorName));
        QVERIFY2(call.error().message().contains(text), qPrintable(call.error().message()));
    }
}

void AutomationTest::backgroundInstanceQuitsWhenIdle() {
    using namespace std::chrono_literals;
    BackgroundLifetime idle(50ms);
    QSignalSpy quit(&idle, &BackgroundLifetime::quitRequested);
    QTRY_COMPARE(quit.count(), 1);

    BackgroundLifetime working(50ms);
    QSignalSpy workingQuit(&working, &BackgroundLifetime::quitRequested);
    working.setBusy(true);
    QTest::qWait(150);
    QCOMPARE(workingQuit.count(), 0);
    working.setBusy(false);
    QTRY_COMPARE(workingQuit.count(), 1);

    BackgroundLifetime shown(50ms);
    QSignalSpy shownQuit(&shown, &BackgroundLifetime::quitRequested);
    QObject window;
    shown.watchWindow(&window);
    QEvent show(QEvent::Show);
    QCoreApplication::sendEvent(&window, &show);
    shown.setBusy(true);
    shown.setBusy(false);
    QTest::qWait(150);
    QCOMPARE(shownQuit.count(), 0);
    QVERIFY(shown.hasOpenedWindow());
}

static RegisterSuite registered([] { return std::make_unique<AutomationTest>(); });

#include "AutomationTest.moc"
