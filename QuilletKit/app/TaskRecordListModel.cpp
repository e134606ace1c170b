#include "app/TaskRecordListModel.hpp"

#include "app/EngineTexts.hpp"
#include "app/Texts.hpp"
#include "tasks/queue/TaskQueueService.hpp"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace quillet {
namespace {

QStringList strings(const std::vector<std::string>& values) {
    QStringList list;
    for (const auto& value : values) {
        list << QString::fromStdString(value);
    }
    return list;
}

} // namespace

TaskRecordListModel::TaskRecordListModel(TaskQueueService& queue, QObject* parent)
    : QAbstractListModel(parent), queue_(queue), records_(queue.records()) {
    connect(&queue_, &TaskQueueService::recordsChanged, this, &TaskRecordListModel::refresh);
}

int TaskRecordListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(records_.size());
}

int TaskRecordListModel::doneCount() const {
    return static_cast<int>(std::count_if(records_.begin(), records_.end(), [](const auto& r) {
        return r.state == TaskState::completed;
    }));
}

void TaskRecordListModel::refresh() {
    const auto& latest = queue_.records();
    const int doneBefore = doneCount();
    const auto present = [&latest](const std::string& id) {
        return std::any_of(latest.begin(), latest.end(),
                           [&id](const TaskRecord& record) { return record.id == id; });
    };
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!present(records_[static_cast<std::size_t>(row)].id)) {
            beginRemoveRows({}, row, row);
            records_.erase(records_.begin() + row);
            endRemoveRows();
        }
    }
    const bool prefix =
        records_.size() <= latest.size() &&
        std::equal(records_.begin(), records_.end(), latest.begin(),
                   [](const TaskRecord& a, const TaskRecord& b) { return a.id == b.id; });
    if (!prefix) {
        beginResetModel();
        records_ = latest;
        endResetModel();
    } else {
        const auto kept = records_.size();
        for (std::size_t i = 0; i < kept; ++i) {
            TaskRecord& shown = records_[i];
            const TaskRecord& now = latest[i];
            if (shown == now) {
                continue;
            }
            TaskRecord sameProgress = shown;
            sameProgress.progress = now.progress;
            const bool progressOnly = sameProgress == now;
            shown = now;
            const auto at = index(static_cast<int>(i));
            // Anything but progress may change the row's height: all roles then.
            emit dataChanged(at, at, progressOnly ? QList<int>{ProgressRole} : QList<int>{});
        }
        if (latest.size() > kept) {
            beginInsertRows({}, static_cast<int>(kept), static_cast<int>(latest.size()) - 1);
            records_.insert(records_.end(), latest.begin() + static_cast<std::ptrdiff_t>(kept),
                            latest.end());
            endInsertRows();
        }
    }
    if (doneCount() != doneBefore) {
        emit doneCountChanged();
    }
}

QVariant TaskRecordListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const TaskRecord& r = record(index.row());
    switch (role) {
    case Qt::DisplayRole: return Texts::operationName(r.operation);
    case Qt::ToolTipRole: return strings(r.inputURLs).join(QLatin1Char('\n'));
    case RecordIDRole: return QString::fromStdString(r.id);
    case StateRole: return static_cast<int>(r.state);
    case ProgressRole: return r.progress;
    case InputNamesRole: return strings(r.inputNames).join(QStringLiteral(", "));
    case DetailRole:
        if (r.state == TaskState::completed) {
            return Texts::sizeChange(r.originalBytes, r.resultBytes);
        }
        if (r.state == TaskState::failed) {
            return EngineTexts::translated(r.error.value_or(std::string()));
        }
        return Texts::stateName(r.state);
    case NoteRole: return EngineTexts::translated(r.message.value_or(std::string()));
    case OutputsRole: return strings(r.outputURLs);
    default: return {};
    }
}

Qt::ItemFlags TaskRecordListModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractListModel::flags(index);
    if (index.isValid()) {
        const auto& r = record(index.row());
        if (r.state == TaskState::completed && !r.outputURLs.empty()) {
            flags |= Qt::ItemIsDragEnabled;
        }
    }
    return flags;
}

QStringList TaskRecordListModel::mimeTypes() const {
    return {QStringLiteral("text/uri-list")};
}

Qt::DropActions TaskRecordListModel::supportedDragActions() const {
    return Qt::CopyAction;
}

QMimeData* TaskRecordListModel::mimeData(const QModelIndexList& indexes) const {
    QList<QUrl> urls;
    for (const QModelIndex& index : indexes) {
        if (index.isValid() && (flags(index) & Qt::ItemIsDragEnabled)) {
            for (const auto& output : record(index.row()).outputURLs) {
                urls << QUrl::fromLocalFile(QString::fromStdString(output));
            }
        }
    }
    if (urls.isEmpty()) {
        return nullptr;
    }
    auto* data = new QMimeData;
    data->setUrls(urls);
    return data;
}

} // namespace quillet
