// Runs the organize screen's page model off the main thread and shows the screen its state.
//
// The OrganizeModel lives on a thread of its own: every call here posts the operation there and
// returns at once; operations run one at a time in the order they were made. After each one the
// controller publishes a plain copy of the state (`state`, then `stateChanged`) on the thread
// that owns it, so a view never touches a page, qpdf or the file. A view sends the selection
// with the operation that acts on it: the model's selection is the view's at that moment.
//
// `busy` is true from a call until its state is published; views disable their actions
// meanwhile. Failures arrive as `failed` with a translated text that names the file, and leave
// the state as it was. The history entries of saves and extractions are added to the store on
// this thread. Destroying the controller waits for the operation that runs, if any.
#pragma once

#include "tasks/OrganizeModel.hpp"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <set>

class QThread;

namespace quillet {

class AppSettings;
class HistoryStore;

class OrganizeController : public QObject {
    Q_OBJECT

  public:
    /// A cell as the screen draws it: the page's identity, how it is turned, and where its
    /// picture comes from (a page of a file, drawn already turned by `sourceRotation`).
    struct Cell {
        PageID id;
        int displayRotation = 0;
        QString sourcePath;
        int sourcePage = 0;
        int sourceRotation = 0;
        bool operator==(const Cell&) const = default;
    };

    struct State {
        /// The loaded file; empty while nothing is loaded.
        QString sourcePath;
        QList<Cell> cells;
        std::set<PageID> selection;
        bool canUndo = false;
        /// The last saved file; empty before the first save.
        QString savedPath;
        QString suggestedExtractName;
        bool signatureWarning = false;
    };

    enum class Failure { notFound, notPDF, locked, unreadable, writeFailed, nothingToWrite };

    /// `history` and `settings` must outlive the controller; the output rule is read from
    /// `settings` when `save` is called.
    OrganizeController(HistoryStore& history, AppSettings& settings, QObject* parent = nullptr);
    ~OrganizeController() override;

    const State& state() const { return state_; }
    bool isBusy() const { return pending_ > 0; }

    void load(const QString& path);
    void rotate(const std::set<PageID>& selection, int degrees);
    void remove(const std::set<PageID>& selection);
    void duplicate(const std::set<PageID>& selection);
    void move(int from, int to);
    void insertFiles(const QStringList& paths);
    void extract(const std::set<PageID>& selection, const QString& destination);
    /// Writes the selection into a private folder (for a drag out of the window) and answers
    /// with `dragFileReady`; the files of earlier drags are removed then, the rest when the
    /// controller goes.
    void extractForDrag(const std::set<PageID>& selection);
    void undo();
    /// Saves where the output rule puts it; without `skipWarning` a signed document only raises
    /// `signatureConfirmationNeeded`.
    void save(bool skipWarning);
    void dismissSignatureWarning();

    /// The text shown for a failure of `kind` concerning `file` (a file name or path).
    static QString failureText(Failure kind, const QString& file, const QString& detail = {});

  signals:
    void stateChanged();
    void busyChanged(bool busy);
    void failed(const QString& message);
    void signatureConfirmationNeeded();
    void saved(const QString& path);
    void extracted(const QString& path);
    void dragFileReady(const QString& path);

  private:
    struct Worker;
    struct Outcome;

    /// Runs `work` on the model's thread, then publishes the state and `work`'s outcome here.
    void post(std::function<void(Worker&, Outcome&)> work);
    void publish(State state, const Outcome& outcome);
    /// Runs `work`; what it throws becomes the outcome's failure, naming `subject`.
    static void attempt(Outcome& outcome, const QString& subject,
                        const std::function<void()>& work);

    HistoryStore& history_;
    AppSettings& settings_;
    std::unique_ptr<Worker> worker_;
    QThread* thread_;
    QObject* context_; ///< lives on `thread_`: what posted work is queued to
    State state_;
    int pending_ = 0;
};

} // namespace quillet
