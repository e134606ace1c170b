// The application's state, made once at start: the settings, the one history store over
// "history.json" (shared by the queue and the model, so neither overwrites the other's entries),
// the job queue, the analysis workers and the model.
//
// It also decides when the application ends: closing the last window quits at once when no job
// runs or waits; otherwise the work goes on without a window and the application quits when the
// queue becomes idle, unless a window was shown again meanwhile.
#pragma once

#include "app/AnalysisService.hpp"
#include "app/AppModel.hpp"
#include "app/AppSettings.hpp"
#include "app/PageRenderService.hpp"
#include "tasks/HistoryStore.hpp"
#include "tasks/queue/TaskQueueService.hpp"

#include <QObject>
#include <QStringList>
#include <QTranslator>

#include <filesystem>
#include <memory>
#include <vector>

namespace quillet {

class QuilletApp : public QObject {
    Q_OBJECT

  public:
    /// The application's files live in `supportFolder`; jobs and analyses run `workerCommand`
    /// (the `quillet` program). `settings` must outlive the app.
    QuilletApp(AppSettings& settings, const std::filesystem::path& supportFolder,
               const QStringList& workerCommand, QObject* parent = nullptr);
    ~QuilletApp() override;

    AppSettings& settings() const { return settings_; }
    HistoryStore& history() { return history_; }
    TaskQueueService& queue() { return *queue_; }
    AnalysisService& analysis() { return *analysis_; }
    AppModel& model() { return *model_; }
    /// Page pictures for the screens, drawn off the main thread.
    PageRenderService& renders() { return *renders_; }

    /// The last window was closed: answers true when the application should quit now. When it
    /// answers false, the application quits by itself once the queue is idle.
    bool lastWindowClosed();
    /// A window is back: the application no longer quits when the queue becomes idle.
    void windowShown();
    bool isWaitingForQueue() const { return waitingForQueue_; }

    /// Installs the translations of `language` ("en" or "zh_CN"): the app's own and Qt's
    /// standard dialogs'. Answers whether the app's own were found.
    static bool installTranslations(const QString& language);

  signals:
    /// The queue became idle while no window was open.
    void quitRequested();

  private:
    void queueChanged();

    AppSettings& settings_;
    HistoryStore history_;
    std::unique_ptr<TaskQueueService> queue_;
    std::unique_ptr<AnalysisService> analysis_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<PageRenderService> renders_;
    bool waitingForQueue_ = false;
};

} // namespace quillet
