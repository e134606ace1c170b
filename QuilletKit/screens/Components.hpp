// Widgets every section shares: its heading, the drop zone, and the list of loaded files.
#pragma once

#include <QFrame>
#include <QList>
#include <QListView>
#include <QUrl>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace quillet {

/// The section's title over a line that says what it is for.
class SectionHeader : public QWidget {
    Q_OBJECT

  public:
    SectionHeader(const QString& title, const QString& subtitle, QWidget* parent = nullptr);
};

/// A framed area that takes files and folders dragged from a file manager (`text/uri-list`
/// with local files) and offers "Choose files…" for the open dialog. It lights up while a drag
/// that it would accept hovers over it.
class DropZone : public QFrame {
    Q_OBJECT

  public:
    DropZone(const QString& title, const QString& detail, QWidget* parent = nullptr);
    /// A smaller zone for sections where loaded files are not the main content.
    void setCompact(bool compact);
    /// Adds "Choose a folder…" beside "Choose files…".
    void offerFolder();
    /// Shows `progress` ("Reading the folder… 1,500 files found") with a Cancel button in place
    /// of the buttons; an empty text shows the buttons again.
    void showProgress(const QString& progress);

    /// The local files of a drag, or none when it carries none.
    static QList<QUrl> localFiles(const QMimeData* data);

  signals:
    void dropped(const QList<QUrl>& urls);
    void chooseRequested();
    void chooseFolderRequested();
    void cancelRequested();

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QLabel* icon_;
    QLabel* detail_;
    QHBoxLayout* buttons_;
    QWidget* buttonRow_;
    QWidget* progressRow_;
    QLabel* progress_;
    bool hovered_ = false;
};

/// The loaded files, two lines each, with room between rows.
class FileListView : public QListView {
    Q_OBJECT

  public:
    explicit FileListView(QWidget* parent = nullptr);
    void setModel(QAbstractItemModel* model) override;

    /// Above this many rows every row is given the first one's height instead of being measured
    /// (a folder of 50,000 files would be measured row by row on the main thread).
    static constexpr int measuredRows = 500;

  private:
    void fitRowSizing();
};

/// The colours for state texts that read well on the current palette.
struct StateColors {
    QColor success;
    QColor failure;
    QColor muted;
    static StateColors forPalette(const QPalette& palette);
};

} // namespace quillet
