#include "screens/OrganizePageModel.hpp"

#include "app/PageRenderService.hpp"

#include <QMimeData>

#include <algorithm>

namespace quillet {
namespace {

constexpr int pictureBudgetKB = 64 * 1024;

PageRenderService::Request renderRequest(const OrganizePageModel::Cell& cell, int side,
                                         qreal ratio) {
    return {cell.sourcePath, cell.sourcePage, QSize(side, side), ratio};
}

bool samePages(const QList<OrganizePageModel::Cell>& a, const QList<OrganizePageModel::Cell>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.id == y.id && x.sourcePath == y.sourcePath && x.sourcePage == y.sourcePage;
    });
}

} // namespace

OrganizePageModel::OrganizePageModel(PageRenderService& renders, QObject* parent)
    : QAbstractListModel(parent), renders_(renders), pictures_(pictureBudgetKB) {
    connect(&renders_, &PageRenderService::rendered, this, &OrganizePageModel::rendered);
    connect(&renders_, &PageRenderService::failed, this,
            [this](const QString& key, const QString&) { renderFailed(key); });
}

QString OrganizePageModel::pageKey(const Cell& cell) {
    return cell.sourcePath + QLatin1Char('\n') + QString::number(cell.sourcePage);
}

void OrganizePageModel::setCells(const QList<Cell>& cells) {
    if (samePages(cells, cells_)) {
        for (qsizetype row = 0; row < cells.size(); ++row) {
            if (cells[row].displayRotation != cells_[row].displayRotation) {
                cells_[row] = cells[row];
                emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
            }
        }
        return;
    }
    beginResetModel();
    cells_ = cells;
    rowsOfPage_.clear();
    for (qsizetype row = 0; row < cells_.size(); ++row) {
        rowsOfPage_[pageKey(cells_[row])].push_back(static_cast<int>(row));
    }
    endResetModel();
}

void OrganizePageModel::setThumbnailSide(int side) {
    if (side == side_) {
        return;
    }
    emit layoutAboutToBeChanged();
    side_ = side;
    emit layoutChanged();
}

QPixmap OrganizePageModel::picture(int row) const {
    if (row < 0 || row >= cells_.size()) {
        return {};
    }
    const Picture* found = pictures_.object(pageKey(cells_[row]));
    return found != nullptr ? found->pixmap : QPixmap();
}

bool OrganizePageModel::isCurrent(int row) const {
    if (row < 0 || row >= cells_.size()) {
        return true;
    }
    const QString page = pageKey(cells_[row]);
    const Picture* found = pictures_.object(page);
    return (found != nullptr && found->side == side_) || unreadable_.contains(page);
}

int OrganizePageModel::turn(int row) const {
    if (row < 0 || row >= cells_.size()) {
        return 0;
    }
    const Cell& cell = cells_[row];
    return ((cell.displayRotation - cell.sourceRotation) % 360 + 360) % 360;
}

void OrganizePageModel::request(const QList<int>& rows) {
    for (const int row : rows) {
        if (isCurrent(row)) {
            continue;
        }
        const auto request = renderRequest(cells_[row], side_, ratio_);
        const QString key = request.key();
        if (pending_.contains(key)) {
            continue;
        }
        if (const auto image = renders_.cached(request)) {
            store(pageKey(cells_[row]), *image, side_);
            continue;
        }
        pending_.insert(key, {pageKey(cells_[row]), side_});
        renders_.render(request);
    }
}

void OrganizePageModel::rendered(const QString& key, const QImage& image) {
    const auto pending = pending_.find(key);
    if (pending != pending_.end()) { // not another screen's picture
        const auto [page, side] = *pending;
        pending_.erase(pending);
        store(page, image, side);
    }
}

void OrganizePageModel::store(const QString& page, const QImage& image, int side) {
    const auto cost = std::max<qsizetype>(1, image.sizeInBytes() / 1024);
    pictures_.insert(page, new Picture{QPixmap::fromImage(image), side}, cost);
    pictureChanged(page);
}

void OrganizePageModel::renderFailed(const QString& key) {
    const auto pending = pending_.find(key);
    if (pending != pending_.end()) {
        const QString page = pending->first;
        pending_.erase(pending);
        unreadable_.insert(page);
        pictureChanged(page);
    }
}

void OrganizePageModel::pictureChanged(const QString& page) {
    for (const int row : rowsOfPage_.value(page)) {
        emit dataChanged(index(row), index(row), {Qt::DecorationRole});
    }
}

int OrganizePageModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cells_.size());
}

QVariant OrganizePageModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= cells_.size()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole: return QString::number(index.row() + 1);
    case Qt::AccessibleTextRole: return tr("Page %1").arg(index.row() + 1);
    case Qt::DecorationRole: return picture(index.row());
    default: return {};
    }
}

Qt::ItemFlags OrganizePageModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
           Qt::ItemIsDropEnabled | Qt::ItemNeverHasChildren;
}

QStringList OrganizePageModel::mimeTypes() const {
    return {QString::fromLatin1(indexMimeType), QStringLiteral("text/plain")};
}

QMimeData* OrganizePageModel::mimeData(const QModelIndexList& indexes) const {
    if (indexes.isEmpty()) {
        return nullptr;
    }
    auto* data = new QMimeData;
    const QByteArray text = QByteArray::number(indexes.first().row());
    data->setData(QString::fromLatin1(indexMimeType), text);
    data->setText(QString::fromLatin1(text));
    return data;
}

std::optional<int> OrganizePageModel::draggedRow(const QMimeData* data) {
    if (data == nullptr) {
        return std::nullopt;
    }
    const QByteArray text = data->hasFormat(QString::fromLatin1(indexMimeType))
                                ? data->data(QString::fromLatin1(indexMimeType))
                                : data->text().toUtf8();
    return OrganizeModel::dragIndex(std::string_view(text.constData(), text.size()));
}

bool OrganizePageModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int row,
                                        int column, const QModelIndex& parent) const {
    const auto from = draggedRow(data);
    return from && *from >= 0 && *from < cells_.size();
}

bool OrganizePageModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row,
                                     int column, const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) {
        return false;
    }
    const int from = *draggedRow(data);
    const int last = static_cast<int>(cells_.size()) - 1;
    int to = last; // after the last cell
    if (parent.isValid()) {
        to = parent.row(); // onto a cell: there
    } else if (row >= 0) {
        to = std::min(row > from ? row - 1 : row, last); // between cells: before `row`
    }
    if (to != from) {
        emit moveRequested(from, to);
    }
    return true;
}

Qt::DropActions OrganizePageModel::supportedDropActions() const {
    return Qt::MoveAction;
}

Qt::DropActions OrganizePageModel::supportedDragActions() const {
    return Qt::MoveAction | Qt::CopyAction;
}

} // namespace quillet
