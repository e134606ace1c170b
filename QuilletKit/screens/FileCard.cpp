#include "screens/FileCard.hpp"

#include "app/AnalysisTexts.hpp"
#include "app/Texts.hpp"
#include "engines/PDFAnalysisEngine.hpp"
#include "screens/Components.hpp"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>
#include <set>

namespace quillet {
namespace {

QString escaped(const QString& text) {
    return text.toHtmlEscaped();
}

} // namespace

FileCard::FileCard(const ScreenContext& context, QString path, QWidget* parent)
    : QFrame(parent), context_(context), path_(std::move(path)), thumbnail_(new QLabel(this)),
      details_(new QLabel(this)), busy_(new QProgressBar(this)), actions_(new QHBoxLayout) {
    setObjectName(QStringLiteral("fileCard"));
    setFrameShape(QFrame::StyledPanel);
    setAccessibleName(QFileInfo(path_).fileName());
    details_->setObjectName(QStringLiteral("details"));
    thumbnail_->setFixedSize(thumbnailBox);
    thumbnail_->setAlignment(Qt::AlignCenter);
    details_->setWordWrap(true);
    details_->setTextFormat(Qt::RichText);
    details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    details_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    busy_->setRange(0, 0);
    busy_->setMaximumHeight(6);
    busy_->setTextVisible(false);
    actions_->setSpacing(6);

    auto* text = new QVBoxLayout;
    text->setSpacing(6);
    text->addWidget(details_);
    text->addWidget(busy_);
    text->addLayout(actions_);
    text->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 10);
    layout->setSpacing(14);
    layout->addWidget(thumbnail_, 0, Qt::AlignTop);
    layout->addLayout(text, 1);
    refresh();
}

void FileCard::setThumbnail(const QImage& image) {
    thumbnail_->setPixmap(QPixmap::fromImage(image));
}

void FileCard::refresh() {
    const QFileInfo info(path_);
    const QString heading = QStringLiteral("<b>%1</b>").arg(escaped(info.fileName()));
    while (QLayoutItem* item = actions_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    AppModel& model = context_.model();
    busy_->setVisible(model.isAnalyzing(path_));
    if (const PDFAnalysis* analysis = model.analysis(path_)) {
        fillDetails(*analysis);
        fillActions(*analysis);
        return;
    }
    QString line;
    if (model.isAnalyzing(path_)) {
        line = tr("Analysing…");
    } else if (const QString error = model.analysisError(path_); !error.isEmpty()) {
        line = tr("could not be read: %1").arg(error);
        if (error.contains(QStringLiteral("password"), Qt::CaseInsensitive)) {
            // A locked file is read once its password is removed.
            auto* unlock = new QPushButton(tr("Remove Password"), this);
            unlock->setObjectName(QStringLiteral("recommendation-unprotect"));
            connect(unlock, &QPushButton::clicked, this, [this] {
                context_.model().openWithSuggestion(AppModel::Section::privacy, path_,
                                                    OperationParameters::Unprotect{});
            });
            actions_->addWidget(unlock);
            actions_->addStretch();
        }
    } else if (!info.exists()) {
        line = tr("missing");
    } else {
        line = tr("%1 file · %2").arg(info.suffix().toUpper(), Texts::bytes(info.size()));
    }
    details_->setText(heading + QStringLiteral("<br>") + escaped(line));
}

void FileCard::fillDetails(const PDFAnalysis& analysis) {
    QStringList lines;
    lines << QStringLiteral("<b>%1</b>").arg(escaped(QFileInfo(path_).fileName()));

    QStringList facts{tr("%n page(s)", nullptr, analysis.pageCount),
                      Texts::bytes(analysis.fileSize)};
    if (!analysis.pages.empty()) {
        facts << AnalysisTexts::pageSize(analysis.pages.front().widthPoints,
                                         analysis.pages.front().heightPoints);
    }
    if (analysis.pdfVersion) {
        facts << tr("PDF %1").arg(QString::fromStdString(*analysis.pdfVersion));
    }
    lines << escaped(facts.join(QStringLiteral(" · ")));

    QStringList content;
    if (const auto images = static_cast<int>(analysis.images().size()); images > 0) {
        content << tr("%n image(s), %1 DPI on average", nullptr, images)
                       .arg(std::lround(analysis.averageImageDPI()));
    } else {
        content << tr("no images");
    }
    if (const int scanned = analysis.scannedPageCount(); scanned > 0) {
        content << tr("%n scanned page(s)", nullptr, scanned);
    }
    content << tr("text on %1% of pages").arg(std::lround(analysis.textCoverage() * 100));
    lines << escaped(content.join(QStringLiteral(" · ")));

    std::set<std::string> fonts;
    for (const auto& page : analysis.pages) {
        fonts.insert(page.fontNames.begin(), page.fontNames.end());
    }
    if (!fonts.empty()) {
        QStringList names;
        for (const auto& font : fonts) {
            if (names.size() == 3) {
                break;
            }
            names << QString::fromStdString(font);
        }
        QString line = tr("%n font(s): %1", nullptr, static_cast<int>(fonts.size()))
                           .arg(names.join(QStringLiteral(", ")));
        if (fonts.size() > 3) {
            line += QStringLiteral(" …");
        }
        lines << escaped(line);
    }
    const QStringList personal = AnalysisTexts::personalFields(analysis.metadata);
    if (!personal.isEmpty()) {
        lines << escaped(tr("Personal metadata: %1").arg(personal.join(QStringLiteral(", "))));
    }
    if (const QString embedded = AnalysisTexts::embeddedContent(analysis); !embedded.isEmpty()) {
        lines << escaped(embedded);
    }
    details_->setText(lines.join(QStringLiteral("<br>")));
}

void FileCard::fillActions(const PDFAnalysis& analysis) {
    for (const RecommendedAction& action : PDFAnalysisEngine::recommendations(analysis)) {
        const auto words = AnalysisTexts::recommendation(action, analysis);
        auto* button = new QPushButton(words.title, this);
        button->setObjectName(
            QStringLiteral("recommendation-%1").arg(QString::fromStdString(action.id)));
        button->setToolTip(words.detail);
        button->setAccessibleDescription(words.detail);
        const auto destination = AnalysisTexts::destination(action);
        if (!destination) {
            button->setEnabled(false);
            button->setText(tr("%1 (coming soon)").arg(words.title));
        } else {
            connect(button, &QPushButton::clicked, this, [this, to = *destination] {
                context_.model().openWithSuggestion(to.section, path_, to.suggested);
            });
        }
        actions_->addWidget(button);
    }
    auto* inspect = new QPushButton(tr("Inspect"), this);
    inspect->setObjectName(QStringLiteral("inspect"));
    connect(inspect, &QPushButton::clicked, this, [this] { emit inspectRequested(path_); });
    actions_->addWidget(inspect);
    actions_->addStretch();
}

} // namespace quillet
