// One section of the window: its heading, its drop zone, and its screen (the body) below.
//
// Every section takes drops and "Choose files…" into the model (which appends on merge and
// replaces elsewhere); the body shows what the section does with the loaded files.
#pragma once

#include "app/AppModel.hpp"

#include <QWidget>

namespace quillet {

class DropZone;

class SectionView : public QWidget {
    Q_OBJECT

  public:
    SectionView(AppModel& model, AppModel::Section section, QWidget* parent = nullptr);

    AppModel::Section section() const { return section_; }
    DropZone& dropZone() const { return *dropZone_; }
    /// Puts the section's screen under the drop zone (once); the section takes ownership.
    void setBody(QWidget* body);
    QWidget* body() const { return body_; }

    /// The sidebar's title of `section`, translated.
    static QString title(AppModel::Section section);
    /// The icon of `section` in the sidebar.
    static QIcon icon(AppModel::Section section);

  private:
    AppModel& model_;
    AppModel::Section section_;
    DropZone* dropZone_;
    QWidget* body_ = nullptr;
};

} // namespace quillet
