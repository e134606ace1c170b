// The line across the top of the window while jobs of an interrupted run wait to be resumed:
// "Resume" submits them again, "Discard" forgets them. Hidden when nothing waits.
#pragma once

#include <QFrame>

class QLabel;

namespace quillet {

class TaskQueueService;

class ResumeBanner : public QFrame {
    Q_OBJECT

  public:
    explicit ResumeBanner(TaskQueueService& queue, QWidget* parent = nullptr);

  private:
    void refresh();

    TaskQueueService& queue_;
    QLabel* line_;
};

} // namespace quillet
