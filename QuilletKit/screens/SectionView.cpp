#include "screens/SectionView.hpp"

#include "app/Texts.hpp"
#include "screens/Components.hpp"

#include <QComboBox>
#include <QFileDialog>
#include <QDateTime>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QHBoxLayout>
#include <QLabel>
#include <QHeaderView>
#include <QTreeWidget>
#include <QPushButton>
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
    case Section::convert:
        return {SectionView::tr("Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images "
                                "into a PDF."),
                SectionView::tr("Drop PDFs or images to convert"), QString()};
    case Section::privacy:
        return {SectionView::tr("Remove metadata, and protect or unprotect with a password."),
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
        painter.fillRect(selected.rect(), QGuiApplication::palette().color(QPalette::HighlightedText));
        painter.end();
        icon.addPixmap(normal, QIcon::Normal);
        icon.addPixmap(selected, QIcon::Selected);
    }
    return icon;
}

SectionView::SectionView(AppModel& model, Section section, QAbstractItemModel& files,
                         QWidget* parent)
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
    if (section == Section::history) {
        dropZone_->setCompact(true);
        layout->addWidget(historyList(), 1);
        return;
    }
    auto* list = new FileListView(this);
    list->setObjectName(QStringLiteral("files"));
    list->setModel(&files);
    layout->addWidget(list, 1);
    if (section == Section::compress) {
        layout->addWidget(compressActions());
    }
}

QWidget* SectionView::compressActions() {
    auto* bar = new QWidget(this);
    tier_ = new QComboBox(bar);
    tier_->setObjectName(QStringLiteral("tier"));
    const std::pair<CompressionQualityTier, QString> tiers[] = {
        {CompressionQualityTier::highQuality, tr("High Quality")},
        {CompressionQualityTier::balanced, tr("Balanced")},
        {CompressionQualityTier::smallest, tr("Smallest")},
        {CompressionQualityTier::lossless, tr("Lossless Optimize")},
    };
    for (const auto& [tier, label] : tiers) {
        tier_->addItem(label, static_cast<int>(tier));
    }
    tier_->setCurrentIndex(1);
    run_ = new QPushButton(tr("Compress"), bar);
    run_->setObjectName(QStringLiteral("run"));
    run_->setDefault(true);
    connect(run_, &QPushButton::clicked, this, [this] {
        const auto tier = static_cast<CompressionQualityTier>(tier_->currentData().toInt());
        QStringList pdfs;
        for (const QString& path : model_.files()) {
            if (QFileInfo(path).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) ==
                0) {
                pdfs << path;
            }
        }
        model_.run(PDFOperationKind::compress, OperationParameters::Compress{tier}, pdfs);
    });
    connect(&model_, &AppModel::filesChanged, this, &SectionView::updateActions);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("Quality:"), bar));
    layout->addWidget(tier_);
    layout->addStretch();
    layout->addWidget(run_);
    updateActions();
    return bar;
}

void SectionView::updateActions() {
    if (run_ != nullptr) {
        run_->setEnabled(std::any_of(model_.files().begin(), model_.files().end(),
                                     [](const QString& path) {
                                         return QFileInfo(path).suffix().compare(
                                                    QStringLiteral("pdf"),
                                                    Qt::CaseInsensitive) == 0;
                                     }));
    }
}

QWidget* SectionView::historyList() {
    history_ = new QTreeWidget(this);
    history_->setObjectName(QStringLiteral("historyList"));
    history_->setRootIsDecorated(false);
    history_->setAlternatingRowColors(true);
    history_->setHeaderLabels({tr("Action"), tr("Date"), tr("Files"), tr("Result")});
    history_->header()->setStretchLastSection(false);
    history_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    history_->header()->setSectionResizeMode(2, QHeaderView::Stretch);
    history_->setTextElideMode(Qt::ElideMiddle);
    connect(&model_, &AppModel::historyChanged, this, &SectionView::refreshHistory);
    refreshHistory();
    return history_;
}

void SectionView::refreshHistory() {
    history_->clear();
    for (const HistoryEntry& entry : model_.history().entries()) {
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
        auto* item = new QTreeWidgetItem(history_, {Texts::operationName(entry.operation), when,
                                                    names.join(QStringLiteral(", ")), outcome});
        QStringList paths;
        for (const auto& path : entry.inputURLs) {
            paths << QString::fromStdString(path);
        }
        item->setToolTip(2, paths.join(QLatin1Char('\n')));
    }
    if (history_->topLevelItemCount() == 0) {
        auto* item = new QTreeWidgetItem(history_, {tr("No finished jobs yet.")});
        item->setFlags(Qt::NoItemFlags);
        item->setFirstColumnSpanned(true);
    }
}

} // namespace quillet
