#include "app/AppRelaunch.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>

namespace quillet::AppRelaunch {

bool relaunch(const std::function<void()>& beforeStart) {
    if (beforeStart) {
        beforeStart();
    }
    const bool started = QProcess::startDetached(QCoreApplication::applicationFilePath(), {});
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    return started;
}

} // namespace quillet::AppRelaunch
