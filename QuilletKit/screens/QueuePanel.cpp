#include "screens/QueuePanel.hpp"

#include "app/TaskRecordListModel.hpp"
#include "screens/FileActions.hpp"
#include "screens/QueueRowDelegate.hpp"
#include "tasks/queue/TaskQueueService.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillet {

QueuePanel::QueuePanel(TaskQueueService& queue, QWidget* parent)
    : QWidget(parent), queue_(queue), model_(new TaskRecordListModel(queue, this)),
      view_(new QListView(this)), done_(new QLabel(this)),
      empty_(new QLabel(tr("No jobs yet. What you run appears here."), this)),
      clear_(new QPushButton(tr("Clear finished"), this)) {
    auto* title = new QLabel(tr("Queue"), this);
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.15);
    title->setFont(font);

    auto* delegate = new QueueRowDelegate(view_);
    view_->setModel(model_);
    view_->setItemDelegate(delegate);
    view_->setResizeMode(QListView::Adjust);
    view_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view_->setSelectionMode(QAbstractItemView::SingleSelection);
    view_->setDragEnabled(true);
    view_->setDragDropMode(QAbstractItemView::DragOnly);
    view_->setDefaultDropAction(Qt::CopyAction);
    view_->setMouseTracking(true);
    empty_->setWordWrap(true);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setForegroundRole(QPalette::PlaceholderText);

    connect(delegate, &QueueRowDelegate::buttonClicked, this,
            [this](const QModelIndex& index, QueueRowDelegate::Button button) {
                const auto id = index.data(TaskRecordListModel::RecordIDRole).toString();
                const auto outputs = index.data(TaskRecordListModel::OutputsRole).toStringList();
                switch (button) {
                case QueueRowDelegate::Button::cancel: queue_.cancel(id.toStdString()); break;
                case QueueRowDelegate::Button::open:
                    if (!outputs.isEmpty()) {
                        FileActions::open(outputs.front());
                    }
                    break;
                case QueueRowDelegate::Button::reveal: FileActions::reveal(outputs); break;
                }
            });
    connect(clear_, &QPushButton::clicked, this, [this] { queue_.clearFinished(); });
    connect(model_, &QAbstractItemModel::rowsInserted, this, &QueuePanel::updateCounts);
    connect(model_, &QAbstractItemModel::rowsRemoved, this, &QueuePanel::updateCounts);
    connect(model_, &QAbstractItemModel::modelReset, this, &QueuePanel::updateCounts);
    connect(model_, &QAbstractItemModel::dataChanged, this, &QueuePanel::updateCounts);
    // The list keeps each row's height until told: a row that changes state changes height.
    connect(model_, &QAbstractItemModel::dataChanged, delegate,
            [delegate](const QModelIndex& first, const QModelIndex&, const QList<int>& roles) {
                if (!roles.contains(TaskRecordListModel::ProgressRole)) {
                    emit delegate->sizeHintChanged(first);
                }
            });

    auto* header = new QHBoxLayout;
    header->addWidget(title);
    header->addStretch();
    header->addWidget(done_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addLayout(header);
    layout->addWidget(view_, 1);
    layout->addWidget(empty_, 1);
    layout->addWidget(clear_, 0, Qt::AlignRight);
    updateCounts();
}

void QueuePanel::updateCounts() {
    const int rows = model_->rowCount();
    done_->setText(tr("%n done", nullptr, model_->doneCount()));
    view_->setVisible(rows > 0);
    empty_->setVisible(rows == 0);
    const bool anyFinished = model_->doneCount() > 0 ||
                             std::any_of(queue_.records().begin(), queue_.records().end(),
                                         [](const TaskRecord& r) {
                                             return r.state == TaskState::failed ||
                                                    r.state == TaskState::cancelled;
                                         });
    clear_->setEnabled(anyFinished);
}

} // namespace quillet
