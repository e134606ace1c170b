#include "screens/FileActions.hpp"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace quillet::FileActions {

void open(const QString& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void reveal(const QStringList& paths) {
    if (paths.isEmpty()) {
        return;
    }
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(paths.front()).absolutePath());
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QDesktopServices::openUrl(folder);
        return;
    }
    // The file manager selects the files in their folder; without one on the bus (the call
    // fails, never blocks the window) the folder opens in whatever handles folders.
    const QString fileManager = QStringLiteral("org.freedesktop.FileManager1");
    QStringList uris;
    for (const QString& path : paths) {
        uris << QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    }
    auto call = QDBusMessage::createMethodCall(fileManager,
                                               QStringLiteral("/org/freedesktop/FileManager1"),
                                               fileManager, QStringLiteral("ShowItems"));
    call << uris << QString();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [folder](QDBusPendingCallWatcher* finished) {
                         if (finished->isError()) {
                             QDesktopServices::openUrl(folder);
                         }
                         finished->deleteLater();
                     });
}

} // namespace quillet::FileActions
