// The privacy screen's "Redact" tab: the first loaded PDF's pages, where the user draws boxes
// (RedactPageView), a search (words or a regular expression, case matched or not) and the
// presets, and the list of what they find, a box each, all ticked; unticking one keeps it.
//
// Reading the file and searching it run on a worker thread: the window never waits. Results
// that arrive after the file or the search changed are dropped.
//
// The jobs (`jobs`): the PDF shown gets its drawn boxes and, while every match is ticked, the
// search and presets themselves (so their matches also leave the metadata and outline);
// with some unticked, the ticked matches become boxes instead. Every other loaded PDF gets the
// search and presets.
#pragma once

#include "model/OperationParameters.hpp"
#include "tasks/TaskRecords.hpp"

#include <QMap>
#include <QRectF>
#include <QSizeF>
#include <QStringList>
#include <QWidget>

#include <string>
#include <utility>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace quillet {

class PageRenderService;
class RedactPageView;

class RedactPanel : public QWidget {
    Q_OBJECT

  public:
    RedactPanel(PageRenderService& renders, QWidget* parent = nullptr);

    /// Shows `pdfs`' first file (nothing when empty).
    void setFiles(const QStringList& pdfs);
    /// Searches the file shown for the search text and the presets ticked.
    void find();

    /// The redaction of each of `pdfs`, in order; an empty list when nothing would be removed.
    std::vector<std::pair<QString, OperationParameters::Redact>> jobs(const QStringList& pdfs) const;
    /// Why no job can be made yet; empty when one can. Before `running`, having nothing to look
    /// for yet is no problem.
    QString problem(bool running) const;
    /// Forgets the drawn boxes and the search once their jobs are queued (what is to be removed
    /// is not kept on screen).
    void clearAfterQueued();
    /// Takes up a job from the history: its boxes and presets again, and the search field asks
    /// for the words, which the history does not keep.
    void offer(const OperationParameters::Redact& redaction);
    /// Follows job `id` (the shown file's): once it has finished, "Before and after" opens its
    /// result beside the original.
    void watch(const std::string& id);
    /// The queue's records changed.
    void queueChanged(const std::vector<TaskRecord>& records);

  signals:
    void changed();

  private:
    struct Hit {
        int page = 0; // zero-based
        QString label;
        QString text;
        QList<QRectF> boxes;
    };
    void showPage(int index);
    void showHits(std::vector<Hit> hits);
    void refreshPageBoxes();
    OperationParameters::Redact searched() const;
    bool everyHitTicked() const;

    PageRenderService& renders_;
    RedactPageView* page_ = nullptr;
    QLabel* file_ = nullptr;
    QLabel* pageLabel_ = nullptr;
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
    QLineEdit* search_ = nullptr;
    QCheckBox* matchCase_ = nullptr;
    QCheckBox* regex_ = nullptr;
    std::vector<std::pair<QString, QCheckBox*>> presets_;
    QPushButton* find_ = nullptr;
    QTreeWidget* hitsList_ = nullptr;
    QLabel* status_ = nullptr;

    QString path_;
    QList<QSizeF> pageSizes_;
    int pageIndex_ = 0;
    std::vector<Hit> hits_;
    /// Bumped whenever the file (both) or the search (`generation_`) changes: results of older
    /// readings and searches are dropped.
    QMap<int, QList<QRectF>> offered_; ///< boxes of a job taken up, shown once its file is
    std::string watched_;
    QString original_;
    QString result_;
    QPushButton* compare_ = nullptr;
    int fileGeneration_ = 0;
    int generation_ = 0;
};

} // namespace quillet
