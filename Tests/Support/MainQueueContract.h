#pragma once

#include "Platform/MainQueue.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace quillorn {

/// What every main queue does. A Driver has `queue()`, `runFor(time)`, which runs what was posted and what is due
/// within that time, and `failures()`, the number of pieces of work that have thrown; an event loop of another kind
/// joins by a driver of its own:
///
///     INSTANTIATE_TYPED_TEST_SUITE_P(Toolkit, MainQueueContract, ToolkitDriver);
template <typename Driver>
struct MainQueueContract : testing::Test {
    MainQueue& queue() { return driver.queue(); }
    MainQueue::Work note(std::string text) {
        return [this, text] { seen += text; };
    }

    Driver driver;
    std::string seen;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, runsPostedWorkInOrderAndNotAtOnce) {
    this->queue().post([this] {
        this->seen += "a";
        this->queue().post(this->note("d"));
        this->seen += "b";
    });
    std::jthread([this] { this->queue().post(this->note("c")); }).join();
    EXPECT_EQ(this->seen, "");
    this->driver.runFor(std::chrono::milliseconds{2});
    EXPECT_EQ(this->seen, "abcd");
}

TYPED_TEST_P(MainQueueContract, timersFireInTheOrderOfTheirTimesUnlessCancelled) {
    using std::chrono::milliseconds;
    MainQueue& queue = this->queue();
    queue.after(milliseconds{6}, this->note("3"));
    queue.after(milliseconds{2}, this->note("1"));
    queue.after(milliseconds{4}, this->note("2"));
    queue.after(milliseconds{-5}, this->note("0"));
    queue.after(milliseconds::max(), this->note("never"));
    const auto once = queue.after(milliseconds{1}, this->note("once"));
    const auto often = queue.every(milliseconds{1}, this->note("often"));
    for (const auto timer : {once, often, once, MainQueue::TimerId{999'999}})
        queue.cancel(timer);
    this->driver.runFor(milliseconds{10});
    EXPECT_EQ(this->seen, "0123");
}

TYPED_TEST_P(MainQueueContract, repeatsUntilCancelledEvenByItself) {
    int ticks = 0;
    MainQueue::TimerId timer{};
    timer = this->queue().every(std::chrono::milliseconds{1}, [&] {
        if (++ticks == 3)
            this->queue().cancel(timer);
    });
    while (ticks < 3)
        this->driver.runFor(std::chrono::milliseconds{1});
    this->driver.runFor(std::chrono::milliseconds{5});
    EXPECT_EQ(ticks, 3);
}

TYPED_TEST_P(MainQueueContract, failuresStopNothing) {
    this->queue().post([] { throw std::runtime_error("first"); });
    this->queue().post([] { throw 1; });
    this->queue().after(std::chrono::milliseconds{1}, [] { throw std::runtime_error("timer"); });
    this->queue().post(this->note("done"));
    this->driver.runFor(std::chrono::milliseconds{3});
    EXPECT_EQ(this->seen, "done");
    EXPECT_EQ(this->driver.failures(), 3U);
}

TYPED_TEST_P(MainQueueContract, workMayUseTheQueueWhileItIsDestroyed) {
    struct PostsAtItsEnd {
        MainQueue& queue;
        MainQueue::TimerId other;
        ~PostsAtItsEnd() {
            queue.post([] {});
            queue.cancel(other);
        }
    };
    MainQueue& queue = this->queue();
    const auto other = queue.after(std::chrono::hours{1}, [] {});
    const auto keep = [&] { return [kept = std::make_shared<PostsAtItsEnd>(queue, other)] { (void)kept; }; };
    queue.cancel(queue.after(std::chrono::hours{1}, keep()));
    queue.post(keep());
    this->driver.runFor(std::chrono::milliseconds{1});
    queue.post(keep());
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, runsPostedWorkInOrderAndNotAtOnce,
                            timersFireInTheOrderOfTheirTimesUnlessCancelled, repeatsUntilCancelledEvenByItself,
                            failuresStopNothing, workMayUseTheQueueWhileItIsDestroyed);

} // namespace quillorn
