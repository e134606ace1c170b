// One instance per session: the application owns "org.quillet.Quillet" on the session bus and
// exports org.freedesktop.Application (Activate, Open, ActivateAction) at /org/quillet/Quillet.
//
// A second launch finds the name taken and hands its files to the owner with `handOver` (Open
// with file URIs, or Activate when it has none), then exits. Without a session bus `claim`
// answers `noBus` and the application runs alone. The owner hears every call through the
// signals, on the main thread. `release` gives the name up, so a relaunched instance can take it
// while this one is still quitting.
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

namespace quillet {

class ApplicationBus : public QObject {
    Q_OBJECT

  public:
    static constexpr const char* serviceName = "org.quillet.Quillet";
    static constexpr const char* objectPath = "/org/quillet/Quillet";

    enum class Claim { owned, anotherInstance, noBus };

    explicit ApplicationBus(QObject* parent = nullptr);
    ~ApplicationBus() override;

    /// Exports the interface and asks for the name, never queueing behind its owner.
    Claim claim();
    void release();
    bool isOwner() const { return owned_; }

    /// Asks the running instance to open `urls` (or to come to the front when empty). False when
    /// no instance answered in time.
    static bool handOver(const QList<QUrl>& urls);
    /// Asks the running instance to perform the application action `name` (ActivateAction).
    /// False when no instance answered in time.
    static bool handOverAction(const QString& name, const QVariantList& parameter);

  signals:
    void activateRequested();
    void openRequested(const QList<QUrl>& urls);
    void actionRequested(const QString& name, const QVariantList& parameter);

  private:
    bool owned_ = false;
    bool exported_ = false;
};

} // namespace quillet
