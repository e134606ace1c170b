// The working state of the window: the section shown, the files loaded, their analyses, and the
// one call through which every screen starts work (`run`).
//
// Files are absolute local paths, in arrival order, without duplicates. A drop on the merge
// section appends what is new; a drop anywhere else replaces the selection (each drop starts a
// new one). Folders are expanded into the accepted files they hold, sorted by path; a folder is
// read on a thread of its own (a scanner archive holds tens of thousands of files), with its
// progress published, and what was dropped with it is loaded once it has been read; a new drop or
// `cancelFolderReading` abandons it. Analyses run
// in worker processes through the AnalysisService; a failed analysis leaves no entry in
// `analyses` (the file can be analysed again) and its reason in `analysisError`.
// Lives on the main thread; every change is published through a signal.
#pragma once

#include "app/SlicedLoop.hpp"
#include "app/AnalysisService.hpp"
#include "app/AppSettings.hpp"
#include "model/OperationParameters.hpp"
#include "tasks/HistoryStore.hpp"
#include "tasks/PresetStore.hpp"
#include "tasks/queue/TaskQueueService.hpp"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace quillet {

class AppModel : public QObject {
    Q_OBJECT

  public:
    enum class Section {
        home, compress, merge, split, organize, stamp, convert, privacy, batch, history };
    static constexpr int sectionCount = 10;

    /// What the open dialog is asked for; the window answers with the chosen locations (none
    /// when the user cancels).
    struct OpenPanelRequest {
        QString title;
        bool foldersAllowed = false;
    };
    using OpenPanel = std::function<QList<QUrl>(const OpenPanelRequest&)>;

    /// The queue, history, settings and analysis service must outlive the model. The preset
    /// store is created over `presetsFile`.
    AppModel(TaskQueueService& queue, HistoryStore& history, AppSettings& settings,
             AnalysisService& analysis, const std::filesystem::path& presetsFile,
             QObject* parent = nullptr);
    ~AppModel() override;

    Section section() const { return section_; }
    void setSection(Section section);
    const QStringList& files() const { return files_; }
    /// Replaces the loaded files as they are (a screen's reorder, remove, "remove all").
    void setFiles(const QStringList& paths);

    const PDFAnalysis* analysis(const QString& path) const;
    bool isAnalyzing(const QString& path) const { return analyzing_.contains(path); }
    /// Why the last analysis of `path` failed; empty when it did not fail.
    QString analysisError(const QString& path) const { return analysisErrors_.value(path); }

    TaskQueueService& queue() const { return queue_; }
    HistoryStore& history() const { return history_; }
    PresetStore& presets() { return presets_; }
    AppSettings& settings() const { return settings_; }

    /// Loads dropped or opened items (see the rules above). Non-local URLs and files of other
    /// kinds are dropped silently. With folders among them, nothing changes until they are read.
    void acceptDropped(const QList<QUrl>& urls);
    /// A dropped folder is being read; `folderFilesFound` accepted files so far.
    bool isReadingFolders() const { return reading_ != nullptr; }
    int folderFilesFound() const { return readingFound_; }
    /// Abandons the folders being read; the loaded files stay as they were.
    void cancelFolderReading();
    /// Shows the open dialog through `openPanel` and loads what the user picks.
    void chooseFiles();
    /// Starts an analysis unless `path` has one, is being analysed, or is no PDF.
    void startAnalysis(const QString& path);
    /// Starts the analysis of every loaded PDF that has none, among the first `analysedAtOnce`.
    void ensureAnalyses();
    /// Files beyond this many of one load are not analysed by themselves (a folder of 50,000
    /// scans would keep the workers busy for hours): a screen that needs one asks for it.
    static constexpr int analysedAtOnce = 1000;

    /// Builds one job with a copy of the current output rule and submits it. Without `inputs`
    /// the accepted loaded files are used; nothing is submitted when no input is left. Answers
    /// the job's id when one was submitted.
    std::optional<std::string> run(PDFOperationKind operation,
                                   const OperationParameters& parameters,
                                   const std::optional<QStringList>& inputs = std::nullopt);

    /// Follows a recommendation of the home screen: loads `path` alone, shows `section`, and
    /// announces `suggested` (the options the section should preselect) with `suggestionOffered`.
    void openWithSuggestion(Section section, const QString& path,
                            const OperationParameters& suggested);
    /// The same with several files (a finished job taken up again from the history).
    void openWithSuggestion(Section section, const QStringList& paths,
                            const OperationParameters& suggested);

    /// A PDF or an image by its extension.
    static bool isAccepted(const QString& path);
    /// The accepted files in `folder` and its subfolders (hidden ones skipped, symbolic links to
    /// folders not followed), sorted by path text. Runs on any thread: `found` (may be empty) is
    /// told the count now and then; a `stop` (may be null) that becomes true ends the walk early.
    static QStringList expandFolder(const QString& folder, const std::atomic<bool>* stop = nullptr,
                                    const std::function<void(int)>& found = {});

    static QString rawValue(Section section);
    static std::optional<Section> sectionFromRawValue(const QString& raw);

    OpenPanel openPanel;
    std::function<void()> openSettingsHandler;

  signals:
    void sectionChanged();
    void filesChanged();
    /// An analysis started, finished or failed for `path`.
    void analysisChanged(const QString& path);
    /// Folder reading started, advanced or ended.
    void folderReadingChanged();
    void historyChanged();
    void presetsChanged();
    /// A screen of `section` should preselect these options (see `openWithSuggestion`); emitted
    /// after the file is loaded and the section shown.
    void suggestionOffered(quillet::AppModel::Section section,
                           const quillet::OperationParameters& suggested);

  private:
    struct FolderReading;
    void acceptPaths(const QStringList& paths);
    /// `acceptPaths` for a list without repeats.
    void acceptUniquePaths(const QStringList& accepted);
    /// Starts the analyses of `paths` a slice at a time: each start tells every view.
    void startAnalyses(const QStringList& paths);
    void folderRead(const std::shared_ptr<FolderReading>& reading, const QStringList& found);
    void analysisFinished(const QString& path, const std::optional<PDFAnalysis>& analysis,
                          const QString& error);

    TaskQueueService& queue_;
    HistoryStore& history_;
    AppSettings& settings_;
    AnalysisService& analysisService_;
    PresetStore presets_;
    Section section_ = Section::home;
    QStringList files_;
    std::map<QString, PDFAnalysis> analyses_;
    QSet<QString> analyzing_;
    QHash<QString, QString> analysisErrors_;
    std::shared_ptr<FolderReading> reading_;
    int readingFound_ = 0;
    SlicedLoop analysisStarts_;
};

} // namespace quillet
