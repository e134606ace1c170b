#include "screens/Coalesced.hpp"

#include <QEvent>

namespace quillet {

WhenShown::WhenShown(QWidget* view, std::function<void()> work)
    : QObject(view), view_(view), work_(std::move(work)) {
    view_->installEventFilter(this);
}

void WhenShown::request() {
    if (view_->isVisible()) {
        stale_ = false;
        work_();
    } else {
        stale_ = true;
    }
}

bool WhenShown::eventFilter(QObject* watched, QEvent* event) {
    if (watched == view_ && event->type() == QEvent::Show && stale_) {
        stale_ = false;
        work_();
    }
    return false;
}

} // namespace quillet
