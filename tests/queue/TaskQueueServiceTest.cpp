// The queue service with real worker processes: the `quillet` program, started through a small
// shell wrapper that can hold a job back ("slow" in its spec) or crash it ("crash-me"), so that
// every state of the queue can be reached on purpose.
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"
#include "tasks/StateFile.hpp"
#include "tasks/queue/TaskQueueService.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <iostream>

using namespace quillet;
namespace fs = std::filesystem;

namespace {

const char* const wrapper =
    R"(spec=$(cat); case "$spec" in *crash-me*) kill -SEGV $$;; *slow*) exec sleep 30;; esac; )"
    R"(printf '%s' "$spec" | exec "$0" "$@")";

QStringList workerCommand() {
    return {"/bin/sh", "-c", wrapper, QUILLET_BINARY};
}

TaskSpec compressSpec(const fs::path& input) {
    return TaskSpec::make(PDFOperationKind::compress, {input.string()}, OutputRule{},
                          OperationParameters::Compress{CompressionQualityTier::lossless});
}

fs::path samplePDF(const test::TempDir& dir, const std::string& name) {
    return test::numberedPDF(dir / name, 1);
}

std::vector<std::string> queuedIDs(const fs::path& file) {
    const auto bytes = StateFile::read(file);
    if (!bytes) {
        return {};
    }
    std::vector<std::string> ids;
    for (const auto& spec : TaskSpec::listFromJSON(nlohmann::ordered_json::parse(*bytes))) {
        ids.push_back(spec.id);
    }
    return ids;
}

/// Child mode of this program: a service over `folder` with three held-back jobs, killed by the
/// parent test while the first runs.
int runQueueChild(const fs::path& folder) {
    HistoryStore history(folder / "history.json");
    TaskQueueService service(history, folder / "queue.json", workerCommand());
    const auto input = folder / "slow.pdf";
    service.submit({compressSpec(input), compressSpec(input), compressSpec(input)});
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}

} // namespace

class TaskQueueServiceTest : public QObject {
    Q_OBJECT

  private slots:
    void runsJobsOneAtATimeInSubmissionOrder();
    void cancelsAWaitingAndTheRunningJob();
    void aCrashingWorkerFailsOnlyItsOwnJob();
    void clearFinishedKeepsQueuedAndRunning();
    void waitingJobsSurviveAKilledApplication();
};

void TaskQueueServiceTest::runsJobsOneAtATimeInSubmissionOrder() {
    test::TempDir dir;
    HistoryStore history(dir / "history.json");
    TaskQueueService service(history, dir / "queue.json", workerCommand());
    // The order in which jobs start, and what the queue file held as each one started.
    std::vector<std::string> started;
    std::vector<std::vector<std::string>> fileAtStart;
    connect(&service, &TaskQueueService::recordsChanged, this, [&] {
        for (const auto& record : service.records()) {
            if (record.state == TaskState::running &&
                std::find(started.begin(), started.end(), record.id) == started.end()) {
                started.push_back(record.id);
                fileAtStart.push_back(queuedIDs(dir / "queue.json"));
            }
        }
    });
    const std::vector<TaskSpec> specs{compressSpec(samplePDF(dir, "a.pdf")),
                                      compressSpec(samplePDF(dir, "b.pdf")),
                                      compressSpec(samplePDF(dir, "c.pdf"))};
    service.submit(specs);

    QCOMPARE(service.records().size(), 3u);
    QCOMPARE(service.records()[0].state, TaskState::running);
    QCOMPARE(service.records()[1].state, TaskState::queued);
    QVERIFY(service.isBusy());
    // The running job is not in the file; the waiting ones are, in order.
    QCOMPARE(queuedIDs(dir / "queue.json"), (std::vector<std::string>{specs[1].id, specs[2].id}));
    QCOMPARE(fs::status(dir / "queue.json").permissions() & fs::perms::all,
             fs::perms::owner_read | fs::perms::owner_write);

    QTRY_VERIFY_WITH_TIMEOUT(!service.isBusy(), 60000);
    QCOMPARE(started, (std::vector<std::string>{specs[0].id, specs[1].id, specs[2].id}));
    QCOMPARE(fileAtStart[1], std::vector<std::string>{specs[2].id});
    QVERIFY(fileAtStart[2].empty()); // the last waiting job started: the file is gone
    QVERIFY(!fs::exists(dir / "queue.json"));
    for (const auto& record : service.records()) {
        QCOMPARE(record.state, TaskState::completed);
        QCOMPARE(record.progress, 1.0);
        QCOMPARE(record.outputURLs.size(), 1u);
        QVERIFY(fs::exists(record.outputURLs[0]));
        QVERIFY(record.originalBytes > 0 && record.resultBytes > 0);
    }
    QCOMPARE(history.entries().size(), 3u);
    QCOMPARE(history.entries().front().id, specs[2].id); // newest first
    QVERIFY(history.entries().front().succeeded);
}

void TaskQueueServiceTest::cancelsAWaitingAndTheRunningJob() {
    test::TempDir dir;
    HistoryStore history(dir / "history.json");
    TaskQueueService service(history, dir / "queue.json", workerCommand());
    const auto slow = samplePDF(dir, "slow.pdf");
    const std::vector<TaskSpec> specs{compressSpec(slow), compressSpec(slow), compressSpec(slow)};
    service.submit(specs);

    service.cancel(specs[1].id);
    QCOMPARE(service.records()[1].state, TaskState::cancelled);
    QCOMPARE(queuedIDs(dir / "queue.json"), std::vector<std::string>{specs[2].id});

    service.cancel(specs[0].id);
    QCOMPARE(service.records()[0].state, TaskState::cancelled);
    // The third job starts once the first has stopped; the cancelled second never runs.
    QTRY_COMPARE_WITH_TIMEOUT(service.records()[2].state, TaskState::running, 10000);
    QCOMPARE(service.records()[1].state, TaskState::cancelled);
    QVERIFY(!fs::exists(dir / "queue.json"));
    service.cancel(specs[2].id);
    QTRY_VERIFY_WITH_TIMEOUT(!service.isBusy(), 10000);
    for (const auto& record : service.records()) {
        QCOMPARE(record.state, TaskState::cancelled);
    }
    QVERIFY(history.entries().empty());
    service.cancel("00000000-0000-0000-0000-000000000000"); // unknown: nothing happens
    QCOMPARE(service.records().size(), 3u);
}

void TaskQueueServiceTest::aCrashingWorkerFailsOnlyItsOwnJob() {
    test::TempDir dir;
    HistoryStore history(dir / "history.json");
    TaskQueueService service(history, dir / "queue.json", workerCommand());
    auto missing = compressSpec(dir / "gone.pdf");
    auto protect = TaskSpec::make(PDFOperationKind::protect, {samplePDF(dir, "p.pdf").string()},
                                  OutputRule{}, OperationParameters::Protect{"s3cret", ""});
    service.submit({compressSpec(samplePDF(dir, "crash-me.pdf")), missing, protect});
    QTRY_VERIFY_WITH_TIMEOUT(!service.isBusy(), 60000);

    const auto& records = service.records();
    QCOMPARE(records[0].state, TaskState::failed);
    QVERIFY2(records[0].error->find("crashed") != std::string::npos, records[0].error->c_str());
    QCOMPARE(records[1].state, TaskState::failed);
    QCOMPARE(*records[1].error, std::string("No input files."));
    QCOMPARE(records[2].state, TaskState::completed);
    QCOMPARE(history.entries().size(), 3u);
    QVERIFY(!history.entries()[1].succeeded);
    QVERIFY(history.entries()[0].succeeded);
    // The protect job ran with its password, which never reached the history file.
    QVERIFY(test::readFile(history.file()).find("czNjcmV0") == std::string::npos);
}

void TaskQueueServiceTest::clearFinishedKeepsQueuedAndRunning() {
    test::TempDir dir;
    HistoryStore history(dir / "history.json");
    TaskQueueService service(history, dir / "queue.json", workerCommand());
    service.submit({compressSpec(samplePDF(dir, "ok.pdf")), compressSpec(dir / "gone.pdf")});
    QTRY_VERIFY_WITH_TIMEOUT(!service.isBusy(), 60000);
    const auto slow = compressSpec(samplePDF(dir, "slow.pdf"));
    const auto waiting = compressSpec(dir / "ok.pdf");
    service.submit({slow, waiting});

    service.clearFinished();
    QCOMPARE(service.records().size(), 2u);
    QCOMPARE(service.records()[0].id, slow.id);
    QCOMPARE(service.records()[0].state, TaskState::running);
    QCOMPARE(service.records()[1].id, waiting.id);
    QCOMPARE(service.records()[1].state, TaskState::queued);
    service.cancel(slow.id);
    service.cancel(waiting.id);
    QTRY_VERIFY_WITH_TIMEOUT(!service.isBusy(), 10000);
}

void TaskQueueServiceTest::waitingJobsSurviveAKilledApplication() {
    test::TempDir dir;
    samplePDF(dir, "slow.pdf");
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {"--queue-child", QString::fromStdString(dir.path().string())});
    QVERIFY(child.waitForStarted());
    QVERIFY(child.waitForReadyRead(30000));
    QCOMPARE(child.readLine().trimmed(), QByteArray("ready"));
    const auto waiting = queuedIDs(dir / "queue.json");
    QCOMPARE(waiting.size(), 2u);
    ::kill(static_cast<pid_t>(child.processId()), SIGKILL);
    QVERIFY(child.waitForFinished(10000));

    HistoryStore history(dir / "history.json");
    TaskQueueService next(history, dir / "queue.json", workerCommand());
    QCOMPARE(next.pendingResume().size(), 2u);
    QCOMPARE(next.pendingResume()[0].id, waiting[0]);
    QCOMPARE(next.pendingResume()[1].id, waiting[1]);
    QVERIFY(!fs::exists(dir / "queue.json"));
    QVERIFY(next.records().empty());

    next.discardPending();
    QVERIFY(next.pendingResume().empty());
    QVERIFY(!next.isBusy());
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 3 && std::string_view(argv[1]) == "--queue-child") {
        return runQueueChild(argv[2]);
    }
    TaskQueueServiceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TaskQueueServiceTest.moc"
