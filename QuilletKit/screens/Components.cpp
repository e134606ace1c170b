#include "screens/Components.hpp"

#include "app/LoadedFilesModel.hpp"

#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace quillet {
namespace {

/// Asks for a row's thumbnail when the row is painted, so only the rows in sight are rendered.
class FileRowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        index.data(LoadedFilesModel::ThumbnailRole);
        QStyledItemDelegate::paint(painter, option, index);
    }
};

} // namespace

SectionHeader::SectionHeader(const QString& title, const QString& subtitle, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto* heading = new QLabel(title, this);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    heading->setFont(font);
    auto* line = new QLabel(subtitle, this);
    line->setWordWrap(true);
    line->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(heading);
    layout->addWidget(line);
}

DropZone::DropZone(const QString& title, const QString& detail, QWidget* parent)
    : QFrame(parent), icon_(new QLabel(this)), detail_(new QLabel(detail, this)),
      buttons_(new QHBoxLayout), buttonRow_(new QWidget(this)), progressRow_(new QWidget(this)),
      progress_(new QLabel(progressRow_)) {
    setAcceptDrops(true);
    setMinimumHeight(150);
    icon_->setPixmap(QIcon(QStringLiteral(":/icons/drop.svg")).pixmap(48, 48));
    icon_->setAlignment(Qt::AlignCenter);
    auto* heading = new QLabel(title, this);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    font.setBold(true);
    heading->setFont(font);
    heading->setAlignment(Qt::AlignCenter);
    heading->setWordWrap(true);
    detail_->setAlignment(Qt::AlignCenter);
    detail_->setWordWrap(true);
    detail_->setForegroundRole(QPalette::PlaceholderText);
    detail_->setVisible(!detail.isEmpty());
    auto* choose = new QPushButton(tr("Choose files…"), this);
    connect(choose, &QPushButton::clicked, this, &DropZone::chooseRequested);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addStretch();
    layout->addWidget(icon_);
    layout->addWidget(heading);
    layout->addWidget(detail_);
    layout->addSpacing(6);
    buttons_->setContentsMargins(0, 0, 0, 0);
    buttons_->addStretch();
    buttons_->addWidget(choose);
    buttons_->addStretch();
    buttonRow_->setLayout(buttons_);
    layout->addWidget(buttonRow_);

    auto* cancel = new QPushButton(tr("Cancel"), progressRow_);
    cancel->setObjectName(QStringLiteral("cancelReading"));
    connect(cancel, &QPushButton::clicked, this, &DropZone::cancelRequested);
    auto* progressLayout = new QHBoxLayout(progressRow_);
    progressLayout->setContentsMargins(0, 0, 0, 0);
    progressLayout->addStretch();
    progressLayout->addWidget(progress_);
    progressLayout->addWidget(cancel);
    progressLayout->addStretch();
    progressRow_->hide();
    layout->addWidget(progressRow_);
    layout->addStretch();
}

void DropZone::showProgress(const QString& progress) {
    progress_->setText(progress);
    progressRow_->setVisible(!progress.isEmpty());
    buttonRow_->setVisible(progress.isEmpty());
}

void DropZone::offerFolder() {
    auto* folder = new QPushButton(tr("Choose a folder…"), this);
    folder->setObjectName(QStringLiteral("chooseFolder"));
    connect(folder, &QPushButton::clicked, this, &DropZone::chooseFolderRequested);
    buttons_->insertWidget(2, folder);
}

void DropZone::setCompact(bool compact) {
    icon_->setVisible(!compact);
    setMinimumHeight(compact ? 90 : 150);
}

QList<QUrl> DropZone::localFiles(const QMimeData* data) {
    QList<QUrl> urls;
    if (data != nullptr && data->hasUrls()) {
        for (const QUrl& url : data->urls()) {
            if (url.isLocalFile()) {
                urls << url;
            }
        }
    }
    return urls;
}

void DropZone::dragEnterEvent(QDragEnterEvent* event) {
    if (!localFiles(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
        hovered_ = true;
        update();
    }
}

void DropZone::dragLeaveEvent(QDragLeaveEvent* event) {
    hovered_ = false;
    update();
    QFrame::dragLeaveEvent(event);
}

void DropZone::dropEvent(QDropEvent* event) {
    hovered_ = false;
    update();
    const auto urls = localFiles(event->mimeData());
    if (urls.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    emit dropped(urls);
}

void DropZone::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor fill = accent;
    fill.setAlphaF(hovered_ ? 0.16F : 0.05F);
    QPen pen(hovered_ ? accent : palette().color(QPalette::Mid), 1.6, Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 12, 12);
}

FileListView::FileListView(QWidget* parent) : QListView(parent) {
    setItemDelegate(new FileRowDelegate(this));
    setSpacing(3);
    setIconSize(QSize(36, 46));
    setUniformItemSizes(false);
    // Long names and summaries wrap within the view rather than scroll sideways.
    setWordWrap(true);
    setResizeMode(QListView::Adjust);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void FileListView::setModel(QAbstractItemModel* model) {
    QListView::setModel(model);
    if (model != nullptr) {
        connect(model, &QAbstractItemModel::modelReset, this, &FileListView::fitRowSizing);
        connect(model, &QAbstractItemModel::rowsInserted, this, &FileListView::fitRowSizing);
        fitRowSizing();
    }
}

void FileListView::fitRowSizing() {
    setUniformItemSizes(model() != nullptr && model()->rowCount() > measuredRows);
}

StateColors StateColors::forPalette(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    return dark ? StateColors{QColor(0x5f, 0xd3, 0x8d), QColor(0xff, 0x7b, 0x72),
                              palette.color(QPalette::PlaceholderText)}
                : StateColors{QColor(0x1a, 0x7f, 0x37), QColor(0xc5, 0x22, 0x1f),
                              palette.color(QPalette::PlaceholderText)};
}

} // namespace quillet
