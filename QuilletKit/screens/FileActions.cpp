#include "screens/FileActions.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
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
    const QString fileManager = QStringLiteral("org.freedesktop.FileManager1");
    auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected() && bus.interface() != nullptr &&
        (bus.interface()->isServiceRegistered(fileManager).value() ||
         bus.interface()->activatableServiceNames().value().contains(fileManager))) {
        QStringList uris;
        for (const QString& path : paths) {
            uris << QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
        }
        auto call = QDBusMessage::createMethodCall(fileManager,
                                                   QStringLiteral("/org/freedesktop/FileManager1"),
                                                   fileManager, QStringLiteral("ShowItems"));
        call << uris << QString();
        bus.asyncCall(call);
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(paths.front()).absolutePath()));
}

} // namespace quillet::FileActions
