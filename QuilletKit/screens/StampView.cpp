#include "screens/StampView.hpp"

#include "app/PageRenderService.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFStampEngine.hpp"
#include "screens/Coalesced.hpp"
#include "screens/Components.hpp"
#include "screens/InBackground.hpp"
#include "screens/ScreenParts.hpp"
#include "screens/SectionView.hpp"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QScrollArea>
#include <QVBoxLayout>

#include <cmath>

namespace quillet {
namespace {

using Mark = OperationParameters::StampMark;

const std::vector<std::string> kinds{"pageNumber", "bates", "text", "picture"};

const std::vector<std::pair<const char*, const char*>>& positions() {
    static const std::vector<std::pair<const char*, const char*>> all{
        {"top-left", QT_TRANSLATE_NOOP("quillet::StampView", "Top left")},
        {"top-center", QT_TRANSLATE_NOOP("quillet::StampView", "Top center")},
        {"top-right", QT_TRANSLATE_NOOP("quillet::StampView", "Top right")},
        {"center", QT_TRANSLATE_NOOP("quillet::StampView", "Center")},
        {"bottom-left", QT_TRANSLATE_NOOP("quillet::StampView", "Bottom left")},
        {"bottom-center", QT_TRANSLATE_NOOP("quillet::StampView", "Bottom center")},
        {"bottom-right", QT_TRANSLATE_NOOP("quillet::StampView", "Bottom right")},
    };
    return all;
}

QString kindName(const std::string& kind) {
    if (kind == "bates") {
        return StampView::tr("Bates number");
    }
    if (kind == "text") {
        return StampView::tr("Text");
    }
    if (kind == "picture") {
        return StampView::tr("Picture");
    }
    return StampView::tr("Page number");
}

/// One line for the list: the kind and what it shows.
QString summary(const Mark& mark) {
    QString what;
    if (mark.kind == "pageNumber") {
        what = QString::fromStdString(mark.format);
    } else if (mark.kind == "bates") {
        what = QString::fromStdString(mark.prefix) + QString(static_cast<int>(std::clamp<std::int64_t>(mark.digits, 1, 18)) - 1, QLatin1Char('0')) +
               QString::number(mark.start) + QString::fromStdString(mark.suffix);
    } else if (mark.kind == "text") {
        what = QString::fromStdString(mark.text);
    } else {
        what = QFileInfo(QString::fromStdString(mark.image)).fileName();
    }
    return StampView::tr("%1: %2").arg(kindName(mark.kind), what);
}

Mark defaults(const std::string& kind) {
    Mark mark;
    mark.kind = kind;
    if (kind == "bates") {
        mark.prefix = "DOC-";
        mark.position = "bottom-right";
    } else if (kind == "text") {
        // A diagonal watermark: what a text mark is most often for.
        mark.text = StampView::tr("CONFIDENTIAL").toStdString();
        mark.position = "center";
        mark.fontSize = 60;
        mark.color = "#C00000";
        mark.opacity = 0.3;
        mark.rotation = 45;
    } else if (kind == "picture") {
        mark.position = "top-right";
    }
    return mark;
}

QLabel* note(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

StampView::StampView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("marks"));
    list_->setAccessibleName(tr("Marks"));
    list_->setMaximumHeight(92);
    auto* add = new QPushButton(tr("Add"), this);
    add->setObjectName(QStringLiteral("addMark"));
    auto* addMenu = new QMenu(add);
    for (const auto& kind : kinds) {
        addMenu->addAction(kindName(kind), this, [this, kind] { addMark(kind); });
    }
    add->setMenu(addMenu);
    remove_ = new QPushButton(tr("Remove"), this);
    up_ = new QPushButton(tr("Up"), this);
    down_ = new QPushButton(tr("Down"), this);
    remove_->setObjectName(QStringLiteral("removeMark"));
    connect(remove_, &QPushButton::clicked, this, &StampView::removeMark);
    connect(up_, &QPushButton::clicked, this, [this] { moveMark(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { moveMark(1); });
    connect(list_, &QListWidget::currentRowChanged, this, &StampView::selectMark);
    auto* listButtons = new QHBoxLayout;
    listButtons->setSpacing(6);
    for (QPushButton* button : {add, remove_, up_, down_}) {
        listButtons->addWidget(button);
    }
    listButtons->addStretch(1);

    picture_ = new QLabel(this);
    picture_->setObjectName(QStringLiteral("preview"));
    picture_->setAlignment(Qt::AlignCenter);
    picture_->setMinimumSize(220, 260);
    picture_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    picture_->setWordWrap(true);
    previous_ = new QPushButton(tr("Previous"), this);
    next_ = new QPushButton(tr("Next"), this);
    pageLabel_ = new QLabel(this);
    pageLabel_->setAlignment(Qt::AlignCenter);
    connect(previous_, &QPushButton::clicked, this, [this] { showPage(page_ - 1); });
    connect(next_, &QPushButton::clicked, this, [this] { showPage(page_ + 1); });
    auto* pager = new QHBoxLayout;
    pager->addWidget(previous_);
    pager->addWidget(pageLabel_, 1);
    pager->addWidget(next_);

    auto* left = new QVBoxLayout;
    left->setSpacing(8);
    left->addWidget(list_);
    left->addLayout(listButtons);
    left->addWidget(buildFields(), 1);
    auto* right = new QVBoxLayout;
    right->setSpacing(8);
    right->addWidget(picture_, 1);
    right->addLayout(pager);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(16);
    columns->addLayout(left, 3);
    columns->addLayout(right, 2);

    bar_ = new ActionBar(tr("Stamp"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &StampView::runStamp);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addLayout(columns, 1);
    layout->addWidget(bar_);

    previewTimer_.setSingleShot(true);
    previewTimer_.setInterval(250);
    connect(&previewTimer_, &QTimer::timeout, this, &StampView::startPreview);
    PageRenderService& renders = context_.app.renders();
    connect(&renders, &PageRenderService::rendered, this,
            [this](const QString& key, const QImage& image) {
                if (key == renderKey_) {
                    preview_ = image;
                    picture_->setPixmap(QPixmap::fromImage(image));
                    emit previewChanged();
                }
            });
    connect(&renders, &PageRenderService::failed, this,
            [this](const QString& key, const QString& error) {
                if (key == renderKey_) {
                    picture_->setText(error);
                    emit previewChanged();
                }
            });
    connectWhenShown(&context_.model(), &AppModel::filesChanged, this, [this] {
        page_ = 0;
        if (const auto pdf = source(); pdf && isVisible()) {
            context_.model().startAnalysis(*pdf);
        }
        refresh();
    });
    // The page count arrives with the first PDF's analysis.
    connect(&context_.model(), &AppModel::analysisChanged, this, [this](const QString& path) {
        if (isVisible() && source() == path) {
            const int count = context_.model().analysis(path) ? context_.model().analysis(path)->pageCount : 0;
            pageLabel_->setText(count > 0 ? tr("Page %1 of %2").arg(page_ + 1).arg(count) : QString());
            next_->setEnabled(page_ + 1 < count);
        }
    });

    // What most people come for: numbers at the bottom of every page.
    addMark("pageNumber");
}

QWidget* StampView::buildFields() {
    fields_ = new QWidget(this);
    const auto spin = [this](int low, int high) {
        auto* box = new QSpinBox(fields_);
        box->setRange(low, high);
        connect(box, &QSpinBox::valueChanged, this, &StampView::fieldsChanged);
        return box;
    };
    const auto real = [this](double low, double high, const QString& suffix) {
        auto* box = new QDoubleSpinBox(fields_);
        box->setRange(low, high);
        box->setDecimals(1);
        box->setSuffix(suffix);
        connect(box, &QDoubleSpinBox::valueChanged, this, &StampView::fieldsChanged);
        return box;
    };
    const auto line = [this](const QString& name) {
        auto* edit = new QLineEdit(fields_);
        edit->setObjectName(name);
        connect(edit, &QLineEdit::textChanged, this, &StampView::fieldsChanged);
        return edit;
    };

    // The fields of each kind; only the selected mark's kind shows its rows.
    auto* form = new QFormLayout;
    format_ = line(QStringLiteral("format"));
    format_->setPlaceholderText(QStringLiteral("Page {n} of {total}"));
    prefix_ = line(QStringLiteral("prefix"));
    suffix_ = line(QStringLiteral("suffix"));
    digits_ = spin(1, 18);
    text_ = line(QStringLiteral("text"));
    image_ = line(QStringLiteral("image"));
    auto* choose = new QPushButton(tr("Choose…"), fields_);
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString file = QFileDialog::getOpenFileName(this, tr("Choose a picture"), QString(),
                                                          tr("Pictures (*.png *.jpg *.jpeg)"));
        if (!file.isEmpty()) {
            image_->setText(file);
        }
    });
    auto* imageRow = new QHBoxLayout;
    imageRow->addWidget(image_, 1);
    imageRow->addWidget(choose);
    width_ = real(1, 14400, tr(" pt"));
    const auto row = [&](const std::string& kind, const QString& label, auto* field) {
        form->addRow(label, field);
        kindRows_.emplace_back(kind, form->rowCount() - 1);
    };
    const auto hint = [&](const std::string& kind, const QString& text) {
        form->addRow(note(text, fields_));
        kindRows_.emplace_back(kind, form->rowCount() - 1);
    };
    row("pageNumber", tr("Format"), format_);
    hint("pageNumber", tr("{n} is the number, {total} the last one."));
    row("bates", tr("Prefix"), prefix_);
    row("bates", tr("Digits"), digits_);
    row("bates", tr("Suffix"), suffix_);
    hint("bates", tr("Numbers run on from one file to the next, in the order loaded."));
    row("text", tr("Text"), text_);
    hint("text", tr("{n} the number, {total} the last one, {date} today, {name} the file name."));
    row("picture", tr("PNG or JPEG"), imageRow);
    row("picture", tr("Width"), width_);

    // What every kind has.
    start_ = spin(0, 999'999'999);
    position_ = new QComboBox(fields_);
    position_->setObjectName(QStringLiteral("position"));
    for (const auto& [value, label] : positions()) {
        position_->addItem(tr(label), QString::fromLatin1(value));
    }
    connect(position_, &QComboBox::currentIndexChanged, this, &StampView::fieldsChanged);
    margin_ = real(0, 1000, tr(" pt"));
    size_ = real(1, 1000, tr(" pt"));
    colour_ = line(QStringLiteral("colour"));
    colour_->setMaximumWidth(110);
    auto* pick = new QPushButton(tr("Pick…"), fields_);
    connect(pick, &QPushButton::clicked, this, [this] {
        const QColor chosen = QColorDialog::getColor(QColor(colour_->text()), this, tr("Colour"));
        if (chosen.isValid()) {
            colour_->setText(chosen.name().toUpper());
        }
    });
    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(colour_);
    colourRow->addWidget(pick);
    colourRow->addStretch(1);
    opacity_ = spin(0, 100);
    opacity_->setSuffix(QStringLiteral(" %"));
    rotation_ = spin(-360, 360);
    rotation_->setSuffix(QStringLiteral("°"));
    layer_ = new QComboBox(fields_);
    layer_->addItem(tr("Over the page"), QStringLiteral("over"));
    layer_->addItem(tr("Under the page"), QStringLiteral("under"));
    connect(layer_, &QComboBox::currentIndexChanged, this, &StampView::fieldsChanged);
    layerNote_ = note(tr("Under the content, a mark shows on pages with a clear background and is "
                         "hidden under opaque scans."),
                      fields_);
    pages_ = line(QStringLiteral("pages"));
    pages_->setPlaceholderText(tr("All pages"));
    skipFirst_ = new QCheckBox(tr("Skip the first page"), fields_);
    connect(skipFirst_, &QCheckBox::toggled, this, &StampView::fieldsChanged);

    QFormLayout* common = form;
    common->addRow(tr("Start at"), start_);
    common->addRow(tr("Position"), position_);
    common->addRow(tr("Margin"), margin_);
    common->addRow(tr("Size"), size_);
    common->addRow(tr("Colour"), colourRow);
    common->addRow(tr("Opacity"), opacity_);
    common->addRow(tr("Rotation"), rotation_);
    common->addRow(tr("Layer"), layer_);
    common->addRow(layerNote_);
    common->addRow(tr("Pages"), pages_);
    common->addRow(QString(), skipFirst_);

    form_ = form;
    auto* layout = new QVBoxLayout(fields_);
    layout->setContentsMargins(0, 0, 8, 0);
    layout->addLayout(form);
    layout->addStretch(1);
    // The fields scroll rather than squeeze when the window is short.
    auto* scroll = new QScrollArea(this);
    scroll->setWidget(fields_);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return scroll;
}

void StampView::addMark(const std::string& kind) {
    marks_.push_back(defaults(kind));
    refreshList();
    list_->setCurrentRow(static_cast<int>(marks_.size()) - 1);
    refresh();
}

void StampView::removeMark() {
    if (selected_ < 0 || selected_ >= static_cast<int>(marks_.size())) {
        return;
    }
    marks_.erase(marks_.begin() + selected_);
    const int next = std::min(selected_, static_cast<int>(marks_.size()) - 1);
    selected_ = -1;
    refreshList();
    list_->setCurrentRow(next);
    refresh();
}

void StampView::moveMark(int by) {
    const int to = selected_ + by;
    if (selected_ < 0 || to < 0 || to >= static_cast<int>(marks_.size())) {
        return;
    }
    std::swap(marks_[static_cast<std::size_t>(selected_)], marks_[static_cast<std::size_t>(to)]);
    selected_ = -1;
    refreshList();
    list_->setCurrentRow(to);
    refresh();
}

OperationParameters::Stamp StampView::stamp() const {
    return {marks_};
}

void StampView::refreshList() {
    const QSignalBlocker quiet(list_);
    list_->clear();
    for (const Mark& mark : marks_) {
        list_->addItem(summary(mark));
    }
    list_->setCurrentRow(selected_);
}

void StampView::selectMark(int row) {
    selected_ = row;
    const bool any = row >= 0 && row < static_cast<int>(marks_.size());
    fields_->setEnabled(any);
    remove_->setEnabled(any);
    up_->setEnabled(any && row > 0);
    down_->setEnabled(any && row + 1 < static_cast<int>(marks_.size()));
    if (!any) {
        return;
    }
    const Mark& mark = marks_[static_cast<std::size_t>(row)];
    loading_ = true;
    for (const auto& [kind, formRow] : kindRows_) {
        form_->setRowVisible(formRow, kind == mark.kind);
    }
    format_->setText(QString::fromStdString(mark.format));
    prefix_->setText(QString::fromStdString(mark.prefix));
    suffix_->setText(QString::fromStdString(mark.suffix));
    digits_->setValue(static_cast<int>(mark.digits));
    text_->setText(QString::fromStdString(mark.text));
    image_->setText(QString::fromStdString(mark.image));
    width_->setValue(mark.width);
    start_->setValue(static_cast<int>(mark.start));
    start_->setEnabled(mark.kind != "picture");
    position_->setCurrentIndex(position_->findData(QString::fromStdString(mark.position)));
    margin_->setValue(mark.margin);
    size_->setValue(mark.fontSize);
    size_->setEnabled(mark.kind != "picture");
    colour_->setText(QString::fromStdString(mark.color));
    colour_->setEnabled(mark.kind != "picture");
    opacity_->setValue(static_cast<int>(std::lround(mark.opacity * 100)));
    rotation_->setValue(static_cast<int>(std::lround(mark.rotation)));
    layer_->setCurrentIndex(mark.layer == "under" ? 1 : 0);
    layerNote_->setVisible(mark.layer == "under");
    pages_->setText(QString::fromStdString(mark.pages));
    skipFirst_->setChecked(mark.skipFirst);
    loading_ = false;
}

void StampView::fieldsChanged() {
    if (loading_ || selected_ < 0 || selected_ >= static_cast<int>(marks_.size())) {
        return;
    }
    Mark& mark = marks_[static_cast<std::size_t>(selected_)];
    mark.format = format_->text().toStdString();
    mark.prefix = prefix_->text().toStdString();
    mark.suffix = suffix_->text().toStdString();
    mark.digits = digits_->value();
    mark.text = text_->text().toStdString();
    mark.image = image_->text().trimmed().toStdString();
    mark.width = width_->value();
    mark.start = start_->value();
    mark.position = position_->currentData().toString().toStdString();
    mark.margin = margin_->value();
    mark.fontSize = size_->value();
    mark.color = colour_->text().trimmed().toStdString();
    mark.opacity = opacity_->value() / 100.0;
    mark.rotation = rotation_->value();
    mark.layer = layer_->currentData().toString().toStdString();
    layerNote_->setVisible(mark.layer == "under");
    mark.pages = pages_->text().trimmed().toStdString();
    mark.skipFirst = skipFirst_->isChecked();
    list_->item(selected_)->setText(summary(mark));
    refresh();
}

std::optional<QString> StampView::source() const {
    for (const QString& path : context_.model().files()) {
        if (ScreenFiles::isPDF(path)) {
            return path;
        }
    }
    return std::nullopt;
}

void StampView::showPage(int index) {
    const auto pdf = source();
    const PDFAnalysis* analysis = pdf ? context_.model().analysis(*pdf) : nullptr;
    const int count = analysis != nullptr ? analysis->pageCount : 1;
    page_ = std::clamp(index, 0, std::max(0, count - 1));
    refresh();
}

void StampView::refresh() {
    const auto pdf = source();
    const PDFAnalysis* analysis = pdf ? context_.model().analysis(*pdf) : nullptr;
    const int count = analysis != nullptr ? analysis->pageCount : 0;
    pageLabel_->setText(count > 0 ? tr("Page %1 of %2").arg(page_ + 1).arg(count) : QString());
    previous_->setEnabled(pdf && page_ > 0);
    next_->setEnabled(pdf && page_ + 1 < count);
    int files = 0;
    for (const QString& path : context_.model().files()) {
        files += ScreenFiles::isPDF(path) ? 1 : 0;
    }
    bar_->button().setText(files > 1 ? tr("Stamp %n files", nullptr, files) : tr("Stamp"));
    bar_->button().setEnabled(pdf.has_value() && !marks_.empty());
    // With a PDF loaded, the preview and the fields need the room more than the drop zone does.
    if (auto* section = qobject_cast<SectionView*>(parentWidget())) {
        section->dropZone().setCompact(pdf.has_value());
    }
    if (!pdf) {
        preview_ = {};
        picture_->setText(tr("Drop a PDF above to see its pages stamped."));
        bar_->showNote(QString());
        return;
    }
    // The marks are checked here and now (nothing is read for it); the preview reads the file.
    if (marks_.empty()) {
        bar_->showNote(tr("Add a mark: a page number, a Bates number, a text or a picture."));
    } else {
        try {
            PDFStampEngine::validate(stamp(), false);
            bar_->showNote(QString());
        } catch (const PDFCoreError& error) {
            bar_->showProblem(QString::fromStdString(error.errorDescription()));
        }
    }
    if (preview_.isNull()) {
        picture_->setText(tr("Drawing the preview…"));
    }
    previewTimer_.start();
}

void StampView::startPreview() {
    const auto pdf = source();
    if (!pdf || !isVisible() || !previews_.isValid()) {
        return;
    }
    const quint64 generation = ++generation_;
    const QString file = previews_.filePath(QStringLiteral("preview-%1.pdf").arg(generation));
    const auto stamp = this->stamp();
    const int page = page_;
    const std::string input = pdf->toStdString();
    const std::string output = file.toStdString();
    inBackground(
        this,
        [stamp, page, input, output]() -> QString {
            try {
                if (stamp.marks.empty()) {
                    // The page as it is: a preview of nothing added.
                    PDFStampEngine::preview(input, page, OperationParameters::Stamp{}, output);
                } else {
                    PDFStampEngine::validate(stamp);
                    PDFStampEngine::preview(input, page, stamp, output);
                }
                return {};
            } catch (const PDFCoreError& error) {
                return QString::fromStdString(error.errorDescription());
            } catch (const std::exception& error) {
                return QString::fromUtf8(error.what());
            }
        },
        [this, generation, file](QString problem) {
            if (generation != generation_) {
                QFile::remove(file);
                return;
            }
            if (!problem.isEmpty()) {
                // Said where the page would be; the file's own trouble (a password, damage)
                // does not keep the other files from being stamped.
                preview_ = {};
                picture_->setText(problem);
                emit previewChanged();
                return;
            }
            if (!previewFile_.isEmpty()) {
                QFile::remove(previewFile_);
            }
            previewFile_ = file;
            const QSize box = picture_->size() - QSize(8, 8);
            PageRenderService::Request request{file, 0, box.expandedTo(QSize(50, 50)),
                                               devicePixelRatioF()};
            renderKey_ = request.key();
            context_.app.renders().render(request);
        });
}

void StampView::runStamp() {
    QStringList pdfs;
    for (const QString& path : context_.model().files()) {
        if (ScreenFiles::isPDF(path)) {
            pdfs << path;
        }
    }
    if (pdfs.isEmpty()) {
        bar_->showProblem(tr("Drop a PDF above to stamp it."));
        return;
    }
    if (marks_.empty()) {
        bar_->showProblem(tr("Add a mark: a page number, a Bates number, a text or a picture."));
        return;
    }
    try {
        PDFStampEngine::validate(stamp(), false);
    } catch (const PDFCoreError& error) {
        bar_->showProblem(QString::fromStdString(error.errorDescription()));
        return;
    }
    context_.model().run(PDFOperationKind::stamp, stamp(), pdfs);
    bar_->showNote(tr("Stamping %n file(s): follow it in the queue.", nullptr,
                      static_cast<int>(pdfs.size())));
}

void StampView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (const auto pdf = source()) {
        context_.model().startAnalysis(*pdf);
    }
    refresh();
}

void StampView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) {
        previewTimer_.start();
    }
}

} // namespace quillet
