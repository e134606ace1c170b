// One job run in a worker process: `<program> job - --progress-json`, its TaskSpec written to
// the process's standard input (so passwords never touch the disk on the way).
//
// The worker's progress lines are turned into `progressed` signals (unthrottled), and its ending
// into exactly one `ended` signal: a result, an error text, or a crash described for the user. A
// worker that dies (a hostile file that crashes a library, an out-of-memory kill) only fails its
// own job. `cancel` terminates the process (it removes its temporary files on SIGTERM) and kills
// it if it has not gone a few seconds later; the ending then reports `cancelled`. On Linux the
// worker also receives SIGTERM when the process that started it dies, so no job keeps running
// orphaned. Lives on the thread that created it; all signals arrive there.
#pragma once

#include "tasks/TaskRecords.hpp"

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace quillet {

class JobWorker : public QObject {
    Q_OBJECT

  public:
    struct Ending {
        enum class Kind { succeeded, failed, cancelled };
        Kind kind = Kind::failed;
        std::vector<std::string> outputs;
        std::int64_t originalBytes = 0;
        std::int64_t resultBytes = 0;
        std::optional<std::string> note;
        std::string error; ///< for `failed`
    };

    /// `command` is the program followed by any leading arguments; "job", "-" and
    /// "--progress-json" are appended.
    JobWorker(QStringList command, TaskSpec spec, QObject* parent = nullptr);
    ~JobWorker() override;

    void start();
    void cancel();
    bool isCancelled() const { return cancelled_; }

  signals:
    void progressed(double fraction);
    void ended(const quillet::JobWorker::Ending& ending);

  private:
    void readLines();
    void handleLine(const QByteArray& line);
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processFailed(QProcess::ProcessError error);
    void end(Ending ending);
    std::string crashDescription(int exitCode, QProcess::ExitStatus status) const;

    QStringList command_;
    TaskSpec spec_;
    QProcess process_;
    std::optional<Ending> reported_;
    QByteArray errorOutput_;
    bool cancelled_ = false;
    bool ended_ = false;
};

} // namespace quillet
