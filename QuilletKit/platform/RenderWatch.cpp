#include "platform/RenderWatch.hpp"

namespace quillet {

RenderWatch::RenderWatch(fz_cookie& cookie, std::chrono::milliseconds timeout,
                         std::function<bool()> isCancelled)
    : cookie_(cookie), isCancelled_(std::move(isCancelled)) {
    const bool hasDeadline = timeout.count() > 0;
    if (!hasDeadline && !isCancelled_) {
        return;
    }
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    thread_ = std::thread([this, deadline, hasDeadline] { watch(deadline, hasDeadline); });
}

RenderWatch::~RenderWatch() {
    stop();
}

void RenderWatch::stop() {
    {
        std::lock_guard lock(mutex_);
        done_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool RenderWatch::expired() const {
    std::lock_guard lock(mutex_);
    return expired_;
}

bool RenderWatch::cancelled() const {
    std::lock_guard lock(mutex_);
    return cancelled_;
}

void RenderWatch::watch(std::chrono::steady_clock::time_point deadline, bool hasDeadline) {
    std::unique_lock lock(mutex_);
    while (!done_) {
        wake_.wait_for(lock, pollInterval, [this] { return done_; });
        if (done_) {
            return;
        }
        if (hasDeadline && std::chrono::steady_clock::now() >= deadline) {
            expired_ = true;
        } else if (isCancelled_ && isCancelled_()) {
            cancelled_ = true;
        } else {
            continue;
        }
        // MuPDF reads the flag as a plain int from the drawing thread.
        __atomic_store_n(&cookie_.abort, 1, __ATOMIC_RELAXED);
        return;
    }
}

} // namespace quillet
