#include "screens/ConvertView.hpp"

#include "app/LoadedFilesModel.hpp"
#include "app/Texts.hpp"
#include "screens/Coalesced.hpp"
#include "screens/Components.hpp"
#include "screens/ScreenParts.hpp"

#include <QButtonGroup>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace quillet {
namespace {

QString pagesExample() {
    return QStringLiteral("1-3, 8");
}

} // namespace

ConvertView::ConvertView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    direction_ = new QButtonGroup(this);
    auto* toImages = new QRadioButton(Texts::operationName(PDFOperationKind::pdfToImages), this);
    toImages->setObjectName(QStringLiteral("toImages"));
    auto* toPDF = new QRadioButton(Texts::operationName(PDFOperationKind::imagesToPDF), this);
    toPDF->setObjectName(QStringLiteral("toPDF"));
    direction_->addButton(toImages, static_cast<int>(Direction::toImages));
    direction_->addButton(toPDF, static_cast<int>(Direction::toPDF));
    auto* directions = new QHBoxLayout;
    directions->setSpacing(16);
    directions->addWidget(toImages);
    directions->addWidget(toPDF);
    directions->addStretch(1);

    pages_ = new QStackedWidget(this);
    pages_->addWidget(buildToImages());
    pages_->addWidget(buildToPDF());

    bar_ = new ActionBar(tr("Convert"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &ConvertView::runConversion);

    auto* files = new FileListView(this);
    files->setObjectName(QStringLiteral("files"));
    files->setAccessibleName(tr("Files to convert"));
    files->setModel(&context_.files);
    files->setMaximumHeight(150);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(files);
    layout->addLayout(directions);
    layout->addWidget(pages_);
    layout->addStretch(1);
    layout->addWidget(bar_);

    connect(direction_, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (checked) {
            pages_->setCurrentIndex(id);
            refresh();
        }
    });
    connectWhenShown(&context_.model(), &AppModel::filesChanged, this, &ConvertView::filesChanged);
    connectCoalesced(&context_.model(), &AppModel::analysisChanged, this, &ConvertView::refresh);
    setDirection(Direction::toImages);
    filesChanged();
}

QWidget* ConvertView::buildToImages() {
    auto* page = new QWidget(this);
    QFormLayout* layout = formLayout(page);
    format_ = new QComboBox(page);
    format_->setObjectName(QStringLiteral("format"));
    for (const auto format : {ImageOutputFormat::png, ImageOutputFormat::jpeg,
                              ImageOutputFormat::tiff, ImageOutputFormat::heic}) {
        const QString raw = QString::fromStdString(std::string(rawValue(format)));
        format_->addItem(raw.toUpper(), raw);
    }
    dpi_ = new QSpinBox(page);
    dpi_->setObjectName(QStringLiteral("dpi"));
    dpi_->setRange(36, 1200);
    dpi_->setSingleStep(50);
    dpi_->setValue(150);
    dpi_->setSuffix(QStringLiteral(" DPI"));
    selection_ = new QLineEdit(page);
    selection_->setObjectName(QStringLiteral("pages"));
    selection_->setPlaceholderText(tr("All pages, or e.g. %1").arg(pagesExample()));
    selection_->setClearButtonEnabled(true);
    selection_->setMinimumWidth(220);
    selection_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    quality_ = new QSlider(Qt::Horizontal, page);
    quality_->setObjectName(QStringLiteral("quality"));
    quality_->setRange(1, 100);
    quality_->setValue(85);
    quality_->setMinimumWidth(180);
    qualityValue_ = new QLabel(page);
    // Wide enough for either text, so the slider does not move when the format changes.
    qualityValue_->setMinimumWidth(
        std::max(qualityValue_->fontMetrics().horizontalAdvance(tr("lossless")),
                 qualityValue_->fontMetrics().horizontalAdvance(QStringLiteral("100%"))) +
        4);
    auto* qualityRow = new QHBoxLayout;
    qualityRow->addWidget(quality_);
    qualityRow->addWidget(qualityValue_);
    qualityRow->addStretch(1);

    layout->addRow(tr("Format:"), format_);
    layout->addRow(tr("Resolution:"), dpi_);
    layout->addRow(tr("Pages:"), selection_);
    layout->addRow(tr("Quality:"), qualityRow);
    layout->addRow(QString(),
                   noteLabel(tr("The images of each PDF go into a folder beside it, named "
                                "after it."),
                             page));
    format_->setAccessibleName(tr("Format"));
    dpi_->setAccessibleName(tr("Resolution"));
    selection_->setAccessibleName(tr("Pages"));
    quality_->setAccessibleName(tr("Quality"));

    const auto qualityShown = [this] {
        const auto format =
            fromRawValue<ImageOutputFormat>(format_->currentData().toString().toStdString());
        const bool takesQuality = format && supportsQuality(*format);
        quality_->setEnabled(takesQuality);
        qualityValue_->setEnabled(takesQuality);
        qualityValue_->setText(takesQuality ? QStringLiteral("%1%").arg(quality_->value())
                                            : tr("lossless"));
    };
    connect(format_, &QComboBox::currentIndexChanged, this, qualityShown);
    connect(quality_, &QSlider::valueChanged, this, qualityShown);
    connect(selection_, &QLineEdit::textChanged, this, &ConvertView::refresh);
    qualityShown();
    return page;
}

QWidget* ConvertView::buildToPDF() {
    auto* page = new QWidget(this);
    QFormLayout* layout = formLayout(page);
    pageSize_ = new QComboBox(page);
    pageSize_->setObjectName(QStringLiteral("pageSize"));
    pageSize_->addItem(tr("Size of each image"), QStringLiteral("original"));
    pageSize_->addItem(tr("A4"), QStringLiteral("a4"));
    pageSize_->addItem(tr("US Letter"), QStringLiteral("letter"));
    pageSize_->addItem(tr("US Legal"), QStringLiteral("legal"));
    fit_ = new QComboBox(page);
    fit_->setObjectName(QStringLiteral("fit"));
    fit_->addItem(tr("Fit: the whole image on the page"), QStringLiteral("fit"));
    fit_->addItem(tr("Fill: the page covered, edges cut"), QStringLiteral("fill"));
    margin_ = new QDoubleSpinBox(page);
    margin_->setObjectName(QStringLiteral("margin"));
    margin_->setRange(0, 144);
    margin_->setDecimals(0);
    margin_->setSingleStep(6);
    margin_->setSuffix(tr(" pt"));
    layout->addRow(tr("Page size:"), pageSize_);
    layout->addRow(tr("Placement:"), fit_);
    layout->addRow(tr("Margin:"), margin_);
    layout->addRow(QString(),
                   noteLabel(tr("The images become the pages of one PDF, in the order they "
                                "were loaded."),
                             page));
    pageSize_->setAccessibleName(tr("Page size"));
    fit_->setAccessibleName(tr("Placement"));
    margin_->setAccessibleName(tr("Margin"));
    const auto fixedSize = [this] {
        const bool fixed = pageSize_->currentIndex() > 0;
        fit_->setEnabled(fixed);
        margin_->setEnabled(fixed);
    };
    connect(pageSize_, &QComboBox::currentIndexChanged, this, fixedSize);
    fixedSize();
    return page;
}

ConvertView::Direction ConvertView::direction() const {
    return static_cast<Direction>(direction_->checkedId());
}

void ConvertView::setDirection(Direction direction) {
    direction_->button(static_cast<int>(direction))->setChecked(true);
}

OperationParameters ConvertView::parameters() const {
    if (direction() == Direction::toPDF) {
        OperationParameters::ImagesToPDF images;
        images.pageSize = pageSize_->currentData().toString().toStdString();
        images.fit = fit_->currentData().toString().toStdString();
        images.marginPT = margin_->value();
        return images;
    }
    OperationParameters::PDFToImages images;
    images.format = format_->currentData().toString().toStdString();
    images.dpi = dpi_->value();
    images.pages = selection_->text().trimmed().toStdString();
    images.jpegQuality = quality_->value() / 100.0;
    images.renderTimeout = context_.app.settings().renderTimeoutSeconds();
    return images;
}

void ConvertView::filesChanged() {
    // Images alone can only become a PDF; a PDF among the files means its pages are wanted.
    const bool imagesOnly = ScreenFiles::pdfs(context_.model()).isEmpty() &&
                            !ScreenFiles::images(context_.model()).isEmpty();
    setDirection(imagesOnly ? Direction::toPDF : Direction::toImages);
    refresh();
}

QString ConvertView::problem() const {
    const AppModel& model = context_.model();
    if (direction() == Direction::toPDF) {
        return !model.files().isEmpty() && ScreenFiles::images(model).isEmpty()
                   ? tr("Load images to make a PDF of them.")
                   : QString();
    }
    const QStringList pdfs = ScreenFiles::pdfs(model);
    if (pdfs.isEmpty()) {
        return model.files().isEmpty() ? QString()
                                       : tr("Load a PDF to turn its pages into images.");
    }
    const PDFAnalysis* analysis = pdfs.size() == 1 ? model.analysis(pdfs.front()) : nullptr;
    return PageSelection::read(selection_->text(), analysis != nullptr ? analysis->pageCount : 0,
                               true, pagesExample())
        .problem;
}

void ConvertView::refresh() {
    const AppModel& model = context_.model();
    const bool toPDF = direction() == Direction::toPDF;
    const QStringList inputs = toPDF ? ScreenFiles::images(model) : ScreenFiles::pdfs(model);
    bar_->button().setEnabled(!model.files().isEmpty());
    if (const QString why = problem(); !why.isEmpty()) {
        bar_->showProblem(why);
        return;
    }
    if (model.files().isEmpty()) {
        bar_->showNote(tr("Drop PDFs or images above."));
        return;
    }
    QStringList lines{toPDF ? tr("%n image(s) into one PDF.", nullptr, int(inputs.size()))
                            : tr("%n PDF(s) into images.", nullptr, int(inputs.size()))};
    if (!toPDF && inputs.size() == 1) {
        if (const PDFAnalysis* analysis = model.analysis(inputs.front())) {
            const auto selection =
                PageSelection::read(selection_->text(), analysis->pageCount, true, pagesExample());
            const int count = selection.ranges.empty() ? analysis->pageCount
                                                       : static_cast<int>(selection.pages().size());
            lines = QStringList{tr("%n page(s) into images.", nullptr, count)};
            if (!selection.warning.isEmpty()) {
                lines << selection.warning;
            }
        }
    }
    if (const auto others = model.files().size() - inputs.size(); others > 0) {
        lines << tr("%n other file(s) are left out.", nullptr, static_cast<int>(others));
    }
    bar_->showNote(lines.join(QLatin1Char(' ')));
}

void ConvertView::runConversion() {
    const AppModel& model = context_.model();
    const bool toPDF = direction() == Direction::toPDF;
    const QStringList inputs = toPDF ? ScreenFiles::images(model) : ScreenFiles::pdfs(model);
    QString why = problem();
    if (why.isEmpty() && inputs.isEmpty()) {
        why = tr("Drop PDFs or images above.");
    }
    if (!why.isEmpty()) {
        bar_->showProblem(why);
        if (!toPDF) {
            selection_->setFocus();
        }
        return;
    }
    context_.model().run(toPDF ? PDFOperationKind::imagesToPDF : PDFOperationKind::pdfToImages,
                         parameters(), inputs);
    bar_->showNote(tr("Converting: follow it in the queue."));
}

} // namespace quillet
