#include "screens/MergeView.hpp"

#include "app/LoadedFilesModel.hpp"
#include "screens/Coalesced.hpp"
#include "screens/Components.hpp"
#include "screens/ScreenParts.hpp"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIdentityProxyModel>
#include <QKeyEvent>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace quillet {
namespace {

const QString rowsMime = QStringLiteral("application/x-quillet-merge-rows");

/// The loaded files with rows that can be dragged within the list: a drop hands the dragged rows
/// and the drop position to `move`, which writes the new order to the model.
class MergeOrderModel : public QIdentityProxyModel {
  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    std::function<void(QList<int>, int)> move;

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const Qt::ItemFlags flags = QIdentityProxyModel::flags(index);
        // Dropping onto a row means before it; only the space between rows takes drops.
        return index.isValid() ? flags | Qt::ItemIsDragEnabled : flags | Qt::ItemIsDropEnabled;
    }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override { return {rowsMime}; }

    QMimeData* mimeData(const QModelIndexList& indexes) const override {
        QStringList rows;
        for (const QModelIndex& index : indexes) {
            rows << QString::number(index.row());
        }
        auto* data = new QMimeData;
        data->setData(rowsMime, rows.join(QLatin1Char(',')).toLatin1());
        return data;
    }

    bool canDropMimeData(const QMimeData* data, Qt::DropAction, int, int,
                         const QModelIndex&) const override {
        return data != nullptr && data->hasFormat(rowsMime);
    }

    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override {
        if (!canDropMimeData(data, action, row, column, parent) || !move) {
            return false;
        }
        QList<int> rows;
        for (const QByteArray& piece : data->data(rowsMime).split(',')) {
            bool ok = false;
            const int value = piece.toInt(&ok);
            if (ok && value >= 0 && value < rowCount()) {
                rows << value;
            }
        }
        const int destination = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
        move(rows, destination);
        return true;
    }

    // The order changes through the model's files alone: the view must not remove the dragged
    // rows itself after a move.
    bool moveRows(const QModelIndex&, int, int, const QModelIndex&, int) override { return false; }
    bool removeRows(int, int, const QModelIndex&) override { return false; }
};

} // namespace

MergeView::MergeView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    auto* order = new MergeOrderModel(this);
    order->setSourceModel(&context_.files);
    order->move = [this](QList<int> rows, int destination) {
        moveFiles(std::move(rows), destination);
    };
    list_ = new FileListView(this);
    list_->setObjectName(QStringLiteral("files"));
    list_->setAccessibleName(tr("Files to merge, in order"));
    list_->setModel(order);
    list_->setDragEnabled(true);
    list_->setAcceptDrops(true);
    list_->setDropIndicatorShown(true);
    list_->setDragDropMode(QAbstractItemView::InternalMove);
    list_->setDefaultDropAction(Qt::MoveAction);

    up_ = new QPushButton(tr("Move Up"), this);
    up_->setToolTip(tr("Alt+Up"));
    down_ = new QPushButton(tr("Move Down"), this);
    down_->setToolTip(tr("Alt+Down"));
    remove_ = new QPushButton(tr("Remove"), this);
    remove_->setObjectName(QStringLiteral("remove"));
    remove_->setToolTip(tr("Delete"));
    connect(up_, &QPushButton::clicked, this, [this] { moveSelection(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { moveSelection(1); });
    connect(remove_, &QPushButton::clicked, this, &MergeView::removeSelected);
    list_->installEventFilter(this);

    auto* listButtons = new QHBoxLayout;
    listButtons->setSpacing(8);
    listButtons->addWidget(up_);
    listButtons->addWidget(down_);
    listButtons->addWidget(remove_);
    listButtons->addStretch(1);
    blank_ = new QCheckBox(tr("Insert a blank page between files"), this);
    blank_->setObjectName(QStringLiteral("insertBlank"));
    listButtons->addWidget(blank_);

    bar_ = new ActionBar(tr("Merge"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &MergeView::runMerge);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(list_, 1);
    layout->addLayout(listButtons);
    layout->addWidget(bar_);

    connectWhenShown(&context_.model(), &AppModel::filesChanged, this, &MergeView::refresh);
    connectCoalesced(&context_.model(), &AppModel::analysisChanged, this, &MergeView::refresh);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MergeView::refresh);
    // A reset (every change of the files) replaces the selection model's contents, not itself.
    connectWhenShown(order, &QAbstractItemModel::modelReset, this, &MergeView::refresh);
    refresh();
}

QList<int> MergeView::selectedRows() const {
    QList<int> rows;
    for (const QModelIndex& index : list_->selectionModel()->selectedIndexes()) {
        rows << index.row();
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void MergeView::select(const QStringList& paths) {
    const QStringList& files = context_.model().files();
    QItemSelection selection;
    for (const QString& path : paths) {
        if (const auto row = files.indexOf(path); row >= 0) {
            const QModelIndex index = list_->model()->index(static_cast<int>(row), 0);
            selection.select(index, index);
        }
    }
    list_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty()) {
        list_->selectionModel()->setCurrentIndex(selection.indexes().front(),
                                                 QItemSelectionModel::NoUpdate);
        list_->scrollTo(selection.indexes().front());
    }
}

void MergeView::moveFiles(QList<int> rows, int destination) {
    QStringList files = context_.model().files();
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    QStringList moved;
    int before = 0; // moved rows above the destination
    for (auto row = rows.size() - 1; row >= 0; --row) {
        const int at = rows[row];
        if (at < 0 || at >= files.size()) {
            continue;
        }
        moved.prepend(files.takeAt(at));
        before += at < destination ? 1 : 0;
    }
    const auto insertAt = std::clamp<qsizetype>(destination - before, 0, files.size());
    for (qsizetype i = 0; i < moved.size(); ++i) {
        files.insert(insertAt + i, moved[i]);
    }
    context_.model().setFiles(files);
    select(moved);
}

void MergeView::moveSelection(int step) {
    const QList<int> rows = selectedRows();
    if (rows.isEmpty()) {
        return;
    }
    const int count = list_->model()->rowCount();
    // Up: before the row above the first; down: before the row two below the last.
    const int destination = step < 0 ? rows.front() - 1 : rows.back() + 2;
    if (destination < 0 || destination > count) {
        return;
    }
    moveFiles(rows, destination);
}

void MergeView::removeSelected() {
    const QList<int> rows = selectedRows();
    if (rows.isEmpty()) {
        return;
    }
    QStringList files = context_.model().files();
    for (auto i = rows.size() - 1; i >= 0; --i) {
        files.removeAt(rows[i]);
    }
    context_.model().setFiles(files);
    if (!files.isEmpty()) {
        select({files.at(std::min<qsizetype>(rows.front(), files.size() - 1))});
    }
}

void MergeView::refresh() {
    const QList<int> rows = selectedRows();
    const int count = list_->model()->rowCount();
    up_->setEnabled(!rows.isEmpty() && rows.front() > 0);
    down_->setEnabled(!rows.isEmpty() && rows.back() < count - 1);
    remove_->setEnabled(!rows.isEmpty());
    bar_->button().setEnabled(count > 0);
    if (count == 0) {
        bar_->showNote(tr("Drop PDFs and images above; each drop adds to the end of the list."));
        return;
    }
    // Pages in all, once every PDF has been counted; an image is one page.
    int pages = 0;
    bool counted = true;
    for (const QString& path : context_.model().files()) {
        if (const PDFAnalysis* analysis = context_.model().analysis(path)) {
            pages += analysis->pageCount;
        } else if (ScreenFiles::isImage(path)) {
            ++pages;
        } else {
            counted = false;
        }
    }
    QString note = tr("%n file(s)", nullptr, count);
    if (counted) {
        note += QStringLiteral(" · ") + tr("%n page(s) in all", nullptr, pages);
    }
    if (count == 1) {
        note += QStringLiteral(" · ") + tr("add another file to merge");
    }
    // A file its analysis could not read (damaged, or locked by a password) would stop the merge.
    for (const QString& path : context_.model().files()) {
        if (const QString error = context_.model().analysisError(path); !error.isEmpty()) {
            bar_->showProblem(note + QStringLiteral(" · ") +
                              tr("%1 cannot be read (%2): remove it before merging.")
                                  .arg(QFileInfo(path).fileName(), error));
            return;
        }
    }
    bar_->showNote(note);
}

void MergeView::runMerge() {
    const QStringList files = context_.model().files();
    if (files.size() < 2) {
        bar_->showProblem(tr("Add at least two files to merge."));
        return;
    }
    OperationParameters::Merge merge;
    merge.insertBlankBetween = blank_->isChecked();
    context_.model().run(PDFOperationKind::merge, merge, files);
    bar_->showNote(
        tr("Merging %n file(s): follow it in the queue.", nullptr, static_cast<int>(files.size())));
}

bool MergeView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != list_ || event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() == Qt::AltModifier &&
        (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
        moveSelection(key->key() == Qt::Key_Up ? -1 : 1);
        return true;
    }
    if (key->modifiers() == Qt::NoModifier &&
        (key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace)) {
        removeSelected();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void MergeView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    context_.model().ensureAnalyses(); // the page counts
}

} // namespace quillet
