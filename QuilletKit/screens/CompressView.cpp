#include "screens/CompressView.hpp"

#include "app/AnalysisTexts.hpp"
#include "app/Texts.hpp"
#include "screens/BeforeAfterView.hpp"
#include "screens/Coalesced.hpp"
#include "screens/Components.hpp"
#include "screens/ScreenParts.hpp"

#include <QButtonGroup>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <cmath>

namespace quillet {
namespace {

constexpr int targetChoice = 100; ///< the button id of "Under a size"
constexpr std::int64_t kibibyte = 1024;
constexpr std::int64_t mebibyte = 1024 * 1024;

struct TierText {
    CompressionQualityTier tier;
    QString label;
    QString line;
};

QList<TierText> tierTexts() {
    return {
        {CompressionQualityTier::highQuality, CompressView::tr("High Quality"),
         CompressView::tr("Images kept sharp for print; a modest saving.")},
        {CompressionQualityTier::balanced, CompressView::tr("Balanced"),
         CompressView::tr("Good on screen and in print at home; the usual choice.")},
        {CompressionQualityTier::smallest, CompressView::tr("Smallest"),
         CompressView::tr("For e-mail and the web: images at screen resolution.")},
        {CompressionQualityTier::lossless, CompressView::tr("Lossless Optimize"),
         CompressView::tr("Nothing visible changes: only the file's structure is tightened.")},
    };
}

} // namespace

CompressView::CompressView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    files_ = new QTreeWidget(this);
    files_->setObjectName(QStringLiteral("files"));
    files_->setAccessibleName(tr("PDFs to compress"));
    files_->setRootIsDecorated(false);
    files_->setHeaderLabels({tr("File"), tr("Pages"), tr("Size"), tr("Predicted")});
    files_->header()->setStretchLastSection(false);
    files_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    files_->setTextElideMode(Qt::ElideMiddle);

    auto* options = new QWidget(this);
    auto* optionsLayout = new QVBoxLayout(options);
    optionsLayout->setContentsMargins(0, 8, 0, 0);
    optionsLayout->addWidget(files_, 1);
    optionsLayout->addWidget(buildOptions());
    optionsLayout->addWidget(buildPresets());

    comparison_ = new BeforeAfterView(context_.app.renders(), this);
    tabs_ = new QTabWidget(this);
    tabs_->addTab(options, tr("Options"));
    tabs_->addTab(comparison_, tr("Before / After"));
    tabs_->setTabEnabled(1, false);

    message_ = new QLabel(this);
    message_->setWordWrap(true);
    run_ = new QPushButton(tr("Compress"), this);
    run_->setObjectName(QStringLiteral("run"));
    run_->setDefault(true);
    connect(run_, &QPushButton::clicked, this, &CompressView::runCompression);

    auto* bar = new QHBoxLayout;
    bar->addWidget(message_, 1);
    bar->addWidget(run_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tabs_, 1);
    layout->addLayout(bar);

    AppModel& model = context_.model();
    connectWhenShown(&model, &AppModel::filesChanged, this, [this] {
        refreshFiles();
        updateActions();
        if (context_.model().section() == AppModel::Section::compress) {
            context_.model().ensureAnalyses(); // the predictions need them
        }
    });
    connectCoalesced(&model, &AppModel::analysisChanged, this, &CompressView::refreshFiles);
    connect(&model, &AppModel::presetsChanged, this, &CompressView::refreshPresets);
    connect(&model, &AppModel::suggestionOffered, this,
            [this](AppModel::Section section, const OperationParameters& suggested) {
                if (section != AppModel::Section::compress) {
                    return;
                }
                if (const auto* compress = suggested.as<OperationParameters::Compress>()) {
                    selectTier(compress->tier);
                } else if (const auto* target = suggested.as<OperationParameters::TargetSize>()) {
                    setTarget(target->bytes);
                }
                tabs_->setCurrentIndex(0);
            });
    connect(&model.queue(), &TaskQueueService::recordsChanged, this, &CompressView::queueChanged);
    refreshFiles();
    refreshPresets();
    updateActions();
}

QWidget* CompressView::buildOptions() {
    auto* box = new QWidget(this);
    auto* grid = new QVBoxLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    choice_ = new QButtonGroup(this);
    for (const TierText& text : tierTexts()) {
        auto* row = new QHBoxLayout;
        auto* radio = new QRadioButton(text.label, box);
        radio->setObjectName(QStringLiteral("tier-%1").arg(static_cast<int>(text.tier)));
        radio->setAccessibleDescription(text.line);
        radio->setMinimumWidth(170);
        auto* line = new QLabel(text.line, box);
        line->setForegroundRole(QPalette::PlaceholderText);
        line->setWordWrap(true);
        row->addWidget(radio);
        row->addWidget(line, 1);
        grid->addLayout(row);
        choice_->addButton(radio, static_cast<int>(text.tier));
    }
    auto* targetRow = new QHBoxLayout;
    auto* target = new QRadioButton(tr("Under a size"), box);
    target->setObjectName(QStringLiteral("target"));
    target->setMinimumWidth(170);
    choice_->addButton(target, targetChoice);
    targetSize_ = new QDoubleSpinBox(box);
    targetSize_->setObjectName(QStringLiteral("targetSize"));
    targetSize_->setAccessibleName(tr("Target size"));
    targetSize_->setRange(0.1, 100000);
    targetSize_->setDecimals(1);
    targetSize_->setValue(5);
    targetUnit_ = new QComboBox(box);
    targetUnit_->setAccessibleName(tr("Unit of the target size"));
    targetUnit_->addItem(QStringLiteral("MB"), QVariant::fromValue(mebibyte));
    targetUnit_->addItem(QStringLiteral("KB"), QVariant::fromValue(kibibyte));
    targetRow->addWidget(target);
    targetRow->addWidget(targetSize_);
    targetRow->addWidget(targetUnit_);
    targetRow->addStretch();
    grid->addLayout(targetRow);
    const auto targetChosen = [this] {
        exactTarget_.reset(); // the user's own figure from now on
        choice_->button(targetChoice)->setChecked(true);
    };
    connect(targetSize_, &QDoubleSpinBox::valueChanged, this, targetChosen);
    connect(targetUnit_, &QComboBox::currentIndexChanged, this, targetChosen);
    connect(choice_, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked) {
            refreshFiles();
        }
    });
    selectTier(CompressionQualityTier::balanced);
    return box;
}

QWidget* CompressView::buildPresets() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 6, 0, 0);
    presets_ = new QComboBox(row);
    presets_->setObjectName(QStringLiteral("presets"));
    presets_->setAccessibleName(tr("Presets"));
    presets_->setMinimumWidth(200);
    applyPreset_ = new QPushButton(tr("Apply"), row);
    applyPreset_->setObjectName(QStringLiteral("applyPreset"));
    deletePreset_ = new QPushButton(tr("Delete"), row);
    auto* save = new QPushButton(tr("Save as Preset…"), row);
    save->setObjectName(QStringLiteral("savePreset"));
    connect(applyPreset_, &QPushButton::clicked, this, [this] {
        const auto id = presets_->currentData().toString().toStdString();
        for (const auto& preset : context_.model().presets().presets()) {
            if (preset.id == id) {
                if (preset.targetBytes) {
                    setTarget(*preset.targetBytes);
                } else {
                    selectTier(preset.tier);
                }
            }
        }
    });
    connect(deletePreset_, &QPushButton::clicked, this, [this] {
        context_.model().presets().remove(presets_->currentData().toString().toStdString());
    });
    connect(save, &QPushButton::clicked, this, [this] {
        bool ok = false;
        const QString name =
            QInputDialog::getText(this, tr("Save as Preset"), tr("Name of the preset:"),
                                  QLineEdit::Normal, QString(), &ok)
                .trimmed();
        if (!ok || name.isEmpty()) {
            return;
        }
        const OperationParameters chosen = parameters();
        const auto* compress = chosen.as<OperationParameters::Compress>();
        context_.model().presets().add(
            name.toStdString(),
            compress != nullptr ? compress->tier : CompressionQualityTier::balanced, targetBytes());
    });
    layout->addWidget(new QLabel(tr("Presets:"), row));
    layout->addWidget(presets_, 1);
    layout->addWidget(applyPreset_);
    layout->addWidget(deletePreset_);
    layout->addWidget(save);
    return row;
}

OperationParameters CompressView::parameters() const {
    if (const auto bytes = targetBytes()) {
        return OperationParameters::TargetSize{*bytes};
    }
    return OperationParameters::Compress{static_cast<CompressionQualityTier>(choice_->checkedId())};
}

std::optional<std::int64_t> CompressView::targetBytes() const {
    if (choice_->checkedId() != targetChoice) {
        return std::nullopt;
    }
    if (exactTarget_) {
        return exactTarget_;
    }
    return std::llround(targetSize_->value() *
                        static_cast<double>(targetUnit_->currentData().toLongLong()));
}

void CompressView::selectTier(CompressionQualityTier tier) {
    choice_->button(static_cast<int>(tier))->setChecked(true);
}

void CompressView::setTarget(std::int64_t bytes) {
    const bool small = bytes < mebibyte;
    const QSignalBlocker sizeBlock(targetSize_);
    const QSignalBlocker unitBlock(targetUnit_);
    targetUnit_->setCurrentIndex(small ? 1 : 0);
    targetSize_->setValue(static_cast<double>(bytes) /
                          static_cast<double>(small ? kibibyte : mebibyte));
    exactTarget_ = bytes; // a preset's figure stays exact, whatever the field rounds to
    choice_->button(targetChoice)->setChecked(true);
}

QStringList CompressView::loadedPDFs() const {
    return ScreenFiles::pdfs(context_.model());
}

void CompressView::refreshFiles() {
    files_->clear();
    const auto target = targetBytes();
    const auto tier = static_cast<CompressionQualityTier>(choice_->checkedId());
    const QStringList pdfs = loadedPDFs();
    // A slice at a time: a folder may have loaded tens of thousands of files.
    filling_.start(static_cast<int>(pdfs.size()), [this, pdfs, target, tier](int index) {
        const QString& file = pdfs.at(index);
        QStringList columns{QFileInfo(file).fileName(), QString(),
                            Texts::bytes(QFileInfo(file).size()), QString()};
        AppModel& model = context_.model();
        if (const PDFAnalysis* analysis = model.analysis(file)) {
            columns[1] = QLocale().toString(analysis->pageCount);
            columns[3] = target ? tr("at most %1").arg(Texts::bytes(*target))
                                : QStringLiteral("~%1").arg(
                                      Texts::bytes(AnalysisTexts::predictedBytes(*analysis, tier)));
        } else if (model.isAnalyzing(file)) {
            columns[3] = tr("Analysing…");
        } else if (const QString error = model.analysisError(file); !error.isEmpty()) {
            columns[3] = tr("could not be read: %1").arg(error);
        }
        auto* item = new QTreeWidgetItem(files_, columns);
        item->setToolTip(0, file);
        item->setToolTip(3, columns[3]);
    });
}

void CompressView::refreshPresets() {
    const QString current = presets_->currentData().toString();
    presets_->clear();
    for (const auto& preset : context_.model().presets().presets()) {
        presets_->addItem(QStringLiteral("%1 — %2").arg(QString::fromStdString(preset.name),
                                                        QString::fromStdString(preset.summary())),
                          QString::fromStdString(preset.id));
    }
    const int kept = presets_->findData(current);
    presets_->setCurrentIndex(kept >= 0 ? kept : (presets_->count() > 0 ? 0 : -1));
    const bool any = presets_->count() > 0;
    presets_->setEnabled(any);
    applyPreset_->setEnabled(any);
    deletePreset_->setEnabled(any);
    if (!any) {
        presets_->setPlaceholderText(tr("No presets yet"));
    }
}

void CompressView::updateActions() {
    const QStringList pdfs = loadedPDFs();
    run_->setEnabled(!pdfs.isEmpty());
    const auto others = context_.model().files().size() - pdfs.size();
    message_->setText(others > 0 ? tr("%n file(s) that are not PDFs will be left out.", nullptr,
                                      static_cast<int>(others))
                                 : QString());
}

void CompressView::runCompression() {
    const QStringList pdfs = loadedPDFs();
    if (pdfs.isEmpty()) {
        message_->setText(tr("Load a PDF first: only PDFs can be compressed."));
        return;
    }
    const OperationParameters chosen = parameters();
    const auto kind = chosen.as<OperationParameters::TargetSize>() != nullptr
                          ? PDFOperationKind::targetSize
                          : PDFOperationKind::compress;
    watchedJob_ = context_.model().run(kind, chosen, pdfs);
}

void CompressView::showComparison(const QString& original, const QString& result) {
    // Shown first, so the pages are drawn at the size they get on screen.
    tabs_->setTabEnabled(1, true);
    tabs_->setCurrentIndex(1);
    const PDFAnalysis* analysis = context_.model().analysis(original);
    comparison_->compare(original, result, analysis != nullptr ? analysis->pageCount : 0);
}

void CompressView::queueChanged() {
    if (!watchedJob_) {
        return;
    }
    for (const TaskRecord& record : context_.model().queue().records()) {
        if (record.id != *watchedJob_) {
            continue;
        }
        if (record.state == TaskState::completed && !record.inputURLs.empty() &&
            !record.outputURLs.empty()) {
            watchedJob_.reset();
            showComparison(ScreenFiles::localPath(record.inputURLs.front()),
                           ScreenFiles::localPath(record.outputURLs.front()));
        } else if (record.state == TaskState::failed || record.state == TaskState::cancelled) {
            watchedJob_.reset();
        }
        return;
    }
}

} // namespace quillet
