// How long an instance started only for automation stays: started by D-Bus activation, it shows
// no window, and asks to quit `idleDelay` after its last work ends (or after its start, when no
// work comes). Once a window has been shown the idle delay no longer applies: the user decides
// when that instance ends. It asks at once, window or not, when the session bus that started it
// goes away: nothing could reach it any more, and a new session starts an instance of its own.
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
