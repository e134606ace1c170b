// Runs a long loop of the main thread in slices of a few milliseconds, one slice per turn of the
// event loop, so that building 50,000 rows never stops the window from answering. Starting again
// abandons the loop under way.
#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

namespace quillet {

class SlicedLoop : public QObject {
  public:
    /// How long one slice may run before the event loop gets its turn.
    static constexpr int sliceMilliseconds = 4;

    explicit SlicedLoop(QObject* parent = nullptr);

    /// Calls `step(0)` to `step(count - 1)` in order, over as many turns as it takes, and then
    /// `done` (may be empty). The first slice runs now.
    void start(int count, std::function<void(int)> step, std::function<void()> done = {});
    void stop();
    /// At most this many steps per slice (by default as many as fit in its time): for steps
    /// whose cost comes later in the same turn, such as a widget laid out once it is shown.
    void setStepsPerSlice(int steps) { stepsPerSlice_ = steps; }
    bool isRunning() const { return next_ < count_; }

  private:
    void runSlice();

    QTimer timer_;
    int next_ = 0;
    int count_ = 0;
    int stepsPerSlice_ = 0;
    std::function<void(int)> step_;
    std::function<void()> done_;
};

} // namespace quillet
