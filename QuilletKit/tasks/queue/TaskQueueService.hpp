// The one place where the application runs jobs: specs go in, one observable record per job
// comes out, jobs run strictly one at a time, each ending is recorded in the history, and the
// specs still waiting are kept in "queue.json" so that a quit or a crash loses none of them.
//
// Each job runs in a worker process (JobWorker), so a file that crashes a library fails its own
// job and nothing else. Everything here happens on the thread that owns the service (the main
// thread); observers learn of changes through the signals.
//
// Record states: queued -> running -> completed | failed | cancelled; a queued record may also
// be cancelled. A cancelled job writes no history entry.
//
// The queue file holds the specs of the waiting jobs, in order, never the running one; it is
// removed when nothing waits, and written with mode 0600 (a protect job's spec holds its
// password). At creation the service offers the specs found there in `pendingResume` and removes
// the file: a job that was running when the application ended is deliberately not offered again.
// No operation reports a file error to its caller.
#pragma once

#include "tasks/HistoryStore.hpp"
#include "tasks/ProgressThrottle.hpp"
#include "tasks/TaskRecords.hpp"
#include "tasks/queue/JobWorker.hpp"

#include <QObject>
#include <QStringList>

#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

class TaskQueueService : public QObject {
    Q_OBJECT

  public:
    /// `history` must outlive the service. `queueFile` is normally "queue.json" in the support
    /// folder; `workerCommand` the `quillet` program (and any leading arguments).
    TaskQueueService(HistoryStore& history, std::filesystem::path queueFile,
                     QStringList workerCommand, QObject* parent = nullptr);
    ~TaskQueueService() override;

    /// The application's service, made on first use (a QCoreApplication must exist): history in
    /// "history.json" and the queue in "queue.json" of the support folder, workers run with the
    /// `quillet` program beside the application's own.
    static TaskQueueService& shared();
    static QStringList defaultWorkerCommand();

    const std::vector<TaskRecord>& records() const { return records_; }
    const std::vector<TaskSpec>& pendingResume() const { return pendingResume_; }
    const std::optional<std::string>& runningJobID() const { return runningJobID_; }
    HistoryStore& history() const { return history_; }
    /// A job runs or waits.
    bool isBusy() const;

    /// Queues each spec in order (a record each), saves the queue, starts the next job if idle.
    void submit(const std::vector<TaskSpec>& specs);
    /// A waiting job leaves the queue; the running one is stopped. Either way its record reads
    /// cancelled at once. An unknown id changes nothing (the queue file is written again).
    void cancel(const std::string& recordID);
    /// Drops the completed, failed and cancelled records; queued and running ones stay in order.
    void clearFinished();
    /// Submits the interrupted specs, or forgets them.
    void resumePending();
    void discardPending();

  signals:
    /// Any record was added, removed or changed (state, progress, results).
    void recordsChanged();
    void pendingResumeChanged();

  private:
    struct Job {
        TaskRecord record;
        TaskSpec spec;
    };

    void pump();
    void jobEnded(const std::string& id, const JobWorker::Ending& ending);
    void finish(const std::string& id, const JobWorker::Ending& ending);
    void finishFailed(const std::string& id, const std::string& error);
    void persistQueue();
    void loadInterrupted();
    TaskRecord* record(const std::string& id);

    HistoryStore& history_;
    std::filesystem::path queueFile_;
    QStringList workerCommand_;
    std::vector<TaskRecord> records_;
    std::vector<TaskSpec> pendingResume_;
    std::deque<Job> jobs_;
    std::optional<std::string> runningJobID_;
    std::unique_ptr<JobWorker> worker_;
    ProgressThrottle throttle_;
};

} // namespace quillet
