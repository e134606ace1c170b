#include "screens/HistoryView.hpp"

#include "app/Texts.hpp"
#include "screens/Components.hpp"
#include "screens/FileActions.hpp"
#include "screens/ScreenParts.hpp"

#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace quillet {
namespace {

enum Column { dateColumn, actionColumn, filesColumn, resultColumn };

QStringList paths(const std::vector<std::string>& list) {
    QStringList found;
    for (const auto& path : list) {
        found << ScreenFiles::localPath(path);
    }
    return found;
}

QStringList existing(const QStringList& list) {
    QStringList found;
    for (const QString& path : list) {
        if (QFileInfo::exists(path)) {
            found << path;
        }
    }
    return found;
}

// The history keeps no password and no words to redact: such jobs are asked for again.
bool asksAgain(const OperationParameters& parameters) {
    if (const auto* redact = parameters.as<OperationParameters::Redact>()) {
        return !redact->patterns.empty();
    }
    return parameters.kind() == PDFOperationKind::protect ||
           parameters.kind() == PDFOperationKind::unprotect;
}

} // namespace

HistoryView::HistoryView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context), table_(new QTreeWidget(this)) {
    table_->setObjectName(QStringLiteral("historyList"));
    table_->setAccessibleName(tr("Finished jobs"));
    table_->setRootIsDecorated(false);
    table_->setAlternatingRowColors(true);
    table_->setUniformRowHeights(true);
    table_->setHeaderLabels({tr("Date"), tr("Action"), tr("Files"), tr("Result")});
    table_->header()->setStretchLastSection(false);
    table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->header()->setSectionResizeMode(filesColumn, QHeaderView::Stretch);
    table_->setTextElideMode(Qt::ElideMiddle);
    connect(table_, &QTreeWidget::itemSelectionChanged, this, &HistoryView::updateActions);
    connect(table_, &QTreeWidget::itemActivated, this, &HistoryView::openOutput);
    auto* removeKey = new QShortcut(QKeySequence::Delete, table_);
    removeKey->setContext(Qt::WidgetShortcut);
    connect(removeKey, &QShortcut::activated, this, &HistoryView::removeEntry);

    open_ = new QPushButton(tr("Open"), this);
    open_->setObjectName(QStringLiteral("open"));
    reveal_ = new QPushButton(tr("Show in Folder"), this);
    reveal_->setObjectName(QStringLiteral("reveal"));
    remove_ = new QPushButton(tr("Remove"), this);
    remove_->setObjectName(QStringLiteral("remove"));
    clear_ = new QPushButton(tr("Clear History…"), this);
    clear_->setObjectName(QStringLiteral("clearHistory"));
    connect(open_, &QPushButton::clicked, this, &HistoryView::openOutput);
    connect(reveal_, &QPushButton::clicked, this, &HistoryView::revealOutputs);
    connect(remove_, &QPushButton::clicked, this, &HistoryView::removeEntry);
    connect(clear_, &QPushButton::clicked, this, &HistoryView::clearAll);
    auto* entryButtons = new QHBoxLayout;
    entryButtons->setSpacing(8);
    entryButtons->addWidget(open_);
    entryButtons->addWidget(reveal_);
    entryButtons->addStretch(1);
    entryButtons->addWidget(remove_);
    entryButtons->addWidget(clear_);

    bar_ = new ActionBar(tr("Run Again"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &HistoryView::runAgain);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(table_, 1);
    layout->addLayout(entryButtons);
    layout->addWidget(bar_);
    connect(&context_.model(), &AppModel::historyChanged, this, &HistoryView::refresh);
    refresh();
}

void HistoryView::refresh() {
    const HistoryEntry* before = chosen();
    const std::string keep = before != nullptr ? before->id : std::string();
    table_->clear();
    const StateColors colours = StateColors::forPalette(palette());
    for (const HistoryEntry& entry : context_.model().history().entries()) {
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(entry.date.time_since_epoch());
        const QString when = QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds.count()),
                                                QLocale::ShortFormat);
        QStringList names;
        for (const auto& name : entry.inputNames) {
            names << QString::fromStdString(name);
        }
        const QString outcome = entry.succeeded
                                    ? Texts::sizeChange(entry.originalBytes, entry.resultBytes)
                                    : Texts::stateName(TaskState::failed);
        auto* item = new QTreeWidgetItem(table_, {when, Texts::operationName(entry.operation),
                                                  names.join(QStringLiteral(", ")), outcome});
        item->setData(dateColumn, Qt::UserRole, QString::fromStdString(entry.id));
        item->setToolTip(filesColumn, paths(entry.inputURLs).join(QLatin1Char('\n')));
        item->setToolTip(resultColumn, paths(entry.outputURLs).join(QLatin1Char('\n')));
        item->setForeground(resultColumn, entry.succeeded ? colours.success : colours.failure);
        if (entry.id == keep) {
            table_->setCurrentItem(item);
        }
    }
    if (table_->topLevelItemCount() == 0) {
        auto* item = new QTreeWidgetItem(table_, {tr("No finished jobs yet.")});
        item->setFlags(Qt::NoItemFlags);
        item->setFirstColumnSpanned(true);
    }
    updateActions();
}

const HistoryEntry* HistoryView::chosen() const {
    const QTreeWidgetItem* item = table_->currentItem();
    if (item == nullptr || !item->isSelected()) {
        return nullptr;
    }
    const std::string id = item->data(dateColumn, Qt::UserRole).toString().toStdString();
    for (const HistoryEntry& entry : context_.model().history().entries()) {
        if (entry.id == id) {
            return &entry;
        }
    }
    return nullptr;
}

void HistoryView::selectEntry(const std::string& id) {
    const QString wanted = QString::fromStdString(id);
    for (int i = 0; i < table_->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = table_->topLevelItem(i);
        if (item->data(dateColumn, Qt::UserRole).toString() == wanted) {
            table_->setCurrentItem(item);
            return;
        }
    }
}

void HistoryView::updateActions() {
    const HistoryEntry* entry = chosen();
    const bool outputs = entry != nullptr && !entry->outputURLs.empty();
    open_->setEnabled(outputs);
    reveal_->setEnabled(outputs);
    remove_->setEnabled(entry != nullptr);
    clear_->setEnabled(!context_.model().history().entries().empty());
    bar_->button().setEnabled(entry != nullptr);
    bar_->showNote(entry == nullptr && !context_.model().history().entries().empty()
                       ? tr("Choose a job to open its result or run it again.")
                       : QString());
}

void HistoryView::runAgain() {
    const HistoryEntry* entry = chosen();
    if (entry == nullptr) {
        return;
    }
    std::optional<OperationParameters> parameters;
    try {
        if (entry->parametersData) {
            parameters = OperationParameters::fromJSON(
                nlohmann::ordered_json::parse(*entry->parametersData));
        }
    } catch (const std::exception&) {
        parameters.reset();
    }
    if (!parameters || parameters->kind() != entry->operation) {
        bar_->showProblem(tr("This job's options were not kept, so it cannot be run again."));
        return;
    }
    const QStringList inputs = existing(paths(entry->inputURLs));
    if (inputs.isEmpty()) {
        bar_->showProblem(tr("The files of this job are no longer where they were."));
        return;
    }
    if (asksAgain(*parameters)) {
        // The privacy screen asks for what the history did not keep.
        context_.model().openWithSuggestion(AppModel::Section::privacy, inputs, *parameters);
        return;
    }
    context_.model().run(entry->operation, *parameters, inputs);
    const auto missing = static_cast<int>(entry->inputURLs.size() - inputs.size());
    bar_->showNote(missing > 0 ? tr("Queued again without %n missing file(s).", nullptr, missing)
                               : tr("Queued again: follow it in the queue."));
}

void HistoryView::openOutput() {
    const HistoryEntry* entry = chosen();
    if (entry == nullptr || entry->outputURLs.empty()) {
        return;
    }
    const QString output = ScreenFiles::localPath(entry->outputURLs.front());
    if (!QFileInfo::exists(output)) {
        bar_->showProblem(tr("%1 is no longer there.").arg(QFileInfo(output).fileName()));
        return;
    }
    FileActions::open(output);
}

void HistoryView::revealOutputs() {
    const HistoryEntry* entry = chosen();
    if (entry == nullptr) {
        return;
    }
    const QStringList outputs = existing(paths(entry->outputURLs));
    if (outputs.isEmpty()) {
        bar_->showProblem(tr("The results of this job are no longer there."));
        return;
    }
    FileActions::reveal(outputs);
}

void HistoryView::removeEntry() {
    if (const HistoryEntry* entry = chosen()) {
        const std::string id = entry->id;
        context_.model().history().remove(id);
    }
}

void HistoryView::clearAll() {
    const auto count = static_cast<int>(context_.model().history().entries().size());
    if (count == 0) {
        return;
    }
    QMessageBox ask(QMessageBox::Question, tr("Clear History"),
                    tr("Remove all %n finished job(s) from the history?", nullptr, count),
                    QMessageBox::NoButton, this);
    ask.setInformativeText(tr("The files the jobs made stay where they are."));
    QPushButton* clear = ask.addButton(tr("Clear History"), QMessageBox::DestructiveRole);
    ask.addButton(QMessageBox::Cancel);
    ask.setDefaultButton(QMessageBox::Cancel);
    ask.exec();
    if (ask.clickedButton() == clear) {
        context_.model().history().clear();
    }
}

} // namespace quillet
