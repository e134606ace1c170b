#include "platform/InOrderWorkers.hpp"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace quillet {

namespace {

class Schedule {
  public:
    Schedule(std::size_t count, std::size_t window)
        : count_(count), window_(window), slots_(window) {}

    // Worker side: the next index to work on, or nothing once all are claimed or work stops.
    bool claim(std::size_t& index) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock,
                      [&] { return stopped_ || next_ >= count_ || next_ < consumed_ + window_; });
        if (stopped_ || next_ >= count_) {
            return false;
        }
        index = next_++;
        return true;
    }

    void finish(std::size_t index, std::exception_ptr error) {
        {
            std::lock_guard lock(mutex_);
            slots_[index % window_] = Slot{true, std::move(error)};
        }
        changed_.notify_all();
    }

    // Calling-thread side: waits for item `index` and answers its error, if any.
    std::exception_ptr await(std::size_t index) {
        std::unique_lock lock(mutex_);
        auto& slot = slots_[index % window_];
        changed_.wait(lock, [&] { return slot.done; });
        return slot.error;
    }

    void release(std::size_t index) {
        {
            std::lock_guard lock(mutex_);
            slots_[index % window_] = Slot{};
            ++consumed_;
        }
        changed_.notify_all();
    }

    void stop() {
        {
            std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        changed_.notify_all();
    }

  private:
    struct Slot {
        bool done = false;
        std::exception_ptr error;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    const std::size_t count_;
    const std::size_t window_;
    std::vector<Slot> slots_;
    std::size_t next_ = 0;
    std::size_t consumed_ = 0;
    bool stopped_ = false;
};

void runSerially(std::size_t count, const ProduceItem& produce, const ConsumeItem& consume) {
    for (std::size_t index = 0; index < count; ++index) {
        produce(0, index);
        consume(index);
    }
}

void work(Schedule& schedule, unsigned worker, const ProduceItem& produce) {
    std::size_t index = 0;
    while (schedule.claim(index)) {
        std::exception_ptr error;
        try {
            produce(worker, index);
        } catch (...) {
            error = std::current_exception();
        }
        schedule.finish(index, std::move(error));
    }
}

} // namespace

void runInOrder(std::size_t count, unsigned threads, std::size_t window, const ProduceItem& produce,
                const ConsumeItem& consume) {
    const auto workers = static_cast<unsigned>(std::min<std::size_t>(threads, count));
    if (workers <= 1) {
        runSerially(count, produce, consume);
        return;
    }
    Schedule schedule(count, std::max<std::size_t>(window, 1));
    std::vector<std::jthread> pool;
    pool.reserve(workers);
    // Joins run in the jthreads' destructors; stopping first lets blocked workers leave.
    struct StopOnExit {
        Schedule& schedule;
        ~StopOnExit() { schedule.stop(); }
    };
    StopOnExit stopOnExit{schedule};
    for (unsigned worker = 0; worker < workers; ++worker) {
        pool.emplace_back([&schedule, &produce, worker] { work(schedule, worker, produce); });
    }
    for (std::size_t index = 0; index < count; ++index) {
        if (auto error = schedule.await(index)) {
            std::rethrow_exception(error);
        }
        consume(index);
        schedule.release(index);
    }
}

} // namespace quillet
