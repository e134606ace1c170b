// Draws one queue record as a rich row: operation and state, input names, then by state a
// progress bar with Cancel, the sizes before → after with the note and Open / Show in folder, or
// the error text. The buttons are drawn, not widgets, so hundreds of rows stay cheap; clicks on
// them become signals carrying the record's row.
#pragma once

#include <QStyledItemDelegate>

namespace quillet {

class QueueRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    enum class Button { cancel, open, reveal };

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

    /// Where `button` of the row at `index` is drawn within `rect` (empty when the row has
    /// none in its state).
    QRect buttonRect(const QStyleOptionViewItem& option, const QModelIndex& index,
                     Button button) const;

  signals:
    void buttonClicked(const QModelIndex& index, quillet::QueueRowDelegate::Button button);
};

} // namespace quillet
