#include "screens/SectionView.hpp"

#include "app/Texts.hpp"
#include "screens/Components.hpp"

#include <QFileDialog>
#include <QGuiApplication>
#include <QPainter>
#include <QVBoxLayout>

namespace quillet {
namespace {

using Section = AppModel::Section;

struct SectionTexts {
    QString subtitle;
    QString dropTitle;
    QString dropDetail;
};

SectionTexts texts(Section section) {
    switch (section) {
    case Section::home:
        return {SectionView::tr("See what is inside a PDF and what would make it better."),
                SectionView::tr("Drop PDFs or images here"),
                SectionView::tr("Nothing leaves this computer.")};
    case Section::compress:
        return {SectionView::tr("Make PDFs smaller: three quality tiers, a lossless "
                                "optimisation, or a target size."),
                SectionView::tr("Drop PDFs to compress"), QString()};
    case Section::merge:
        return {SectionView::tr("Combine PDFs and images into one PDF, in the order you choose. "
                                "Each drop adds to the list."),
                SectionView::tr("Drop PDFs and images to merge"), QString()};
    case Section::split:
        return {SectionView::tr("Split a PDF into parts: every page, page ranges, every N "
                                "pages, extracted pages or parts of a size."),
                SectionView::tr("Drop a PDF to split"), QString()};
    case Section::organize:
        return {SectionView::tr("Reorder, rotate, delete, duplicate, extract and insert pages."),
                SectionView::tr("Drop a PDF to organize pages"), QString()};
    case Section::stamp:
        return {SectionView::tr("Add page numbers, Bates numbers, headers, footers and watermarks "
                                "as real text or pictures."),
                SectionView::tr("Drop PDFs to stamp"), QString()};
    case Section::convert:
        return {SectionView::tr("Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images "
                                "into a PDF."),
                SectionView::tr("Drop PDFs or images to convert"), QString()};
    case Section::privacy:
        return {SectionView::tr("Remove metadata, protect or unprotect with a password, and make "
                                "scans searchable."),
                SectionView::tr("Drop PDFs to clean or protect"), QString()};
    case Section::batch:
        return {SectionView::tr("One action on many files at once."),
                SectionView::tr("Drop PDFs or folders for batch processing"),
                SectionView::tr("100 PDFs → pick an action → done. Folder structure is "
                                "preserved.")};
    case Section::history:
        return {SectionView::tr("Finished jobs, newest first. Only what was done is kept, never "
                                "the documents themselves."),
                SectionView::tr("Drop files to load them"), QString()};
    }
    return {};
}

} // namespace

QString SectionView::title(Section section) {
    switch (section) {
    case Section::home: return tr("Home");
    case Section::compress: return tr("Compress");
    case Section::merge: return tr("Merge");
    case Section::split: return tr("Split");
    case Section::organize: return tr("Organize");
    case Section::stamp: return tr("Stamp");
    case Section::convert: return tr("Convert");
    case Section::privacy: return tr("Privacy");
    case Section::batch: return tr("Batch");
    case Section::history: return tr("History");
    }
    return {};
}

QIcon SectionView::icon(Section section) {
    const QIcon drawn(QStringLiteral(":/icons/sections/%1.svg").arg(AppModel::rawValue(section)));
    // On the selection colour the icon is drawn in the selected text's colour, so it stays seen.
    QIcon icon;
    for (const int side : {22, 44}) {
        const QPixmap normal = drawn.pixmap(side, side);
        QPixmap selected = normal;
        QPainter painter(&selected);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(selected.rect(),
                         QGuiApplication::palette().color(QPalette::HighlightedText));
        painter.end();
        icon.addPixmap(normal, QIcon::Normal);
        icon.addPixmap(selected, QIcon::Selected);
    }
    return icon;
}

SectionView::SectionView(AppModel& model, Section section, QWidget* parent)
    : QWidget(parent), model_(model), section_(section) {
    setObjectName(AppModel::rawValue(section));
    const SectionTexts words = texts(section);
    dropZone_ = new DropZone(words.dropTitle, words.dropDetail, this);
    connect(dropZone_, &DropZone::dropped, this, [this](const QList<QUrl>& urls) {
        model_.setSection(section_);
        model_.acceptDropped(urls);
    });
    connect(dropZone_, &DropZone::chooseRequested, this, [this] {
        model_.setSection(section_);
        model_.chooseFiles();
    });
    connect(dropZone_, &DropZone::cancelRequested, &model_, &AppModel::cancelFolderReading);
    connect(&model_, &AppModel::folderReadingChanged, this, [this] {
        // Only the section that took the drop shows it; a folder is read for one section.
        const bool mine = model_.isReadingFolders() && model_.section() == section_;
        dropZone_->showProgress(
            mine ? tr("Reading the folder… %n file(s) found", nullptr, model_.folderFilesFound())
                 : QString());
    });
    if (section == Section::batch) {
        dropZone_->offerFolder();
        connect(dropZone_, &DropZone::chooseFolderRequested, this, [this] {
            const QUrl folder =
                QFileDialog::getExistingDirectoryUrl(this, tr("Choose a folder of PDFs"));
            if (!folder.isEmpty()) {
                model_.setSection(section_);
                model_.acceptDropped({folder});
            }
        });
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(new SectionHeader(title(section), words.subtitle, this));
    layout->addWidget(dropZone_);
    dropZone_->setCompact(section == Section::history);
}

void SectionView::setBody(QWidget* body) {
    Q_ASSERT(body_ == nullptr);
    body_ = body;
    body->setParent(this);
    static_cast<QVBoxLayout*>(layout())->addWidget(body, 1);
}

} // namespace quillet
