// The queue, visible from every section: one row per job with its progress or its ending, the
// count of completed jobs and "Clear finished". Finished results open, show in their folder, or
// drag out into a file manager.
#pragma once

#include <QWidget>

class QLabel;
class QListView;
class QPushButton;

namespace quillet {

class TaskQueueService;
class TaskRecordListModel;

class QueuePanel : public QWidget {
    Q_OBJECT

  public:
    explicit QueuePanel(TaskQueueService& queue, QWidget* parent = nullptr);

    TaskRecordListModel& model() const { return *model_; }
    QListView& view() const { return *view_; }

  private:
    void updateCounts();

    TaskQueueService& queue_;
    TaskRecordListModel* model_;
    QListView* view_;
    QLabel* done_;
    QLabel* empty_;
    QPushButton* clear_;
};

} // namespace quillet
