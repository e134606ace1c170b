// One section of the window: its heading, its drop zone and what it shows of the model.
//
// Every section takes drops and "Choose files…" into the model (which appends on merge and
// replaces elsewhere) and lists the loaded files with what is known about them. The compress
// section also runs its job; history lists the finished jobs instead of the loaded files.
#pragma once

#include "app/AppModel.hpp"

#include <QWidget>

class QAbstractItemModel;
class QComboBox;
class QTreeWidget;
class QPushButton;

namespace quillet {

class DropZone;

class SectionView : public QWidget {
    Q_OBJECT

  public:
    /// `files` is the shared list model of the loaded files.
    SectionView(AppModel& model, AppModel::Section section, QAbstractItemModel& files,
                QWidget* parent = nullptr);

    AppModel::Section section() const { return section_; }
    DropZone& dropZone() const { return *dropZone_; }

    /// The sidebar's title of `section`, translated.
    static QString title(AppModel::Section section);
    /// The icon of `section` in the sidebar.
    static QIcon icon(AppModel::Section section);

  private:
    QWidget* compressActions();
    QWidget* historyList();
    void refreshHistory();
    void updateActions();

    AppModel& model_;
    AppModel::Section section_;
    DropZone* dropZone_;
    QComboBox* tier_ = nullptr;
    QPushButton* run_ = nullptr;
    QTreeWidget* history_ = nullptr;
};

} // namespace quillet
