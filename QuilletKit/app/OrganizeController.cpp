#include "app/OrganizeController.hpp"

#include "app/AppSettings.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "tasks/HistoryStore.hpp"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <map>
#include <optional>
#include <vector>

namespace quillet {
namespace fs = std::filesystem;

struct OrganizeController::Worker {
    OrganizeModel model;
    std::vector<HistoryEntry> entries;
    std::optional<QTemporaryDir> dragFolder;
    int drags = 0;
};

struct OrganizeController::Outcome {
    std::optional<Failure> failure;
    QString file;
    QString detail;
    bool needsConfirmation = false;
    QString saved;
    QString extracted;
    QString dragFile;
    std::vector<HistoryEntry> entries;
};

namespace {

using Failure = OrganizeController::Failure;

QString fileName(const fs::path& path) {
    return QString::fromStdString(path.filename().string());
}

/// What a failed operation tells the user; `subject` is the file it concerned.
void describe(const std::exception& error, const QString& subject,
              OrganizeController::Failure& kind, QString& file, QString& detail) {
    file = subject;
    const auto* core = dynamic_cast<const PDFCoreError*>(&error);
    if (core == nullptr) {
        kind = Failure::unreadable;
        detail = QString::fromUtf8(error.what());
        return;
    }
    switch (core->errorCase()) {
    case PDFCoreError::Case::fileNotFound:
        kind = Failure::notFound;
        file = fileName(core->url());
        return;
    case PDFCoreError::Case::cannotOpen:
        kind = Failure::notPDF;
        file = fileName(core->url());
        return;
    case PDFCoreError::Case::wrongPassword: kind = Failure::locked; return;
    case PDFCoreError::Case::writeFailed:
        kind = Failure::writeFailed;
        if (!core->text().empty() && core->text().find('/') == std::string::npos) {
            file = QString::fromStdString(core->text()); // the output's name
        }
        return;
    case PDFCoreError::Case::emptyDocument: kind = Failure::nothingToWrite; return;
    default:
        kind = Failure::unreadable;
        detail =
            QString::fromStdString(core->text().empty() ? core->errorDescription() : core->text());
        return;
    }
}

/// Which of `paths` is locked: the error of a group open does not say.
QString lockedOne(const QStringList& paths) {
    for (const auto& path : paths) {
        try {
            PDFDocumentEngine::openUnlock(path.toStdString(), "");
        } catch (const PDFCoreError& error) {
            if (error.errorCase() == PDFCoreError::Case::wrongPassword) {
                return QFileInfo(path).fileName();
            }
        } catch (const std::exception&) {
        }
    }
    return paths.join(QStringLiteral(", "));
}

OrganizeController::State stateOf(const OrganizeModel& model) {
    OrganizeController::State state;
    if (model.sourceURL()) {
        state.sourcePath = QString::fromStdString(model.sourceURL()->string());
    }
    std::map<fs::path, QString> paths; // one shared string per file
    state.cells.reserve(static_cast<qsizetype>(model.cells().size()));
    for (const auto& cell : model.cells()) {
        auto path = paths.find(cell.source.file);
        if (path == paths.end()) {
            path =
                paths.emplace(cell.source.file, QString::fromStdString(cell.source.file.string()))
                    .first;
        }
        state.cells.push_back({cell.id, cell.displayRotation, path->second, cell.source.pageIndex,
                               cell.source.rotation});
    }
    state.selection = model.selection();
    state.canUndo = model.canUndo();
    if (model.lastOutput()) {
        state.savedPath = QString::fromStdString(model.lastOutput()->string());
    }
    state.suggestedExtractName = QString::fromStdString(model.suggestedExtractName());
    state.signatureWarning = model.showSignatureWarning();
    return state;
}

} // namespace

OrganizeController::OrganizeController(HistoryStore& history, AppSettings& settings,
                                       QObject* parent)
    : QObject(parent), history_(history), settings_(settings), worker_(std::make_unique<Worker>()),
      thread_(new QThread(this)), context_(new QObject) {
    Worker* worker = worker_.get();
    worker->model.recorded = [worker](HistoryEntry entry) {
        worker->entries.push_back(std::move(entry));
    };
    thread_->setObjectName(QStringLiteral("organize"));
    context_->moveToThread(thread_);
    thread_->start();
}

OrganizeController::~OrganizeController() {
    // Queued behind what was asked for, so a save asked for just before closing still happens.
    QThread* thread = thread_;
    QMetaObject::invokeMethod(
        context_,
        [worker = worker_.get(), thread] {
            worker->dragFolder.reset();
            thread->quit();
        },
        Qt::QueuedConnection);
    thread_->wait();
    delete context_;
}

QString OrganizeController::failureText(Failure kind, const QString& file, const QString& detail) {
    switch (kind) {
    case Failure::notFound: return tr("“%1” could not be found.").arg(file);
    case Failure::notPDF: return tr("“%1” could not be opened as a PDF.").arg(file);
    case Failure::locked:
        return tr("“%1” is locked with a password. Remove the password in Privacy, then "
                  "organize the unlocked copy.")
            .arg(file);
    case Failure::unreadable: return tr("“%1” could not be read: %2").arg(file, detail);
    case Failure::writeFailed:
        return tr("“%1” could not be written. Check that its folder exists and that you may "
                  "write there.")
            .arg(file);
    case Failure::nothingToWrite:
        return tr("Nothing to write for “%1”: no page is left or selected.").arg(file);
    }
    return file;
}

void OrganizeController::post(std::function<void(Worker&, Outcome&)> work) {
    if (++pending_ == 1) {
        emit busyChanged(true);
    }
    QMetaObject::invokeMethod(
        context_,
        [this, worker = worker_.get(), work = std::move(work)] {
            Outcome outcome;
            work(*worker, outcome);
            outcome.entries = std::move(worker->entries);
            worker->entries.clear();
            State state = stateOf(worker->model);
            QMetaObject::invokeMethod(
                this,
                [this, state = std::move(state), outcome = std::move(outcome)]() mutable {
                    publish(std::move(state), outcome);
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void OrganizeController::publish(State state, const Outcome& outcome) {
    state_ = std::move(state);
    for (const auto& entry : outcome.entries) {
        history_.add(entry);
    }
    const bool idle = --pending_ == 0;
    emit stateChanged();
    if (idle) {
        emit busyChanged(false);
    }
    if (outcome.failure) {
        emit failed(failureText(*outcome.failure, outcome.file, outcome.detail));
    }
    if (outcome.needsConfirmation) {
        emit signatureConfirmationNeeded();
    }
    if (!outcome.saved.isEmpty()) {
        emit saved(outcome.saved);
    }
    if (!outcome.extracted.isEmpty()) {
        emit extracted(outcome.extracted);
    }
    if (!outcome.dragFile.isEmpty()) {
        emit dragFileReady(outcome.dragFile);
    }
}

namespace {

QString loadedName(const OrganizeModel& model) {
    return model.sourceURL() ? fileName(*model.sourceURL()) : QString();
}

} // namespace

void OrganizeController::attempt(Outcome& outcome, const QString& subject,
                                 const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        Failure kind{};
        describe(error, subject, kind, outcome.file, outcome.detail);
        outcome.failure = kind;
    }
}

void OrganizeController::load(const QString& path) {
    post([path](Worker& worker, Outcome& outcome) {
        attempt(outcome, QFileInfo(path).fileName(),
                [&] { worker.model.load(path.toStdString()); });
    });
}

void OrganizeController::rotate(const std::set<PageID>& selection, int degrees) {
    post([selection, degrees](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] {
            worker.model.setSelection(selection);
            worker.model.rotateSelection(degrees);
        });
    });
}

void OrganizeController::remove(const std::set<PageID>& selection) {
    post([selection](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] {
            worker.model.setSelection(selection);
            worker.model.deleteSelection();
        });
    });
}

void OrganizeController::duplicate(const std::set<PageID>& selection) {
    post([selection](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] {
            worker.model.setSelection(selection);
            worker.model.duplicateSelection();
        });
    });
}

void OrganizeController::move(int from, int to) {
    post([from, to](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] { worker.model.movePage(from, to); });
    });
}

void OrganizeController::insertFiles(const QStringList& paths) {
    post([paths](Worker& worker, Outcome& outcome) {
        std::vector<fs::path> files;
        for (const auto& path : paths) {
            files.emplace_back(path.toStdString());
        }
        attempt(outcome, paths.join(QStringLiteral(", ")),
                [&] { worker.model.insertFromFiles(files); });
        if (outcome.failure == Failure::locked) {
            outcome.file = lockedOne(paths);
        }
    });
}

void OrganizeController::extract(const std::set<PageID>& selection, const QString& destination) {
    post([selection, destination](Worker& worker, Outcome& outcome) {
        attempt(outcome, QFileInfo(destination).fileName(), [&] {
            worker.model.setSelection(selection);
            worker.model.extractSelection(destination.toStdString());
            outcome.extracted = destination;
        });
    });
}

void OrganizeController::extractForDrag(const std::set<PageID>& selection) {
    post([selection](Worker& worker, Outcome& outcome) {
        if (!worker.dragFolder) {
            worker.dragFolder.emplace(QDir::temp().filePath(QStringLiteral("quillet-drag-XXXXXX")));
        }
        if (!worker.dragFolder->isValid()) {
            outcome.failure = Failure::writeFailed;
            outcome.file = worker.dragFolder->path();
            return;
        }
        // The file manager has copied what an earlier drag dropped by now.
        QDir folder(worker.dragFolder->path());
        for (const auto& earlier : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QDir(folder.filePath(earlier)).removeRecursively();
        }
        const QString subfolder = QString::number(++worker.drags);
        folder.mkdir(subfolder);
        const QString file =
            folder.filePath(subfolder + QLatin1Char('/') +
                            QString::fromStdString(worker.model.suggestedExtractName()));
        attempt(outcome, loadedName(worker.model), [&] {
            worker.model.setSelection(selection);
            worker.model.extractSelection(file.toStdString(), false);
            outcome.dragFile = file;
        });
    });
}

void OrganizeController::undo() {
    post([](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] { worker.model.undo(); });
    });
}

void OrganizeController::save(bool skipWarning) {
    post([skipWarning, rule = settings_.outputRule()](Worker& worker, Outcome& outcome) {
        attempt(outcome, loadedName(worker.model), [&] {
            if (worker.model.save(skipWarning, rule) ==
                OrganizeModel::SaveOutcome::needsConfirmation) {
                outcome.needsConfirmation = true;
            } else if (worker.model.lastOutput()) {
                outcome.saved = QString::fromStdString(worker.model.lastOutput()->string());
            }
        });
    });
}

void OrganizeController::dismissSignatureWarning() {
    post([](Worker& worker, Outcome&) { worker.model.dismissSignatureWarning(); });
}

} // namespace quillet
