#include "app/AnalysisService.hpp"

#include <QProcess>
#include <QThread>
#include <QTimer>

#include <csignal>
#ifdef __linux__
#include <sys/prctl.h>
#include <unistd.h>
#endif

namespace quillet {
namespace {

/// The worker's answer: the analysis from its JSON line, or the reason there is none.
std::pair<std::optional<PDFAnalysis>, QString> decodeAnswer(QProcess& process, bool timedOut) {
    if (timedOut) {
        return {std::nullopt, AnalysisService::tr("the analysis took longer than %n minute(s)",
                                                  nullptr,
                                                  AnalysisService::timeLimitMilliseconds / 60000)};
    }
    const QByteArray output = process.readAllStandardOutput();
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) {
        try {
            const auto json = nlohmann::ordered_json::parse(output.toStdString());
            return {PDFAnalysis::fromJSON(json), QString()};
        } catch (const std::exception& error) {
            return {std::nullopt, AnalysisService::tr("unreadable analysis (%1)").arg(error.what())};
        }
    }
    QString message = QString::fromUtf8(process.readAllStandardError()).trimmed();
    if (const auto line = message.lastIndexOf(QStringLiteral("error: ")); line >= 0) {
        message = message.mid(line + 7);
    }
    if (process.exitStatus() == QProcess::CrashExit || message.isEmpty()) {
        message = AnalysisService::tr("the analysis stopped unexpectedly");
    }
    return {std::nullopt, message};
}

} // namespace

AnalysisService::AnalysisService(QStringList workerCommand, int maxRunning, QObject* parent)
    : QObject(parent), workerCommand_(std::move(workerCommand)),
      maxRunning_(maxRunning > 0 ? maxRunning : std::max(1, QThread::idealThreadCount())) {}

AnalysisService::~AnalysisService() {
    // Children go first (they kill their processes); nothing is reported after this point.
    for (auto* process : findChildren<QProcess*>()) {
        process->disconnect(this);
        process->kill();
        process->waitForFinished(1000);
    }
}

void AnalysisService::analyze(const QString& path) {
    waiting_.push_back(path);
    startWaiting();
}

void AnalysisService::startWaiting() {
    while (running_ < maxRunning_ && !waiting_.empty()) {
        const QString path = waiting_.front();
        waiting_.pop_front();
        start(path);
    }
}

void AnalysisService::start(const QString& path) {
    ++running_;
    auto* process = new QProcess(this);
#ifdef __linux__
    // The worker gives way to the window: on a machine with two cores, two analyses at full
    // priority would leave the window's thread waiting for a core.
    process->setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        [[maybe_unused]] const int niceness = ::nice(5);
    });
#endif
    auto* limit = new QTimer(process);
    limit->setSingleShot(true);
    auto timedOut = std::make_shared<bool>(false);
    connect(limit, &QTimer::timeout, process, [process, timedOut] {
        *timedOut = true;
        process->kill();
    });

    auto ended = std::make_shared<bool>(false);
    const auto end = [this, process, path, ended](std::optional<PDFAnalysis> analysis,
                                                  QString error) {
        if (*ended) {
            return;
        }
        *ended = true;
        --running_;
        process->deleteLater();
        emit finished(path, analysis, error);
        startWaiting();
    };
    connect(process, &QProcess::finished, this, [process, end, timedOut] {
        auto [analysis, error] = decodeAnswer(*process, *timedOut);
        end(std::move(analysis), std::move(error));
    });
    connect(process, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end(std::nullopt, tr("the analysis program could not be started"));
        }
    });
    QStringList arguments = workerCommand_.mid(1);
    arguments << QStringLiteral("info") << QStringLiteral("--json") << path;
    limit->start(timeLimitMilliseconds);
    process->start(workerCommand_.value(0), arguments);
}

} // namespace quillet
