// Stops a MuPDF drawing that runs past its time or whose caller gave up.
//
// MuPDF's interpreter reads `cookie->abort` between operators and stops when it is set. A
// `RenderWatch` owns a thread that, every `pollInterval`, sets it when the deadline has passed
// (`expired()` then answers true) or when `isCancelled` answers true (`cancelled()`). The thread
// ends with the watch; a watch without deadline and without cancellation test starts none.
#pragma once

#include <mupdf/fitz.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace quillet {

class RenderWatch {
  public:
    static constexpr std::chrono::milliseconds pollInterval{100};

    /// `timeout` of zero or less: no deadline. `isCancelled` is called on the watch's thread.
    RenderWatch(fz_cookie& cookie, std::chrono::milliseconds timeout,
                std::function<bool()> isCancelled);
    ~RenderWatch();
    RenderWatch(const RenderWatch&) = delete;
    RenderWatch& operator=(const RenderWatch&) = delete;

    /// Ends the watching (joins the thread); the verdicts below are final from then on.
    void stop();

    bool expired() const;
    bool cancelled() const;

  private:
    void watch(std::chrono::steady_clock::time_point deadline, bool hasDeadline);

    fz_cookie& cookie_;
    std::function<bool()> isCancelled_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool done_ = false;
    bool expired_ = false;
    bool cancelled_ = false;
    std::thread thread_;
};

} // namespace quillet
