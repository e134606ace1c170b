#include "app/SlicedLoop.hpp"

#include <QElapsedTimer>

namespace quillet {

SlicedLoop::SlicedLoop(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &SlicedLoop::runSlice);
}

void SlicedLoop::start(int count, std::function<void(int)> step, std::function<void()> done) {
    stop();
    next_ = 0;
    count_ = count;
    step_ = std::move(step);
    done_ = std::move(done);
    runSlice();
}

void SlicedLoop::stop() {
    timer_.stop();
    next_ = count_ = 0;
}

void SlicedLoop::runSlice() {
    QElapsedTimer clock;
    clock.start();
    int steps = 0;
    while (next_ < count_ && clock.elapsed() < sliceMilliseconds &&
           (stepsPerSlice_ <= 0 || steps++ < stepsPerSlice_)) {
        step_(next_++);
    }
    if (next_ < count_) {
        timer_.start();
    } else if (done_) {
        auto done = std::move(done_);
        done_ = {};
        done();
    }
}

} // namespace quillet
