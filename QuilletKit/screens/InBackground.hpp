// Work for a screen that must not run on the main thread: `inBackground` runs it on a pool
// thread and hands its result back on the main thread, unless the screen asking is gone by then.
#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace quillet {

template <typename Work, typename Deliver>
void inBackground(QObject* owner, Work work, Deliver deliver) {
    QPointer<QObject> guard(owner);
    QThreadPool::globalInstance()->start([guard, work = std::move(work),
                                          deliver = std::move(deliver)]() mutable {
        auto result = work();
        // Posted to the application, which outlives the screen; the screen is asked for only
        // there, on its own thread.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, deliver = std::move(deliver), result = std::move(result)]() mutable {
                if (guard) {
                    deliver(std::move(result));
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace quillet
