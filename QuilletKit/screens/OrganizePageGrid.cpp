#include "screens/OrganizePageGrid.hpp"

#include "screens/OrganizePageModel.hpp"

#include <QDrag>
#include <QDragMoveEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace quillet {
namespace {

constexpr int cellMargin = 14;

QSize cellSize(int side, const QFontMetrics& metrics) {
    return {side + 2 * cellMargin, side + 2 * cellMargin + metrics.height()};
}

/// The size of a picture of `source` proportions turned by `turn` and fitted into `box`.
QSizeF fitted(QSizeF source, int turn, QSizeF box) {
    if (turn % 180 != 0) {
        source.transpose();
    }
    if (source.isEmpty()) {
        return {box.width() * 0.77, box.height()}; // a portrait page until the picture comes
    }
    return source.scaled(box, Qt::KeepAspectRatio);
}

/// A cell: the page's picture turned as the page is, its number under it, and the selection.
class ThumbnailDelegate : public QStyledItemDelegate {
  public:
    ThumbnailDelegate(OrganizePageGrid& grid, OrganizePageModel& model)
        : QStyledItemDelegate(&grid), grid_(grid), model_(model) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return grid_.gridSize().isValid() ? grid_.gridSize()
                                          : cellSize(model_.thumbnailSide(), option.fontMetrics);
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const int row = index.row();
        const int side = model_.thumbnailSide();
        const QPalette& palette = option.palette;
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        // Cells are stretched to fill the width; the page and its frame stay centred in them.
        const QSize natural = cellSize(side, option.fontMetrics);
        const QRectF cell(option.rect.center().x() - natural.width() / 2.0, option.rect.y(),
                          natural.width(), natural.height());
        const QRectF frame = cell.adjusted(4, 4, -4, -4);
        if (selected) {
            QColor fill = palette.color(QPalette::Highlight);
            fill.setAlpha(60);
            painter->setPen(QPen(palette.color(QPalette::Highlight), 2));
            painter->setBrush(fill);
            painter->drawRoundedRect(frame, 8, 8);
        }
        const QRectF box(cell.x() + cellMargin, cell.y() + cellMargin, side, side);
        const QPixmap picture = model_.picture(row);
        const int turn = model_.turn(row);
        const QSizeF size = fitted(picture.deviceIndependentSize(), turn, box.size());
        const QRectF page(box.center() - QPointF(size.width(), size.height()) / 2, size);
        painter->setPen(QPen(palette.color(QPalette::Mid), 1));
        painter->setBrush(palette.color(QPalette::Base));
        painter->drawRect(page.adjusted(-0.5, -0.5, 0.5, 0.5));
        if (!picture.isNull()) {
            painter->setRenderHint(QPainter::SmoothPixmapTransform);
            painter->translate(page.center());
            painter->rotate(turn);
            const QSizeF drawn = turn % 180 != 0 ? size.transposed() : size;
            painter->drawPixmap(QRectF(QPointF(-drawn.width() / 2, -drawn.height() / 2), drawn),
                                picture, QRectF(picture.rect()));
            painter->resetTransform();
        }
        if (!model_.isCurrent(row)) {
            grid_.scheduleRequests();
        }
        const QRectF label(cell.x(), box.bottom() + 6, cell.width(), option.fontMetrics.height());
        painter->setPen(palette.color(selected ? QPalette::Text : QPalette::PlaceholderText));
        QFont font = option.font;
        font.setBold(selected);
        painter->setFont(font);
        painter->drawText(label, Qt::AlignCenter, index.data(Qt::DisplayRole).toString());
        painter->restore();
    }

  private:
    OrganizePageGrid& grid_;
    OrganizePageModel& model_;
};

} // namespace

OrganizePageGrid::OrganizePageGrid(OrganizePageModel& model, QWidget* parent)
    : QListView(parent), model_(model) {
    setModel(&model_);
    setItemDelegate(new ThumbnailDelegate(*this, model_));
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setSpacing(0);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(24);
    setThumbnailSide(model_.thumbnailSide());

    requests_.setSingleShot(true);
    requests_.setInterval(30);
    connect(&requests_, &QTimer::timeout, this, &OrganizePageGrid::requestInSight);
    connect(&model_, &QAbstractItemModel::modelReset, this, &OrganizePageGrid::scheduleRequests);
}

void OrganizePageGrid::setThumbnailSide(int side) {
    model_.setThumbnailSide(side);
    fitColumns();
    scheduleRequests();
}

// As many columns as fit, sharing the width, so no strip of empty space is left on the right.
void OrganizePageGrid::fitColumns() {
    const QSize natural = cellSize(model_.thumbnailSide(), fontMetrics());
    const int width = viewport()->width() - 2; // the layout keeps a pixel free on each side
    const int columns = std::max(1, width / natural.width());
    const QSize grid(std::max(natural.width(), width / columns), natural.height());
    if (grid != gridSize()) {
        setGridSize(grid);
    }
}

void OrganizePageGrid::scheduleRequests() {
    if (!requests_.isActive()) {
        requests_.start();
    }
}

QList<int> OrganizePageGrid::rowsInSight() const {
    QList<int> rows;
    const int count = model_.rowCount();
    if (count == 0 || !isVisible()) {
        return rows;
    }
    const QModelIndex top = indexAt(QPoint(1, 1));
    const int first = top.isValid() ? top.row() : 0;
    const int lineAhead = std::max(1, viewport()->width() / std::max(1, gridSize().width()));
    const int bottom = viewport()->height() + gridSize().height();
    for (int row = first; row < count; ++row) {
        if (visualRect(model_.index(row)).top() > bottom) {
            for (int extra = row; extra < std::min(count, row + lineAhead); ++extra) {
                rows.push_back(extra);
            }
            break;
        }
        rows.push_back(row);
    }
    return rows;
}

void OrganizePageGrid::requestInSight() {
    model_.setDevicePixelRatio(devicePixelRatioF());
    model_.request(rowsInSight());
}

void OrganizePageGrid::startDrag(Qt::DropActions) {
    const QModelIndex pressed = currentIndex();
    if (pressed.isValid()) {
        emit dragRequested(pressed.row());
    }
}

void OrganizePageGrid::startDrag(int row, const QString& file) {
    if (!QGuiApplication::mouseButtons().testFlag(Qt::LeftButton) || row < 0 ||
        row >= model_.rowCount()) {
        return;
    }
    auto* data = model_.mimeData({model_.index(row)});
    if (!file.isEmpty()) {
        data->setUrls({QUrl::fromLocalFile(file)});
    }
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    const QPixmap picture = model_.picture(row);
    if (!picture.isNull()) {
        drag->setPixmap(picture.scaled(QSize(96, 96) * picture.devicePixelRatio(),
                                       Qt::KeepAspectRatio, Qt::SmoothTransformation));
    }
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
}

void OrganizePageGrid::dragEnterEvent(QDragEnterEvent* event) {
    QListView::dragEnterEvent(event);
    if (event->source() == this && OrganizePageModel::draggedRow(event->mimeData())) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void OrganizePageGrid::dragMoveEvent(QDragMoveEvent* event) {
    QListView::dragMoveEvent(event); // scrolls near the edges
    if (event->source() == this && OrganizePageModel::draggedRow(event->mimeData())) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
    } else {
        event->ignore();
    }
}

// A drop on a cell puts the page there; one past the last cell, at the end.
void OrganizePageGrid::dropEvent(QDropEvent* event) {
    if (event->source() != this) {
        event->ignore();
        return;
    }
    const QModelIndex target = indexAt(event->position().toPoint());
    model_.dropMimeData(event->mimeData(), Qt::MoveAction, -1, -1, target);
    event->setDropAction(Qt::MoveAction);
    event->accept();
    stopAutoScroll();
    setState(QAbstractItemView::NoState);
    viewport()->update();
}

// Called after the scroll bars came or went, which changes the width to share.
void OrganizePageGrid::updateGeometries() {
    QListView::updateGeometries();
    fitColumns();
}

void OrganizePageGrid::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    fitColumns();
    scheduleRequests();
}

// Restarted on every step: a flick asks only for where it stops.
void OrganizePageGrid::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    requests_.start();
}

} // namespace quillet
