// Connections for views that look at everything the model holds, so that a change to 50,000
// files costs the window only what the visible view needs:
// - `connectWhenShown`: the slot runs now when the view is visible; a hidden view only notes
//   that it is out of date and runs the slot once when it is next shown.
// - `connectCoalesced`: for signals that come in bursts (an analysis finishing for each of a
//   thousand files); the slot runs once, on the next turn of the event loop, for a whole burst,
//   and for a hidden view not before it is shown.
#pragma once

#include <QObject>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <type_traits>

namespace quillet {

/// Runs `work` when asked while `view` is visible; asked while hidden, runs it once on the next
/// show, before the view's own showEvent. Owned by the view.
class WhenShown : public QObject {
  public:
    WhenShown(QWidget* view, std::function<void()> work);
    void request();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* view_;
    std::function<void()> work_;
    bool stale_ = false;
};

/// `slot` is a member function of the view or a callable without arguments.
template <typename Sender, typename Signal, typename Receiver, typename Slot>
void connectWhenShown(Sender* sender, Signal signal, Receiver* view, Slot slot) {
    auto* runner = new WhenShown(view, [view, slot] {
        if constexpr (std::is_invocable_v<Slot, Receiver*>) {
            std::invoke(slot, view);
        } else {
            slot();
        }
    });
    QObject::connect(sender, signal, runner, [runner] { runner->request(); });
}

template <typename Sender, typename Signal, typename Receiver, typename Slot>
void connectCoalesced(Sender* sender, Signal signal, Receiver* receiver, Slot slot) {
    auto* timer = new QTimer(receiver);
    timer->setSingleShot(true);
    timer->setInterval(0);
    if constexpr (std::is_base_of_v<QWidget, Receiver>) {
        auto* runner = new WhenShown(receiver, [receiver, slot] { std::invoke(slot, receiver); });
        QObject::connect(timer, &QTimer::timeout, runner, [runner] { runner->request(); });
    } else {
        QObject::connect(timer, &QTimer::timeout, receiver, slot);
    }
    QObject::connect(sender, signal, timer, [timer] { timer->start(); });
}

} // namespace quillet
