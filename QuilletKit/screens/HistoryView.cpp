#include "screens/HistoryView.hpp"

#include "app/Texts.hpp"

#include <QDateTime>
#include <QHeaderView>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace quillet {

HistoryView::HistoryView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context), table_(new QTreeWidget(this)) {
    table_->setObjectName(QStringLiteral("historyList"));
    table_->setRootIsDecorated(false);
    table_->setAlternatingRowColors(true);
    table_->setHeaderLabels({tr("Action"), tr("Date"), tr("Files"), tr("Result")});
    table_->header()->setStretchLastSection(false);
    table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->header()->setSectionResizeMode(2, QHeaderView::Stretch);
    table_->setTextElideMode(Qt::ElideMiddle);
    connect(&context_.model(), &AppModel::historyChanged, this, &HistoryView::refresh);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(table_);
    refresh();
}

void HistoryView::refresh() {
    table_->clear();
    for (const HistoryEntry& entry : context_.model().history().entries()) {
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(entry.date.time_since_epoch());
        const QString when = QLocale().toString(
            QDateTime::fromSecsSinceEpoch(seconds.count()), QLocale::ShortFormat);
        QStringList names;
        for (const auto& name : entry.inputNames) {
            names << QString::fromStdString(name);
        }
        const QString outcome = entry.succeeded
                                    ? Texts::sizeChange(entry.originalBytes, entry.resultBytes)
                                    : Texts::stateName(TaskState::failed);
        auto* item = new QTreeWidgetItem(table_, {Texts::operationName(entry.operation), when,
                                                  names.join(QStringLiteral(", ")), outcome});
        QStringList paths;
        for (const auto& path : entry.inputURLs) {
            paths << QString::fromStdString(path);
        }
        item->setToolTip(2, paths.join(QLatin1Char('\n')));
    }
    if (table_->topLevelItemCount() == 0) {
        auto* item = new QTreeWidgetItem(table_, {tr("No finished jobs yet.")});
        item->setFlags(Qt::NoItemFlags);
        item->setFirstColumnSpanned(true);
    }
}

} // namespace quillet
