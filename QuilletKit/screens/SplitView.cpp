#include "screens/SplitView.hpp"

#include "app/Texts.hpp"
#include "engines/PDFCoreError.hpp"
#include "screens/Coalesced.hpp"
#include "screens/ScreenParts.hpp"

#include <QButtonGroup>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>

namespace quillet {
namespace {

constexpr std::int64_t kibibyte = 1024;
constexpr std::int64_t mebibyte = 1024 * 1024;

QString rangesExample() {
    return QStringLiteral("1-5, 8, 11-30");
}

QString extractExample() {
    return QStringLiteral("1, 3, 5, 7-20");
}

QLabel* explanation(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

SplitView::SplitView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    file_ = new QLabel(this);
    file_->setObjectName(QStringLiteral("source"));
    file_->setWordWrap(true);
    QFont bold = file_->font();
    bold.setBold(true);
    file_->setFont(bold);

    bar_ = new ActionBar(tr("Split"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &SplitView::runSplit);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(file_);
    layout->addWidget(buildModes());
    layout->addStretch(1);
    layout->addWidget(bar_);

    AppModel& model = context_.model();
    connectWhenShown(&model, &AppModel::filesChanged, this, [this] {
        if (isVisible()) {
            if (const auto pdf = source()) {
                context_.model().startAnalysis(*pdf); // the page count
            }
        }
        refresh();
    });
    connect(&model, &AppModel::analysisChanged, this, [this](const QString& path) {
        if (source() == path) {
            refresh();
        }
    });
    refresh();
}

QWidget* SplitView::buildModes() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(8);
    grid->setColumnStretch(2, 1);
    modes_ = new QButtonGroup(this);

    ranges_ = new QLineEdit(box);
    ranges_->setObjectName(QStringLiteral("ranges"));
    ranges_->setPlaceholderText(rangesExample());
    ranges_->setAccessibleName(tr("Page ranges"));
    ranges_->setClearButtonEnabled(true);
    everyN_ = new QSpinBox(box);
    everyN_->setObjectName(QStringLiteral("everyN"));
    everyN_->setAccessibleName(tr("Pages per file"));
    everyN_->setRange(1, 100000);
    everyN_->setValue(2);
    extract_ = new QLineEdit(box);
    extract_->setObjectName(QStringLiteral("extract"));
    extract_->setPlaceholderText(extractExample());
    extract_->setAccessibleName(tr("Pages to extract"));
    extract_->setClearButtonEnabled(true);
    auto* size = new QWidget(box);
    auto* sizeRow = new QHBoxLayout(size);
    sizeRow->setContentsMargins(0, 0, 0, 0);
    maxSize_ = new QDoubleSpinBox(size);
    maxSize_->setObjectName(QStringLiteral("maxSize"));
    maxSize_->setAccessibleName(tr("Largest size of a file"));
    maxSize_->setRange(0.1, 100000);
    maxSize_->setDecimals(1);
    maxSize_->setValue(10);
    sizeUnit_ = new QComboBox(size);
    sizeUnit_->setAccessibleName(tr("Unit of the size"));
    sizeUnit_->addItem(QStringLiteral("MB"), QVariant::fromValue(mebibyte));
    sizeUnit_->addItem(QStringLiteral("KB"), QVariant::fromValue(kibibyte));
    sizeRow->addWidget(maxSize_, 1);
    sizeRow->addWidget(sizeUnit_);

    struct Row {
        SplitMode mode;
        QString label;
        QWidget* field;
        QString line;
    };
    const Row rows[] = {
        {SplitMode::everyPage, tr("Every page"), nullptr,
         tr("Each page becomes a PDF of its own.")},
        {SplitMode::pageRanges, tr("Page ranges"), ranges_,
         tr("Each range becomes a PDF, in the order written.")},
        {SplitMode::everyNPages, tr("Every N pages"), everyN_,
         tr("Runs of N pages; the last PDF holds the rest.")},
        {SplitMode::extract, tr("Extract pages"), extract_,
         tr("The chosen pages, in page order, in one PDF.")},
        {SplitMode::byFileSize, tr("By file size"), size,
         tr("Consecutive pages, each PDF kept under the size.")},
    };
    int line = 0;
    for (const Row& row : rows) {
        auto* radio = new QRadioButton(row.label, box);
        radio->setObjectName(
            QStringLiteral("mode-%1").arg(QString::fromStdString(std::string(rawValue(row.mode)))));
        radio->setAccessibleDescription(row.line);
        modes_->addButton(radio, static_cast<int>(row.mode));
        grid->addWidget(radio, line, 0);
        if (row.field != nullptr) {
            row.field->setMinimumWidth(180);
            grid->addWidget(row.field, line, 1);
        }
        grid->addWidget(explanation(row.line, box), line, 2);
        ++line;
    }
    // Typing in a field chooses its mode.
    connect(ranges_, &QLineEdit::textEdited, this, [this] { selectMode(SplitMode::pageRanges); });
    connect(extract_, &QLineEdit::textEdited, this, [this] { selectMode(SplitMode::extract); });
    connect(everyN_, &QSpinBox::valueChanged, this, [this] { selectMode(SplitMode::everyNPages); });
    connect(maxSize_, &QDoubleSpinBox::valueChanged, this,
            [this] { selectMode(SplitMode::byFileSize); });
    connect(sizeUnit_, &QComboBox::currentIndexChanged, this,
            [this] { selectMode(SplitMode::byFileSize); });
    for (QLineEdit* field : {ranges_, extract_}) {
        connect(field, &QLineEdit::textChanged, this, &SplitView::refresh);
    }
    connect(everyN_, &QSpinBox::valueChanged, this, &SplitView::refresh);
    connect(maxSize_, &QDoubleSpinBox::valueChanged, this, &SplitView::refresh);
    connect(sizeUnit_, &QComboBox::currentIndexChanged, this, &SplitView::refresh);
    connect(modes_, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked) {
            refresh();
        }
    });
    selectMode(SplitMode::everyPage);
    return box;
}

std::optional<QString> SplitView::source() const {
    // The first PDF, found without listing them all: a folder may have loaded 50,000 files.
    for (const QString& path : context_.model().files()) {
        if (ScreenFiles::isPDF(path)) {
            return path;
        }
    }
    return std::nullopt;
}

void SplitView::selectMode(SplitMode mode) {
    modes_->button(static_cast<int>(mode))->setChecked(true);
}

SplitMode SplitView::mode() const {
    return static_cast<SplitMode>(modes_->checkedId());
}

OperationParameters SplitView::parameters() const {
    OperationParameters::Split split;
    split.mode = mode();
    if (split.mode == SplitMode::pageRanges) {
        split.ranges = ranges_->text().trimmed().toStdString();
    } else if (split.mode == SplitMode::extract) {
        split.ranges = extract_->text().trimmed().toStdString();
    }
    split.everyN = everyN_->value();
    split.maxBytes = std::llround(maxSize_->value() *
                                  static_cast<double>(sizeUnit_->currentData().toLongLong()));
    return split;
}

int SplitView::pageCount() const {
    const auto pdf = source();
    const PDFAnalysis* analysis = pdf ? context_.model().analysis(*pdf) : nullptr;
    return analysis != nullptr ? analysis->pageCount : 0;
}

QString SplitView::problem() const {
    const QStringList files = context_.model().files();
    if (!source()) {
        return files.isEmpty() ? QString()
                               : tr("%1 is not a PDF: only PDFs can be split.")
                                     .arg(QFileInfo(files.front()).fileName());
    }
    switch (mode()) {
    case SplitMode::pageRanges:
        return PageSelection::read(ranges_->text(), pageCount(), false, rangesExample()).problem;
    case SplitMode::extract:
        return PageSelection::read(extract_->text(), pageCount(), false, extractExample()).problem;
    default: return {};
    }
}

void SplitView::refresh() {
    const auto pdf = source();
    const int pages = pageCount();
    AppModel& model = context_.model();
    if (!pdf) {
        file_->setText(tr("No PDF loaded."));
    } else if (pages > 0) {
        file_->setText(tr("%1 — %n page(s)", nullptr, pages).arg(QFileInfo(*pdf).fileName()));
    } else if (const QString error = model.analysisError(*pdf); !error.isEmpty()) {
        file_->setText(tr("%1 — could not be read: %2").arg(QFileInfo(*pdf).fileName(), error));
    } else {
        file_->setText(tr("%1 — counting pages…").arg(QFileInfo(*pdf).fileName()));
    }
    bar_->button().setEnabled(pdf.has_value());

    if (const QString why = problem(); !why.isEmpty()) {
        bar_->showProblem(why);
        return;
    }
    if (!pdf) {
        bar_->showNote(tr("Drop a PDF above to split it."));
        return;
    }
    QStringList note;
    const OperationParameters chosen = parameters();
    const auto& split = *chosen.as<OperationParameters::Split>();
    if (split.mode == SplitMode::byFileSize) {
        note << tr("Each PDF stays under %1; how many there are depends on the pages.")
                    .arg(Texts::bytes(split.maxBytes));
    } else if (pages > 0) {
        try {
            const auto plan = PDFSplitEngine::chunkPages(split.mode, pages, split.ranges,
                                                         static_cast<int>(split.everyN), 0, {});
            note << (split.mode == SplitMode::extract
                         ? tr("Makes one PDF of %n page(s).", nullptr,
                              static_cast<int>(plan.front().size()))
                         : tr("Makes %n PDF(s).", nullptr, static_cast<int>(plan.size())));
        } catch (const PDFCoreError&) {
            // The selection was checked above; nothing to count otherwise.
        }
        const QString text = split.mode == SplitMode::pageRanges ? ranges_->text()
                             : split.mode == SplitMode::extract  ? extract_->text()
                                                                 : QString();
        if (const QString warning = PageSelection::read(text, pages, true, {}).warning;
            !warning.isEmpty()) {
            note << warning;
        }
    }
    if (const auto others = model.files().size() - 1; others > 0) {
        note << tr("Only %1 is split; %n other file(s) are left out.", nullptr,
                   static_cast<int>(others))
                    .arg(QFileInfo(*pdf).fileName());
    }
    bar_->showNote(note.join(QLatin1Char(' ')));
}

void SplitView::runSplit() {
    const auto pdf = source();
    const QString why = problem();
    if (!pdf || !why.isEmpty()) {
        bar_->showProblem(why.isEmpty() ? tr("Drop a PDF above to split it.") : why);
        if (mode() == SplitMode::pageRanges) {
            ranges_->setFocus();
        } else if (mode() == SplitMode::extract) {
            extract_->setFocus();
        }
        return;
    }
    context_.model().run(PDFOperationKind::split, parameters(), QStringList{*pdf});
    bar_->showNote(tr("Splitting %1: follow it in the queue.").arg(QFileInfo(*pdf).fileName()));
}

void SplitView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (const auto pdf = source()) {
        context_.model().startAnalysis(*pdf);
    }
}

} // namespace quillet
