// Analyses PDFs in worker processes: `quillet info --json FILE`, one process per file, its one
// line of JSON decoded back into a PDFAnalysis.
//
// A worker that crashes (a hostile file that brings down a library), prints nothing usable, or
// runs past the time limit fails that file's analysis and nothing else. At most `maxRunning`
// workers run at once (the number of cores by default); further requests wait in arrival order.
// Every request ends in exactly one `finished` signal, on the thread that owns the service.
#pragma once

#include "engines/PDFAnalysis.hpp"

#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <optional>

namespace quillet {

class AnalysisService : public QObject {
    Q_OBJECT

  public:
    /// `workerCommand`: the `quillet` program and any leading arguments ("info", "--json" and
    /// the file are appended).
    explicit AnalysisService(QStringList workerCommand, int maxRunning = 0,
                             QObject* parent = nullptr);
    ~AnalysisService() override;

    /// Queues one analysis; `finished` reports it.
    void analyze(const QString& path);
    int runningCount() const { return running_; }
    int waitingCount() const { return static_cast<int>(waiting_.size()); }
    int maxRunning() const { return maxRunning_; }

    /// How long one worker may take before it is stopped and the analysis fails.
    static constexpr int timeLimitMilliseconds = 5 * 60 * 1000;

  signals:
    /// `analysis` is absent when the file could not be analysed; `error` then says why in the
    /// worker's own words (or that it crashed).
    void finished(const QString& path, const std::optional<quillet::PDFAnalysis>& analysis,
                  const QString& error);

  private:
    void startWaiting();
    void start(const QString& path);

    QStringList workerCommand_;
    int maxRunning_;
    int running_ = 0;
    std::deque<QString> waiting_;
};

} // namespace quillet
