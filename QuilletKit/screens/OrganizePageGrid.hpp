// The organize screen's grid of page thumbnails: click, Ctrl- and Shift-selection, drag to
// reorder, drag out of the window to extract.
//
// Pictures are asked for shortly after the grid scrolls, resizes or paints a cell without one,
// and only for the cells in sight plus a line ahead: a flick through a long document asks for
// the pages where it stops, not for every page it passed.
//
// A drag does not start at once: `dragRequested` lets the screen have the selection written to a
// file first (off the main thread); `startDrag(row, file)` then starts it with the row's index
// for a reorder and the file for a file manager, if the button is still held.
#pragma once

#include <QListView>
#include <QTimer>

namespace quillet {

class OrganizePageModel;

class OrganizePageGrid : public QListView {
    Q_OBJECT

  public:
    explicit OrganizePageGrid(OrganizePageModel& model, QWidget* parent = nullptr);

    /// The side of a thumbnail's square in device-independent pixels.
    void setThumbnailSide(int side);
    /// Starts the drag of `row` carrying `file` too, unless the button was let go meanwhile.
    void startDrag(int row, const QString& file);
    /// The rows in sight and a line of cells ahead.
    QList<int> rowsInSight() const;

  public slots:
    void scheduleRequests();

  signals:
    void dragRequested(int row);

  protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    void requestInSight();
    void fitColumns();

    OrganizePageModel& model_;
    QTimer requests_;
};

} // namespace quillet
