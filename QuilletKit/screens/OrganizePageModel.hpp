// The cells of the organize screen as a list model: one row per page, its number as text, and
// its picture once drawn.
//
// Pictures are drawn off the main thread by the render service from the file and page each cell
// comes from, at `thumbnailSide` × the device pixel ratio, and only for the rows a view asks for
// (`request`), so a long document is never drawn up front. A picture drawn at another size is
// still offered, scaled, until the right one arrives. The source page's own rotation is drawn by
// the renderer; `turn` is what a view adds.
//
// A dragged row carries its index as decimal text (and under a private type); dropping it on a
// row asks for the move through `moveRequested`, which the screen forwards to the controller.
#pragma once

#include "app/OrganizeController.hpp"

#include <QAbstractListModel>
#include <QCache>
#include <QHash>
#include <QPixmap>
#include <QSet>

namespace quillet {

class PageRenderService;

class OrganizePageModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using Cell = OrganizeController::Cell;

    static constexpr const char* indexMimeType = "application/x-quillet-page-index";

    explicit OrganizePageModel(PageRenderService& renders, QObject* parent = nullptr);

    /// Shows `cells`: a reset when pages came, went or moved, only changed rows otherwise.
    void setCells(const QList<Cell>& cells);
    const QList<Cell>& cells() const { return cells_; }

    int thumbnailSide() const { return side_; }
    void setThumbnailSide(int side);
    void setDevicePixelRatio(qreal ratio) { ratio_ = ratio; }

    /// The best picture of `row` there is (possibly of another size), or a null pixmap.
    QPixmap picture(int row) const;
    /// Whether `row` has its picture at the current size (or it cannot be drawn).
    bool isCurrent(int row) const;
    /// Clockwise degrees to turn the picture of `row` by, 0..359.
    int turn(int row) const;
    /// Asks the render service for the pictures of `rows` that are not current.
    void request(const QList<int>& rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override;

    /// The row a drag carries, if it is one of ours.
    static std::optional<int> draggedRow(const QMimeData* data);

  signals:
    void moveRequested(int from, int to);

  private:
    struct Picture {
        QPixmap pixmap;
        int side = 0;
    };

    static QString pageKey(const Cell& cell);
    void rendered(const QString& key, const QImage& image);
    void store(const QString& page, const QImage& image, int side);
    void renderFailed(const QString& key);
    void pictureChanged(const QString& page);

    PageRenderService& renders_;
    QList<Cell> cells_;
    QHash<QString, QList<int>> rowsOfPage_;
    QCache<QString, Picture> pictures_;               ///< by page, cost in KB
    QHash<QString, std::pair<QString, int>> pending_; ///< render key → page and side
    QSet<QString> unreadable_;                        ///< pages the renderer refused
    int side_ = 150;
    qreal ratio_ = 1.0;
};

} // namespace quillet
