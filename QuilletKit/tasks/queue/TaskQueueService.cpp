#include "tasks/queue/TaskQueueService.hpp"

#include "tasks/AppDirectories.hpp"
#include "tasks/PersistedList.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quillet {

TaskQueueService::TaskQueueService(HistoryStore& history, std::filesystem::path queueFile,
                                   QStringList workerCommand, QObject* parent)
    : QObject(parent), history_(history), queueFile_(std::move(queueFile)),
      workerCommand_(std::move(workerCommand)) {
    loadInterrupted();
}

TaskQueueService::~TaskQueueService() = default;

TaskQueueService& TaskQueueService::shared() {
    static HistoryStore history(AppDirectories::support() / "history.json");
    static TaskQueueService service(history, AppDirectories::support() / "queue.json",
                                    defaultWorkerCommand());
    return service;
}

QStringList TaskQueueService::defaultWorkerCommand() {
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath("quillet");
    return {QFileInfo(beside).isExecutable() ? beside : QStringLiteral("quillet")};
}

bool TaskQueueService::isBusy() const {
    return runningJobID_.has_value() || !jobs_.empty();
}

void TaskQueueService::submit(const std::vector<TaskSpec>& specs) {
    const auto now = TaskClock::now();
    for (const auto& spec : specs) {
        auto record = TaskRecord::fromSpec(spec, now);
        records_.push_back(record);
        jobs_.push_back(Job{std::move(record), spec});
    }
    if (!specs.empty()) {
        emit recordsChanged();
    }
    persistQueue();
    pump();
}

void TaskQueueService::pump() {
    if (runningJobID_ || jobs_.empty()) {
        return;
    }
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    const std::string id = job.record.id;
    runningJobID_ = id;
    persistQueue();
    if (auto* running = record(id)) {
        running->state = TaskState::running;
    }
    emit recordsChanged();

    throttle_ = ProgressThrottle();
    worker_ = std::make_unique<JobWorker>(workerCommand_, std::move(job.spec));
    connect(worker_.get(), &JobWorker::progressed, this, [this, id](double fraction) {
        if (const auto shown = throttle_.pass(fraction)) {
            if (auto* running = record(id)) {
                running->progress = *shown;
                emit recordsChanged();
            }
        }
    });
    connect(worker_.get(), &JobWorker::ended, this,
            [this, id](const JobWorker::Ending& ending) { jobEnded(id, ending); });
    worker_->start();
}

void TaskQueueService::jobEnded(const std::string& id, const JobWorker::Ending& ending) {
    switch (ending.kind) {
    case JobWorker::Ending::Kind::succeeded:
        finish(id, ending);
        break;
    case JobWorker::Ending::Kind::failed:
        finishFailed(id, ending.error);
        break;
    case JobWorker::Ending::Kind::cancelled:
        if (auto* cancelled = record(id)) {
            cancelled->state = TaskState::cancelled;
        }
        persistQueue();
        break;
    }
    // The worker is still inside its own signal: let it go once control is back in the loop.
    worker_.release()->deleteLater();
    runningJobID_.reset();
    // Observers learn of the ending with the queue already idle (when nothing waits).
    emit recordsChanged();
    pump();
}

void TaskQueueService::finish(const std::string& id, const JobWorker::Ending& ending) {
    auto* finished = record(id);
    if (finished == nullptr) {
        return;
    }
    finished->state = TaskState::completed;
    finished->progress = 1.0;
    finished->outputURLs = ending.outputs;
    finished->originalBytes = ending.originalBytes;
    finished->resultBytes = ending.resultBytes;
    finished->message = ending.note;
    history_.add(HistoryEntry::fromRecord(*finished, TaskClock::now(), true));
}

void TaskQueueService::finishFailed(const std::string& id, const std::string& error) {
    auto* failed = record(id);
    if (failed == nullptr) {
        return;
    }
    failed->state = TaskState::failed;
    failed->error = error;
    history_.add(HistoryEntry::fromRecord(*failed, TaskClock::now(), false));
}

void TaskQueueService::cancel(const std::string& recordID) {
    const auto waiting = std::find_if(jobs_.begin(), jobs_.end(),
                                      [&](const Job& job) { return job.record.id == recordID; });
    if (waiting != jobs_.end()) {
        jobs_.erase(waiting);
        if (auto* cancelled = record(recordID)) {
            cancelled->state = TaskState::cancelled;
        }
        emit recordsChanged();
    }
    if (runningJobID_ == recordID && worker_) {
        if (auto* cancelled = record(recordID)) {
            cancelled->state = TaskState::cancelled;
        }
        worker_->cancel();
        emit recordsChanged();
    }
    persistQueue();
}

void TaskQueueService::clearFinished() {
    std::erase_if(records_, [](const TaskRecord& record) {
        return record.state == TaskState::completed || record.state == TaskState::failed ||
               record.state == TaskState::cancelled;
    });
    emit recordsChanged();
}

void TaskQueueService::resumePending() {
    auto specs = std::move(pendingResume_);
    pendingResume_.clear();
    emit pendingResumeChanged();
    submit(specs);
}

void TaskQueueService::discardPending() {
    pendingResume_.clear();
    emit pendingResumeChanged();
}

void TaskQueueService::persistQueue() {
    std::vector<TaskSpec> waiting;
    for (const auto& job : jobs_) {
        const auto* current = record(job.record.id);
        if (current != nullptr &&
            (current->state == TaskState::queued || current->state == TaskState::running)) {
            waiting.push_back(job.spec);
        }
    }
    if (waiting.empty()) {
        StateFile::remove(queueFile_);
    } else {
        PersistedList::save(queueFile_, waiting);
    }
}

void TaskQueueService::loadInterrupted() {
    auto specs = PersistedList::load<TaskSpec>(queueFile_);
    if (specs.empty()) {
        return;
    }
    pendingResume_ = std::move(specs);
    StateFile::remove(queueFile_);
}

TaskRecord* TaskQueueService::record(const std::string& id) {
    const auto found = std::find_if(records_.begin(), records_.end(),
                                    [&](const TaskRecord& record) { return record.id == id; });
    return found == records_.end() ? nullptr : &*found;
}

} // namespace quillet
