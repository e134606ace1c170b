#include "screens/RedactPageView.hpp"

#include "app/PageRenderService.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quillet {
namespace {

// A drag shorter than this many points draws nothing (a click).
constexpr double smallestBox = 3;
// How near the lower-right corner of the selected box a press must be to resize it, in pixels.
constexpr double handle = 8;

} // namespace

RedactPageView::RedactPageView(PageRenderService& renders, QWidget* parent)
    : QWidget(parent), renders_(renders) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(false);
    setAccessibleName(tr("Page to redact"));
    setAccessibleDescription(
        tr("Drag to draw a box over what to remove. Delete removes the selected box; Ctrl+Z undoes."));
    setMinimumSize(240, 300);
    connect(&renders_, &PageRenderService::rendered, this,
            [this](const QString& key, const QImage& image) {
                if (key == requestKey_) {
                    image_ = image;
                    update();
                }
            });
}

void RedactPageView::showPage(const QString& path, int index, QSizeF points) {
    if (path != path_) {
        drawn_.clear();
        history_.clear();
    }
    path_ = path;
    index_ = index;
    points_ = points;
    selected_ = -1;
    image_ = QImage();
    requestImage();
    update();
}

void RedactPageView::setFound(const QList<QRectF>& boxes) {
    found_ = boxes;
    update();
}

void RedactPageView::clearDrawn() {
    if (!drawn_.isEmpty()) {
        remember();
        drawn_.clear();
        selected_ = -1;
        update();
        emit drawnChanged();
    }
}

void RedactPageView::setDrawn(const QMap<int, QList<QRectF>>& boxes) {
    remember();
    drawn_ = boxes;
    selected_ = -1;
    update();
    emit drawnChanged();
}

void RedactPageView::undo() {
    if (history_.isEmpty() || drag_ != Drag::none) {
        return;
    }
    drawn_ = history_.takeLast();
    selected_ = -1;
    update();
    emit drawnChanged();
}

void RedactPageView::remember() {
    history_.append(drawn_);
    if (history_.size() > 100) {
        history_.removeFirst();
    }
}

QRectF RedactPageView::pageRect() const {
    if (points_.isEmpty()) {
        return {};
    }
    const double s = scale();
    const QSizeF size = points_ * s;
    return {(width() - size.width()) / 2, (height() - size.height()) / 2, size.width(),
            size.height()};
}

double RedactPageView::scale() const {
    if (points_.isEmpty()) {
        return 1;
    }
    return std::min((width() - 8) / points_.width(), (height() - 8) / points_.height());
}

QPointF RedactPageView::toPoints(QPointF pixel) const {
    const QRectF page = pageRect();
    const double s = scale();
    return {std::clamp((pixel.x() - page.left()) / s, 0.0, points_.width()),
            std::clamp((pixel.y() - page.top()) / s, 0.0, points_.height())};
}

QRectF RedactPageView::toPixels(const QRectF& points) const {
    const QRectF page = pageRect();
    const double s = scale();
    return {page.left() + points.left() * s, page.top() + points.top() * s, points.width() * s,
            points.height() * s};
}

void RedactPageView::requestImage() {
    if (path_.isEmpty() || index_ < 0 || points_.isEmpty()) {
        return;
    }
    PageRenderService::Request request{path_, index_, pageRect().size().toSize(),
                                       devicePixelRatioF()};
    requestKey_ = request.key();
    if (auto cached = renders_.cached(request)) {
        image_ = *cached;
        return;
    }
    renders_.render(request);
}

void RedactPageView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    requestImage();
}

void RedactPageView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF page = pageRect();
    if (page.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("Drop a PDF above to draw boxes on its pages."));
        return;
    }
    painter.fillRect(page, Qt::white);
    if (!image_.isNull()) {
        painter.drawImage(page, image_);
    }
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawRect(page);
    // What will be removed: translucent, so the user still sees what lies under it.
    for (const QRectF& box : found_) {
        painter.fillRect(toPixels(box), QColor(220, 120, 0, 110));
    }
    const auto boxes = drawn_.value(index_);
    for (int i = 0; i < boxes.size(); ++i) {
        const QRectF pixels = toPixels(boxes[i]);
        painter.fillRect(pixels, QColor(0, 0, 0, 120));
        if (i == selected_) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.drawRect(pixels);
            painter.fillRect(QRectF(pixels.bottomRight() - QPointF(handle / 2, handle / 2),
                                    QSizeF(handle, handle)),
                             palette().color(QPalette::Highlight));
        }
    }
}

void RedactPageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || pageRect().isEmpty()) {
        return;
    }
    setFocus(Qt::MouseFocusReason);
    const QPointF at = event->position();
    pressed_ = toPoints(at);
    const auto& boxes = drawn_[index_];
    if (selected_ >= 0 && selected_ < boxes.size()) {
        const QPointF corner = toPixels(boxes[selected_]).bottomRight();
        if (std::abs(at.x() - corner.x()) <= handle && std::abs(at.y() - corner.y()) <= handle) {
            remember();
            drag_ = Drag::resizing;
            before_ = boxes[selected_];
            return;
        }
    }
    selected_ = -1;
    for (int i = static_cast<int>(boxes.size()) - 1; i >= 0; --i) {
        if (boxes[i].contains(pressed_)) {
            selected_ = i;
            break;
        }
    }
    remember();
    if (selected_ >= 0) {
        drag_ = Drag::moving;
        before_ = boxes[selected_];
    } else {
        drag_ = Drag::drawing;
        drawn_[index_].append(QRectF(pressed_, QSizeF(0, 0)));
        selected_ = static_cast<int>(drawn_[index_].size()) - 1;
    }
    update();
}

void RedactPageView::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ == Drag::none || selected_ < 0) {
        return;
    }
    const QPointF now = toPoints(event->position());
    QRectF& box = drawn_[index_][selected_];
    switch (drag_) {
    case Drag::drawing: box = QRectF(pressed_, now).normalized(); break;
    case Drag::moving: {
        QPointF shift = now - pressed_;
        shift.setX(std::clamp(shift.x(), -before_.left(), points_.width() - before_.right()));
        shift.setY(std::clamp(shift.y(), -before_.top(), points_.height() - before_.bottom()));
        box = before_.translated(shift);
        break;
    }
    case Drag::resizing: box = QRectF(before_.topLeft(), now).normalized(); break;
    case Drag::none: break;
    }
    update();
}

void RedactPageView::mouseReleaseEvent(QMouseEvent*) {
    if (drag_ == Drag::none) {
        return;
    }
    auto& boxes = drawn_[index_];
    const bool changed = selected_ >= 0 && boxes[selected_] != before_;
    if (drag_ == Drag::drawing && selected_ >= 0 &&
        (boxes[selected_].width() < smallestBox || boxes[selected_].height() < smallestBox)) {
        boxes.removeAt(selected_); // a click on the page, not a box
        selected_ = -1;
        if (!history_.isEmpty()) {
            history_.removeLast();
        }
    } else if (!changed && drag_ != Drag::drawing) {
        if (!history_.isEmpty()) {
            history_.removeLast(); // a click that selected a box
        }
    } else {
        emit drawnChanged();
    }
    if (boxes.isEmpty()) {
        drawn_.remove(index_);
    }
    drag_ = Drag::none;
    update();
}

void RedactPageView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo)) {
        undo();
        return;
    }
    if ((event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) && selected_ >= 0 &&
        drawn_.contains(index_)) {
        remember();
        drawn_[index_].removeAt(selected_);
        if (drawn_[index_].isEmpty()) {
            drawn_.remove(index_);
        }
        selected_ = -1;
        update();
        emit drawnChanged();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace quillet
