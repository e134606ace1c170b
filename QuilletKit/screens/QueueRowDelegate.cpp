#include "screens/QueueRowDelegate.hpp"

#include "app/TaskRecordListModel.hpp"
#include "app/Texts.hpp"
#include "screens/Components.hpp"

#include <QAbstractItemView>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace quillet {
namespace {

constexpr int padding = 10;
constexpr int gap = 4;
constexpr int progressHeight = 6;
constexpr int maxErrorLines = 3;

TaskState stateOf(const QModelIndex& index) {
    return static_cast<TaskState>(index.data(TaskRecordListModel::StateRole).toInt());
}

QString buttonText(QueueRowDelegate::Button button) {
    switch (button) {
    case QueueRowDelegate::Button::cancel: return QueueRowDelegate::tr("Cancel");
    case QueueRowDelegate::Button::open: return QueueRowDelegate::tr("Open");
    case QueueRowDelegate::Button::reveal: return QueueRowDelegate::tr("Show in Folder");
    }
    return {};
}

QSize buttonSize(const QFontMetrics& metrics, QueueRowDelegate::Button button) {
    return {metrics.horizontalAdvance(buttonText(button)) + 24, metrics.height() + 10};
}

/// The lines of `text` wrapped to `width`, the last one elided when there are more than `max`.
QStringList wrapped(const QString& text, const QFont& font, int width, int max) {
    const QFontMetrics metrics(font);
    QStringList lines;
    QTextLayout layout(text, font);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    if (lines.size() > max) {
        const QString rest = QStringList(lines.mid(max - 1)).join(QLatin1Char(' '));
        lines = lines.mid(0, max - 1);
        lines << metrics.elidedText(rest, Qt::ElideRight, width);
    }
    return lines;
}

/// Rows fill the view's width: the option's rectangle is not laid out yet when sizes are asked.
int rowWidth(const QStyleOptionViewItem& option) {
    if (const auto* view = qobject_cast<const QAbstractItemView*>(option.widget)) {
        return std::max(200, view->viewport()->width() - 2);
    }
    return std::max(200, option.rect.width());
}

bool hasNote(const QModelIndex& index) {
    return !index.data(TaskRecordListModel::NoteRole).toString().isEmpty();
}

} // namespace

QSize QueueRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    const QFontMetrics metrics(option.font);
    const int line = metrics.height();
    const int buttonHeight = line + 10;
    int height = padding + line + gap + line; // title, inputs
    switch (stateOf(index)) {
    case TaskState::queued:
    case TaskState::running: height += gap + buttonHeight; break;
    case TaskState::completed:
        height += gap + line + (hasNote(index) ? gap + line : 0) + gap + buttonHeight;
        break;
    case TaskState::failed: {
        const int width = std::max(100, rowWidth(option) - 2 * padding);
        const auto lines = wrapped(index.data(TaskRecordListModel::DetailRole).toString(),
                                   option.font, width, maxErrorLines);
        height += gap + static_cast<int>(lines.size()) * line;
        break;
    }
    case TaskState::cancelled: break;
    }
    return {rowWidth(option), height + padding};
}

QRect QueueRowDelegate::buttonRect(const QStyleOptionViewItem& option, const QModelIndex& index,
                                   Button button) const {
    const QFontMetrics metrics(option.font);
    const QRect area = option.rect.adjusted(padding, padding, -padding, -padding);
    const QSize size = buttonSize(metrics, button);
    const int bottom = area.bottom() + 1;
    switch (stateOf(index)) {
    case TaskState::queued:
    case TaskState::running:
        if (button == Button::cancel) {
            return {QPoint(area.right() + 1 - size.width(), bottom - size.height()), size};
        }
        return {};
    case TaskState::completed:
        if (index.data(TaskRecordListModel::OutputsRole).toStringList().isEmpty()) {
            return {};
        }
        if (button == Button::open) {
            return {QPoint(area.left(), bottom - size.height()), size};
        }
        if (button == Button::reveal) {
            const QSize openSize = buttonSize(metrics, Button::open);
            return {QPoint(area.left() + openSize.width() + 6, bottom - size.height()), size};
        }
        return {};
    default: return {};
    }
}

void QueueRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QWidget* widget = option.widget;
    QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    item.text.clear();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);

    painter->save();
    const QPalette& palette = option.palette;
    const StateColors colors = StateColors::forPalette(palette);
    const QFontMetrics metrics(option.font);
    const int line = metrics.height();
    const QRect area = option.rect.adjusted(padding, padding, -padding, -padding);
    const TaskState state = stateOf(index);
    const QColor text = palette.color(QPalette::Text);

    // Title and state.
    const QString stateText = Texts::stateName(state);
    const int stateWidth = metrics.horizontalAdvance(stateText);
    QFont bold = option.font;
    bold.setBold(true);
    painter->setFont(bold);
    painter->setPen(text);
    const QRect titleRect(area.left(), area.top(), area.width() - stateWidth - 8, line);
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
                      QFontMetrics(bold).elidedText(index.data().toString(), Qt::ElideRight,
                                                    titleRect.width()));
    painter->setFont(option.font);
    painter->setPen(state == TaskState::completed ? colors.success
                    : state == TaskState::failed  ? colors.failure
                                                  : colors.muted);
    painter->drawText(QRect(area.right() + 1 - stateWidth, area.top(), stateWidth, line),
                      Qt::AlignRight | Qt::AlignVCenter, stateText);

    // Inputs.
    int y = area.top() + line + gap;
    painter->setPen(colors.muted);
    painter->drawText(QRect(area.left(), y, area.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(index.data(TaskRecordListModel::InputNamesRole).toString(),
                                         Qt::ElideMiddle, area.width()));
    y += line + gap;

    const auto drawButton = [&](Button button) {
        const QRect rect = buttonRect(option, index, button);
        if (rect.isEmpty()) {
            return;
        }
        QStyleOptionButton push;
        push.rect = rect;
        push.text = buttonText(button);
        push.state = QStyle::State_Enabled | QStyle::State_Raised;
        push.palette = palette;
        push.fontMetrics = metrics;
        style->drawControl(QStyle::CE_PushButton, &push, painter, widget);
    };

    switch (state) {
    case TaskState::queued:
    case TaskState::running: {
        const QRect cancel = buttonRect(option, index, Button::cancel);
        const QRectF track(area.left(), cancel.center().y() - progressHeight / 2.0,
                           cancel.left() - area.left() - 10, progressHeight);
        const double fraction =
            state == TaskState::queued
                ? 0.0
                : std::clamp(index.data(TaskRecordListModel::ProgressRole).toDouble(), 0.0, 1.0);
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(palette.color(QPalette::Mid));
        painter->drawRoundedRect(track, progressHeight / 2.0, progressHeight / 2.0);
        if (fraction > 0) {
            painter->setBrush(palette.color(QPalette::Highlight));
            QRectF done = track;
            done.setWidth(std::max(track.height(), track.width() * fraction));
            painter->drawRoundedRect(done, progressHeight / 2.0, progressHeight / 2.0);
        }
        painter->setRenderHint(QPainter::Antialiasing, false);
        drawButton(Button::cancel);
        break;
    }
    case TaskState::completed: {
        painter->setPen(text);
        painter->drawText(QRect(area.left(), y, area.width(), line),
                          Qt::AlignLeft | Qt::AlignVCenter,
                          index.data(TaskRecordListModel::DetailRole).toString());
        if (hasNote(index)) {
            y += line + gap;
            painter->setPen(colors.muted);
            painter->drawText(QRect(area.left(), y, area.width(), line),
                              Qt::AlignLeft | Qt::AlignVCenter,
                              metrics.elidedText(index.data(TaskRecordListModel::NoteRole)
                                                     .toString(),
                                                 Qt::ElideRight, area.width()));
        }
        drawButton(Button::open);
        drawButton(Button::reveal);
        break;
    }
    case TaskState::failed: {
        painter->setPen(colors.failure);
        const auto lines = wrapped(index.data(TaskRecordListModel::DetailRole).toString(),
                                   option.font, area.width(), maxErrorLines);
        for (const QString& textLine : lines) {
            painter->drawText(QRect(area.left(), y, area.width(), line),
                              Qt::AlignLeft | Qt::AlignVCenter, textLine);
            y += line;
        }
        break;
    }
    case TaskState::cancelled: break;
    }

    painter->setPen(palette.color(QPalette::Midlight));
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter->restore();
}

bool QueueRowDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                   const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease) {
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
    const auto* mouse = static_cast<QMouseEvent*>(event);
    for (const Button button : {Button::cancel, Button::open, Button::reveal}) {
        if (buttonRect(option, index, button).contains(mouse->position().toPoint())) {
            if (event->type() == QEvent::MouseButtonRelease &&
                mouse->button() == Qt::LeftButton) {
                emit buttonClicked(index, button);
            }
            return true; // a press on a button neither selects the row nor starts a drag
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

} // namespace quillet
