// The queue's records as a list model for the queue panel: one row per record, in submission
// order, following every change the queue announces (new rows inserted, cleared rows removed,
// changed rows reported) rather than resetting, so selection and scrolling survive progress.
//
// A completed row with outputs can be dragged: its MIME data are the output files as
// `text/uri-list`, so a finished result can be dropped into a file manager.
#pragma once

#include "tasks/TaskRecords.hpp"

#include <QAbstractListModel>

#include <vector>

namespace quillet {

class TaskQueueService;

class TaskRecordListModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        RecordIDRole = Qt::UserRole + 1,
        StateRole,    ///< TaskState as int
        ProgressRole, ///< double 0...1
        InputNamesRole,
        DetailRole, ///< sizes and saving when completed, the error when failed
        NoteRole,
        OutputsRole, ///< QStringList of paths
    };

    explicit TaskRecordListModel(TaskQueueService& queue, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override;

    const TaskRecord& record(int row) const { return records_.at(static_cast<std::size_t>(row)); }
    /// How many records completed.
    int doneCount() const;

  signals:
    void doneCountChanged();

  private:
    void refresh();

    TaskQueueService& queue_;
    std::vector<TaskRecord> records_;
};

} // namespace quillet
