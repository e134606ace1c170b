#include "screens/BeforeAfterView.hpp"

#include "app/PageRenderService.hpp"
#include "app/Texts.hpp"

#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace quillet {

BeforeAfterView::BeforeAfterView(PageRenderService& renders, QWidget* parent)
    : QWidget(parent), renders_(renders), before_(new QLabel(this)), after_(new QLabel(this)),
      beforeSize_(new QLabel(this)), afterSize_(new QLabel(this)), position_(new QLabel(this)),
      previous_(new QPushButton(tr("Previous page"), this)),
      next_(new QPushButton(tr("Next page"), this)), settle_(new QTimer(this)) {
    settle_->setSingleShot(true);
    connect(settle_, &QTimer::timeout, this, &BeforeAfterView::requestPages);
    for (QLabel* picture : {before_, after_}) {
        picture->setAlignment(Qt::AlignCenter);
        picture->setMinimumSize(120, 150);
        picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        picture->setBackgroundRole(QPalette::Base);
        picture->setAutoFillBackground(true);
    }
    before_->setAccessibleName(tr("Original page"));
    after_->setAccessibleName(tr("Result page"));
    for (QLabel* size : {beforeSize_, afterSize_}) {
        size->setAlignment(Qt::AlignCenter);
        size->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    position_->setAlignment(Qt::AlignCenter);
    previous_->setShortcut(QKeySequence(Qt::Key_PageUp));
    next_->setShortcut(QKeySequence(Qt::Key_PageDown));
    connect(previous_, &QPushButton::clicked, this, [this] { showPage(page_ - 1); });
    connect(next_, &QPushButton::clicked, this, [this] { showPage(page_ + 1); });
    connect(&renders_, &PageRenderService::rendered, this, &BeforeAfterView::rendered);
    connect(&renders_, &PageRenderService::failed, this, &BeforeAfterView::failed);

    auto* grid = new QGridLayout;
    grid->addWidget(before_, 0, 0);
    grid->addWidget(after_, 0, 1);
    grid->addWidget(beforeSize_, 1, 0);
    grid->addWidget(afterSize_, 1, 1);
    grid->setRowStretch(0, 1);
    auto* navigation = new QHBoxLayout;
    navigation->addStretch();
    navigation->addWidget(previous_);
    navigation->addWidget(position_);
    navigation->addWidget(next_);
    navigation->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid, 1);
    layout->addLayout(navigation);
}

void BeforeAfterView::compare(const QString& original, const QString& result, int pageCount) {
    original_ = original;
    result_ = result;
    beforeImage_ = QImage();
    afterImage_ = QImage();
    pageCount_ = pageCount;
    beforeSize_->setText(tr("Original: %1").arg(Texts::bytes(QFileInfo(original).size())));
    afterSize_->setText(tr("Result: %1").arg(Texts::bytes(QFileInfo(result).size())));
    showPage(0);
}

void BeforeAfterView::showPage(int index) {
    if (original_.isEmpty() || index < 0 || (pageCount_ > 0 && index >= pageCount_)) {
        return;
    }
    if (index != page_) {
        beforeImage_ = QImage();
        afterImage_ = QImage();
    }
    page_ = index;
    position_->setText(pageCount_ > 0 ? tr("Page %1 of %2").arg(index + 1).arg(pageCount_)
                                      : tr("Page %1").arg(index + 1));
    previous_->setEnabled(index > 0);
    next_->setEnabled(pageCount_ == 0 || index + 1 < pageCount_);
    // After the layout has given the pictures their size.
    settle_->start(0);
}

QSize BeforeAfterView::pageBox() const {
    return before_->size().boundedTo(after_->size()).expandedTo(QSize(120, 150));
}

void BeforeAfterView::requestPages() {
    const qreal ratio = devicePixelRatioF();
    const QSize box = pageBox();
    const PageRenderService::Request before{original_, page_, box, ratio};
    const PageRenderService::Request after{result_, page_, box, ratio};
    beforeKey_ = before.key();
    afterKey_ = after.key();
    for (const auto& request : {before, after}) {
        if (const auto image = renders_.cached(request)) {
            rendered(request.key(), *image);
        } else {
            if ((request.path == original_ ? beforeImage_ : afterImage_).isNull()) {
                (request.path == original_ ? before_ : after_)->setText(tr("Drawing…"));
            }
            renders_.render(request);
        }
    }
}

void BeforeAfterView::rendered(const QString& key, const QImage& image) {
    if (key == beforeKey_) {
        beforeImage_ = image;
    } else if (key == afterKey_) {
        afterImage_ = image;
    } else {
        return;
    }
    showImages();
}

void BeforeAfterView::showImages() {
    // A picture drawn for a larger size is shown scaled down until its redrawing arrives.
    const auto show = [](QLabel* label, const QImage& image) {
        if (image.isNull()) {
            return;
        }
        const QSize room = label->size() * image.devicePixelRatio();
        QImage fitted = image.width() > room.width() || image.height() > room.height()
                            ? image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                            : image;
        fitted.setDevicePixelRatio(image.devicePixelRatio());
        label->setPixmap(QPixmap::fromImage(fitted));
    };
    show(before_, beforeImage_);
    show(after_, afterImage_);
}

void BeforeAfterView::failed(const QString& key, const QString& error) {
    if (key == beforeKey_ || key == afterKey_) {
        (key == beforeKey_ ? beforeImage_ : afterImage_) = QImage();
        (key == beforeKey_ ? before_ : after_)->setText(error);
        if (pageCount_ == 0) {
            next_->setEnabled(false); // past the last page of a document of unknown length
        }
    }
}

void BeforeAfterView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!original_.isEmpty()) {
        showImages();
        settle_->start(150); // drawn again at the new size once the resizing settles
    }
}

} // namespace quillet
