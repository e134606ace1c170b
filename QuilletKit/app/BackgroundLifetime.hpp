// How long an instance started only for automation stays: started by D-Bus activation, it shows
// no window, and asks to quit `idleDelay` after its last work ends (or after its start, when no
// work comes), and at once when the session bus goes away. Once a window has been shown it
// never asks: the user decides when that instance ends.
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace quillet {

class BackgroundLifetime : public QObject {
    Q_OBJECT

  public:
    static constexpr std::chrono::minutes defaultIdleDelay{1};

    explicit BackgroundLifetime(std::chrono::milliseconds idleDelay = defaultIdleDelay,
                                QObject* parent = nullptr);

    /// Counts `window`'s first showing as a window opened.
    void watchWindow(QObject* window);
    void windowOpened();
    void setBusy(bool busy);
    bool hasOpenedWindow() const { return windowOpened_; }

  signals:
    void quitRequested();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void checkBus();

    QTimer idle_;
    QTimer busWatch_;
    bool busy_ = false;
    bool windowOpened_ = false;
};

} // namespace quillet
