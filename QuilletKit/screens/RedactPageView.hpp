// One page of a PDF with the boxes to redact over it: the page as the render service draws it,
// the boxes the user draws and the boxes a search found, all filled translucent until the job
// runs.
//
// With the mouse: drag on the page to draw a box, click a box to select it, drag it to move it,
// drag its lower-right corner to resize it. With the keyboard: Delete removes the selected box,
// Ctrl+Z undoes the last change. Boxes are kept per page in points of the page as it is seen
// (from its top-left corner, y downwards): the form a redaction job takes.
#pragma once

#include <QImage>
#include <QList>
#include <QMap>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QWidget>

namespace quillet {

class PageRenderService;

class RedactPageView : public QWidget {
    Q_OBJECT

  public:
    explicit RedactPageView(PageRenderService& renders, QWidget* parent = nullptr);

    /// Shows page `index` of `path`, whose visible size is `points`.
    void showPage(const QString& path, int index, QSizeF points);
    /// The boxes found on the page shown (drawn in another colour, not editable here).
    void setFound(const QList<QRectF>& boxes);

    /// Every drawn box, by page index.
    const QMap<int, QList<QRectF>>& drawn() const { return drawn_; }
    void clearDrawn();
    /// Replaces the drawn boxes of the file shown (a job taken up again).
    void setDrawn(const QMap<int, QList<QRectF>>& boxes);
    void undo();

    QSize sizeHint() const override { return {420, 540}; }

  signals:
    void drawnChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// Where the page lies in the widget, and points to pixels.
    QRectF pageRect() const;
    double scale() const;
    QPointF toPoints(QPointF pixel) const;
    QRectF toPixels(const QRectF& points) const;
    void requestImage();
    void remember();

    PageRenderService& renders_;
    QString path_;
    int index_ = -1;
    QSizeF points_;
    QString requestKey_;
    QImage image_;
    QList<QRectF> found_;
    QMap<int, QList<QRectF>> drawn_;
    QList<QMap<int, QList<QRectF>>> history_;
    int selected_ = -1;
    enum class Drag { none, drawing, moving, resizing } drag_ = Drag::none;
    QPointF pressed_;      // in points
    QRectF before_;        // the selected box when the drag began
};

} // namespace quillet
