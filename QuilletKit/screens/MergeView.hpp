// The merge screen: the list built across drops, in the order of the merged document. Rows are
// reordered by dragging them (or Alt+Up and Alt+Down) and removed with Delete; every change is
// written back to the model's files, which is the order the merge uses. PDFs and images mix
// freely: each image becomes a page of its own size.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

class QCheckBox;
class QListView;
class QPushButton;

namespace quillet {

class ActionBar;

class MergeView : public QWidget {
    Q_OBJECT

  public:
    explicit MergeView(const ScreenContext& context, QWidget* parent = nullptr);

    /// Moves the files at `rows` (in their present order) so they sit together before the file
    /// now at `destination` (the end when it is the row count).
    void moveFiles(QList<int> rows, int destination);
    /// Removes the selected files from the list.
    void removeSelected();
    /// Runs the merge, or says in the action bar why it cannot.
    void runMerge();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QList<int> selectedRows() const;
    void select(const QStringList& paths);
    void moveSelection(int step);
    void refresh();

    ScreenContext context_;
    QListView* list_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
    QPushButton* remove_ = nullptr;
    QCheckBox* blank_ = nullptr;
    ActionBar* bar_ = nullptr;
};

} // namespace quillet
