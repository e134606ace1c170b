// Connects a signal that comes in bursts (an analysis finishing for each of a thousand files) to
// a slot that looks at everything: the slot runs once, on the next turn of the event loop, for a
// whole burst.
#pragma once

#include <QObject>
#include <QTimer>

namespace quillet {

template <typename Sender, typename Signal, typename Receiver, typename Slot>
void connectCoalesced(Sender* sender, Signal signal, Receiver* receiver, Slot slot) {
    auto* timer = new QTimer(receiver);
    timer->setSingleShot(true);
    timer->setInterval(0);
    QObject::connect(timer, &QTimer::timeout, receiver, slot);
    QObject::connect(sender, signal, timer, [timer] { timer->start(); });
}

} // namespace quillet
