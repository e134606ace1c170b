#include "screens/BatchView.hpp"

#include "app/Texts.hpp"
#include "screens/Coalesced.hpp"
#include "screens/Components.hpp"
#include "screens/ScreenParts.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>
#include <unordered_map>

namespace quillet {
namespace {

constexpr std::int64_t mebibyte = 1024 * 1024;
enum Column { fileColumn, pagesColumn, sizeColumn, stateColumn };

// A row of `parent` holding a text field named `objectName` after its label, which is also its
// accessible name; the row and the field are answered, the row's layout takes more widgets.
struct FieldRow {
    QWidget* row;
    QHBoxLayout* layout;
    QLineEdit* field;
};
FieldRow fieldRow(QWidget* parent, const QString& objectName, const QString& label,
                  const QString& placeholder) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* field = new QLineEdit(row);
    field->setObjectName(objectName);
    field->setAccessibleName(label);
    field->setPlaceholderText(placeholder);
    field->setMinimumWidth(200);
    auto* caption = new QLabel(label, row);
    caption->setBuddy(field);
    layout->addWidget(caption);
    layout->addWidget(field, 1);
    return {row, layout, field};
}

} // namespace

QString BatchView::label(BatchAction action) {
    switch (action) {
    case BatchAction::compressBalanced: return tr("Compress · Balanced");
    case BatchAction::compressSmallest: return tr("Compress · Smallest");
    case BatchAction::target10MB: return tr("Compress under 10 MB");
    case BatchAction::target5MB: return tr("Compress under 5 MB");
    case BatchAction::png: return tr("Convert to PNG");
    case BatchAction::jpeg: return tr("Convert to JPEG");
    case BatchAction::cleanPrivacy: return tr("Remove Metadata");
    case BatchAction::rotate90: return tr("Rotate 90°");
    case BatchAction::removePassword: return tr("Remove Password (known password)");
    case BatchAction::makeSearchable: return tr("Make searchable (OCR)");
    case BatchAction::redact: return tr("Redact");
    case BatchAction::pageNumbers: return tr("Add page numbers");
    case BatchAction::watermark: return tr("Watermark");
    }
    return {};
}

PDFOperationKind BatchView::operation(BatchAction action) {
    switch (action) {
    case BatchAction::compressBalanced:
    case BatchAction::compressSmallest: return PDFOperationKind::compress;
    case BatchAction::target10MB:
    case BatchAction::target5MB: return PDFOperationKind::targetSize;
    case BatchAction::png:
    case BatchAction::jpeg: return PDFOperationKind::pdfToImages;
    case BatchAction::cleanPrivacy: return PDFOperationKind::clean;
    case BatchAction::rotate90: return PDFOperationKind::organize;
    case BatchAction::removePassword: return PDFOperationKind::unprotect;
    case BatchAction::makeSearchable: return PDFOperationKind::ocr;
    case BatchAction::redact: return PDFOperationKind::redact;
    case BatchAction::pageNumbers:
    case BatchAction::watermark: return PDFOperationKind::stamp;
    }
    return PDFOperationKind::compress;
}

OperationParameters BatchView::parameters(BatchAction action, const std::string& password) {
    using P = OperationParameters;
    switch (action) {
    case BatchAction::compressBalanced: return P::Compress{CompressionQualityTier::balanced};
    case BatchAction::compressSmallest: return P::Compress{CompressionQualityTier::smallest};
    case BatchAction::target10MB: return P::TargetSize{10 * mebibyte};
    case BatchAction::target5MB: return P::TargetSize{5 * mebibyte};
    case BatchAction::png: return P::PDFToImages{"png", 150, "", 0.85};
    case BatchAction::jpeg: return P::PDFToImages{"jpeg", 150, "", 0.85};
    case BatchAction::cleanPrivacy: return P::Clean{CleanPreset::privacy};
    // Every list empty: each output is a re-written copy, page rotations unchanged. Turning
    // pages is the organize screen's work.
    case BatchAction::rotate90: return P::Organize{};
    case BatchAction::removePassword: return P::Unprotect{password};
    case BatchAction::makeSearchable: return P::OCR{"eng"};
    case BatchAction::redact: return P::Redact{};
    case BatchAction::pageNumbers: return P::Stamp{{P::StampMark{}}};
    case BatchAction::watermark: return P::Stamp{};
    }
    return {};
}

OperationParameters::Redact BatchView::redaction(const QString& words, const QStringList& presets) {
    OperationParameters::Redact redact;
    for (const QString& word : words.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        if (const QString trimmed = word.trimmed(); !trimmed.isEmpty()) {
            redact.patterns.push_back({trimmed.toStdString(), false, false});
        }
    }
    for (const QString& preset : presets) {
        redact.presets.push_back(preset.toStdString());
    }
    return redact;
}

OperationParameters::Stamp BatchView::watermark(const QString& text) {
    OperationParameters::StampMark mark;
    mark.kind = "text";
    mark.text = text.trimmed().toStdString();
    mark.position = "center";
    mark.fontSize = 72;
    mark.color = "#808080";
    mark.opacity = 0.3;
    mark.rotation = 45;
    return {{mark}};
}

BatchView::BatchView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    actions_ = new QComboBox(this);
    actions_->setObjectName(QStringLiteral("action"));
    actions_->setAccessibleName(tr("Action"));
    for (int i = 0; i < actionCount; ++i) {
        actions_->addItem(label(static_cast<BatchAction>(i)));
    }
    auto* actionLabel = new QLabel(tr("Action:"), this);
    actionLabel->setBuddy(actions_);

    passwordRow_ = new QWidget(this);
    auto* passwordLayout = new QHBoxLayout(passwordRow_);
    passwordLayout->setContentsMargins(0, 0, 0, 0);
    passwordLayout->setSpacing(8);
    password_ = new QLineEdit(passwordRow_);
    password_->setObjectName(QStringLiteral("password"));
    password_->setEchoMode(QLineEdit::Password);
    password_->setAccessibleName(tr("Current password"));
    password_->setMinimumWidth(200);
    auto* passwordLabel = new QLabel(tr("Current password"), passwordRow_);
    passwordLabel->setBuddy(password_);
    auto* passwordNote = new QLabel(
        tr("Applied to every selected file — use when all files share the password"), passwordRow_);
    passwordNote->setWordWrap(true);
    passwordNote->setForegroundRole(QPalette::PlaceholderText);
    passwordLayout->addWidget(passwordLabel);
    passwordLayout->addWidget(password_);
    passwordLayout->addWidget(passwordNote, 1);

    const FieldRow redact = fieldRow(this, QStringLiteral("redactWords"), tr("Words to redact"),
                                     tr("Words, separated by commas"));
    redactRow_ = redact.row;
    redactWords_ = redact.field;
    redactPresets_ = redactionPresetBoxes(redactRow_, QStringLiteral("preset-"));
    for (const auto& [preset, box] : redactPresets_) {
        redact.layout->addWidget(box);
        connect(box, &QCheckBox::toggled, this, &BatchView::updateActions);
    }

    const FieldRow watermark = fieldRow(this, QStringLiteral("watermarkText"),
                                        tr("Watermark text"), tr("CONFIDENTIAL"));
    watermarkRow_ = watermark.row;
    watermarkText_ = watermark.field;

    auto* choice = new QHBoxLayout;
    choice->setSpacing(8);
    choice->addWidget(actionLabel);
    choice->addWidget(actions_);
    choice->addStretch(1);

    rows_ = new QTreeWidget(this);
    rows_->setObjectName(QStringLiteral("files"));
    rows_->setAccessibleName(tr("Files of the batch"));
    rows_->setRootIsDecorated(false);
    rows_->setHeaderLabels({tr("File"), tr("Pages"), tr("Size"), tr("State")});
    rows_->header()->setStretchLastSection(false);
    rows_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    rows_->header()->setSectionResizeMode(fileColumn, QHeaderView::Stretch);
    rows_->setTextElideMode(Qt::ElideMiddle);
    rows_->setUniformRowHeights(true);

    bar_ = new ActionBar(QString(), this);
    done_ = new QLabel(this);
    done_->setObjectName(QStringLiteral("done"));
    clear_ = new QPushButton(tr("Clear finished"), this);
    clear_->setObjectName(QStringLiteral("clearFinished"));
    bar_->addControl(done_);
    bar_->addControl(clear_);
    connect(clear_, &QPushButton::clicked, this,
            [this] { context_.model().queue().clearFinished(); });
    connect(&bar_->button(), &QPushButton::clicked, this, &BatchView::runBatch);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addLayout(choice);
    layout->addWidget(passwordRow_);
    layout->addWidget(redactRow_);
    layout->addWidget(watermarkRow_);
    layout->addWidget(rows_, 1);
    layout->addWidget(bar_);

    connect(actions_, &QComboBox::currentIndexChanged, this, &BatchView::updateActions);
    connect(password_, &QLineEdit::textChanged, this, &BatchView::updateActions);
    connect(redactWords_, &QLineEdit::textChanged, this, &BatchView::updateActions);
    AppModel& model = context_.model();
    connectWhenShown(&model, &AppModel::filesChanged, this, [this] {
        if (isVisible()) {
            context_.model().ensureAnalyses();
        }
        rebuildRows();
    });
    connect(&model, &AppModel::analysisChanged, this, &BatchView::refreshAnalysis);
    connect(&model.queue(), &TaskQueueService::recordsChanged, this, &BatchView::refreshStates);
    rebuildRows();
}

BatchView::BatchAction BatchView::action() const {
    return static_cast<BatchAction>(actions_->currentIndex());
}

void BatchView::setAction(BatchAction action) {
    actions_->setCurrentIndex(static_cast<int>(action));
}

void BatchView::runBatch() {
    const QStringList& files = context_.model().files();
    if (files.isEmpty()) {
        return;
    }
    const BatchAction chosen = action();
    if (chosen == BatchAction::removePassword && password_->text().isEmpty()) {
        password_->setFocus();
        return;
    }
    QStringList presets;
    for (const auto& [preset, box] : redactPresets_) {
        if (box->isChecked()) {
            presets.append(preset);
        }
    }
    const auto redact = redaction(redactWords_->text(), presets);
    if (chosen == BatchAction::redact && redact.patterns.empty() && redact.presets.empty()) {
        redactWords_->setFocus();
        return;
    }
    if (chosen == BatchAction::watermark && watermarkText_->text().trimmed().isEmpty()) {
        watermarkText_->setFocus();
        return;
    }
    const OutputRule rule = context_.model().settings().outputRule();
    const auto kind = operation(chosen);
    const auto chosenParameters =
        chosen == BatchAction::redact      ? OperationParameters(redact)
        : chosen == BatchAction::watermark ? OperationParameters(watermark(watermarkText_->text()))
                                           : parameters(chosen, password_->text().toStdString());
    std::vector<TaskSpec> specs;
    specs.reserve(static_cast<std::size_t>(files.size()));
    for (const QString& file : files) {
        specs.push_back(TaskSpec::make(kind, {file.toStdString()}, rule, chosenParameters));
        jobs_.insert(file, specs.back().id);
    }
    context_.model().queue().submit(specs);
}

void BatchView::rebuildRows() {
    rows_->clear();
    itemByPath_.clear();
    stated_.clear();
    building_rows_.clear();
    // A folder may bring tens of thousands of files: the rows are made a slice at a time.
    const QStringList files = context_.model().files();
    building_rows_.reserve(static_cast<std::size_t>(files.size()));
    building_.start(
        static_cast<int>(files.size()),
        [this, files](int index) {
            const QString& file = files.at(index);
            const QFileInfo info(file);
            auto row = std::make_unique<QTreeWidgetItem>(
                QStringList{info.fileName(), QString(), Texts::bytes(info.size()), QString()});
            row->setToolTip(fileColumn, file);
            row->setData(fileColumn, Qt::UserRole, file);
            row->setTextAlignment(pagesColumn, Qt::AlignRight | Qt::AlignVCenter);
            row->setTextAlignment(sizeColumn, Qt::AlignRight | Qt::AlignVCenter);
            itemByPath_.insert(file, row.get());
            building_rows_.push_back(std::move(row));
            refreshAnalysis(file);
        },
        [this] {
            QList<QTreeWidgetItem*> rows;
            rows.reserve(static_cast<qsizetype>(building_rows_.size()));
            for (auto& row : building_rows_) {
                rows << row.release();
            }
            building_rows_.clear();
            rows_->addTopLevelItems(rows);
            refreshStates();
        });
    updateActions();
}

void BatchView::refreshAnalysis(const QString& path) {
    QTreeWidgetItem* item = itemByPath_.value(path);
    if (item == nullptr) {
        return;
    }
    const AppModel& model = context_.model();
    if (const PDFAnalysis* analysis = model.analysis(path)) {
        item->setText(pagesColumn, QLocale().toString(analysis->pageCount));
    } else {
        item->setText(pagesColumn, model.isAnalyzing(path) ? QStringLiteral("…") : QString());
    }
}

void BatchView::refreshStates() {
    const auto& records = context_.model().queue().records();
    std::unordered_map<std::string, const TaskRecord*> recordById;
    for (const TaskRecord& record : records) {
        recordById.emplace(record.id, &record);
    }
    const StateColors colours = StateColors::forPalette(palette());
    int done = 0;
    // Only the rows of this section's jobs carry a state; the other thousands are left alone.
    QSet<QString> stated;
    for (auto job = jobs_.cbegin(); job != jobs_.cend(); ++job) {
        QTreeWidgetItem* item = itemByPath_.value(job.key());
        const auto found = recordById.find(job.value());
        if (item == nullptr || found == recordById.end()) {
            continue;
        }
        const TaskRecord& record = *found->second;
        QString text = Texts::stateName(record.state);
        QColor colour = palette().color(QPalette::Text);
        if (record.state == TaskState::running) {
            text += QStringLiteral(" %1%").arg(std::lround(record.progress * 100));
        } else if (record.state == TaskState::completed) {
            ++done;
            colour = colours.success;
        } else if (record.state == TaskState::failed) {
            colour = colours.failure;
        }
        item->setText(stateColumn, text);
        item->setForeground(stateColumn, colour);
        item->setToolTip(stateColumn,
                         QString::fromStdString(record.error.value_or(record.message.value_or(""))));
        stated.insert(job.key());
    }
    for (const QString& file : std::as_const(stated_)) {
        QTreeWidgetItem* item = itemByPath_.value(file);
        if (item != nullptr && !stated.contains(file)) {
            item->setText(stateColumn, QString());
            item->setToolTip(stateColumn, QString());
        }
    }
    stated_ = std::move(stated);
    done_->setText(tr("%n done", nullptr, done));
    done_->setVisible(done > 0);
}

void BatchView::updateActions() {
    const auto count = static_cast<int>(context_.model().files().size());
    const bool needsPassword = action() == BatchAction::removePassword;
    passwordRow_->setVisible(needsPassword);
    redactRow_->setVisible(action() == BatchAction::redact);
    watermarkRow_->setVisible(action() == BatchAction::watermark);
    bar_->button().setText(tr("Run on %n files", nullptr, count));
    bar_->button().setEnabled(count > 0);
    bar_->showNote(count == 0 ? tr("Drop PDFs or a folder above.") : QString());
}

void BatchView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    context_.model().ensureAnalyses(); // the page counts
}

} // namespace quillet
