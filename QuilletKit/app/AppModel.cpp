#include "app/AppModel.hpp"

#include "app/EngineTexts.hpp"
#include "platform/FileTypes.hpp"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <array>
#include <thread>

namespace quillet {
namespace {

constexpr std::array<const char*, AppModel::sectionCount> sectionNames{
    "home", "compress", "merge", "split", "organize", "stamp", "convert", "privacy", "batch", "history"};

bool isPDFPath(const QString& path) {
    return QFileInfo(path).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) == 0;
}

} // namespace

// What one drop with folders waits for. The walking thread holds it too, so it outlives a model
// that goes away first; `stopped` tells the thread to give up.
struct AppModel::FolderReading {
    QStringList before; ///< the drop's own files, in drop order, before the folders' files
    QStringList folders;
    std::atomic<bool> stopped{false};
};

AppModel::AppModel(TaskQueueService& queue, HistoryStore& history, AppSettings& settings,
                   AnalysisService& analysis, const std::filesystem::path& presetsFile,
                   QObject* parent)
    : QObject(parent), queue_(queue), history_(history), settings_(settings),
      analysisService_(analysis), presets_(presetsFile) {
    history_.changed = [this] { emit historyChanged(); };
    presets_.changed = [this] { emit presetsChanged(); };
    connect(&analysisService_, &AnalysisService::finished, this, &AppModel::analysisFinished);
}

AppModel::~AppModel() {
    if (reading_) {
        reading_->stopped = true;
    }
    history_.changed = nullptr;
}

QString AppModel::rawValue(Section section) {
    return QString::fromLatin1(sectionNames[static_cast<std::size_t>(section)]);
}

std::optional<AppModel::Section> AppModel::sectionFromRawValue(const QString& raw) {
    for (std::size_t i = 0; i < sectionNames.size(); ++i) {
        if (raw == QLatin1String(sectionNames[i])) {
            return static_cast<Section>(i);
        }
    }
    return std::nullopt;
}

void AppModel::setSection(Section section) {
    if (section_ != section) {
        section_ = section;
        emit sectionChanged();
    }
}

void AppModel::setFiles(const QStringList& paths) {
    if (files_ != paths) {
        files_ = paths;
        analysisStarts_.stop(); // those files may be gone; the views ask for the new ones
        emit filesChanged();
    }
}

const PDFAnalysis* AppModel::analysis(const QString& path) const {
    const auto found = analyses_.find(path);
    return found == analyses_.end() ? nullptr : &found->second;
}

bool AppModel::isAccepted(const QString& path) {
    return fileKind(std::filesystem::path(path.toStdString())).has_value();
}

QStringList AppModel::expandFolder(const QString& folder, const std::atomic<bool>* stop,
                                   const std::function<void(int)>& found) {
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        if (stop && stop->load(std::memory_order_relaxed)) {
            return {};
        }
        const QString path = walk.next();
        const QFileInfo info = walk.fileInfo();
        if (!info.isDir() && isAccepted(path)) {
            files << info.absoluteFilePath();
            if (found && files.size() % 500 == 0) {
                found(static_cast<int>(files.size()));
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

namespace {

QStringList withoutRepeats(const QStringList& paths) {
    QStringList unique;
    QSet<QString> seen;
    for (const QString& path : paths) {
        if (!seen.contains(path)) {
            seen.insert(path);
            unique << path;
        }
    }
    return unique;
}

} // namespace

void AppModel::acceptDropped(const QList<QUrl>& urls) {
    QStringList files;
    QStringList folders;
    for (const QUrl& url : urls) {
        if (!url.isLocalFile()) {
            continue;
        }
        const QFileInfo info(url.toLocalFile());
        if (info.isDir()) {
            folders << info.absoluteFilePath();
        } else if (isAccepted(info.fileName())) {
            files << info.absoluteFilePath();
        }
    }
    if (folders.isEmpty()) {
        acceptPaths(files);
        return;
    }
    cancelFolderReading();
    auto reading = std::make_shared<FolderReading>();
    reading->before = files;
    reading->folders = folders;
    reading_ = reading;
    readingFound_ = 0;
    emit folderReadingChanged();
    QPointer<AppModel> self(this);
    std::thread([self, reading] {
        // Results go through the application object's queue; at exit, when it is gone or the
        // reading was abandoned, nothing is posted.
        const auto post = [&reading](auto work) {
            auto* application = QCoreApplication::instance();
            if (application != nullptr && !reading->stopped) {
                QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
            }
        };
        QStringList found;
        for (const QString& folder : reading->folders) {
            const int earlier = static_cast<int>(found.size());
            found << expandFolder(folder, &reading->stopped, [&](int count) {
                post([self, reading, total = earlier + count] {
                    if (self && self->reading_ == reading) {
                        self->readingFound_ = total;
                        emit self->folderReadingChanged();
                    }
                });
            });
        }
        // The repeats go here, off the window's thread: 50,000 paths take it tens of
        // milliseconds.
        post([self, reading, all = withoutRepeats(reading->before + found)] {
            if (self) {
                self->folderRead(reading, all);
            }
        });
    }).detach();
}

void AppModel::cancelFolderReading() {
    if (reading_) {
        reading_->stopped = true;
        reading_.reset();
        readingFound_ = 0;
        emit folderReadingChanged();
    }
}

void AppModel::folderRead(const std::shared_ptr<FolderReading>& reading,
                          const QStringList& found) {
    if (reading_ != reading || reading->stopped) {
        return; // abandoned meanwhile
    }
    reading_.reset();
    readingFound_ = 0;
    emit folderReadingChanged();
    acceptUniquePaths(found);
}

void AppModel::acceptPaths(const QStringList& paths) {
    acceptUniquePaths(withoutRepeats(paths));
}

void AppModel::acceptUniquePaths(const QStringList& accepted) {
    if (accepted.isEmpty()) {
        return;
    }
    if (section_ == Section::merge) {
        QStringList appended = files_;
        QSet<QString> loaded(files_.begin(), files_.end());
        for (const QString& path : accepted) {
            if (!loaded.contains(path)) {
                appended << path;
            }
        }
        setFiles(appended);
    } else {
        setFiles(accepted);
    }
    if (section_ == Section::home) {
        startAnalyses(accepted.mid(0, analysedAtOnce));
    }
}

void AppModel::chooseFiles() {
    if (!openPanel) {
        return;
    }
    const auto chosen = openPanel({tr("Choose PDFs or images"), section_ == Section::batch});
    if (!chosen.isEmpty()) {
        acceptDropped(chosen);
    }
}

void AppModel::openWithSuggestion(Section section, const QString& path,
                                  const OperationParameters& suggested) {
    setSection(section);
    setFiles({path});
    emit suggestionOffered(section, suggested);
}

void AppModel::openWithSuggestion(Section section, const QStringList& paths,
                                  const OperationParameters& suggested) {
    setSection(section);
    setFiles(paths);
    emit suggestionOffered(section, suggested);
}

void AppModel::startAnalysis(const QString& path) {
    if (!isPDFPath(path) || analyses_.count(path) != 0 || analyzing_.contains(path)) {
        return;
    }
    analyzing_.insert(path);
    analysisErrors_.remove(path);
    analysisService_.analyze(path);
    emit analysisChanged(path);
}

void AppModel::ensureAnalyses() {
    startAnalyses(files_.mid(0, analysedAtOnce));
}

void AppModel::startAnalyses(const QStringList& paths) {
    analysisStarts_.start(static_cast<int>(paths.size()),
                          [this, paths](int index) { startAnalysis(paths.at(index)); });
}

void AppModel::analysisFinished(const QString& path, const std::optional<PDFAnalysis>& analysis,
                                const QString& error) {
    analyzing_.remove(path);
    if (analysis) {
        analyses_.insert_or_assign(path, *analysis);
    } else {
        analysisErrors_.insert(path, EngineTexts::translated(error));
    }
    emit analysisChanged(path);
}

std::optional<std::string> AppModel::run(PDFOperationKind operation,
                                         const OperationParameters& parameters,
                                         const std::optional<QStringList>& inputs) {
    std::vector<std::string> paths;
    if (inputs) {
        for (const QString& path : *inputs) {
            paths.push_back(path.toStdString());
        }
    } else {
        for (const QString& path : files_) {
            if (isAccepted(path)) {
                paths.push_back(path.toStdString());
            }
        }
    }
    if (paths.empty()) {
        return std::nullopt;
    }
    auto spec = TaskSpec::make(operation, std::move(paths), settings_.outputRule(), parameters);
    auto id = spec.id;
    queue_.submit({std::move(spec)});
    return id;
}

} // namespace quillet
