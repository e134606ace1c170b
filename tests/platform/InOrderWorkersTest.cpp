#include "platform/InOrderWorkers.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quillet {
namespace {

// Later items finish sooner, so a scheduler that hands results back as they finish fails.
void unevenWork(std::size_t index) {
    std::this_thread::sleep_for(std::chrono::microseconds(200 * (7 - index % 7)));
}

struct Shape {
    std::size_t count;
    unsigned threads;
    std::size_t window;
};

class InOrderWorkersTest : public testing::TestWithParam<Shape> {};

TEST_P(InOrderWorkersTest, ConsumesInOrderWithinTheWindow) {
    const auto [count, threads, window] = GetParam();
    std::vector<std::size_t> results(count, 0);
    std::vector<std::size_t> consumed;
    std::atomic<std::size_t> started{0};
    std::atomic<unsigned> highestWorker{0};
    std::size_t ahead = 0;
    runInOrder(
        count, threads, window,
        [&](unsigned worker, std::size_t index) {
            ++started;
            highestWorker = std::max(highestWorker.load(), worker);
            unevenWork(index);
            results[index] = index * index;
        },
        [&](std::size_t index) {
            EXPECT_EQ(results[index], index * index);
            consumed.push_back(index);
            ahead = std::max(ahead, started.load() - consumed.size());
        });
    ASSERT_EQ(consumed.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(consumed[i], i);
    }
    EXPECT_LT(ahead, std::max<std::size_t>(window, 1));
    EXPECT_LT(highestWorker.load(), std::max(1u, threads));
}

INSTANTIATE_TEST_SUITE_P(Shapes, InOrderWorkersTest,
                         testing::Values(Shape{0, 4, 8}, Shape{1, 4, 8}, Shape{25, 1, 2},
                                         Shape{25, 2, 1}, Shape{25, 3, 6}, Shape{40, 8, 3}));

TEST(InOrderWorkers, WorkErrorSurfacesAtItsTurn) {
    for (unsigned threads : {1u, 3u}) {
        std::vector<std::size_t> consumed;
        auto produce = [](unsigned, std::size_t index) {
            unevenWork(index);
            if (index == 6) {
                throw std::out_of_range("item 6");
            }
        };
        auto consume = [&](std::size_t index) { consumed.push_back(index); };
        EXPECT_THROW(runInOrder(10, threads, 4, produce, consume), std::out_of_range);
        EXPECT_EQ(consumed, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5})) << threads;
    }
}

} // namespace
} // namespace quillet
