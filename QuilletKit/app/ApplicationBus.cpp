#include "app/ApplicationBus.hpp"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace quillet {

/// The freedesktop application interface, forwarded to the bus object's signals.
class FreedesktopApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit FreedesktopApplicationAdaptor(ApplicationBus* bus)
        : QDBusAbstractAdaptor(bus), bus_(bus) {}

  public slots:
    // The caller gets its answer at once; the work (loading files, raising the window) runs
    // from the event loop afterwards.
    void Activate(const QVariantMap& platformData) {
        Q_UNUSED(platformData);
        QMetaObject::invokeMethod(
            bus_, [bus = bus_] { emit bus->activateRequested(); }, Qt::QueuedConnection);
    }
    void Open(const QStringList& uris, const QVariantMap& platformData) {
        Q_UNUSED(platformData);
        QList<QUrl> urls;
        for (const QString& uri : uris) {
            urls << QUrl(uri);
        }
        QMetaObject::invokeMethod(
            bus_,
            [bus = bus_, urls] {
                emit bus->openRequested(urls);
                emit bus->activateRequested();
            },
            Qt::QueuedConnection);
    }
    void ActivateAction(const QString& actionName, const QVariantList& parameter,
                        const QVariantMap& platformData) {
        Q_UNUSED(platformData);
        QMetaObject::invokeMethod(
            bus_,
            [bus = bus_, actionName, parameter] {
                emit bus->actionRequested(actionName, parameter);
            },
            Qt::QueuedConnection);
    }

  private:
    ApplicationBus* bus_;
};

namespace {

constexpr int handOverTimeoutMilliseconds = 10000;

QVariantMap platformData() {
    QVariantMap data;
    if (const QByteArray id = qgetenv("DESKTOP_STARTUP_ID"); !id.isEmpty()) {
        data.insert(QStringLiteral("desktop-startup-id"), QString::fromUtf8(id));
    }
    if (const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN"); !token.isEmpty()) {
        data.insert(QStringLiteral("activation-token"), QString::fromUtf8(token));
    }
    return data;
}

} // namespace

ApplicationBus::ApplicationBus(QObject* parent) : QObject(parent) {
    new FreedesktopApplicationAdaptor(this);
}

ApplicationBus::~ApplicationBus() {
    release();
}

ApplicationBus::Claim ApplicationBus::claim() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || bus.interface() == nullptr) {
        return Claim::noBus;
    }
    if (!exported_) {
        exported_ = bus.registerObject(QString::fromLatin1(objectPath), this,
                                       QDBusConnection::ExportAdaptors);
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(QString::fromLatin1(serviceName),
                                         QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        return Claim::noBus;
    }
    owned_ = reply.value() == QDBusConnectionInterface::ServiceRegistered;
    return owned_ ? Claim::owned : Claim::anotherInstance;
}

void ApplicationBus::release() {
    auto bus = QDBusConnection::sessionBus();
    if (owned_ && bus.isConnected()) {
        bus.unregisterService(QString::fromLatin1(serviceName));
    }
    owned_ = false;
}

bool ApplicationBus::handOver(const QList<QUrl>& urls) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return false;
    }
    const QString interface = QStringLiteral("org.freedesktop.Application");
    QDBusMessage call;
    if (urls.isEmpty()) {
        call = QDBusMessage::createMethodCall(QString::fromLatin1(serviceName),
                                              QString::fromLatin1(objectPath), interface,
                                              QStringLiteral("Activate"));
        call << platformData();
    } else {
        QStringList uris;
        for (const QUrl& url : urls) {
            uris << url.toString(QUrl::FullyEncoded);
        }
        call = QDBusMessage::createMethodCall(QString::fromLatin1(serviceName),
                                              QString::fromLatin1(objectPath), interface,
                                              QStringLiteral("Open"));
        call << uris << platformData();
    }
    const QDBusMessage reply = bus.call(call, QDBus::Block, handOverTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool ApplicationBus::handOverAction(const QString& name, const QVariantList& parameter) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QString::fromLatin1(serviceName), QString::fromLatin1(objectPath),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    call << name << parameter << platformData();
    const QDBusMessage reply = bus.call(call, QDBus::Block, handOverTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace quillet

#include "ApplicationBus.moc"
