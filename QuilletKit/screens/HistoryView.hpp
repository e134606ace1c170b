// The history screen: the finished jobs of the history store, newest first.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

class QTreeWidget;

namespace quillet {

class HistoryView : public QWidget {
    Q_OBJECT

  public:
    explicit HistoryView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    void refresh();

    ScreenContext context_;
    QTreeWidget* table_;
};

} // namespace quillet
