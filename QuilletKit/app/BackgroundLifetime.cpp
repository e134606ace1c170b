#include "app/BackgroundLifetime.hpp"

#include <QDBusConnection>
#include <QEvent>

namespace quillet {

namespace {
// The session bus gives no signal of its own end that reaches us reliably; a look every few
// seconds costs nothing.
constexpr std::chrono::seconds busCheckInterval{3};
} // namespace

BackgroundLifetime::BackgroundLifetime(std::chrono::milliseconds idleDelay, QObject* parent)
    : QObject(parent) {
    idle_.setSingleShot(true);
    idle_.setInterval(idleDelay);
    connect(&idle_, &QTimer::timeout, this, [this] {
        if (!busy_ && !windowOpened_) {
            emit quitRequested();
        }
    });
    busWatch_.setInterval(busCheckInterval);
    connect(&busWatch_, &QTimer::timeout, this, &BackgroundLifetime::checkBus);
    idle_.start();
    busWatch_.start();
}

void BackgroundLifetime::watchWindow(QObject* window) {
    window->installEventFilter(this);
}

bool BackgroundLifetime::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        windowOpened();
        watched->removeEventFilter(this);
    }
    return QObject::eventFilter(watched, event);
}

void BackgroundLifetime::windowOpened() {
    windowOpened_ = true;
    idle_.stop();
}

void BackgroundLifetime::setBusy(bool busy) {
    busy_ = busy;
    if (busy || windowOpened_) {
        idle_.stop();
    } else {
        idle_.start();
    }
}

void BackgroundLifetime::checkBus() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        emit quitRequested();
    }
}

} // namespace quillet
