// Numbered work on several threads, handed back in number order on the calling thread, so that
// the caller observes exactly what a serial loop would have produced (results, progress, errors).
#pragma once

#include <cstddef>
#include <functional>

namespace quillet {

/// Work for item `index`, run on worker `worker` (0 ..< threads). One worker never runs two items
/// at once, so state kept per worker needs no lock.
using ProduceItem = std::function<void(unsigned worker, std::size_t index)>;
/// Called on the calling thread for 0, 1, 2, ... once that item's work has finished.
using ConsumeItem = std::function<void(std::size_t index)>;

/// Runs produce for every index in 0 ..< count on `threads` threads and consume for each index in
/// ascending order on the calling thread.
///
/// - At most `window` items (at least 1) are produced ahead of the one being consumed, which bounds
///   memory: item i starts only after consume(i - window) has returned, so a caller may keep
///   results in `window` slots indexed by i % window.
/// - An exception from produce(i) is rethrown on the calling thread in place of consume(i), after
///   consume(0 ... i - 1), as a serial loop would. An exception from consume stops the workers
///   (items already started finish) and propagates.
/// - Every thread has been joined when this returns or throws.
/// - With `threads` of 0 or 1, or a single item, everything runs on the calling thread as worker 0.
void runInOrder(std::size_t count, unsigned threads, std::size_t window, const ProduceItem& produce,
                const ConsumeItem& consume);

} // namespace quillet
