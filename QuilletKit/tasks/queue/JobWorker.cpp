#include "tasks/queue/JobWorker.hpp"

#include <QTimer>

#include <csignal>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace quillet {
namespace {

using nlohmann::ordered_json;

constexpr int killAfterMilliseconds = 3000;
constexpr qsizetype keptErrorBytes = 4096;

std::vector<std::string> strings(const ordered_json& array) {
    std::vector<std::string> values;
    if (array.is_array()) {
        for (const auto& element : array) {
            if (element.is_string()) {
                values.push_back(element.get<std::string>());
            }
        }
    }
    return values;
}

} // namespace

JobWorker::JobWorker(QStringList command, TaskSpec spec, QObject* parent)
    : QObject(parent), command_(std::move(command)), spec_(std::move(spec)) {
    process_.setProcessChannelMode(QProcess::SeparateChannels);
#ifdef __linux__
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
#endif
    connect(&process_, &QProcess::readyReadStandardOutput, this, &JobWorker::readLines);
    connect(&process_, &QProcess::readyReadStandardError, this, [this] {
        errorOutput_ += process_.readAllStandardError();
        if (errorOutput_.size() > keptErrorBytes) {
            errorOutput_ = errorOutput_.right(keptErrorBytes);
        }
    });
    connect(&process_, &QProcess::finished, this, &JobWorker::processFinished);
    connect(&process_, &QProcess::errorOccurred, this, &JobWorker::processFailed);
    connect(&process_, &QProcess::started, this, [this] {
        if (cancelled_) {
            process_.terminate();
        }
    });
}

JobWorker::~JobWorker() {
    if (process_.state() != QProcess::NotRunning) {
        process_.disconnect(this);
        process_.kill();
        process_.waitForFinished(killAfterMilliseconds);
    }
}

void JobWorker::start() {
    if (command_.isEmpty()) {
        end(Ending{Ending::Kind::failed, {}, 0, 0, std::nullopt, "No worker program is set."});
        return;
    }
    QStringList arguments = command_.mid(1);
    arguments << "job" << "-" << "--progress-json";
    process_.start(command_.front(), arguments);
    const auto json = toJSON(spec_).dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    process_.write(json.data(), static_cast<qint64>(json.size()));
    process_.closeWriteChannel();
}

void JobWorker::cancel() {
    if (cancelled_ || ended_) {
        return;
    }
    cancelled_ = true;
    if (process_.state() == QProcess::Running) {
        process_.terminate();
    }
    QTimer::singleShot(killAfterMilliseconds, this, [this] {
        if (process_.state() != QProcess::NotRunning) {
            process_.kill();
        }
    });
}

void JobWorker::readLines() {
    while (process_.canReadLine()) {
        handleLine(process_.readLine().trimmed());
    }
}

void JobWorker::handleLine(const QByteArray& line) {
    const auto json = ordered_json::parse(line.toStdString(), nullptr, false);
    if (!json.is_object()) {
        return; // not one of ours: a library talking on standard output
    }
    if (const auto progress = json.find("progress"); progress != json.end()) {
        if (progress->is_number()) {
            emit progressed(progress->get<double>());
        }
        return;
    }
    if (const auto error = json.find("error"); error != json.end() && error->is_string()) {
        reported_ = Ending{Ending::Kind::failed, {}, 0, 0, std::nullopt, error->get<std::string>()};
        return;
    }
    if (const auto outputs = json.find("outputs"); outputs != json.end()) {
        Ending ending{Ending::Kind::succeeded, strings(*outputs)};
        ending.originalBytes = json.value("originalBytes", std::int64_t{0});
        ending.resultBytes = json.value("resultBytes", std::int64_t{0});
        if (const auto note = json.find("note"); note != json.end() && note->is_string()) {
            ending.note = note->get<std::string>();
        }
        reported_ = std::move(ending);
    }
}

void JobWorker::processFinished(int exitCode, QProcess::ExitStatus status) {
    readLines();
    if (cancelled_) {
        end(Ending{Ending::Kind::cancelled});
    } else if (reported_) {
        end(std::move(*reported_));
    } else {
        end(Ending{Ending::Kind::failed, {}, 0, 0, std::nullopt, crashDescription(exitCode, status)});
    }
}

void JobWorker::processFailed(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) {
        return; // a crash or a pipe error is followed by `finished`
    }
    if (cancelled_) {
        end(Ending{Ending::Kind::cancelled});
        return;
    }
    end(Ending{Ending::Kind::failed, {}, 0, 0, std::nullopt,
               "Could not start the worker program " + command_.front().toStdString() + ": " +
                   process_.errorString().toStdString()});
}

void JobWorker::end(Ending ending) {
    if (ended_) {
        return;
    }
    ended_ = true;
    emit ended(ending);
}

std::string JobWorker::crashDescription(int exitCode, QProcess::ExitStatus status) const {
    std::string text = status == QProcess::CrashExit
                           ? "The job stopped unexpectedly: its worker process crashed."
                           : "The job stopped unexpectedly: its worker process exited with status " +
                                 std::to_string(exitCode) + " without a result.";
    const auto detail = errorOutput_.trimmed();
    if (!detail.isEmpty()) {
        text += " " + detail.right(500).toStdString();
    }
    return text;
}

} // namespace quillet
